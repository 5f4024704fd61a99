// The video parameter set (ITU-T H.265, 7.3.2.1), of which only the frame rate is taken, and what the sequence
// parameter set has in common with it.
#include <array>
#include <span>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"

namespace Marvane::FrameSift {

namespace {

// general_profile_space up to the level: 88 bits, in skips that the reader takes one word at a time.
void SkipProfile(CBitsStream& bs)
{
    bs.Skip(8);
    bs.Skip(32);
    bs.Skip(48);
}

uint32_t SkipFlag(CBitsStream& bs)
{
    bs.Skip(1);
    return 0;
}

} // namespace

// maxNumSubLayersMinus1 is a field of three bits.
void CH265ESParser::ParseProfileTierLevel(CBitsStream& bs, uint8_t profilePresentFlag, uint8_t maxNumSubLayersMinus1)
{
    struct SUB_LAYER
    {
        bool bProfile;
        bool bLevel;
    };
    constexpr uint32_t nMaxSubLayers = 8;
    if (profilePresentFlag != 0)
        SkipProfile(bs);
    bs.Skip(8); // general_level_idc
    if (maxNumSubLayersMinus1 == 0)
        return;
    std::array<SUB_LAYER, nMaxSubLayers> subLayers{};
    const std::span present = std::span(subLayers).first(maxNumSubLayersMinus1 % nMaxSubLayers);
    for (SUB_LAYER& subLayer : present) {
        subLayer.bProfile = GetFlag(bs);
        subLayer.bLevel = GetFlag(bs);
    }
    bs.Skip(2 * (nMaxSubLayers - maxNumSubLayersMinus1)); // reserved
    for (const SUB_LAYER& subLayer : present) {
        if (subLayer.bProfile)
            SkipProfile(bs);
        if (subLayer.bLevel)
            bs.Skip(8);
    }
}

void CH265ESParser::SkipSubLayerOrdering(CBitsStream& bs, uint32_t maxNumSubLayersMinus1)
{
    const bool bForEach = GetFlag(bs);
    for (uint32_t n = bForEach ? 0 : maxNumSubLayersMinus1; n <= maxNumSubLayersMinus1; ++n)
        SkipUe(bs, 3); // buffering, reorder and latency
}

int CH265ESParser::ParseVPS(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info)
{
    const CH265NalHead head(pESBuffer, nESBufferLen);
    if (head.IsEmpty())
        return -1;
    CBitsStream bs = head.Bits();
    bs.Skip(4); // vps_video_parameter_set_id
    bs.Skip(1); // vps_base_layer_internal_flag
    bs.Skip(1); // vps_base_layer_available_flag
    bs.Skip(6); // vps_max_layers_minus1
    const uint32_t nMaxSubLayersMinus1 = bs.GetBits(3);
    bs.Skip(1);  // vps_temporal_id_nesting_flag
    bs.Skip(16); // reserved
    ParseProfileTierLevel(bs, 1, static_cast<uint8_t>(nMaxSubLayersMinus1));
    SkipSubLayerOrdering(bs, nMaxSubLayersMinus1);
    const uint64_t nMaxLayerId = bs.GetBits(6);
    const uint64_t nLayerSetsMinus1 = GetUe(bs);
    // More flags than the unit has bits. With a single layer the test never fails, whatever the number of sets.
    if (nMaxLayerId * nLayerSetsMinus1 > 8 * static_cast<uint64_t>(nESBufferLen))
        return -1;
    RepeatRead(bs, nLayerSetsMinus1 * (nMaxLayerId + 1), &SkipFlag); // layer_id_included_flag
    if (!GetFlag(bs))
        return 0;
    const uint32_t nUnitsInTick = bs.GetBits(32);
    const uint32_t nTimeScale = bs.GetBits(32);
    if (nUnitsInTick != 0)
        info.frameRate = static_cast<int32_t>(nTimeScale / nUnitsInTick);
    return 0;
}

} // namespace Marvane::FrameSift
