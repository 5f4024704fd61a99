// Writes NAL units of H.265, and asks the parser about them.
#ifndef FRAMESIFT_TEST_ESPARSE_H265UNITS_H
#define FRAMESIFT_TEST_ESPARSE_H265UNITS_H

#include <optional>

#include "ESParse/H265ESParser.h"
#include "Support/BitWriter.h"
#include "Support/LogOf.h"
#include "Support/Testing.h"

// A namespace of its own, as other codecs' tests have helpers of the same names.
namespace Marvane::FrameSift::H265Units {

inline Bytes Unit(uint8_t nType, const Bytes& rbsp, size_t nStartCodeLen = 4, uint8_t nTemporalIdPlus1 = 1)
{
    return NalUnit({static_cast<uint8_t>(nType << 1), nTemporalIdPlus1}, rbsp, nStartCodeLen);
}

inline Bytes Sei(uint32_t nType, const Bytes& payload)
{
    Bytes message;
    for (const size_t nNumber : {size_t{nType}, payload.size()}) {
        message.insert(message.end(), nNumber / 255, 0xFF);
        message.push_back(static_cast<uint8_t>(nNumber % 255));
    }
    return message + payload;
}

// What follows in both parameter sets: profile, tier and level, the sub-layers with each mix of a profile and a level,
// and how pictures of each are ordered, or of the last.
inline CBitWriter ProfileTierLevel(uint32_t nSubLayersMinus1)
{
    CBitWriter bits;
    bits.Bits(40, 0x2160000000).Bits(48, 0x900000000000).Bits(8, 93);
    for (uint32_t n = 0; n < nSubLayersMinus1; ++n)
        bits.Flag(n % 2 != 0).Flag(n / 2 % 2 != 0);
    bits.Bits(nSubLayersMinus1 > 0 ? 2 * (8 - nSubLayersMinus1) : 0, 0);
    for (uint32_t n = 0; n < nSubLayersMinus1; ++n)
        bits.Bits(n % 2 != 0 ? 64 : 0, 5).Bits(n % 2 != 0 ? 24 : 0, 9).Bits(n / 2 % 2 != 0 ? 8 : 0, 60);
    return bits;
}

inline CBitWriter Ordering(uint32_t nSubLayersMinus1)
{
    const bool bForEach = nSubLayersMinus1 % 2 == 0;
    CBitWriter bits;
    bits.Flag(bForEach);
    for (uint32_t n = bForEach ? 0 : nSubLayersMinus1; n <= nSubLayersMinus1; ++n)
        bits.Ues({4, n, 0});
    return bits;
}

inline CBitWriter Timing(uint32_t nUnitsInTick, uint32_t nTimeScale)
{
    return CBitWriter().Bits(32, nUnitsInTick).Bits(32, nTimeScale);
}

struct VPS
{
    uint32_t nSubLayersMinus1 = 0;
    uint32_t nMaxLayerId = 0;
    uint32_t nLayerSetsMinus1 = 0; // from 64 on only so many are written
    CBitWriter timing{};

    Bytes Nal() const
    {
        CBitWriter bits;
        bits.Bits(12, 0x0C0).Bits(3, nSubLayersMinus1).Flag(true).Bits(16, 0xFFFF);
        bits.Add(ProfileTierLevel(nSubLayersMinus1)).Add(Ordering(nSubLayersMinus1));
        bits.Bits(6, nMaxLayerId).Ue(nLayerSetsMinus1);
        for (uint32_t n = 0; n < std::min(nLayerSetsMinus1, 64U); ++n)
            bits.Bits(nMaxLayerId + 1, 0x5A5A5A);
        return Unit(32, bits.Optional(timing).Rbsp());
    }
};

// Scaling lists, six each of 4x4, 8x8, 16x16 and two of 32x32; then two tools, and PCM.
inline CBitWriter AllTools()
{
    CBitWriter bits;
    bits.Flag(true).Flag(true);
    for (int nList = 0; nList < 20; ++nList) {
        bits.Flag(nList % 2 == 0);
        if (nList % 2 != 0)
            bits.Ue(1);
        for (int n = nList < 12 ? 0 : -1; nList % 2 == 0 && n < (nList < 6 ? 16 : 64); ++n)
            bits.Se(n % 16 == 1 ? -2 : 0);
    }
    return bits.Flag(true).Flag(true).Flag(true).Bits(8, 0x77).Ue(1).Ue(2).Flag(true);
}

// A set of pictures that others refer to. A flag in front tells whether it inherits; the first may say so, but never does.
inline CBitWriter PicSet(uint32_t nNegative, uint32_t nPositive, bool bFlag = false)
{
    CBitWriter bits;
    bits.Flag(bFlag).Ue(nNegative).Ue(nPositive);
    for (uint32_t n = 0; n < std::min<uint64_t>(uint64_t{nNegative} + nPositive, 64); ++n)
        bits.Ue(n).Flag(n % 2 == 0);
    return bits;
}

// inherited: for each picture of the set before and one more: u used, d only kept, - dropped.
inline CBitWriter InheritedSet(const std::string& inherited)
{
    CBitWriter bits;
    bits.Flag(true).Flag(true).Ue(3);
    for (const char chPic : inherited)
        chPic == 'u' ? bits.Flag(true) : bits.Flag(false).Flag(chPic == 'd');
    return bits;
}

inline CBitWriter Vui(const CBitWriter& timing, bool bWhole = false, bool bFieldInfo = false)
{
    CBitWriter bits;
    if (bWhole) // aspect ratio 12:11, overscan, BT.2020 and PQ
        bits.Bits(41, 0x1FF000C000B).Bits(2, 3).Bits(30, 0x37'09'10'09).Flag(true).Ue(2).Ue(3);
    else
        bits.Bits(4, 0);
    bits.Flag(false)
        .Flag(true)
        .Flag(bFieldInfo)
        .Flag(bWhole)
        .Ues(bWhole ? std::vector<uint32_t>{1, 0, 7, 2} : std::vector<uint32_t>());
    return bits.Optional(timing);
}

// Of 352x288 pictures. Its rate is the last that is read: right only if all before it was.
struct SPS
{
    uint32_t nSubLayersMinus1 = 0;
    uint32_t nId = 0;
    CBitWriter chroma = CBitWriter().Ue(1);
    uint32_t nWidth = 352;
    std::vector<uint32_t> window{};
    uint32_t nLumaDepthMinus8 = 0;
    uint32_t nChromaDepthMinus8 = 0;
    uint32_t nPocLsbMinus4 = 4;
    std::vector<uint32_t> blocks{0, 3, 0, 3};
    CBitWriter tools = CBitWriter().Bits(4, 6);
    CBitWriter sets = CBitWriter().Ue(0); // their number and each of them
    std::vector<uint32_t> longTerm{}; // the number of pictures, and for each its count times 2 and whether it is used
    CBitWriter vui = Vui(Timing(1, 50));

    Bytes Nal(size_t nStartCodeLen = 4) const
    {
        CBitWriter bits;
        bits.Bits(4, 0).Bits(3, nSubLayersMinus1).Flag(true).Add(ProfileTierLevel(nSubLayersMinus1));
        bits.Ue(nId).Add(chroma).Ue(nWidth).Ue(288).Flag(!window.empty()).Ues(window);
        bits.Ue(nLumaDepthMinus8).Ue(nChromaDepthMinus8).Ue(nPocLsbMinus4).Add(Ordering(nSubLayersMinus1));
        bits.Ues(blocks).Ue(1).Ue(2).Add(tools).Add(sets).Flag(!longTerm.empty());
        for (size_t n = 0; n < longTerm.size(); ++n)
            n == 0 ? bits.Ue(longTerm[n]) : bits.Ue(longTerm[n] / 2).Flag(longTerm[n] % 2 != 0);
        return Unit(33, bits.Flag(true).Flag(false).Optional(vui).Rbsp(), nStartCodeLen);
    }
};

struct PPS
{
    bool bDependent = false;
    bool bOutputFlag = false;
    bool bExtraBit = false; // of three, the one that is read

    Bytes Nal() const
    {
        return Unit(34, CBitWriter().Ue(0).Ue(0).Flag(bDependent).Flag(bOutputFlag).Flag(bExtraBit).Rbsp());
    }
};

struct SLICE
{
    uint8_t nNalType = 19;
    uint32_t nType = 2;
    uint32_t nPocLsb = 0; // of 8 bits
    bool bFirst = true;
    std::optional<bool> dependent{}; // written, as the next two are, where the picture parameter set has it
    bool bExtraBit = false;
    bool bOutputFlag = false;
    uint8_t nTemporalIdPlus1 = 1;

    Bytes Nal(size_t nStartCodeLen = 4) const
    {
        CBitWriter bits;
        bits.Flag(bFirst).Bits(nNalType >= 16 ? 1 : 0, 1).Ue(2).Bits(dependent ? 1 : 0, dependent.value_or(false));
        if (!dependent.value_or(false))
            bits.Bits(bExtraBit ? 1 : 0, 0).Ue(nType).Bits(bOutputFlag ? 1 : 0, 0);
        bits.Bits(nNalType < 19 || nNalType > 20 ? 8 : 0, nPocLsb);
        return Unit(nNalType, bits.Rbsp() + Bytes(12, 0x55), nStartCodeLen, nTemporalIdPlus1);
    }
};

inline SLICE SliceP(uint8_t nNalType, uint32_t nPocLsb, bool bFirst = true)
{
    return {.nNalType = nNalType, .nType = 1, .nPocLsb = nPocLsb, .bFirst = bFirst};
}

// The unit alone, behind its start code of four bytes.
inline int ReadUnit(CH265ESParser& parser, const Bytes& unit, ES_PARSER_INFO& info)
{
    return parser.ParseNal(&unit[4], static_cast<int32_t>(unit.size() - 4), info);
}

inline std::string Told(int64_t nWidth, int64_t nHeight, int64_t nCodedWidth, int64_t nCodedHeight, int64_t nDepth)
{
    return std::to_string(nWidth) + "x" + std::to_string(nHeight) + " of " + std::to_string(nCodedWidth) + "x" +
           std::to_string(nCodedHeight) + " in " + std::to_string(nDepth);
}

// "subtype WxH of WxH in depth @rate structure": the coded size second.
inline std::string Parse(CH265ESParser& parser, const Bytes& bytes, int nResult = 0)
{
    FrameInfo frame{};
    EXPECT_EQ(parser.Parse(bytes.data(), LengthOf(bytes), frame), nResult);
    return std::to_string(int32_t{frame.frameSubType}) + " " +
           Told(frame.width, frame.height, frame.cropBeforeWidth, frame.cropBeforeHeight, frame.nVideoBitDepth) + " @" +
           std::to_string(int32_t{frame.frameRate}) + " " + std::to_string(int32_t{frame.pictrueStructure});
}

} // namespace Marvane::FrameSift::H265Units

#endif
