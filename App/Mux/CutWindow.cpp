#include "Mux/CutWindow.h"

#include "Io/AppError.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

namespace {

// A whole unit waits here until the start of the next one is whole too.
constexpr size_t sc_maxWindow = 2 * gsk_maxUnitSize;

} // namespace

void CCutWindow::Append(std::span<const uint8_t> bytes)
{
    // Here and not in Advance: a piece holds many small units, and each erasure moves all that lies behind it.
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(Index(m_nBegin)));
    m_nBase = m_nBegin;
    if (m_bytes.size() > sc_maxWindow)
        throw CAppError(EXIT_CODE::Format, "from byte " + std::to_string(m_nBegin) + " on there is no end of a unit");
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

std::span<const uint8_t> CCutWindow::Range(uint64_t nFrom, uint64_t nTo) const
{
    return std::span(m_bytes).subspan(Index(nFrom), static_cast<size_t>(nTo - nFrom));
}

} // namespace Marvane::FrameSift
