#include "Mux/UnitSource.h"

#include <utility>

#include "Io/AppError.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_chunkSize = size_t{64} * 1024;

} // namespace

CUnitSource::CUnitSource(const std::string& path, std::unique_ptr<CUnitCutter> cutter)
    : m_file(path), m_cutter(std::move(cutter)), m_chunk(sc_chunkSize)
{}

bool CUnitSource::Next(MediaUnit& unit)
{
    while (!m_cutter->Take(unit)) {
        if (m_bEnd)
            return false;
        ReadMore();
    }
    return true;
}

void CUnitSource::ReadMore()
{
    const size_t nRead = m_file.Read(m_chunk);
    m_bEnd = nRead == 0;
    try {
        if (m_bEnd)
            m_cutter->Finish();
        else
            m_cutter->Feed(std::span(m_chunk).first(nRead));
    } catch (const CAppError& error) {
        throw CAppError(error.Code(), m_file.Name() + ": " + error.what());
    }
}

} // namespace Marvane::FrameSift
