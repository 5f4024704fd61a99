// Whether the times of the frames follow each other.
#ifndef FRAMESIFT_APP_CHECK_CLOCKWATCH_H
#define FRAMESIFT_APP_CHECK_CLOCKWATCH_H

#include <map>
#include <optional>
#include <utility>

#include "Check/CheckOptions.h"
#include "Check/CheckReport.h"
#include "Check/SharedTime.h"

namespace Marvane::FrameSift {

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
    CSharedTime m_sharedTime;
    std::map<KIND_AND_CHANNEL, FRAME_MARK> m_last;
};

} // namespace Marvane::FrameSift

#endif
