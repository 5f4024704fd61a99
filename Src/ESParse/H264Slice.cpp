// The head of a slice (ITU-T H.264, 7.3.3).
#include "ESParse/H264ESParser.h"
#include "ESParse/H264Nal.h"
#include "ESParse/StartCode.h"

namespace Marvane::FrameSift {

namespace {

// Values from 5 on say that all slices of the picture are of one type. SP and SI slices count as not known.
int SubTypeOfSlice(uint32_t nSliceType)
{
    switch (nSliceType) {
    case 0:
    case 5:
        return KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    case 1:
    case 6:
        return KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
    case 2:
    case 7:
        return KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    default:
        return KX_FRAME_SUB_TYPE_DATA_INVALID;
    }
}

// The first slice in the caller's bytes, from behind its header on and with its emulation prevention; empty if there is
// none. Kept: the unit need not be legal.
std::span<const uint8_t> FirstSlice(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    constexpr size_t nBehind = 2;
    if (pESBuffer == nullptr)
        return {};
    const std::span bytes(pESBuffer, nESBufferLen);
    size_t nPos = FindStartCode(bytes, 0, nBehind);
    while (nPos < bytes.size() && !IsH264Slice(bytes[nPos + gsk_startCodeLen]))
        nPos = FindStartCode(bytes, nPos + gsk_startCodeLen, nBehind);
    return nPos < bytes.size() ? bytes.subspan(nPos + gsk_startCodeLen + 1) : std::span<const uint8_t>();
}

} // namespace

uint32_t CH264ESParser::ReadFrameNum(CBitsStream& bits) const
{
    return bits.GetBits(static_cast<uint32_t>(m_log2_max_frame_num_minus4) + 4);
}

// PICTURE_STRUCTURE_UNKNOWN for a slice of a frame.
uint32_t CH264ESParser::ReadField(CBitsStream& bits) const
{
    if (m_frame_mbs_only_flag != 0 || bits.GetOneBit() == 0)
        return PICTURE_STRUCTURE_UNKNOWN;
    return bits.GetOneBit() != 0 ? PICTURE_STRUCTURE_BOTTOM_FIELD : PICTURE_STRUCTURE_TOP_FIELD;
}

int CH264ESParser::ParseSlice(const uint8_t* pNal, uint32_t nalSize, h264Slice& slice)
{
    constexpr uint32_t nTooShort = 8;
    constexpr uint32_t nPpsIdEnd = 256;
    const CH264NalHead head(pNal, nalSize);
    if (head.Size() <= nTooShort)
        return -1;
    CBitsStream bits = head.Bits();
    slice.first_mb_in_slice = static_cast<uint32_t>(bits.GetUeGolomb());
    slice.slice_type = static_cast<uint32_t>(bits.GetUeGolomb());
    slice.frame_type = static_cast<uint32_t>(SubTypeOfSlice(slice.slice_type));
    if (static_cast<uint32_t>(bits.GetUeGolomb()) >= nPpsIdEnd)
        return -1;
    slice.frame_num = ReadFrameNum(bits);
    const uint32_t nField = ReadField(bits);
    if (nField != PICTURE_STRUCTURE_UNKNOWN)
        slice.picture_structure = nField;
    else if (slice.picture_structure == PICTURE_STRUCTURE_UNKNOWN)
        slice.picture_structure = PICTURE_STRUCTURE_FRAME;
    return 0;
}

int CH264ESParser::GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    const auto slice = FirstSlice(pESBuffer, nESBufferLen);
    if (slice.empty())
        return KX_FRAME_SUB_TYPE_DATA_INVALID;
    CBitsStream bits;
    bits.Init(slice.data(), static_cast<uint32_t>(slice.size()));
    bits.GetUeGolomb(); // first_mb_in_slice
    return SubTypeOfSlice(static_cast<uint32_t>(bits.GetUeGolomb()));
}

int CH264ESParser::GetPicStructure(const uint8_t* pESBuffer, uint32_t nESBufferLen)
{
    const auto slice = FirstSlice(pESBuffer, nESBufferLen);
    if (slice.empty())
        return PICTURE_STRUCTURE_UNKNOWN;
    CBitsStream bits;
    bits.Init(slice.data(), static_cast<uint32_t>(slice.size()));
    bits.GetUeGolomb(); // first_mb_in_slice
    bits.GetUeGolomb(); // slice_type
    bits.GetUeGolomb(); // pic_parameter_set_id
    ReadFrameNum(bits);
    const uint32_t nField = ReadField(bits);
    return nField != PICTURE_STRUCTURE_UNKNOWN ? static_cast<int>(nField) : PICTURE_STRUCTURE_FRAME;
}

} // namespace Marvane::FrameSift
