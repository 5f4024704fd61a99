#include "Check/FrameOrder.h"

namespace Marvane::FrameSift {

std::optional<FINDING> CSequenceWatch::Follow(const FrameInfo& frame, const FRAME_MARK& mark)
{
    if (mark.nFrameType != KX_FRAME_TYPE_VIDEO || frame.totalChannels != 0)
        return std::nullopt;
    const std::optional<FRAME_MARK> before = m_last;
    m_last = mark;
    // The numbers wrap at 32 bits. Of two ways from one to the other, the shorter one was gone.
    const uint32_t nStep = before ? mark.nSeq - before->nSeq : 1;
    if (nStep <= 1)
        return std::nullopt;
    FINDING finding;
    finding.nOffset = mark.nOffset;
    finding.before = before;
    finding.after = mark;
    const bool bAhead = nStep <= UINT32_MAX / 2;
    finding.eKind = bAhead ? FINDING_KIND::LostFrames : FINDING_KIND::SequenceRestart;
    finding.nLost = bAhead ? nStep - 1 : 0;
    return finding;
}

std::optional<FINDING> CClockWatch::Follow(const FrameInfo& frame, const FRAME_MARK& mark)
{
    const bool bContinuous = mark.nFrameType == KX_FRAME_TYPE_VIDEO || mark.nFrameType == KX_FRAME_TYPE_AUDIO;
    if (!bContinuous || !IsCalendarTime(mark.time))
        return std::nullopt;
    const auto [place, bFirst] = m_last.try_emplace({mark.nFrameType, frame.curChannel}, mark);
    if (bFirst)
        return std::nullopt;
    const FRAME_MARK before = std::exchange(place->second, mark);
    const CLOCK_MS nJump = TimeToClock(mark.time) - TimeToClock(before.time);
    if (nJump >= -m_limits.nBack && nJump <= m_limits.nAhead)
        return std::nullopt;
    FINDING finding;
    finding.eKind = FINDING_KIND::ClockJump;
    finding.nOffset = mark.nOffset;
    finding.before = before;
    finding.after = mark;
    finding.nJump = nJump;
    return finding;
}

} // namespace Marvane::FrameSift
