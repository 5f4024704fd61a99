#include "Mux/H265ParameterSets.h"

#include <bit>

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_parameterSetBytes = 1024; // the fields that are read here stand in the first 200
constexpr uint32_t sc_maxSide = 65535;        // two bytes on the wire

// The ids that the standard allows. With more, a stream could fill the memory with sets.
constexpr uint32_t sc_maxSpsId = 15;
constexpr uint32_t sc_maxPpsId = 63;
constexpr size_t sc_profileBits = 88; // general_profile_space to the reserved bit
constexpr size_t sc_levelBits = 8;

void SkipProfileTierLevel(CBitReader& bits, uint32_t nMaxSubLayersMinus1)
{
    bits.Skip(sc_profileBits + sc_levelBits);
    if (nMaxSubLayersMinus1 == 0)
        return;
    const uint32_t nPresent = bits.Bits(16); // two flags for each of 8 layers; those above the highest are zero
    for (uint32_t n = 0; n < nMaxSubLayersMinus1; ++n) {
        if ((nPresent >> (15 - 2 * n) & 1) != 0)
            bits.Skip(sc_profileBits);
        if ((nPresent >> (14 - 2 * n) & 1) != 0)
            bits.Skip(sc_levelBits);
    }
}

struct CODED_SIZE
{
    uint64_t nWidth = 0;
    uint64_t nHeight = 0;
};

// The window's offsets count in chroma samples. Answers the size before cropping.
CODED_SIZE ReadSize(CBitReader& bits, H265_EXACT_SPS& sps)
{
    uint32_t nChromaArrayType = bits.Ue();
    if (nChromaArrayType == 3 && bits.Flag())
        nChromaArrayType = 0; // separate_colour_plane_flag
    const CODED_SIZE coded = {bits.Ue(), bits.Ue()};
    uint64_t nCropX = 0;
    uint64_t nCropY = 0;
    if (bits.Flag()) {
        const uint32_t nUnitX = nChromaArrayType == 1 || nChromaArrayType == 2 ? 2 : 1;
        const uint32_t nUnitY = nChromaArrayType == 1 ? 2 : 1;
        nCropX = uint64_t{bits.Ue()} * nUnitX;
        nCropX += uint64_t{bits.Ue()} * nUnitX;
        nCropY = uint64_t{bits.Ue()} * nUnitY;
        nCropY += uint64_t{bits.Ue()} * nUnitY;
    }
    if (coded.nWidth <= sc_maxSide && coded.nHeight <= sc_maxSide && nCropX < coded.nWidth && nCropY < coded.nHeight) {
        sps.nWidth = static_cast<uint32_t>(coded.nWidth - nCropX);
        sps.nHeight = static_cast<uint32_t>(coded.nHeight - nCropY);
    }
    return coded;
}

} // namespace

std::optional<H265_EXACT_SPS> ReadH265Sps(std::span<const uint8_t> nal)
{
    const auto bytes = UnescapeNal(nal, sc_parameterSetBytes);
    CBitReader bits(bytes);
    H265_EXACT_SPS sps;
    bits.Skip(16 + 4);
    const uint32_t sps_max_sub_layers_minus1 = bits.Bits(3);
    bits.Skip(1);
    SkipProfileTierLevel(bits, sps_max_sub_layers_minus1);
    sps.sps_seq_parameter_set_id = bits.Ue();
    const CODED_SIZE coded = ReadSize(bits, sps);
    bits.Ue(); // bit_depth_luma_minus8
    bits.Ue(); // bit_depth_chroma_minus8
    bits.Ue(); // log2_max_pic_order_cnt_lsb_minus4
    const uint32_t nFirstLayer = bits.Flag() ? 0 : sps_max_sub_layers_minus1;
    for (uint32_t n = nFirstLayer; n <= sps_max_sub_layers_minus1; ++n) {
        bits.Ue(); // sps_max_dec_pic_buffering_minus1
        bits.Ue(); // sps_max_num_reorder_pics
        bits.Ue(); // sps_max_latency_increase_plus1
    }
    const uint32_t nMinBlockLog2 = bits.Ue();
    const uint32_t nCtbLog2 = nMinBlockLog2 + 3 + bits.Ue();
    if (bits.Overrun() || sps.sps_seq_parameter_set_id > sc_maxSpsId || sps.nWidth == 0 || nMinBlockLog2 > 3 ||
        nCtbLog2 > 6)
        return std::nullopt;
    const uint64_t nCtb = uint64_t{1} << nCtbLog2;
    const uint64_t nCtbs = ((coded.nWidth + nCtb - 1) >> nCtbLog2) * ((coded.nHeight + nCtb - 1) >> nCtbLog2);
    sps.sliceAddressBits = static_cast<uint32_t>(std::bit_width(nCtbs - 1));
    return sps;
}

std::optional<H265_EXACT_PPS> ReadH265Pps(std::span<const uint8_t> nal)
{
    const auto bytes = UnescapeNal(nal, sc_parameterSetBytes);
    CBitReader bits(bytes);
    H265_EXACT_PPS pps;
    bits.Skip(16);
    pps.pps_pic_parameter_set_id = bits.Ue();
    pps.pps_seq_parameter_set_id = bits.Ue();
    pps.dependent_slice_segments_enabled_flag = bits.Flag();
    bits.Skip(1); // output_flag_present_flag
    pps.num_extra_slice_header_bits = bits.Bits(3);
    if (bits.Overrun() || pps.pps_pic_parameter_set_id > sc_maxPpsId)
        return std::nullopt;
    return pps;
}

} // namespace Marvane::FrameSift
