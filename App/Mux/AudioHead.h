// The heads of audio frames that tell their own length.
#ifndef FRAMESIFT_APP_MUX_AUDIOHEAD_H
#define FRAMESIFT_APP_MUX_AUDIOHEAD_H

#include <cstdint>
#include <optional>
#include <span>

namespace Marvane::FrameSift {

struct AUDIO_HEAD
{
    uint32_t nFrameSize = 0; // in bytes, head included
    uint32_t nSamplesPerSec = 0;
    uint32_t nChannels = 0;   // 0: told elsewhere in the stream
    uint32_t nBitsPerSec = 0; // 0: not told
    uint32_t nSamples = 0;    // of each channel
};

// Bytes that every one of these readers needs.
inline constexpr size_t gsk_audioHeadSize = 7;

// Each takes gsk_audioHeadSize bytes or more. Nothing if no frame begins there.
using AUDIO_HEAD_READER = std::optional<AUDIO_HEAD> (*)(std::span<const uint8_t> bytes);
std::optional<AUDIO_HEAD> ReadAdtsHead(std::span<const uint8_t> bytes);       // AAC
std::optional<AUDIO_HEAD> ReadMpegLayer2Head(std::span<const uint8_t> bytes); // MPEG-1 and -2
std::optional<AUDIO_HEAD> ReadMpegLayer3Head(std::span<const uint8_t> bytes); // MPEG-1, -2 and 2.5

} // namespace Marvane::FrameSift

#endif
