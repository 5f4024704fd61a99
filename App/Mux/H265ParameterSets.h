// What the cutter must know of H.265 parameter sets: the picture size, and how a slice head is laid out.
#ifndef FRAMESIFT_APP_MUX_H265PARAMETERSETS_H
#define FRAMESIFT_APP_MUX_H265PARAMETERSETS_H

#include <cstdint>
#include <optional>
#include <span>

namespace Marvane::FrameSift {

// Field names are those of the standard.
struct H265_EXACT_SPS
{
    uint32_t sps_seq_parameter_set_id = 0;
    uint32_t sliceAddressBits = 0;
    uint32_t nWidth = 0; // cropped
    uint32_t nHeight = 0;
};

struct H265_EXACT_PPS
{
    uint32_t pps_pic_parameter_set_id = 0;
    uint32_t pps_seq_parameter_set_id = 0;
    bool dependent_slice_segments_enabled_flag = false;
    uint32_t num_extra_slice_header_bits = 0;
};

// nal: from the NAL unit's two header bytes on. Nothing if it is damaged.
std::optional<H265_EXACT_SPS> ReadH265Sps(std::span<const uint8_t> nal);
std::optional<H265_EXACT_PPS> ReadH265Pps(std::span<const uint8_t> nal);

} // namespace Marvane::FrameSift

#endif
