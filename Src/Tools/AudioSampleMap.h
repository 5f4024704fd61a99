// Sample rates by the code that audio heads carry.
#ifndef FRAMESIFT_SRC_TOOLS_AUDIOSAMPLEMAP_H
#define FRAMESIFT_SRC_TOOLS_AUDIOSAMPLEMAP_H

#include <array>
#include <cstdint>

namespace Marvane::FrameSift {

inline constexpr std::array<int32_t, 14> gsk_AudioSampleMap = {8000,  4000,  8000,  11025, 16000,  20000,  22050,
                                                               32000, 44100, 48000, 96000, 128000, 192000, 64000};

// In Hz; 0 for a code without a rate.
constexpr int32_t AudioSampleRate(uint64_t nSampleType)
{
    return nSampleType < gsk_AudioSampleMap.size() ? gsk_AudioSampleMap[nSampleType] : 0;
}

} // namespace Marvane::FrameSift

#endif
