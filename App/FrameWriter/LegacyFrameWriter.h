// Writes frames of the older formats: sound ones for recordings, which tests may then damage.
#ifndef FRAMESIFT_APP_FRAMEWRITER_LEGACYFRAMEWRITER_H
#define FRAMESIFT_APP_FRAMEWRITER_LEGACYFRAMEWRITER_H

#include <cstdint>
#include <span>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// The three kinds of heads of the New stream; Ex swaps which IDs mark key frames.
enum class NEW_HEADS : uint8_t
{
    New,
    Ex,
    Ex1
};

// What the head of a New key frame or of an HB block tells of the picture.
struct LEGACY_PICTURE
{
    int32_t nWidth = 352;                    // New: up to 2040, a multiple of 8. HB: up to 1008, a multiple of 16.
    int32_t nHeight = 288;                   // New: up to 2040, a multiple of 8. HB: up to 2032, a multiple of 16.
    int32_t nFrameRate = 25;                 // up to 31
    uint8_t chInterlace = 0;                 // New: 3 bits
    uint8_t chReserved = 0;                  // New: byte 4
    bool bH264 = false;                      // New; HB carries MPEG-4 only
    KX_TIME time = {2024, 2, 3, 4, 5, 6, 0}; // New: to the second; years 2000 to 2063
    uint32_t nSeconds = 1706933106;          // HB: since 1970, UTC
};

// None takes more than its length field can tell: 24 bits for New, 32 for ZOPT, 16 for audio.
Bytes NewKeyFrame(NEW_HEADS eHeads, const LEGACY_PICTURE& picture, std::span<const uint8_t> payload);
Bytes NewOtherFrame(NEW_HEADS eHeads, bool bH264, std::span<const uint8_t> payload);
// chKind is byte 4, which tells how long the head is: 1, 2 and 7 make 12 bytes, 5 makes 16, 4 and 6 make 17.
Bytes NewDataFrame(uint8_t chKind, std::span<const uint8_t> payload);
Bytes ZoptFrame(std::span<const uint8_t> payload);
// samples: 1 to 13, an index of the sample rate table.
Bytes OldAudioFrame(uint8_t chType, uint8_t chSamples, std::span<const uint8_t> payload);   // head of 8 bytes
Bytes OldAudioFrameEx(uint8_t chType, uint8_t chSamples, std::span<const uint8_t> payload); // head of 16 bytes

inline constexpr size_t gsk_hbBlockPayload = 1024;
// payload: gsk_hbBlockPayload bytes; a shorter one is filled up with zeros.
Bytes HbBlock(const LEGACY_PICTURE& picture, uint32_t nBlockSeq, std::span<const uint8_t> payload);

// The ID of an audio frame alone. In these formats only the next ID ends a frame, so a recording that is to show its last
// frame ends with one.
Bytes LegacyEndMark();

} // namespace Marvane::FrameSift

#endif
