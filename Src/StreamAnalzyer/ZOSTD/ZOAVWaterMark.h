// The watermark that a recorder hides in a stream to show later whether it was altered.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVWATERMARK_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_ZOAVWATERMARK_H

#include <cstddef>
#include <cstdint>

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

#pragma pack(push, 1)
struct STD_WATER_MARK // little-endian, at the start of the payload
{
    uint32_t nType;     // 0  "JPEG", "TEXT" or "BMP ", ASCII in reading order
    uint32_t nCrc32Ret; // 4  CRC-32 of the data
    uint32_t nDataLen;  // 8  bytes of the data, which follow
};
#pragma pack(pop)
static_assert(sizeof(STD_WATER_MARK) == 12);
static_assert(offsetof(STD_WATER_MARK, nDataLen) == 8);

// chSubType of a frame that holds one.
inline constexpr uint8_t gsk_waterMarkSubType = 6;

// Copies the record out of the payload, and names its kind in frameSubType. data holds at least the record.
void ParseWaterMark(const uint8_t* data, FrameInfo& frameInfo, STD_WATER_MARK& waterMark);

// data: the whole payload of len bytes, the record included, with the frame's tail behind it.
bool WaterMarkVerify(const STD_WATER_MARK& waterMark, const uint8_t* data, int32_t len);

// The whole step for a frame whose head says that it holds a watermark: leaves the payload without the record, or
// KX_ERROR_FLAGS_WATERMARK.
void TakeWaterMark(FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
