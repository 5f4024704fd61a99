// Where a frame begins.
#include <algorithm>
#include <array>

#include "ESParse/H264ESParser.h"
#include "ESParse/H264Nal.h"
#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

// The code of first_mb_in_slice is a single one for macroblock 0. A byte that is not there says nothing.
bool IsFirstSlice(std::span<const uint8_t> bytes, size_t nHeader)
{
    return nHeader + 1 < bytes.size() && (bytes[nHeader + 1] & 0x80) != 0;
}

} // namespace

// ParseSlice gets the byte before the start code too, which belongs to a start code of four bytes.
int CH264ESParser::ParseSliceAt(std::span<const uint8_t> bytes, size_t nHeader, h264Slice& slice)
{
    constexpr size_t nHeadLen = gsk_startCodeLen + 1;
    if (nHeader >= nHeadLen) {
        const auto nal = bytes.subspan(nHeader - nHeadLen);
        return ParseSlice(nal.data(), static_cast<uint32_t>(nal.size()), slice);
    }
    // A start code of three bytes at the very front: nothing may be read before it, so a zero stands in. Its value is
    // of no account, but its place is: what is read of the unit counts from there.
    std::array<uint8_t, gsk_h264NalHeadLen> nal{};
    const size_t nCopied = std::min(bytes.size(), nal.size() - 1);
    std::copy_n(bytes.begin(), nCopied, nal.begin() + 1);
    return ParseSlice(nal.data(), static_cast<uint32_t>(nCopied + 1), slice);
}

bool CH264ESParser::TakeFrameNum(const h264Slice& slice, bool bFirstSlice)
{
    if (!bFirstSlice && static_cast<uint32_t>(m_nPreFrameNum) == slice.frame_num)
        return false;
    m_nPreFrameNum = static_cast<int32_t>(slice.frame_num);
    return true;
}

bool CH264ESParser::IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    for (size_t nPos = FindLegalNal(bytes, 0); nPos < bytes.size();
         nPos = FindLegalNal(bytes, nPos + gsk_startCodeLen)) {
        const size_t nHeader = nPos + gsk_startCodeLen;
        if (IsH264Slice(bytes[nHeader])) {
            // A slice that cannot be read has frame_num 0, and may begin a frame all the same.
            h264Slice slice;
            ParseSliceAt(bytes, nHeader, slice);
            m_bSVC = false;
            if (TakeFrameNum(slice, IsFirstSlice(bytes, nHeader)))
                return true;
        } else if (IsH264SvcUnit(bytes[nHeader])) {
            m_bSVC = true;
            return true;
        }
    }
    return false;
}

// Not as IsFullFrame, on purpose: a unit that stands before a picture is enough, a slice has to be readable, the second
// field of a frame belongs to the first, and what is known of a scalable stream stays.
bool CH264ESParser::IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    for (size_t nPos = FindLegalNal(bytes, 0); nPos < bytes.size();
         nPos = FindLegalNal(bytes, nPos + gsk_startCodeLen)) {
        const size_t nHeader = nPos + gsk_startCodeLen;
        const uint8_t nType = H264NalType(bytes[nHeader]);
        if ((nType >= H264_NAL_SEI && nType <= H264_NAL_DELIMITER) || IsH264SvcUnit(bytes[nHeader]))
            return true;
        if (!IsH264Slice(bytes[nHeader]))
            continue;
        h264Slice slice;
        const bool bRead = ParseSliceAt(bytes, nHeader, slice) == 0;
        const bool bFrame = slice.picture_structure == PICTURE_STRUCTURE_FRAME;
        if (bRead && TakeFrameNum(slice, bFrame && IsFirstSlice(bytes, nHeader)))
            return true;
    }
    return false;
}

} // namespace Marvane::FrameSift
