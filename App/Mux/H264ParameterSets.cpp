#include "Mux/H264ParameterSets.h"

#include <algorithm>
#include <array>
#include <bit>

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxParameterSet = 4096; // far above a set with all its scaling lists
constexpr uint32_t sc_maxSide = 65535;      // two bytes on the wire

// The ids that the standard allows. With more, a stream could fill the memory with sets.
constexpr uint32_t sc_maxSpsId = 31;
constexpr uint32_t sc_maxPpsId = 255;

// The profiles whose SPS tells chroma format, depth and scaling lists.
constexpr std::array<uint32_t, 13> sc_highProfiles = {100, 110, 122, 244, 44, 83, 86, 118, 128, 138, 139, 134, 135};

void SkipScalingList(CBitReader& bits, int nSize)
{
    int32_t nLast = 8;
    int32_t nNext = 8;
    for (int n = 0; n < nSize && nNext != 0; ++n) {
        nNext = static_cast<int32_t>((static_cast<uint32_t>(nLast) + static_cast<uint32_t>(bits.Se())) & 0xFF);
        nLast = nNext == 0 ? nLast : nNext;
    }
}

// Answers chroma_format_idc.
uint32_t ReadChroma(CBitReader& bits, H264_EXACT_SPS& sps)
{
    const uint32_t chroma_format_idc = bits.Ue();
    if (chroma_format_idc == 3)
        sps.separate_colour_plane_flag = bits.Flag();
    bits.Ue(); // bit_depth_luma_minus8
    bits.Ue(); // bit_depth_chroma_minus8
    bits.Skip(1);
    if (bits.Flag()) { // seq_scaling_matrix_present_flag
        const int nLists = chroma_format_idc == 3 ? 12 : 8;
        for (int n = 0; n < nLists; ++n) {
            if (bits.Flag())
                SkipScalingList(bits, n < 6 ? 16 : 64);
        }
    }
    return chroma_format_idc;
}

void ReadPicOrder(CBitReader& bits, H264_EXACT_SPS& sps)
{
    sps.pic_order_cnt_type = bits.Ue();
    if (sps.pic_order_cnt_type == 0) {
        sps.picOrderCntLsbBits = bits.Ue() + 4;
    } else if (sps.pic_order_cnt_type == 1) {
        sps.delta_pic_order_always_zero_flag = bits.Flag();
        bits.Se(); // offset_for_non_ref_pic
        bits.Se(); // offset_for_top_to_bottom_field
        const uint32_t nCycle = bits.Ue();
        for (uint32_t n = 0; n < nCycle && !bits.Overrun(); ++n)
            bits.Se();
    }
}

// The cropping offsets count in chroma samples, and in pairs of lines where the frame may hold fields.
void ReadSize(CBitReader& bits, H264_EXACT_SPS& sps, uint32_t nChromaArrayType)
{
    const uint64_t nMbWidth = uint64_t{bits.Ue()} + 1;
    const uint64_t nMapHeight = uint64_t{bits.Ue()} + 1;
    sps.frame_mbs_only_flag = bits.Flag();
    if (!sps.frame_mbs_only_flag)
        bits.Skip(1);
    bits.Skip(1); // direct_8x8_inference_flag
    const uint32_t nFields = sps.frame_mbs_only_flag ? 1 : 2;
    uint64_t nCropX = 0;
    uint64_t nCropY = 0;
    if (bits.Flag()) {
        const uint32_t nUnitX = nChromaArrayType == 1 || nChromaArrayType == 2 ? 2 : 1;
        const uint32_t nUnitY = (nChromaArrayType == 1 ? 2 : 1) * nFields;
        nCropX = uint64_t{bits.Ue()} * nUnitX;
        nCropX += uint64_t{bits.Ue()} * nUnitX;
        nCropY = uint64_t{bits.Ue()} * nUnitY;
        nCropY += uint64_t{bits.Ue()} * nUnitY;
    }
    const uint64_t nWidth = nMbWidth * 16;
    const uint64_t nHeight = nMapHeight * 16 * nFields;
    if (nWidth <= sc_maxSide && nHeight <= sc_maxSide && nCropX < nWidth && nCropY < nHeight) {
        sps.nWidth = static_cast<uint32_t>(nWidth - nCropX);
        sps.nHeight = static_cast<uint32_t>(nHeight - nCropY);
    }
}

void SkipSliceGroups(CBitReader& bits, uint32_t num_slice_groups_minus1)
{
    const uint32_t slice_group_map_type = bits.Ue();
    if (slice_group_map_type == 0) {
        for (uint32_t n = 0; n <= num_slice_groups_minus1; ++n)
            bits.Ue(); // run_length_minus1
    } else if (slice_group_map_type == 2) {
        for (uint32_t n = 0; n < num_slice_groups_minus1; ++n) {
            bits.Ue(); // top_left
            bits.Ue(); // bottom_right
        }
    } else if (slice_group_map_type >= 3 && slice_group_map_type <= 5) {
        bits.Skip(1);
        bits.Ue(); // slice_group_change_rate_minus1
    } else if (slice_group_map_type == 6) {
        const size_t nMapUnits = size_t{bits.Ue()} + 1;
        bits.Skip(nMapUnits * static_cast<size_t>(std::bit_width(num_slice_groups_minus1)));
    }
}

} // namespace

std::optional<H264_EXACT_SPS> ReadH264Sps(std::span<const uint8_t> nal)
{
    const auto bytes = UnescapeNal(nal, sc_maxParameterSet);
    CBitReader bits(bytes);
    H264_EXACT_SPS sps;
    bits.Skip(8);
    const uint32_t profile_idc = bits.Bits(8);
    bits.Skip(16); // constraint flags, level_idc
    sps.seq_parameter_set_id = bits.Ue();
    uint32_t chroma_format_idc = 1;
    if (std::find(sc_highProfiles.begin(), sc_highProfiles.end(), profile_idc) != sc_highProfiles.end())
        chroma_format_idc = ReadChroma(bits, sps);
    sps.frameNumBits = bits.Ue() + 4;
    ReadPicOrder(bits, sps);
    bits.Ue(); // max_num_ref_frames
    bits.Skip(1);
    ReadSize(bits, sps, sps.separate_colour_plane_flag ? 0 : chroma_format_idc);
    if (bits.Overrun() || sps.seq_parameter_set_id > sc_maxSpsId || sps.nWidth == 0 || sps.frameNumBits > 16 ||
        sps.picOrderCntLsbBits > 16)
        return std::nullopt;
    return sps;
}

std::optional<H264_EXACT_PPS> ReadH264Pps(std::span<const uint8_t> nal)
{
    const auto bytes = UnescapeNal(nal, sc_maxParameterSet);
    CBitReader bits(bytes);
    H264_EXACT_PPS pps;
    bits.Skip(8);
    pps.pic_parameter_set_id = bits.Ue();
    pps.seq_parameter_set_id = bits.Ue();
    bits.Skip(1);
    pps.bottom_field_pic_order_in_frame_present_flag = bits.Flag();
    const uint32_t num_slice_groups_minus1 = bits.Ue();
    if (num_slice_groups_minus1 > 7)
        return std::nullopt;
    if (num_slice_groups_minus1 > 0)
        SkipSliceGroups(bits, num_slice_groups_minus1);
    bits.Ue();    // num_ref_idx_l0_default_active_minus1
    bits.Ue();    // num_ref_idx_l1_default_active_minus1
    bits.Skip(3); // weighted_pred_flag, weighted_bipred_idc
    bits.Se();    // pic_init_qp_minus26
    bits.Se();    // pic_init_qs_minus26
    bits.Se();    // chroma_qp_index_offset
    bits.Skip(2); // deblocking_filter_control_present_flag, constrained_intra_pred_flag
    pps.redundant_pic_cnt_present_flag = bits.Flag();
    if (bits.Overrun() || pps.pic_parameter_set_id > sc_maxPpsId)
        return std::nullopt;
    return pps;
}

} // namespace Marvane::FrameSift
