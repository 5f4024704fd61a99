// Two kinds of data payload begin with a prefix that says where to draw what follows.
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

// The first byte is the prefix's length, itself included. Beyond it nothing is read, and the fields keep their values.
uint32_t TakeOverlayPrefix(const uint8_t* pPayload, uint32_t nPayloadLen, FrameInfo& frame)
{
    const uint8_t nPrefixLen = CBufferRead(pPayload, nPayloadLen).ReadInt8();
    if (nPrefixLen < 1 || nPrefixLen > nPayloadLen)
        return 0;
    CBufferRead reader(pPayload + 1, nPrefixLen - 1U);
    uint8_t nValue = 0;
    if (reader.ReadUint8(nValue))
        frame.nOverLayPicPurpose = nValue;
    if (reader.ReadUint8(nValue))
        frame.nOverLayPicAction = nValue;
    if (reader.ReadUint8(nValue))
        frame.nOverLayPicCodeFormat = nValue;
    return nPrefixLen;
}

// The first two bytes are the prefix's length, themselves included. The colour is there in the long form alone.
uint32_t TakeOsdPrefix(const uint8_t* pPayload, uint32_t nPayloadLen, FrameInfo& frame)
{
    constexpr uint16_t nLongFormLen = 20;
    const uint16_t nPrefixLen = CBufferRead(pPayload, nPayloadLen).ReadInt16();
    if (nPrefixLen < sizeof nPrefixLen || nPrefixLen > nPayloadLen)
        return 0;
    CBufferRead reader(pPayload + sizeof nPrefixLen, static_cast<uint32_t>(nPrefixLen - sizeof nPrefixLen));
    uint16_t nShort = 0;
    if (reader.ReadUint16Lsb(nShort))
        frame.nOsdTopLeftCornercoordinateX = nShort;
    if (reader.ReadUint16Lsb(nShort))
        frame.nOsdTopLeftCornercoordinateY = nShort;
    if (reader.ReadUint16Lsb(nShort))
        frame.nOsdWordSize = static_cast<uint8_t>(nShort);
    uint8_t nAlignment = 0;
    if (reader.Skip(2) && reader.ReadUint8(nAlignment))
        frame.nOsdWordAlignment = nAlignment;
    uint32_t nRgba = 0;
    if (nPrefixLen == nLongFormLen && reader.Skip(1) && reader.ReadUint32Lsb(nRgba))
        frame.nOsdRgbaValue = nRgba;
    return nPrefixLen;
}

} // namespace

// A prefix that claims more than the payload holds is none: the payload goes out as it is.
void StripPayloadPrefix(FrameInfo& frame)
{
    if (frame.streamPointer == nullptr || frame.streamLen <= 0)
        return;
    const auto nPayloadLen = static_cast<uint32_t>(frame.streamLen);
    uint32_t nPrefixLen = 0;
    if (frame.frameSubType == KX_FRAME_SUB_TYPE_POPULATION_PIC_OVERLAY)
        nPrefixLen = TakeOverlayPrefix(frame.streamPointer, nPayloadLen, frame);
    else if (frame.frameSubType == KX_FRAME_SUB_TYPE_DATA_OSD)
        nPrefixLen = TakeOsdPrefix(frame.streamPointer, nPayloadLen, frame);
    frame.streamPointer += nPrefixLen;
    frame.streamLen -= static_cast<int32_t>(nPrefixLen);
}

} // namespace Marvane::FrameSift
