#include "ESParse/JPEGFrameParser.h"

#include <algorithm>
#include <array>
#include <span>

namespace Marvane::FrameSift {

namespace {

// Markers, ITU-T T.81, table B.1: two bytes, 0xFF and one of these.
constexpr uint8_t sc_markerPrefix = 0xFF;
constexpr uint8_t sc_firstFrameHead = 0xC0; // SOF0
constexpr uint8_t sc_lastFrameHead = 0xC3;  // SOF3
constexpr uint8_t sc_firstSegment = 0xC4;
constexpr uint8_t sc_lastSegment = 0xFE;
constexpr uint8_t sc_startOfImage = 0xD8;
constexpr uint8_t sc_endOfImage = 0xD9;
constexpr size_t sc_markerLen = 2;
constexpr size_t sc_lengthLen = 2;

// The caller sees to it that both bytes are there.
size_t LoadUint16Msb(std::span<const uint8_t> bytes, size_t nPos)
{
    return static_cast<size_t>(bytes[nPos]) << 8 | bytes[nPos + 1];
}

bool HasLength(std::span<const uint8_t> bytes, size_t nPos)
{
    return nPos + sc_markerLen + sc_lengthLen <= bytes.size();
}

// How far to go from nPos, where nMarker stands or, for the start of image, has just been passed: that marker counts as
// a segment, with the length of the segment behind it.
size_t StepOf(std::span<const uint8_t> bytes, size_t nPos, uint8_t nMarker)
{
    if (nMarker == sc_endOfImage)
        return sc_markerLen;
    if (nMarker < sc_firstSegment || nMarker > sc_lastSegment)
        return 1;
    // Without a length nothing that could be read follows.
    return sc_markerLen + (HasLength(bytes, nPos) ? LoadUint16Msb(bytes, nPos + sc_markerLen) : 0);
}

// frame: from the marker on, with its length.
bool ReadFrameHead(std::span<const uint8_t> frame, JPEGInfo& param)
{
    constexpr size_t nLeastLength = 5;
    constexpr uint8_t nMostBits = 16;
    constexpr size_t nPrecisionAt = 4;
    constexpr size_t nHeightAt = 5;
    constexpr size_t nWidthAt = 7;
    const size_t nLength = LoadUint16Msb(frame, sc_markerLen);
    if (nLength < nLeastLength || sc_markerLen + nLength > frame.size())
        return false;
    // The least length does not reach to the end of the width.
    if (frame.size() < nWidthAt + 2 || frame[nPrecisionAt] == 0 || frame[nPrecisionAt] > nMostBits)
        return false;
    param.height = static_cast<uint32_t>(LoadUint16Msb(frame, nHeightAt));
    param.width = static_cast<uint32_t>(LoadUint16Msb(frame, nWidthAt));
    return true;
}

} // namespace

bool CJPEGESParser::GetPicSize(const uint8_t* pESBuffer, uint32_t nESBufferLen, JPEGInfo& param)
{
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    bool bInImage = false;
    for (size_t nPos = 0; HasLength(bytes, nPos);) {
        const uint8_t nMarker = bytes[nPos + 1];
        const bool bMarker = bytes[nPos] == sc_markerPrefix;
        if (bMarker && nMarker == sc_startOfImage) {
            bInImage = true;
            nPos += sc_markerLen;
        } else if (!bMarker || !bInImage) {
            ++nPos;
            continue;
        }
        if (nMarker >= sc_firstFrameHead && nMarker <= sc_lastFrameHead)
            return ReadFrameHead(bytes.subspan(nPos), param);
        nPos += StepOf(bytes, nPos, nMarker);
    }
    return false;
}

int CJPEGESParser::Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo)
{
    m_JPEGInfo = {};
    GetPicSize(pESBuffer, nESBufferLen, m_JPEGInfo);
    frameInfo.width = static_cast<int32_t>(m_JPEGInfo.width);
    frameInfo.height = static_cast<int32_t>(m_JPEGInfo.height);
    return 1;
}

bool CJPEGESParser::IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    constexpr std::array start = {sc_markerPrefix, sc_startOfImage, sc_markerPrefix};
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    return std::search(bytes.begin(), bytes.end(), start.begin(), start.end()) != bytes.end();
}

bool CJPEGESParser::IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    return IsFullFrame(pESBuffer, nESBufferLen);
}

} // namespace Marvane::FrameSift
