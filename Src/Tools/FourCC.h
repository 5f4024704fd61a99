// Four letters as the 32-bit word that a scan sees: the first letter in the highest byte.
#ifndef FRAMESIFT_SRC_TOOLS_FOURCC_H
#define FRAMESIFT_SRC_TOOLS_FOURCC_H

#include <cstdint>

namespace Marvane::FrameSift {

constexpr uint32_t FourCC(const char (&text)[5])
{
    uint32_t nWord = 0;
    for (int n = 0; n < 4; ++n)
        nWord = nWord << 8 | static_cast<uint8_t>(text[n]);
    return nWord;
}

} // namespace Marvane::FrameSift

#endif
