// What the payload of a key frame says of its picture.
#include <algorithm>

#include "ESParse/H264ESParser.h"
#include "ESParse/H265ESParser.h"
#include "ESParse/JPEGFrameParser.h"
#include "ESParse/MPEG4ESParser.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/FrameHelper.h"

namespace Marvane::FrameSift {

namespace {

constexpr int64_t sc_maxPictureSide = 14999;
// Parameter sets stand in front; the picture behind them need not be looked at.
constexpr uint32_t sc_maxH265Look = 4096;

bool IsValidSize(int64_t nWidth, int64_t nHeight)
{
    return nWidth >= 1 && nWidth <= sc_maxPictureSide && nHeight >= 1 && nHeight <= sc_maxPictureSide;
}

// A frame that is shorter than its heads has no payload.
uint32_t PayloadLen(const FrameInfo& frame)
{
    return static_cast<uint32_t>(std::max(int32_t{frame.streamLen}, 0));
}

// Of codecs that do not crop.
void TakePlainSize(uint32_t nWidth, uint32_t nHeight, FrameInfo& frame)
{
    if (!IsValidSize(nWidth, nHeight))
        return;
    frame.width = static_cast<int32_t>(nWidth);
    frame.height = static_cast<int32_t>(nHeight);
    frame.cropBeforeWidth = frame.width;
    frame.cropBeforeHeight = frame.height;
}

void TakeMpeg4Facts(FrameInfo& frame)
{
    MPEG4_INFO info;
    if (CMPEG4ESParser::GetPicSize(frame.streamPointer, PayloadLen(frame), info))
        TakePlainSize(info.nWidth, info.nHeight, frame);
}

void TakeJpegFacts(FrameInfo& frame)
{
    JPEGInfo info{};
    CJPEGESParser parser;
    if (parser.GetPicSize(frame.streamPointer, PayloadLen(frame), info))
        TakePlainSize(info.width, info.height, frame);
}

void TakeSize(const FrameInfo& from, FrameInfo& to)
{
    to.width = from.width;
    to.height = from.height;
    to.cropBeforeWidth = from.cropBeforeWidth;
    to.cropBeforeHeight = from.cropBeforeHeight;
    to.nVideoBitDepth = from.nVideoBitDepth;
}

} // namespace

void CZOAVStream::FrameVideoInfoVerify(FrameInfo& frame, const ExtZOAVIFrameInfo& ext)
{
    if (frame.frameType != KX_FRAME_TYPE_VIDEO || !IsIFrameSubType(frame.frameSubType))
        return;
    // A source size from head 0x99 is the true one already; and what was enciphered is not looked into, even if it has
    // been deciphered since.
    const bool bSizeTold = ext.srcPicWidth != 0 && ext.srcPicHeight != 0;
    if (bSizeTold || frame.nEncryptType != KX_ENCRYPT_UNKOWN)
        return;
    switch (frame.frameEncodeType) {
    case KX_ENCODE_VIDEO_HI_H264:
    case KX_ENCODE_VIDEO_ZO_H264:
    case KX_ENCODE_VIDEO_STD_H264:
        TakeH264Facts(frame);
        break;
    case KX_ENCODE_VIDEO_ZO_H265:
        TakeH265Facts(frame);
        break;
    case KX_ENCODE_VIDEO_MPEG4:
        TakeMpeg4Facts(frame);
        break;
    case KX_ENCODE_VIDEO_JPEG:
        TakeJpegFacts(frame);
        break;
    default:
        break;
    }
}

void CZOAVStream::TakeH264Facts(FrameInfo& frame)
{
    const uint32_t nLen = PayloadLen(frame);
    CH264ESParser parser;
    h264SPS sps{};
    if (parser.GetPicSize(frame.streamPointer, nLen, sps) && IsValidSize(sps.width, sps.height)) {
        frame.width = static_cast<int32_t>(sps.width);
        frame.height = static_cast<int32_t>(sps.height);
        frame.cropBeforeWidth = sps.cropBeforeWidth;
        frame.cropBeforeHeight = sps.cropBeforeHeight;
    }
    // Also if no size was found.
    const int nStructure = parser.GetPicStructure(frame.streamPointer, nLen);
    if (nStructure == PICTURE_STRUCTURE_TOP_FIELD || nStructure == PICTURE_STRUCTURE_BOTTOM_FIELD)
        frame.deinterlace = KX_DEINTERLACE_PAIR;
}

void CZOAVStream::TakeH265Facts(FrameInfo& frame)
{
    CH265ESParser parser;
    FrameInfo facts{};
    parser.Parse(frame.streamPointer, std::min(PayloadLen(frame), sc_maxH265Look), facts);
    if (IsValidSize(facts.width, facts.height)) {
        TakeSize(facts, frame);
        TakeColour(facts, frame);
        return;
    }
    // Neither the payload nor the heads tell: the last key frame's size still holds.
    const bool bSizeMissing = frame.width == 0 || frame.height == 0;
    if (bSizeMissing && m_prevIFrameInfo != nullptr &&
        IsValidSize(m_prevIFrameInfo->frame.width, m_prevIFrameInfo->frame.height))
        TakeSize(m_prevIFrameInfo->frame, frame);
}

} // namespace Marvane::FrameSift
