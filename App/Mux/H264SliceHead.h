// The head of an H.264 slice, as far as it tells to which picture the slice belongs.
#ifndef FRAMESIFT_APP_MUX_H264SLICEHEAD_H
#define FRAMESIFT_APP_MUX_H264SLICEHEAD_H

#include <map>

#include "Mux/H264ParameterSets.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

struct H264_PARAMETER_SETS
{
    std::map<uint32_t, H264_EXACT_SPS> spsById;
    std::map<uint32_t, H264_EXACT_PPS> ppsById;
};

// Field names are those of the standard.
struct H264_SLICE_HEAD
{
    bool bParameterSets = false; // they were there; without them only the first three fields are read
    uint32_t first_mb_in_slice = 0;
    uint32_t slice_type = 0;
    uint32_t pic_parameter_set_id = 0;
    bool idr = false;
    bool reference = false; // nal_ref_idc is not 0
    uint32_t frame_num = 0;
    bool field_pic_flag = false;
    bool bottom_field_flag = false;
    uint32_t idr_pic_id = 0;
    uint32_t pic_order_cnt_lsb = 0;
    int32_t delta_pic_order_cnt_bottom = 0;
    int32_t delta_pic_order_cnt[2] = {0, 0};
    uint32_t redundant_pic_cnt = 0;
    uint32_t nWidth = 0; // of its SPS
    uint32_t nHeight = 0;
};

H264_SLICE_HEAD ReadH264SliceHead(std::span<const uint8_t> nal, const H264_PARAMETER_SETS& sets);

// Whether next is the first slice of another picture than last.
bool IsNewH264Picture(const H264_SLICE_HEAD& last, const H264_SLICE_HEAD& next);

UNIT_KIND KindOfH264Slice(uint32_t slice_type);

} // namespace Marvane::FrameSift

#endif
