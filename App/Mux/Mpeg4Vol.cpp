#include "Mux/Mpeg4Vol.h"

#include <algorithm>
#include <bit>

#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_extendedAspect = 15;
constexpr uint32_t sc_rectangular = 0;
constexpr size_t sc_vbvBits = 79; // all vbv parameters with their marker bits

void SkipToShape(CBitReader& bits)
{
    bits.Skip(1 + 8); // random_accessible_vol, video_object_type_indication
    if (bits.Flag())  // is_object_layer_identifier
        bits.Skip(4 + 3);
    if (bits.Bits(4) == sc_extendedAspect)
        bits.Skip(8 + 8);
    if (bits.Flag()) { // vol_control_parameters
        bits.Skip(2 + 1);
        if (bits.Flag())
            bits.Skip(sc_vbvBits);
    }
}

} // namespace

std::optional<MPEG4_VOL> ReadMpeg4Vol(std::span<const uint8_t> body)
{
    CBitReader bits(body);
    SkipToShape(bits);
    if (bits.Bits(2) != sc_rectangular)
        return std::nullopt;
    bits.Skip(1);
    const uint32_t vop_time_increment_resolution = bits.Bits(16);
    bits.Skip(1);
    if (bits.Flag()) { // fixed_vop_rate
        const uint32_t nHighest = std::max(vop_time_increment_resolution, 1U) - 1;
        bits.Skip(std::max<size_t>(1, static_cast<size_t>(std::bit_width(nHighest))));
    }
    MPEG4_VOL vol;
    bits.Skip(1);
    vol.nWidth = bits.Bits(13);
    bits.Skip(1);
    vol.nHeight = bits.Bits(13);
    if (bits.Overrun() || vol.nWidth == 0 || vol.nHeight == 0)
        return std::nullopt;
    return vol;
}

} // namespace Marvane::FrameSift
