#include "Frames/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "Io/ErrorOutput.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint64_t sc_largeInput = uint64_t{64} * 1024 * 1024; // less is read before a bar could be looked at
constexpr size_t sc_width = 40;

} // namespace

CProgressBar::CProgressBar(uint64_t nTotal, bool bListingOnTerminal)
    : m_nTotal(nTotal), m_bShown(nTotal >= sc_largeInput && !bListingOnTerminal && isatty(STDERR_FILENO) == 1)
{}

CProgressBar::~CProgressBar()
{
    if (m_bShown)
        WriteError("\r\033[K");
}

void CProgressBar::Update(uint64_t nDone)
{
    if (!m_bShown)
        return;
    const uint64_t nPercent = std::min<uint64_t>(100, nDone / (m_nTotal / 100)); // the file may have grown
    if (nPercent == m_nPercent)
        return;
    m_nPercent = nPercent;
    const auto nFilled = static_cast<size_t>(nPercent * sc_width / 100);
    WriteError(
        fmt::format("\r[{}{}] {:3} %", std::string(nFilled, '#'), std::string(sc_width - nFilled, ' '), nPercent));
}

} // namespace Marvane::FrameSift
