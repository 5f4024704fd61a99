#include "ESParse/IESParser.h"

#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_unitCodeLen = gsk_startCodeLen + 1;

constexpr uint8_t sc_h264TypeMask = 31;
constexpr uint8_t sc_h264Slice = 1;
constexpr uint8_t sc_h264SPS = 7;

// By the byte behind a start code. The order matters: 0x41 is a slice of H.264, though H.265 would read a parameter set.
KX_ES_TYPE TypeOfUnit(uint8_t nCode)
{
    constexpr uint8_t nVideoObjectSequence = 0xB0;
    constexpr uint8_t nVideoObjectPlane = 0xB6;
    constexpr uint8_t nSequenceHeader = 0xB3;
    constexpr uint8_t nExtension = 0xB5;
    constexpr uint8_t nGroupOfPictures = 0xB8;
    constexpr int nH265VPS = 32;
    constexpr int nH265PPS = 34;
    if (nCode == nVideoObjectSequence || nCode == nVideoObjectPlane)
        return KX_ES_MPEG4;
    if (nCode == nSequenceHeader || nCode == nExtension || nCode == nGroupOfPictures)
        return KX_ES_MPEG2;
    const int nH264Type = nCode & sc_h264TypeMask;
    if (nH264Type == sc_h264Slice || nH264Type == sc_h264SPS)
        return KX_ES_H264;
    const int nH265Type = nCode >> 1;
    return nCode < 0x80 && nH265Type >= nH265VPS && nH265Type <= nH265PPS ? KX_ES_H265 : KX_ES_UNKOWN;
}

std::span<const uint8_t> SpanOf(const uint8_t* pBuf, uint32_t nSize)
{
    return pBuf != nullptr ? std::span(pBuf, nSize) : std::span<const uint8_t>();
}

// A unit whose type is its last byte is not looked at.
bool HasH264Unit(std::span<const uint8_t> bytes, int nType)
{
    constexpr size_t nBehind = 2;
    for (size_t nPos = FindStartCode(bytes, 0, nBehind); nPos < bytes.size();
         nPos = FindStartCode(bytes, nPos + 1, nBehind)) {
        if ((bytes[nPos + gsk_startCodeLen] & sc_h264TypeMask) == nType)
            return true;
    }
    return false;
}

bool IsH264UnitID(std::span<const uint8_t> bytes, int nType)
{
    return bytes.size() >= 1 + sc_unitCodeLen && IsStartCodeAt(bytes, 1) &&
           (bytes[sc_unitCodeLen] & sc_h264TypeMask) == nType;
}

bool StartsWithUnit(std::span<const uint8_t> bytes, uint8_t nCode)
{
    return bytes.size() >= sc_unitCodeLen && IsStartCodeAt(bytes, 0) && bytes[gsk_startCodeLen] == nCode;
}

} // namespace

KX_ES_TYPE CESParser::GetESType(const uint8_t* pBuf, uint32_t nSize)
{
    const auto bytes = SpanOf(pBuf, nSize);
    for (size_t nPos = FindStartCode(bytes, 0, 1); nPos < bytes.size(); nPos = FindStartCode(bytes, nPos + 1, 1)) {
        const KX_ES_TYPE eType = TypeOfUnit(bytes[nPos + gsk_startCodeLen]);
        if (eType != KX_ES_UNKOWN)
            return eType;
    }
    return KX_ES_UNKOWN;
}

bool CESParser::IsH264IFrame(const uint8_t* pBuf, uint32_t nSize)
{
    return HasH264Unit(SpanOf(pBuf, nSize), sc_h264SPS);
}

bool CESParser::IsH264PFrame(const uint8_t* pBuf, uint32_t nSize)
{
    return HasH264Unit(SpanOf(pBuf, nSize), sc_h264Slice);
}

bool CESParser::IsH264IFrameID(const uint8_t* pBuf, uint32_t nSize)
{
    return IsH264UnitID(SpanOf(pBuf, nSize), sc_h264SPS);
}

bool CESParser::IsH264PFrameID(const uint8_t* pBuf, uint32_t nSize)
{
    return IsH264UnitID(SpanOf(pBuf, nSize), sc_h264Slice);
}

bool CESParser::IsMPEG4IFrameID(const uint8_t* pBuf, uint32_t nSize)
{
    return StartsWithUnit(SpanOf(pBuf, nSize), 0xB0);
}

bool CESParser::IsMPEG4PFrameID(const uint8_t* pBuf, uint32_t nSize)
{
    return StartsWithUnit(SpanOf(pBuf, nSize), 0xB6);
}

} // namespace Marvane::FrameSift
