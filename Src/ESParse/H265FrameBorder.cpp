// Where a picture begins.
#include <algorithm>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"
#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

// nal: a slice, from its header on; what follows it is not parted from it.
bool CH265ESParser::BeginsPicture(std::span<const uint8_t> nal)
{
    constexpr uint8_t nFirstSliceFlag = 0x80; // of the byte behind the header
    h265Slice slice{};
    if (!ParseSliceHeader(nal.data(), static_cast<int32_t>(std::min<size_t>(nal.size(), INT32_MAX)), slice))
        return false;
    const bool bFirst = (nal[gsk_h265NalHeaderLen] & nFirstSliceFlag) != 0;
    if (!bFirst && static_cast<uint32_t>(m_nPreNum) == slice.frame_num)
        return false;
    m_nPreNum = static_cast<int32_t>(slice.frame_num);
    return true;
}

bool CH265ESParser::IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    for (size_t nPos = FindLegalNal(bytes, 0, gsk_h265NalHeaderLen); nPos < bytes.size();
         nPos = FindLegalNal(bytes, nPos + gsk_startCodeLen, gsk_h265NalHeaderLen)) {
        const auto nal = bytes.subspan(nPos + gsk_startCodeLen);
        if (IsH265VlcSlice(H265NalType(nal[0])) && BeginsPicture(nal))
            return true;
    }
    return false;
}

// Not as IsFullFrame: a parameter set stands before a picture, and is enough. SEI and delimiters do too, and are not:
// deliberate, and not as in H.264.
bool CH265ESParser::IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    for (size_t nPos = FindLegalNal(bytes, 0, gsk_h265NalHeaderLen); nPos < bytes.size();
         nPos = FindLegalNal(bytes, nPos + gsk_startCodeLen, gsk_h265NalHeaderLen)) {
        const auto nal = bytes.subspan(nPos + gsk_startCodeLen);
        const uint8_t nType = H265NalType(nal[0]);
        if (nType >= H265_NAL_VPS && nType <= H265_NAL_PPS)
            return true;
        if (IsH265VlcSlice(nType) && BeginsPicture(nal))
            return true;
    }
    return false;
}

} // namespace Marvane::FrameSift
