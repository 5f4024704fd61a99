#include "ESParse/H265ESParser.h"

#include <algorithm>
#include <cstring>

#include "ESParse/H265Nal.h"
#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

// All but the subtype, the picture structure and the bit depth, which each have a rule of their own.
void TakePicture(const ES_PARSER_INFO& info, FrameInfo& frame)
{
    frame.frameRate = info.frameRate;
    frame.width = info.frameWidth;
    frame.height = info.frameHeight;
    frame.cropBeforeWidth = info.frameCropBeforeWidth;
    frame.cropBeforeHeight = info.frameCropBeforeHeight;
    frame.nColorPrimaries = info.nColorPrimaries;
    frame.nColorTransfer = info.nColorTransfer;
    frame.nColorSpace = info.nColorSpace;
    frame.nMaxLuminance = info.nMaxLuminance;
    frame.nMinLuminance = info.nMinLuminance;
    frame.nMaxContentLightLevel = info.nMaxContentLightLevel;
    frame.nMaxFrameAverageLightLevel = info.nMaxFrameAverageLightLevel;
    static_assert(sizeof frame.nDisplayPrimaries == sizeof info.nDisplayPrimaries);
    static_assert(sizeof frame.nWhitePoint == sizeof info.nWhitePoint);
    std::memcpy(frame.nDisplayPrimaries, info.nDisplayPrimaries.data(), sizeof info.nDisplayPrimaries);
    std::memcpy(frame.nWhitePoint, info.nWhitePoint.data(), sizeof info.nWhitePoint);
}

} // namespace

int CH265ESParser::Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo)
{
    ES_PARSER_INFO info{.frameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID};
    const int nResult = Parse_KX(pESBuffer, static_cast<int32_t>(nESBufferLen), info);
    frameInfo.frameSubType = info.frameSubType;
    const bool bIFrame = info.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    if (bIFrame && info.frameWidth != 0 && info.frameHeight != 0)
        m_nIFrameInfo = info;
    TakePicture(m_nIFrameInfo, frameInfo);
    // An I frame tells its own structure, known or not; for any other, its own picture timing does not count.
    frameInfo.pictrueStructure = bIFrame ? info.picStruct : m_nIFrameInfo.picStruct;
    // Of the last parameter set, even one that came with no I frame.
    frameInfo.nVideoBitDepth = static_cast<int32_t>(m_nH265SPS.bit_depth_luma);
    return nResult;
}

int CH265ESParser::GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    ES_PARSER_INFO info{.frameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID};
    Parse_KX(pESBuffer, static_cast<int32_t>(nESBufferLen), info);
    return info.frameSubType;
}

int CH265ESParser::GetEncodeType() const
{
    return KX_ENCODE_VIDEO_ZO_H265;
}

bool CH265ESParser::IsLegalNal(const uint8_t* pNalUintBuffer, uint32_t nNalUintLen)
{
    constexpr uint8_t nForbiddenAndLayerHigh = 0x81;
    constexpr uint8_t nLayerLow = 0xF8;
    return pNalUintBuffer != nullptr && nNalUintLen >= gsk_h265NalHeaderLen &&
           (pNalUintBuffer[0] & nForbiddenAndLayerHigh) == 0 && (pNalUintBuffer[1] & nLayerLow) == 0;
}

bool CH265ESParser::IsH265VlcSlice(uint8_t nal_unit_type)
{
    return nal_unit_type <= H265_NAL_RASL_R || (nal_unit_type >= H265_NAL_BLA_W_LP && nal_unit_type <= H265_NAL_CRA);
}

// The place of the start code; bytes.size() if there is no more. nBehind is at least the length of a unit's header.
size_t CH265ESParser::FindLegalNal(std::span<const uint8_t> bytes, size_t nFrom, size_t nBehind)
{
    size_t nPos = FindStartCode(bytes, nFrom, nBehind);
    while (nPos < bytes.size() && !IsLegalNal(&bytes[nPos + gsk_startCodeLen], gsk_h265NalHeaderLen))
        nPos = FindStartCode(bytes, nPos + gsk_startCodeLen, nBehind);
    return nPos;
}

int CH265ESParser::Parse_KX(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info)
{
    constexpr size_t nBehind = gsk_h265NalHeaderLen + 1;
    constexpr size_t nHeadLen = gsk_startCodeLen + gsk_h265NalHeaderLen;
    if (pESBuffer == nullptr || nESBufferLen < 1)
        return -1;
    const std::span bytes(pESBuffer, static_cast<size_t>(nESBufferLen));
    size_t nPos = FindLegalNal(bytes, 0, nBehind);
    while (nPos < bytes.size()) {
        const auto nal = bytes.subspan(nPos + gsk_startCodeLen);
        const uint8_t nType = H265NalType(nal[0]);
        if (IsH265VlcSlice(nType)) {
            m_bParseOneFrame = false;
            return ParseSlice(&bytes[nPos + nHeadLen], static_cast<int32_t>(bytes.size() - nPos - nHeadLen), nType,
                              info);
        }
        const size_t nNext = FindLegalNal(bytes, nPos + gsk_startCodeLen, nBehind);
        // The last unit of all is left alone, for it may be cut off; only one of its header and one byte is read.
        if (nNext == bytes.size() && nal.size() > nBehind)
            return 0;
        // With the next start code at its end. Kept: of a short SEI message, these bytes decide whether it is read.
        ParseNal(nal.data(), static_cast<int32_t>(std::min(nNext - nPos, nal.size())), info);
        if (m_bParseOneFrame) {
            m_bParseOneFrame = false;
            return 0;
        }
        nPos = nNext;
    }
    return 0;
}

int CH265ESParser::ParseNal(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info)
{
    if (pESBuffer == nullptr || nESBufferLen < 1 || pESBuffer[0] >= 0x80)
        return -1;
    const int32_t nHeaderLen = std::min(nESBufferLen, static_cast<int32_t>(gsk_h265NalHeaderLen));
    const uint8_t* pBody = pESBuffer + nHeaderLen;
    const int32_t nBodyLen = nESBufferLen - nHeaderLen;
    const uint8_t nType = H265NalType(pESBuffer[0]);
    switch (nType) {
    case H265_NAL_VPS:
        return ParseVPS(pBody, nBodyLen, info);
    case H265_NAL_SPS:
        return ParseSPS(pBody, nBodyLen, info);
    case H265_NAL_PPS:
        return ParsePPS(pBody, nBodyLen, info);
    case H265_NAL_PREFIX_SEI:
        return ParseSEI(pBody, nBodyLen, nType, info);
    default:
        if (!IsH265VlcSlice(nType))
            return 0;
        m_bParseOneFrame = true;
        return ParseSlice(pBody, nBodyLen, nType, info);
    }
}

} // namespace Marvane::FrameSift
