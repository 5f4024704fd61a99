#include "StreamAnalzyer/ZOSTD/ZOAVWaterMark.h"

#include <cstring>

#include "StreamAnalzyer/ZOSTD/ZOAVFrame.h"
#include "Tools/BufferRead.h"
#include "Tools/KXVerify.h"

namespace Marvane::FrameSift {

namespace {

constexpr int32_t sc_waterMarkSize = sizeof(STD_WATER_MARK);

// An unknown kind keeps the subtype that the head gave.
int32_t SubTypeOf(uint32_t nType, int32_t nUnknown)
{
    switch (__builtin_bswap32(nType)) {
    case FourCC("JPEG"):
        return KX_FRAME_SUB_TYPE_WATERMARK_JPEG;
    case FourCC("TEXT"):
        return KX_FRAME_SUB_TYPE_WATERMARK_TEXT;
    case FourCC("BMP "):
        return KX_FRAME_SUB_TYPE_WATERMARK_BMP;
    default:
        return nUnknown;
    }
}

} // namespace

void ParseWaterMark(const uint8_t* data, FrameInfo& frameInfo, STD_WATER_MARK& waterMark)
{
    std::memcpy(&waterMark, data, sizeof waterMark);
    frameInfo.frameSubType = SubTypeOf(waterMark.nType, frameInfo.frameSubType);
}

bool WaterMarkVerify(const STD_WATER_MARK& waterMark, const uint8_t* data, int32_t len)
{
    const int32_t nDataLen = len - sc_waterMarkSize;
    return nDataLen >= 0 && static_cast<uint32_t>(nDataLen) == waterMark.nDataLen &&
           IfZavTailerSmallEndian(LoadUint32Lsb(data + len)) &&
           CKXVerify::GetCRC32(data + sc_waterMarkSize, nDataLen) == waterMark.nCrc32Ret;
}

// The payload's length is taken from the record before the record is judged: with KX_ERROR_FLAGS_WATERMARK it is only
// what the record claims. Kept.
void TakeWaterMark(FrameInfo& frame)
{
    if (frame.nEncryptType != KX_ENCRYPT_UNKOWN && frame.bHasDecrypt != 1)
        return;
    if (frame.streamLen < sc_waterMarkSize) { // no room for the record: there is nothing to take
        frame.errorFlags = KX_ERROR_FLAGS_WATERMARK;
        return;
    }
    uint8_t* pData = frame.streamPointer;
    const int32_t nLen = frame.streamLen;
    STD_WATER_MARK waterMark{};
    ParseWaterMark(pData, frame, waterMark);
    frame.streamPointer = pData + sc_waterMarkSize;
    frame.streamLen = static_cast<int32_t>(waterMark.nDataLen);
    if (!WaterMarkVerify(waterMark, pData, nLen))
        frame.errorFlags = KX_ERROR_FLAGS_WATERMARK;
}

} // namespace Marvane::FrameSift
