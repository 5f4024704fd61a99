// What the cutter must know of H.264 parameter sets: the picture size, and how a slice head is laid out.
#ifndef FRAMESIFT_APP_MUX_H264PARAMETERSETS_H
#define FRAMESIFT_APP_MUX_H264PARAMETERSETS_H

#include <cstdint>
#include <optional>
#include <span>

namespace Marvane::FrameSift {

// Field names are those of the standard.
struct H264_EXACT_SPS
{
    uint32_t seq_parameter_set_id = 0;
    bool separate_colour_plane_flag = false;
    uint32_t frameNumBits = 4;
    uint32_t pic_order_cnt_type = 0;
    uint32_t picOrderCntLsbBits = 4;
    bool delta_pic_order_always_zero_flag = false;
    bool frame_mbs_only_flag = true;
    uint32_t nWidth = 0; // cropped
    uint32_t nHeight = 0;
};

struct H264_EXACT_PPS
{
    uint32_t pic_parameter_set_id = 0;
    uint32_t seq_parameter_set_id = 0;
    bool bottom_field_pic_order_in_frame_present_flag = false;
    bool redundant_pic_cnt_present_flag = false;
};

// nal: from the NAL unit's header byte on. Nothing if it is damaged.
std::optional<H264_EXACT_SPS> ReadH264Sps(std::span<const uint8_t> nal);
std::optional<H264_EXACT_PPS> ReadH264Pps(std::span<const uint8_t> nal);

} // namespace Marvane::FrameSift

#endif
