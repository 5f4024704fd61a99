// What a frame takes from its own units, and what from the frames before it.
#include "ESParse/H264ESParser.h"

#include "ESParse/H264Nal.h"
#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

void FillPicture(const ES_PARSER_INFO& from, FrameInfo& frameInfo)
{
    frameInfo.frameRate = from.frameRate;
    frameInfo.width = from.frameWidth;
    frameInfo.height = from.frameHeight;
    frameInfo.cropBeforeWidth = from.frameCropBeforeWidth;
    frameInfo.cropBeforeHeight = from.frameCropBeforeHeight;
}

} // namespace

int CH264ESParser::GetEncodeType() const
{
    return KX_ENCODE_VIDEO_ZO_H264;
}

bool CH264ESParser::IsLegalNal(const uint8_t* pNalUintBuffer, uint32_t nNalUintLen)
{
    return pNalUintBuffer != nullptr && nNalUintLen > 0 && IsLegalH264Nal(*pNalUintBuffer);
}

int CH264ESParser::Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo)
{
    // Subtype 0 stands until a slice tells another: parameter sets alone, or a unit of a scalable stream in front,
    // count as an I frame.
    ES_PARSER_INFO info;
    const int nResult = Parse_KX(pESBuffer, nESBufferLen, info);
    if (nResult != 0)
        return nResult;
    if (info.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME)
        TakeIFrame(info, frameInfo);
    else
        TakeOtherFrame(info, frameInfo);
    return 0;
}

// picStruct is never found out on this way, unlike in H.265: the structure in a frame record stays 0. Deliberate;
// GetPicStructure answers who wants it.
void CH264ESParser::TakeIFrame(const ES_PARSER_INFO& info, FrameInfo& frameInfo)
{
    // Without a parameter set of its own it takes the last one's, which has no size before cropping: those are 0 then,
    // and stay 0 for the frames behind. Kept.
    const bool bOwnSize = info.frameWidth != 0 && info.frameHeight != 0;
    m_nIFrameInfo = bOwnSize ? info : m_prevSPSframeInfo;
    frameInfo.frameSubType = info.frameSubType;
    FillPicture(m_nIFrameInfo, frameInfo);
    frameInfo.pictrueStructure = info.picStruct;
}

void CH264ESParser::TakeOtherFrame(const ES_PARSER_INFO& info, FrameInfo& frameInfo) const
{
    const bool bNoIFrameYet = m_nIFrameInfo.frameWidth == 0 && m_nIFrameInfo.frameHeight == 0;
    if (bNoIFrameYet && info.frameWidth != 0 && info.frameHeight != 0 && info.frameRate != 0) {
        // Deliberate: the subtype that the caller gave stands in this one case.
        FillPicture(info, frameInfo);
        return;
    }
    frameInfo.frameSubType = info.frameSubType;
    FillPicture(m_nIFrameInfo, frameInfo);
    frameInfo.pictrueStructure = m_nIFrameInfo.picStruct;
}

// Where the next legal unit's start code stands; bytes.size() if there is none.
size_t CH264ESParser::FindLegalNal(std::span<const uint8_t> bytes, size_t nFrom)
{
    size_t nPos = FindStartCode(bytes, nFrom, 1);
    while (nPos < bytes.size() && !IsLegalNal(&bytes[nPos + gsk_startCodeLen], 1))
        nPos = FindStartCode(bytes, nPos + gsk_startCodeLen, 1);
    return nPos;
}

int CH264ESParser::Parse_KX(const uint8_t* pESBuffer, uint32_t nESBufferLen, ES_PARSER_INFO& info)
{
    if (pESBuffer == nullptr || nESBufferLen == 0)
        return -1;
    const std::span bytes(pESBuffer, nESBufferLen);
    size_t nNext = 0;
    for (size_t nPos = FindLegalNal(bytes, 0); nPos < bytes.size(); nPos = nNext) {
        const uint8_t nHeader = bytes[nPos + gsk_startCodeLen];
        // The first slice ends the scan, so its end, which may lie a megabyte behind, is not looked for.
        const bool bLast = IsH264Slice(nHeader) || IsH264SvcUnit(nHeader);
        nNext = bLast ? bytes.size() : FindLegalNal(bytes, nPos + gsk_startCodeLen);
        // Another unit that is the last one loses its last byte. Kept.
        const size_t nEnd = !bLast && nNext == bytes.size() ? nNext - 1 : nNext;
        ParseNal(&bytes[nPos], static_cast<uint32_t>(nEnd - nPos), H264NalType(nHeader), info);
        if (m_bParseOneFrame) {
            m_bParseOneFrame = false;
            return 0;
        }
    }
    return 0;
}

int CH264ESParser::ParseNal(const uint8_t* pNal, uint32_t nalSize, uint8_t nalType, ES_PARSER_INFO& info)
{
    if (pNal == nullptr)
        return -1;
    switch (nalType) {
    case H264_NAL_SPS: {
        // The result does not matter: a set that is refused is all zero, and tells no size.
        h264SPS param;
        ParseSPS(pNal, nalSize, param);
        info.frameWidth = static_cast<int32_t>(param.width);
        info.frameHeight = static_cast<int32_t>(param.height);
        info.frameRate = static_cast<int32_t>(param.framerate);
        info.frameCropBeforeHeight = param.cropBeforeHeight;
        info.frameCropBeforeWidth = param.cropBeforeWidth;
        m_bSVC = false;
        break;
    }
    case H264_NAL_SLICE:
    case H264_NAL_IDR_SLICE: {
        // Nor here: a slice that is too short counts as one of an I frame.
        h264Slice slice;
        ParseSlice(pNal, nalSize, slice);
        info.frameSubType = static_cast<int32_t>(slice.frame_type);
        m_bSVC = false;
        m_bParseOneFrame = true;
        break;
    }
    case H264_NAL_SUBSET_SPS:
    case H264_NAL_EXTENSION_SLICE:
        m_bParseOneFrame = true;
        m_bSVC = true;
        break;
    default:
        break;
    }
    return 0;
}

} // namespace Marvane::FrameSift
