// Writes NAL units of H.264.
#ifndef FRAMESIFT_TEST_ESPARSE_H264UNITS_H
#define FRAMESIFT_TEST_ESPARSE_H264UNITS_H

#include <array>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "ESParse/H264ESParser.h"
#include "Support/BitWriter.h"

// A namespace of its own, as other codecs' tests have helpers of the same names.
namespace Marvane::FrameSift::H264Units {

inline uint32_t LengthOf(const Bytes& bytes)
{
    return static_cast<uint32_t>(bytes.size());
}

// A sequence parameter set; without a setting, of 352x288 progressive pictures and without a rate.
struct SPS
{
    uint32_t nProfile = 66;
    uint32_t nId = 0;
    uint32_t nChroma = 1;
    uint32_t nLumaDepth = 2;
    uint32_t nChromaDepth = 2;
    std::vector<std::vector<int32_t>> scalingLists{}; // the deltas; an empty one is absent
    uint32_t nLog2FrameNum = 0;
    uint32_t nPocType = 2;
    uint32_t nPocBound = 0; // log2_max_pic_order_cnt_lsb_minus4, or num_ref_frames_in_pic_order_cnt_cycle
    bool bFrameMbsOnly = true;
    std::optional<std::array<uint32_t, 4>> crop{};
    std::optional<std::pair<uint32_t, uint32_t>> timing{}; // num_units_in_tick, time_scale
    bool bWholeVui = false;

    Bytes Nal(size_t nStartCodeLen = 4) const { return NalUnit({0x67}, Rbsp(), nStartCodeLen); }

private:
    Bytes Rbsp() const
    {
        CBitWriter bits;
        bits.Bits(8, nProfile).Bits(8, 0xC0).Bits(8, 30).Ue(nId);
        if (nProfile != 66 && nProfile != 77 && nProfile != 88)
            WriteHigh(bits);
        bits.Ue(nLog2FrameNum).Ue(nPocType);
        if (nPocType == 0)
            bits.Ue(nPocBound);
        if (nPocType == 1) {
            bits.Flag(true).Se(-3).Se(5).Ue(nPocBound);
            for (uint32_t n = 0; n < nPocBound; ++n)
                bits.Se(static_cast<int32_t>(n) - 7);
        }
        bits.Ue(4).Flag(true).Ue(21).Ue(bFrameMbsOnly ? 17 : 8).Flag(bFrameMbsOnly);
        if (!bFrameMbsOnly)
            bits.Flag(true);
        bits.Flag(true).Flag(crop.has_value());
        for (const uint32_t nSide : crop.value_or(std::array<uint32_t, 4>{}))
            crop ? bits.Ue(nSide) : bits;
        bits.Flag(timing.has_value() || bWholeVui);
        if (timing || bWholeVui)
            WriteVui(bits);
        return bits.Rbsp();
    }
    void WriteHigh(CBitWriter& bits) const
    {
        bits.Ue(nChroma);
        if (nChroma == 3)
            bits.Flag(true);
        bits.Ue(nLumaDepth).Ue(nChromaDepth).Flag(true).Flag(!scalingLists.empty());
        for (const auto& list : scalingLists) {
            bits.Flag(!list.empty());
            for (const int32_t nDelta : list)
                bits.Se(nDelta);
        }
    }
    void WriteVui(CBitWriter& bits) const
    {
        if (bWholeVui) { // a ratio of its own, overscan, signal type with colours, chroma location
            bits.Flag(true).Bits(8, 255).Bits(32, 0x000C000B).Bits(2, 3);
            bits.Flag(true).Bits(3, 5).Bits(2, 3).Bits(24, 0x091009).Flag(true).Ue(2).Ue(1);
        } else {
            bits.Bits(4, 0);
        }
        bits.Flag(timing.has_value());
        if (timing)
            bits.Bits(32, timing->first).Bits(32, timing->second).Flag(true);
    }
};

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
        if (field)
            bits.Flag(*field);
        if (field.value_or(false))
            bits.Flag(bBottom);
        return NalUnit({nHeader}, bits.Rbsp() + Bytes(12, 0x55), nStartCodeLen);
    }
};

inline std::string Told(int64_t nWidth, int64_t nHeight, int64_t nRate, int64_t nCodedWidth, int64_t nCodedHeight)
{
    std::ostringstream text;
    text << nWidth << 'x' << nHeight << '@' << nRate << " of " << nCodedWidth << 'x' << nCodedHeight;
    return text.str();
}

inline std::string Told(const h264SPS& sps)
{
    return Told(sps.width, sps.height, static_cast<int32_t>(sps.framerate), sps.cropBeforeWidth, sps.cropBeforeHeight);
}

// The subtype in front.
inline std::string Told(const FrameInfo& frame)
{
    return std::to_string(int32_t{frame.frameSubType}) + " " +
           Told(frame.width, frame.height, frame.frameRate, frame.cropBeforeWidth, frame.cropBeforeHeight);
}

} // namespace Marvane::FrameSift::H264Units

#endif
