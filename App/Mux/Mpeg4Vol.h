// The video object layer head of MPEG-4 Part 2.
#ifndef FRAMESIFT_APP_MUX_MPEG4VOL_H
#define FRAMESIFT_APP_MUX_MPEG4VOL_H

#include <cstdint>
#include <optional>
#include <span>

namespace Marvane::FrameSift {

struct MPEG4_VOL
{
    uint32_t nWidth = 0;
    uint32_t nHeight = 0;
};

// body: behind the four bytes of the start code. Nothing for a damaged head, or for one that is not rectangular.
std::optional<MPEG4_VOL> ReadMpeg4Vol(std::span<const uint8_t> body);

} // namespace Marvane::FrameSift

#endif
