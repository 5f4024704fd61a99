// Whether the frames follow each other as they were recorded: their numbers and their times.
#ifndef FRAMESIFT_APP_CHECK_FRAMEORDER_H
#define FRAMESIFT_APP_CHECK_FRAMEORDER_H

#include <map>
#include <optional>
#include <utility>

#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

// The numbers of video frames. Those of other kinds are the recorder's own affair and are not looked at, nor are those
// of a stream that carries several channels.
class CSequenceWatch
{
public:
    // LostFrames, SequenceRestart or nothing. A number that comes twice is nothing.
    std::optional<FINDING> Follow(const FrameInfo& frame, const FRAME_MARK& mark);

private:
    std::optional<FRAME_MARK> m_last;
};

struct CLOCK_LIMITS
{
    CLOCK_MS nBack = 1000;   // B frames stand behind the frame that they are shown in front of
    CLOCK_MS nAhead = 10000; // a slow time-lapse still has a frame every few seconds
};

// The times of neighbouring video frames, and of neighbouring audio frames. Data frames come as events do, hours apart.
class CClockWatch
{
public:
    explicit CClockWatch(const CLOCK_LIMITS& limits) : m_limits(limits) {}
    // ClockJump or nothing.
    std::optional<FINDING> Follow(const FrameInfo& frame, const FRAME_MARK& mark);

private:
    using KIND_AND_CHANNEL = std::pair<int32_t, uint8_t>;

    CLOCK_LIMITS m_limits;
    std::map<KIND_AND_CHANNEL, FRAME_MARK> m_last;
};

} // namespace Marvane::FrameSift

#endif
