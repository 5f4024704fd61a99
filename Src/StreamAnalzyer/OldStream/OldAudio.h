// The audio frames that lie between the video of all legacy streams.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_OLDAUDIO_H
#define FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_OLDAUDIO_H

#include <cstddef>
#include <cstdint>

#include "IAnalyzer/FrameInfo.h"
#include "Memory/LogicData.h"

namespace Marvane::FrameSift {

// Wire records, little-endian. The samples follow.
#pragma pack(push, 1)
struct ZOOLD_STREAM_AUDIO_HEADER
{
    uint8_t ID[4];     // 00 00 01 F0
    uint8_t type;      // KX_ENCODE_AUDIO_*
    uint8_t samples;   // index of gsk_AudioSampleMap
    uint16_t nDataLen; // bytes behind the head
};
struct ZOOLD_STREAM_AUDIO_HEADER_EX
{
    ZOOLD_STREAM_AUDIO_HEADER head;
    uint8_t reserver[8]; // not read
};
#pragma pack(pop)
static_assert(sizeof(ZOOLD_STREAM_AUDIO_HEADER) == 8);
static_assert(sizeof(ZOOLD_STREAM_AUDIO_HEADER_EX) == 16);
static_assert(offsetof(ZOOLD_STREAM_AUDIO_HEADER, nDataLen) == 6);

// What becomes of a rate code that stands for none, outside 1 to 13.
enum class BAD_SAMPLES : uint8_t
{
    AsTold,      // read like any other; one outside the table tells no rate
    ReadAsFirst, // counts as 0, which reads as 8000 Hz
    Mend         // becomes 0 in the window itself, which may be the caller's memory
};

// How a format writes and labels them.
struct OLD_AUDIO_FORM
{
    int nHeadLen;    // 8 or 16
    int nStreamType; // KX_STREAM_TYPE_* of the frames
    BAD_SAMPLES eBadSamples;
};

// False if the window does not hold the frame and the ID behind it. Numbers and times are the format's own affair.
bool BuildOldAudioFrame(CLogicData& logicData, int nFramePos, const OLD_AUDIO_FORM& form, FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
