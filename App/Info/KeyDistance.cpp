#include "Info/KeyDistance.h"

namespace Marvane::FrameSift {

void CKeyDistance::Follow(const FrameInfo& frame)
{
    const uint8_t nChannel = frame.curChannel;
    const auto last = m_last.find(nChannel);
    if (!IsIFrameSubType(frame.frameSubType)) {
        if (last != m_last.end())
            ++last->second.nFrames;
        return;
    }
    ++m_nKeys;
    const KX_TIME time = frame.frameTime;
    const auto now = IsCalendarTime(time) ? std::optional(TimeToClock(time)) : std::nullopt;
    if (last != m_last.end()) {
        ++m_frames[last->second.nFrames];
        if (now && last->second.time && *now >= *last->second.time) // a clock that was set back tells nothing
            ++m_times[*now - *last->second.time];
    }
    m_last[nChannel] = {1, now};
}

std::optional<DISTANCE> CKeyDistance::Of(const COUNTS& counts)
{
    if (counts.empty())
        return std::nullopt;
    uint64_t nAll = 0;
    for (const auto& [nDistance, nCount] : counts)
        nAll += nCount;
    DISTANCE distance = {0, counts.rbegin()->first};
    uint64_t nSmaller = 0;
    for (const auto& [nDistance, nCount] : counts) {
        distance.nTypical = nDistance;
        nSmaller += nCount;
        if (nSmaller * 2 >= nAll)
            break;
    }
    return distance;
}

} // namespace Marvane::FrameSift
