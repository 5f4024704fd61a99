// Calendar time to the second in 32 bits, as frame heads carry it.
#ifndef FRAMESIFT_SRC_TOOLS_DATETIME_H
#define FRAMESIFT_SRC_TOOLS_DATETIME_H

#include <bit>
#include <cstdint>

namespace Marvane::FrameSift {

// A little-endian word on the wire, fields from the least significant bit on. Packed, so that a reference to the one
// inside a packed head is sound.
#pragma pack(push, 1)
struct KX_DATE_TIME
{
    uint32_t second : 6; // 0 to 59
    uint32_t minute : 6; // 0 to 59
    uint32_t hour : 5;   // 0 to 23
    uint32_t day : 5;    // 1 to 31
    uint32_t month : 4;  // 1 to 12
    uint32_t year : 6;   // since 2000
};
#pragma pack(pop)
static_assert(sizeof(KX_DATE_TIME) == 4);
static_assert(alignof(KX_DATE_TIME) == 1);

// The compilers we build with fill bit fields from the low end on such hosts only.
static_assert(std::endian::native == std::endian::little);

} // namespace Marvane::FrameSift

#endif
