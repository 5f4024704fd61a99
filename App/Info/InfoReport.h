// What is to be known of one recording.
#ifndef FRAMESIFT_APP_INFO_INFOREPORT_H
#define FRAMESIFT_APP_INFO_INFOREPORT_H

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "Check/CheckReport.h"
#include "Info/FormatWatch.h"
#include "Info/KeyDistance.h"

namespace Marvane::FrameSift {

struct INFO_REPORT
{
    // Gaps, clock jumps, damage, bytes in no frame, earliest and latest time.
    CHECK_REPORT check{0};

    int32_t nInnerType = 0; // which of the older formats it is
    bool bHasPlaces = true; // false: frames are put together from blocks, and nothing is known of gaps and damage

    // All these are of the frames of the index. What an error keeps out of it is seen by check as bytes in no frame.
    std::map<int32_t, uint64_t> goodByType; // KX_FRAME_TYPE_*
    std::map<int32_t, uint64_t> videoBySubType;
    std::map<int32_t, uint64_t> payloadByType; // bytes, of the good frames
    uint32_t nLargestFrame = 0;                // bytes, damaged ones too
    std::optional<KX_TIME> first;              // of the good frames, in the order of the file
    std::optional<KX_TIME> last;
    CKeyDistance keys;
    CFormatWatch<VIDEO_FORMAT> video;
    CFormatWatch<AUDIO_FORMAT> audio;
    std::map<int32_t, uint64_t> encipheredByType; // KX_ENCRYPT_*; those that no key has opened
    uint64_t nDeciphered = 0;

    uint64_t GoodFrames() const;
    // Good frames behind a head that promises more bytes than the file has: reading the file meets them no more.
    uint64_t FramesNotIndexed() const { return check.GoodFrames() - std::min(check.GoodFrames(), GoodFrames()); }
    // From the earliest to the latest frame, clock jumps included; none if no frame has a time.
    std::optional<CLOCK_MS> Duration() const;
    // Payload bits a second of one kind, or of all; none without a duration.
    std::optional<uint64_t> BitRate(std::optional<int32_t> frameType) const;
};

} // namespace Marvane::FrameSift

#endif
