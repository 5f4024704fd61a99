// How far apart the frames are that a decoder can start from.
#ifndef FRAMESIFT_APP_INFO_KEYDISTANCE_H
#define FRAMESIFT_APP_INFO_KEYDISTANCE_H

#include <cstdint>
#include <map>
#include <optional>

#include "FrameWriter/RecordingClock.h"
#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

struct DISTANCE
{
    int64_t nTypical = 0; // the median
    int64_t nLargest = 0;
};

class CKeyDistance
{
public:
    void Follow(const FrameInfo& frame); // a good video frame; each channel counts by itself
    uint64_t Keys() const { return m_nKeys; }
    // From one key frame to the next; none without two of them.
    std::optional<DISTANCE> Frames() const { return Of(m_frames); }
    std::optional<DISTANCE> Milliseconds() const { return Of(m_times); } // none if their times tell nothing

private:
    using COUNTS = std::map<int64_t, uint64_t>; // how often each distance occurs
    struct LAST_KEY
    {
        int64_t nFrames = 0; // video frames since then, itself included
        std::optional<CLOCK_MS> time;
    };

    static std::optional<DISTANCE> Of(const COUNTS& counts);

    std::map<uint8_t, LAST_KEY> m_last; // by channel
    COUNTS m_frames;
    COUNTS m_times;
    uint64_t m_nKeys = 0;
};

} // namespace Marvane::FrameSift

#endif
