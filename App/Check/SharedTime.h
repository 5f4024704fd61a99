// How long frames go on that all tell the same time.
#ifndef FRAMESIFT_APP_CHECK_SHAREDTIME_H
#define FRAMESIFT_APP_CHECK_SHAREDTIME_H

#include <optional>

#include "FrameWriter/RecordingClock.h"
#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

// In New only key frames tell a time, and all up to the next one repeat it, so that the clock stands still and then steps
// on by their number: however far, it is no jump. In other formats each frame tells its own time.
class CSharedTime
{
public:
    // Of each frame with a good head, in the order of the file. Answers how far the clock should have come when it left the
    // time before that of the frame; 0 in other formats.
    CLOCK_MS Follow(const FrameInfo& frame);

private:
    std::optional<CLOCK_MS> m_time;
    CLOCK_MS m_nLast = 0;  // of the frames in front of those that share m_time
    int64_t m_nFrames = 0; // of video, that share it
    int32_t m_nRate = 0;   // of the last of them
};

} // namespace Marvane::FrameSift

#endif
