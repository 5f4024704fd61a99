// Bit rates by the code that audio heads carry.
#ifndef FRAMESIFT_SRC_TOOLS_AUDIOBITRATEMAP_H
#define FRAMESIFT_SRC_TOOLS_AUDIOBITRATEMAP_H

#include <array>
#include <cstdint>

namespace Marvane::FrameSift {

// 0 stands for a rate without a code.
inline constexpr std::array<uint32_t, 22> gsk_audioBitRateMap = {
    0,     16000, 32000,  5300,   6300,   8000,   24000,  40000,  48000,  56000,  64000,
    80000, 96000, 112000, 128000, 144000, 160000, 192000, 224000, 256000, 320000, 384000};

// In bit/s; 0 for a code without a rate.
constexpr uint32_t AudioBitRate(uint64_t nBitRateType)
{
    return nBitRateType < gsk_audioBitRateMap.size() ? gsk_audioBitRateMap[nBitRateType] : 0;
}

} // namespace Marvane::FrameSift

#endif
