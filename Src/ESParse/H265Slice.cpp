// The head of a slice (ITU-T H.265, 7.3.6.1), read twice over: ParseSlice asks for its type, ParseSliceHeader for the
// picture it belongs to.
#include <algorithm>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ESParse/H265Slice";

// What becomes of a picture's subtype by one more of its slices: B before P before I, whatever their order. False, and
// no change, for a slice_type that is none of them.
bool WeakenSubType(uint32_t nSliceType, int32_t& nSubType)
{
    const bool bIsB = nSubType == KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
    const bool bIsP = nSubType == KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    switch (nSliceType) {
    case 0:
        nSubType = KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
        return true;
    case 1:
        nSubType = bIsB ? nSubType : KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
        return true;
    case 2:
        nSubType = bIsB || bIsP ? nSubType : KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
        return true;
    default:
        return false;
    }
}

uint32_t CeilDivide(uint32_t nValue, uint32_t nDivisor)
{
    return nValue / nDivisor + (nValue % nDivisor != 0 ? 1 : 0);
}

// The bits of slice_segment_address. The size of the picture is never known here (see H265_SPS), so that this comes out
// as 0, and all but the first slice of a picture are read out of step: deliberate.
uint32_t AddressBits(const H265_SPS& sps)
{
    const uint32_t nLog2Block =
        sps.log2_min_luma_coding_block_size_minus3 + sps.log2_diff_max_min_luma_coding_block_size + 3;
    const uint32_t nBlock = 1U << nLog2Block % 32; // a refused set may have left any size
    const uint64_t nBlocks = uint64_t{CeilDivide(sps.pic_height_in_luma_samples, nBlock)} *
                             CeilDivide(sps.pic_width_in_luam_samples, nBlock);
    uint32_t nBits = 0;
    while (nBlocks > uint64_t{1} << nBits)
        ++nBits;
    return nBits;
}

// Pictures of these types are none that others count from (ITU-T H.265, 8.3.1): leading ones, and those that no other
// picture of their sub-layer refers to.
bool IsNoPocAnchor(uint8_t nType)
{
    return nType == H265_NAL_TRAIL_N || nType == H265_NAL_TSA_N || nType == H265_NAL_STSA_N ||
           (nType >= H265_NAL_RADL_N && nType <= H265_NAL_RASL_R);
}

} // namespace

struct CH265ESParser::SLICE_HEAD
{
    bool bFirst = false;
    bool bDependent = false; // then there is nothing behind it
    uint32_t nSliceType = 0;
};

CH265ESParser::SLICE_HEAD CH265ESParser::ReadSliceHead(CBitsStream& bs, uint8_t nalUnitType) const
{
    SLICE_HEAD slice;
    slice.bFirst = GetFlag(bs);
    if (nalUnitType >= H265_NAL_BLA_W_LP && nalUnitType <= H265_NAL_LAST_IRAP)
        bs.Skip(1);   // no_output_of_prior_pics_flag
    bs.GetUeGolomb(); // slice_pic_parameter_set_id
    if (!slice.bFirst) {
        slice.bDependent = m_nH265PPS.dependent_slice_segments_enabled_flag != 0 && GetFlag(bs);
        bs.Skip(AddressBits(m_nH265SPS));
    }
    if (!slice.bDependent) {
        bs.Skip(m_nH265PPS.num_extra_slice_header_bits);
        slice.nSliceType = GetUe(bs);
    }
    return slice;
}

int CH265ESParser::ParseSlice(const uint8_t* pESBuffer, int32_t nESBufferLen, uint8_t nalUnitType, ES_PARSER_INFO& info)
{
    const CH265NalHead head(pESBuffer, nESBufferLen);
    if (head.IsEmpty())
        return -1;
    CBitsStream bs = head.Bits();
    const SLICE_HEAD slice = ReadSliceHead(bs, nalUnitType);
    if (!slice.bDependent && !WeakenSubType(slice.nSliceType, info.frameSubType))
        KX_WRITE_LOG(KX_LOG_LevelTrace, sc_sourcePath, "Unknown Slice Type %d\n", static_cast<int>(slice.nSliceType));
    return 0;
}

bool CH265ESParser::ParseSliceHeader(const uint8_t* pESBuffer, int32_t nESBufferLen, h265Slice& slice)
{
    constexpr uint32_t nMinRead = 9;
    constexpr auto nHeaderLen = static_cast<int32_t>(gsk_h265NalHeaderLen);
    if (pESBuffer == nullptr || nESBufferLen <= nHeaderLen || pESBuffer[0] >= 0x80)
        return false;
    const uint8_t nType = H265NalType(pESBuffer[0]);
    const uint32_t nTemporalIdPlus1 = pESBuffer[1] & 7U;
    // Not by how much is left without emulation prevention.
    const uint32_t nRead = std::min(static_cast<uint32_t>(nESBufferLen - nHeaderLen), CH265NalHead::sc_maxLen);
    if (!IsH265VlcSlice(nType) || nTemporalIdPlus1 == 0 || nRead < nMinRead)
        return false;
    const CH265NalHead head(pESBuffer + nHeaderLen, nESBufferLen - nHeaderLen, nRead);
    CBitsStream bs = head.Bits();
    const SLICE_HEAD coded = ReadSliceHead(bs, nType);
    slice.first_slice_segment_in_pic_flag = coded.bFirst ? 1 : 0;
    // Its picture is that of the slice before, whose number is not repeated: frame_num is left alone.
    if (coded.bDependent)
        return true;
    slice.slice_type = coded.nSliceType;
    auto nSubType = static_cast<int32_t>(slice.frame_type);
    if (!WeakenSubType(coded.nSliceType, nSubType)) {
        KX_WRITE_LOG(KX_LOG_LevelTrace, sc_sourcePath, "Unknown Slice Type %d\n", static_cast<int>(coded.nSliceType));
        return false;
    }
    slice.frame_type = static_cast<uint32_t>(nSubType);
    if (m_nH265PPS.output_flag_present_flag != 0)
        bs.Skip(1); // pic_output_flag
    if (m_nH265SPS.sps_separate_colour_plane_flag != 0)
        bs.Skip(2); // colour_plane_id
    int nPoc = 0;
    if (nType != H265_NAL_IDR_W_RADL && nType != H265_NAL_IDR_N_LP) {
        const auto nPocLsb = static_cast<int>(bs.GetBits(m_nH265SPS.log2_max_pic_order_cnt_lsb));
        nPoc = ComputePOC(&m_nH265SPS, m_nPocTid0, nPocLsb, nType);
    }
    slice.frame_num = static_cast<uint32_t>(nPoc);
    if (nTemporalIdPlus1 == 1 && !IsNoPocAnchor(nType))
        m_nPocTid0 = nPoc;
    return true;
}

// ITU-T H.265, 8.3.1. In 64 bits, as pocTid0 and poc_lsb may be anything; the result wraps.
int CH265ESParser::ComputePOC(const H265_SPS* sps, int pocTid0, int poc_lsb, int nal_unit_type)
{
    int64_t nMsb = 0;
    if (sps != nullptr && (nal_unit_type < H265_NAL_BLA_W_LP || nal_unit_type > H265_NAL_BLA_N_LP)) {
        // A refused set may have left more than the 16 bits that are allowed.
        const int64_t nMaxLsb = int64_t{1} << sps->log2_max_pic_order_cnt_lsb % 32;
        const int64_t nPrevLsb = pocTid0 % nMaxLsb; // C's remainder, negative for a negative count: deliberate
        nMsb = pocTid0 - nPrevLsb;
        if (poc_lsb < nPrevLsb && nPrevLsb - poc_lsb >= nMaxLsb / 2)
            nMsb += nMaxLsb;
        else if (poc_lsb > nPrevLsb && poc_lsb - nPrevLsb > nMaxLsb / 2)
            nMsb -= nMaxLsb;
    }
    return static_cast<int>(nMsb + poc_lsb);
}

} // namespace Marvane::FrameSift
