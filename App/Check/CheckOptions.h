// What the user of check has asked for.
#ifndef FRAMESIFT_APP_CHECK_CHECKOPTIONS_H
#define FRAMESIFT_APP_CHECK_CHECKOPTIONS_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "FrameWriter/RecordingClock.h"

namespace Marvane::FrameSift {

struct CLOCK_LIMITS
{
    CLOCK_MS nBack = 1000;   // B frames stand behind the frame that they are shown in front of
    CLOCK_MS nAhead = 10000; // a slow time-lapse still has a frame every few seconds

    // nExpected: so far the clock should have come, as CSharedTime knows.
    bool IsJump(CLOCK_MS nStep, CLOCK_MS nExpected) const { return nStep < -nBack || nStep > nAhead + nExpected; }
};

struct CHECK_OPTIONS
{
    std::vector<uint8_t> key; // AES; may be empty
    int32_t nType = 0;        // KX_STREAM_TYPE_*; 0: to be found out
    CLOCK_LIMITS clock;
    uint64_t nMaxFindings = 1000;        // of each kind
    size_t nChunk = size_t{1024} * 1024; // bytes read at a time
};

} // namespace Marvane::FrameSift

#endif
