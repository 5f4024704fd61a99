// Writes the H.265 units that the tests read back.
#ifndef FRAMESIFT_TEST_ESPARSE_H265WRITER_H
#define FRAMESIFT_TEST_ESPARSE_H265WRITER_H

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "Support/BitWriter.h"

namespace Marvane::FrameSift {

inline Bytes H265Unit(uint8_t nType, const Bytes& rbsp, size_t nStartCodeLen = 4, uint8_t nTemporalIdPlus1 = 1)
{
    return NalUnit({static_cast<uint8_t>(nType << 1), nTemporalIdPlus1}, rbsp, nStartCodeLen);
}

inline Bytes H265Sei(uint32_t nType, const Bytes& payload)
{
    Bytes message;
    for (const size_t nNumber : {size_t{nType}, payload.size()}) {
        message.insert(message.end(), nNumber / 255, 0xFF);
        message.push_back(static_cast<uint8_t>(nNumber % 255));
    }
    return message + payload;
}

// Sub-layers with each mix of a profile and a level.
inline void WriteProfileTierLevel(CBitWriter& bits, uint32_t nSubLayersMinus1)
{
    bits.Bits(40, 0x2160000000).Bits(48, 0x900000000000).Bits(8, 93);
    for (uint32_t n = 0; n < nSubLayersMinus1; ++n)
        bits.Flag(n % 2 != 0).Flag(n / 2 % 2 != 0);
    bits.Bits(nSubLayersMinus1 > 0 ? 2 * (8 - nSubLayersMinus1) : 0, 0);
    for (uint32_t n = 0; n < nSubLayersMinus1; ++n)
        bits.Bits(n % 2 != 0 ? 64 : 0, 5).Bits(n % 2 != 0 ? 24 : 0, 9).Bits(n / 2 % 2 != 0 ? 8 : 0, 60);
}

inline void WriteOrdering(CBitWriter& bits, uint32_t nSubLayersMinus1, bool bForEach)
{
    bits.Flag(bForEach);
    for (uint32_t n = bForEach ? 0 : nSubLayersMinus1; n <= nSubLayersMinus1; ++n)
        bits.Ue(4).Ue(n).Ue(0);
}

using H265_TIMING = std::optional<std::pair<uint32_t, uint32_t>>; // num_units_in_tick, time_scale

inline void WriteTiming(CBitWriter& bits, const H265_TIMING& timing)
{
    bits.Flag(timing.has_value());
    if (timing)
        bits.Bits(32, timing->first).Bits(32, timing->second);
}

// Of a count from here on, only so many entries are written.
inline constexpr uint32_t gsk_hostileCount = 64;

struct H265_VPS_WRITER
{
    uint32_t nSubLayersMinus1 = 0;
    uint32_t nMaxLayerId = 0;
    uint32_t nLayerSetsMinus1 = 0;
    H265_TIMING timing{};

    Bytes Unit() const
    {
        CBitWriter bits;
        bits.Bits(12, 0x0C0).Bits(3, nSubLayersMinus1).Flag(true).Bits(16, 0xFFFF);
        WriteProfileTierLevel(bits, nSubLayersMinus1);
        WriteOrdering(bits, nSubLayersMinus1, nSubLayersMinus1 % 2 == 0);
        bits.Bits(6, nMaxLayerId).Ue(nLayerSetsMinus1);
        for (uint32_t n = 0; n < nLayerSetsMinus1 && n < gsk_hostileCount; ++n)
            bits.Bits(nMaxLayerId + 1, 0x5A5A5A);
        WriteTiming(bits, timing);
        return H265Unit(32, bits.Rbsp());
    }
};

struct H265_PIC_SET
{
    std::string inherited{}; // for each picture of the set before and one more: u used, d only kept, - dropped
    uint32_t nNegative = 0;
    uint32_t nPositive = 0;
    bool bInherits = false; // the first set may say so too, but never does
};

struct H265_SPS_WRITER
{
    uint32_t nSubLayersMinus1 = 0;
    uint32_t nId = 0;
    uint32_t nChroma = 1;
    bool bSeparatePlanes = false;
    uint32_t nWidth = 352;
    std::optional<std::array<uint32_t, 4>> window{};
    uint32_t nLumaDepthMinus8 = 0;
    uint32_t nChromaDepthMinus8 = 0;
    uint32_t nPocLsbMinus4 = 4;
    std::array<uint32_t, 4> blocks{0, 3, 0, 3};
    bool bTools = false; // scaling lists and PCM
    std::vector<H265_PIC_SET> sets{};
    std::optional<uint32_t> nSetsClaimed{};
    std::optional<uint32_t> nLongTerm{};
    bool bVui = true;
    bool bWholeVui = false;
    bool bFieldInfo = false;
    H265_TIMING timing{{1, 50}}; // the last that is read: right only if all before it was

    Bytes Unit(size_t nStartCodeLen = 4) const
    {
        CBitWriter bits;
        bits.Bits(4, 0).Bits(3, nSubLayersMinus1).Flag(true);
        WriteProfileTierLevel(bits, nSubLayersMinus1);
        bits.Ue(nId).Ue(nChroma).Bits(nChroma == 3 ? 1 : 0, bSeparatePlanes ? 1 : 0);
        bits.Ue(nWidth).Ue(288).Flag(window.has_value());
        for (const uint32_t nSide : window.value_or(std::array<uint32_t, 4>{}))
            window ? bits.Ue(nSide) : bits;
        bits.Ue(nLumaDepthMinus8).Ue(nChromaDepthMinus8).Ue(nPocLsbMinus4);
        WriteOrdering(bits, nSubLayersMinus1, nSubLayersMinus1 % 2 == 0);
        for (const uint32_t nSize : blocks)
            bits.Ue(nSize);
        bits.Ue(1).Ue(2);
        WriteTools(bits);
        bits.Ue(nSetsClaimed.value_or(static_cast<uint32_t>(sets.size())));
        for (size_t n = 0; n < sets.size(); ++n)
            WriteSet(bits, sets[n], n);
        bits.Flag(nLongTerm.has_value());
        if (nLongTerm)
            bits.Ue(*nLongTerm);
        for (uint32_t n = 0; n < nLongTerm.value_or(0) && n < gsk_hostileCount; ++n)
            bits.Ue(n).Flag(n % 2 != 0);
        bits.Flag(true).Flag(false).Flag(bVui);
        if (bVui)
            WriteVui(bits);
        return H265Unit(33, bits.Rbsp(), nStartCodeLen);
    }

private:
    void WriteTools(CBitWriter& bits) const
    {
        bits.Flag(bTools).Bits(bTools ? 1 : 0, 1);
        for (int nList = 0; bTools && nList < 20; ++nList) { // six each of 4x4, 8x8, 16x16, two of 32x32
            bits.Flag(nList % 2 == 0);
            if (nList % 2 != 0)
                bits.Ue(1);
            for (int n = nList < 12 ? 0 : -1; nList % 2 == 0 && n < (nList < 6 ? 16 : 64); ++n)
                bits.Se(n % 16 == 1 ? -2 : 0);
        }
        bits.Flag(true).Flag(true).Flag(bTools);
        if (bTools)
            bits.Bits(8, 0x77).Ue(1).Ue(2).Flag(true);
    }
    static void WriteSet(CBitWriter& bits, const H265_PIC_SET& set, size_t nIndex)
    {
        bits.Flag(set.bInherits);
        if (set.bInherits && nIndex > 0) {
            bits.Flag(true).Ue(3);
            for (const char chPic : set.inherited)
                chPic == 'u' ? bits.Flag(true) : bits.Flag(false).Flag(chPic == 'd');
            return;
        }
        bits.Ue(set.nNegative).Ue(set.nPositive);
        for (uint32_t n = 0; n < uint64_t{set.nNegative} + set.nPositive && n < gsk_hostileCount; ++n)
            bits.Ue(n).Flag(n % 2 == 0);
    }
    void WriteVui(CBitWriter& bits) const
    {
        const uint32_t nAll = bWholeVui ? 1 : 0;
        bits.Flag(bWholeVui).Bits(40 * nAll, 0xFF000C000B);                  // aspect ratio 12:11
        bits.Flag(bWholeVui).Bits(nAll, 1);                                  // overscan
        bits.Flag(bWholeVui).Bits(29 * nAll, 0x17'09'10'09).Flag(bWholeVui); // BT.2020, PQ
        if (bWholeVui)
            bits.Ue(2).Ue(3);
        bits.Flag(false).Flag(true).Flag(bFieldInfo).Flag(bWholeVui);
        if (bWholeVui)
            bits.Ue(1).Ue(0).Ue(7).Ue(2);
        WriteTiming(bits, timing);
    }
};

struct H265_PPS_WRITER
{
    bool bDependent = false;
    bool bOutputFlag = false;
    bool bExtraBit = false; // of three, the one that is read

    Bytes Unit() const
    {
        return H265Unit(34, CBitWriter().Ue(0).Ue(0).Flag(bDependent).Flag(bOutputFlag).Flag(bExtraBit).Rbsp());
    }
};

struct H265_SLICE_WRITER
{
    uint8_t nNalType = 19;
    uint32_t nType = 2;
    uint32_t nPocLsb = 0; // of 8 bits
    bool bFirst = true;
    std::optional<bool> dependent{}; // written, as the next two are, where the picture parameter set has it
    bool bExtraBit = false;
    bool bOutputFlag = false;
    uint8_t nTemporalIdPlus1 = 1;

    Bytes Unit(size_t nStartCodeLen = 4) const
    {
        CBitWriter bits;
        bits.Flag(bFirst).Bits(nNalType >= 16 ? 1 : 0, 1).Ue(2);
        if (dependent)
            bits.Flag(*dependent);
        if (!dependent.value_or(false))
            bits.Bits(bExtraBit ? 1 : 0, 0).Ue(nType).Bits(bOutputFlag ? 1 : 0, 0);
        bits.Bits(nNalType < 19 || nNalType > 20 ? 8 : 0, nPocLsb);
        return H265Unit(nNalType, bits.Rbsp() + Bytes(12, 0x55), nStartCodeLen, nTemporalIdPlus1);
    }
};

} // namespace Marvane::FrameSift

#endif
