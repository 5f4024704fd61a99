#include "Check/ByteTail.h"

#include <algorithm>

namespace Marvane::FrameSift {

void CByteTail::Keep(std::span<const uint8_t> chunk, uint64_t nKeep)
{
    const size_t nFromChunk = static_cast<size_t>(std::min<uint64_t>(nKeep, chunk.size()));
    const size_t nFromBefore = static_cast<size_t>(std::min<uint64_t>(nKeep - nFromChunk, m_bytes.size()));
    m_bytes.erase(m_bytes.begin(), m_bytes.end() - static_cast<ptrdiff_t>(nFromBefore));
    const auto kept = chunk.last(nFromChunk);
    m_bytes.insert(m_bytes.end(), kept.begin(), kept.end());
}

std::vector<uint8_t> CByteTail::TakeLast(uint64_t nBytes)
{
    Keep({}, nBytes);
    return std::move(m_bytes);
}

} // namespace Marvane::FrameSift
