#include "Check/ClockWatch.h"

namespace Marvane::FrameSift {

std::optional<FINDING> CClockWatch::Follow(const FrameInfo& frame, const FRAME_MARK& mark)
{
    const CLOCK_MS nShared = m_sharedTime.Follow(frame);
    const bool bContinuous = mark.nFrameType == KX_FRAME_TYPE_VIDEO || mark.nFrameType == KX_FRAME_TYPE_AUDIO;
    if (!bContinuous || !IsCalendarTime(mark.time))
        return std::nullopt;
    const auto [place, bFirst] = m_last.try_emplace({mark.nFrameType, frame.curChannel}, mark);
    if (bFirst)
        return std::nullopt;
    const FRAME_MARK before = std::exchange(place->second, mark);
    const CLOCK_MS nJump = TimeToClock(mark.time) - TimeToClock(before.time);
    if (!m_limits.IsJump(nJump, nShared))
        return std::nullopt;
    FINDING finding = FindingBetween(FINDING_KIND::ClockJump, before, mark);
    finding.nJump = nJump;
    return finding;
}

} // namespace Marvane::FrameSift
