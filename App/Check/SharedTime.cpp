#include "Check/SharedTime.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_defaultRate = 25;

} // namespace

CLOCK_MS CSharedTime::Follow(const FrameInfo& frame)
{
    const KX_TIME time = frame.frameTime;
    if (frame.streamType != KX_STREAM_TYPE_NEW || !IsCalendarTime(time))
        return 0;
    const CLOCK_MS nClock = TimeToClock(time);
    if (m_time != nClock) {
        m_nLast = m_nFrames * 1000 / (m_nRate > 0 ? m_nRate : sc_defaultRate);
        m_nFrames = 0;
        m_time = nClock;
    }
    // Audio between the pictures has their time, so their number is good for it too.
    if (frame.frameType == KX_FRAME_TYPE_VIDEO) {
        ++m_nFrames;
        m_nRate = frame.frameRate;
    }
    return m_nLast;
}

} // namespace Marvane::FrameSift
