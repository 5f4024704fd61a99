// The ZOAV frame on the wire: its head, its tail, and the magics of the family.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVFRAME_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVFRAME_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "Tools/DateTime.h"
#include "Tools/FourCC.h"

namespace Marvane::FrameSift {

#pragma pack(push, 1)
struct STD_FRAME_HEAD // little-endian, unaligned in the window: copy it out, never cast
{
    uint32_t dwFlag;       //  0  magic, ASCII in reading order
    uint8_t chType;        //  4  see ParseStdFrameHead
    uint8_t chSubType;     //  5  its meaning depends on chType
    uint8_t chChannel;     //  6  unread
    uint8_t chSubSeq;      //  7  unread
    uint32_t dwSeq;        //  8
    uint32_t dwFrameLen;   // 12  bytes, head and tail included
    KX_DATE_TIME dateTime; // 16  wall-clock time to the second
    uint16_t nTimeStamp;   // 20  running, wraps
    uint8_t nExtFrameLen;  // 22  bytes of all extension heads together
    uint8_t nTotalValue;   // 23  sum of bytes 0 to 22, modulo 256
};

struct STD_FRAME_TAIL
{
    uint32_t dwFlag;    // 0  the head's magic in lower case, of any variant of the family
    uint32_t nFrameLen; // 4  equal to dwFrameLen
};
#pragma pack(pop)

inline constexpr int gsk_stdFrameHeadSize = 24;
inline constexpr int gsk_stdFrameTailSize = 8;
static_assert(sizeof(STD_FRAME_HEAD) == gsk_stdFrameHeadSize);
static_assert(offsetof(STD_FRAME_HEAD, dwSeq) == 8);
static_assert(offsetof(STD_FRAME_HEAD, dwFrameLen) == 12);
static_assert(offsetof(STD_FRAME_HEAD, dateTime) == 16);
static_assert(offsetof(STD_FRAME_HEAD, nTotalValue) == 23);
static_assert(sizeof(STD_FRAME_TAIL) == gsk_stdFrameTailSize);

// The variants of the family, in the order of their magics. They differ in the label only.
enum ZOAV_FLAG : int
{
    FLAG_ZOAV = 0,
    FLAG_MYAV = 1,
    FLAG_LXAV = 2,
    FLAG_WMAV = 3
};

inline constexpr std::array<uint32_t, 4> gsk_zavHeaders = {FourCC("ZOAV"), FourCC("MYAV"), FourCC("LXAV"),
                                                           FourCC("WMAV")};
inline constexpr std::array<uint32_t, 4> gsk_zavTailers = {FourCC("zoav"), FourCC("myav"), FourCC("lxav"),
                                                           FourCC("wmav")};
// A block of another kind inside such a stream: magic, then its length.
inline constexpr uint32_t gsk_zoiiMagic = FourCC("ZOII");

// For a scan word, first letter in the highest byte.
constexpr bool IfZavHeaderBigEndian(uint32_t nWord)
{
    return nWord == gsk_zavHeaders[0] || nWord == gsk_zavHeaders[1] || nWord == gsk_zavHeaders[2] ||
           nWord == gsk_zavHeaders[3];
}

constexpr bool IfZavTailerBigEndian(uint32_t nWord)
{
    return nWord == gsk_zavTailers[0] || nWord == gsk_zavTailers[1] || nWord == gsk_zavTailers[2] ||
           nWord == gsk_zavTailers[3];
}

// For a word as a little-endian load gives it, first letter in the lowest byte.
constexpr bool IfZavTailerSmallEndian(uint32_t nWord)
{
    return IfZavTailerBigEndian(__builtin_bswap32(nWord));
}

// Any tail of the family serves any head of it.
constexpr bool IsTailOf(const STD_FRAME_TAIL& tail, uint32_t dwFrameLen)
{
    return IfZavTailerSmallEndian(tail.dwFlag) && tail.nFrameLen == dwFrameLen;
}

} // namespace Marvane::FrameSift

#endif
