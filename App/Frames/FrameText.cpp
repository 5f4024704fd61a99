#include "Frames/FrameText.h"

#include <fmt/format.h>

#include "FrameWriter/RecordingClock.h"

namespace Marvane::FrameSift {

std::string TimeText(const KX_TIME& time)
{
    if (!IsCalendarTime(time))
        return {};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}", time.nYear, time.nMonth, time.nDay, time.nHour,
                       time.nMinute, time.nSecond, time.nMilliSecond);
}

} // namespace Marvane::FrameSift
