// Writes NAL units of H.264.
#ifndef FRAMESIFT_TEST_ESPARSE_H264UNITS_H
#define FRAMESIFT_TEST_ESPARSE_H264UNITS_H

#include <optional>

#include "ESParse/H264ESParser.h"
#include "Support/BitWriter.h"
#include "Support/Testing.h"

// A namespace of its own, as other codecs' tests have helpers of the same names.
namespace Marvane::FrameSift::H264Units {

// A sequence parameter set; without a setting, of 352x288 progressive pictures and without a rate.
struct SPS
{
    uint32_t nProfile = 66;
    uint32_t nId = 0;
    CBitWriter high{}; // see High
    uint32_t nLog2FrameNum = 0;
    CBitWriter poc = CBitWriter().Ue(2);
    uint32_t nBlocksWide = 22; // of 16 pixels
    uint32_t nBlocksHigh = 18;
    bool bFrameMbsOnly = true;
    std::vector<uint32_t> crop{};
    CBitWriter vui{}; // see Vui

    Bytes Nal(size_t nStartCodeLen = 4) const
    {
        CBitWriter bits;
        bits.Bits(8, nProfile).Bits(16, 0xC01E).Ue(nId).Add(high).Ue(nLog2FrameNum).Add(poc).Ue(4).Flag(true);
        bits.Ue(nBlocksWide - 1)
            .Ue(nBlocksHigh / (bFrameMbsOnly ? 1 : 2) - 1)
            .Flag(bFrameMbsOnly)
            .Bits(bFrameMbsOnly ? 0 : 1, 1)
            .Flag(true);
        bits.Flag(!crop.empty()).Ues(crop).Optional(vui);
        return NalUnit({0x67}, bits.Rbsp(), nStartCodeLen);
    }
};

// What the profiles above have; of a scaling list the deltas, and nothing of one that is absent.
inline CBitWriter High(uint32_t nChroma = 1, uint32_t nLumaDepth = 2, uint32_t nChromaDepth = 2,
                       const std::vector<std::vector<int32_t>>& scalingLists = {})
{
    CBitWriter bits;
    bits.Ue(nChroma).Bits(nChroma == 3 ? 1 : 0, 1).Ue(nLumaDepth).Ue(nChromaDepth).Flag(true);
    bits.Flag(!scalingLists.empty());
    for (const auto& list : scalingLists)
        bits.Flag(!list.empty()).Ses(list);
    return bits;
}

// bWhole: a ratio of its own, overscan, signal type with colours, chroma location. Without a time scale no timing.
inline CBitWriter Vui(uint32_t nUnitsInTick, uint32_t nTimeScale, bool bWhole = false)
{
    CBitWriter bits;
    if (bWhole)
        bits.Flag(true).Bits(8, 255).Bits(32, 0x000C000B).Bits(6, 0x3D).Bits(26, 0x3091009).Flag(true).Ue(2).Ue(1);
    else
        bits.Bits(4, 0);
    if (nTimeScale == 0)
        return bits.Flag(false);
    return bits.Flag(true).Bits(32, nUnitsInTick).Bits(32, nTimeScale).Flag(true);
}

struct SLICE
{
    uint32_t nType = 7;
    uint32_t nFrameNum = 0;
    uint32_t nFirstMb = 0;
    uint32_t nPps = 0;
    std::optional<bool> field{}; // field_pic_flag, where the set allows fields
    bool bBottom = false;
    uint32_t nFrameNumBits = 4;
    uint8_t nHeader = 0x65;

    Bytes Nal(size_t nStartCodeLen = 4) const
    {
        CBitWriter bits;
        bits.Ue(nFirstMb).Ue(nType).Ue(nPps).Bits(nFrameNumBits, nFrameNum);
        bits.Bits(field ? 1 : 0, field.value_or(false)).Bits(field.value_or(false) ? 1 : 0, bBottom);
        return NalUnit({nHeader}, bits.Rbsp() + Bytes(12, 0x55), nStartCodeLen);
    }
};

// "352x288@25 of 352x288": the coded size last.
inline std::string Told(const h264SPS& sps)
{
    return std::to_string(sps.width) + "x" + std::to_string(sps.height) + "@" +
           std::to_string(static_cast<int32_t>(sps.framerate)) + " of " + std::to_string(sps.cropBeforeWidth) + "x" +
           std::to_string(sps.cropBeforeHeight);
}

} // namespace Marvane::FrameSift::H264Units

#endif
