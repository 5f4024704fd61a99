#include "Mux/H264SliceHead.h"

#include <tuple>

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_sliceHeadBytes = 64; // the fields that are read here have at most 45
constexpr uint32_t sc_idrSlice = 5;

void ReadPicOrder(CBitReader& bits, const H264_EXACT_SPS& sps, const H264_EXACT_PPS& pps, H264_SLICE_HEAD& slice)
{
    const bool bBoth = pps.bottom_field_pic_order_in_frame_present_flag && !slice.field_pic_flag;
    if (sps.pic_order_cnt_type == 0) {
        slice.pic_order_cnt_lsb = bits.Bits(sps.picOrderCntLsbBits);
        if (bBoth)
            slice.delta_pic_order_cnt_bottom = bits.Se();
    } else if (sps.pic_order_cnt_type == 1 && !sps.delta_pic_order_always_zero_flag) {
        slice.delta_pic_order_cnt[0] = bits.Se();
        if (bBoth)
            slice.delta_pic_order_cnt[1] = bits.Se();
    }
}

void ReadPictureFields(CBitReader& bits, const H264_EXACT_SPS& sps, const H264_EXACT_PPS& pps, H264_SLICE_HEAD& slice)
{
    if (sps.separate_colour_plane_flag)
        bits.Skip(2);
    slice.frame_num = bits.Bits(sps.frameNumBits);
    if (!sps.frame_mbs_only_flag) {
        slice.field_pic_flag = bits.Flag();
        slice.bottom_field_flag = slice.field_pic_flag && bits.Flag();
    }
    if (slice.idr)
        slice.idr_pic_id = bits.Ue();
    ReadPicOrder(bits, sps, pps, slice);
    if (pps.redundant_pic_cnt_present_flag)
        slice.redundant_pic_cnt = bits.Ue();
    slice.nWidth = sps.nWidth;
    slice.nHeight = sps.nHeight;
}

auto PictureFields(const H264_SLICE_HEAD& slice)
{
    return std::make_tuple(slice.pic_parameter_set_id, slice.idr, slice.reference, slice.frame_num,
                           slice.field_pic_flag, slice.bottom_field_flag, slice.idr_pic_id, slice.pic_order_cnt_lsb,
                           slice.delta_pic_order_cnt_bottom, slice.delta_pic_order_cnt[0],
                           slice.delta_pic_order_cnt[1]);
}

} // namespace

H264_SLICE_HEAD ReadH264SliceHead(std::span<const uint8_t> nal, const H264_PARAMETER_SETS& sets)
{
    const auto bytes = UnescapeNal(nal, sc_sliceHeadBytes);
    CBitReader bits(bytes);
    H264_SLICE_HEAD slice;
    bits.Skip(1);
    slice.reference = bits.Bits(2) != 0;
    slice.idr = bits.Bits(5) == sc_idrSlice;
    slice.first_mb_in_slice = bits.Ue();
    slice.slice_type = bits.Ue();
    slice.pic_parameter_set_id = bits.Ue();
    const auto pps = sets.ppsById.find(slice.pic_parameter_set_id);
    if (pps == sets.ppsById.end())
        return slice;
    const auto sps = sets.spsById.find(pps->second.seq_parameter_set_id);
    if (sps == sets.spsById.end())
        return slice;
    ReadPictureFields(bits, sps->second, pps->second, slice);
    slice.bParameterSets = !bits.Overrun();
    return slice;
}

bool IsNewH264Picture(const H264_SLICE_HEAD& last, const H264_SLICE_HEAD& next)
{
    if (next.redundant_pic_cnt > 0)
        return false;
    // Without parameter sets only this is known; it holds for every encoder that sends its slices in order.
    if (!last.bParameterSets || !next.bParameterSets)
        return next.first_mb_in_slice == 0;
    return PictureFields(last) != PictureFields(next);
}

UNIT_KIND KindOfH264Slice(uint32_t slice_type)
{
    switch (slice_type % 5) {
    case 1:
        return UNIT_KIND::B;
    case 2:
    case 4: // SI
        return UNIT_KIND::I;
    default: // P, SP
        return UNIT_KIND::P;
    }
}

} // namespace Marvane::FrameSift
