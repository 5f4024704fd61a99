#include "ESParse/H265ESParser.h"

#include <gtest/gtest.h>

#include <chrono>

#include "ESParse/H265Nal.h"
#include "ESParse/H265TestSupport.h"
#include "Support/Mutations.h"

namespace Marvane::FrameSift {

namespace {

using VPS = H265_VPS_WRITER;
using SPS = H265_SPS_WRITER;
using PPS = H265_PPS_WRITER;
using SLICE = H265_SLICE_WRITER;

} // namespace

TEST(H265Nal, LegalUnitsAndSlices)
{
    CH265ESParser parser;
    for (uint32_t n = 0; n < 0x10000; ++n) {
        const uint8_t header[] = {static_cast<uint8_t>(n >> 8), static_cast<uint8_t>(n)};
        // forbidden bit, type, layer, temporal id
        ASSERT_EQ(parser.IsLegalNal(header, 2), n >> 15 == 0 && (n >> 3 & 0x3F) == 0) << n;
    }
    EXPECT_FALSE(parser.IsLegalNal(Bytes{0x40}.data(), 1) || parser.IsLegalNal(nullptr, 2));
    const std::string slices = "1111111111000000111111";
    for (uint8_t nType = 0; nType < 64; ++nType)
        EXPECT_EQ(CH265ESParser::IsH265VlcSlice(nType), nType < slices.size() && slices[nType] == '1') << int{nType};
}

TEST(H265Nal, EmulationPreventionIsTakenOut)
{
    const struct
    {
        Bytes source;
        uint32_t nRoom;
        Bytes left;
    } rows[] = {
        {{0, 0, 3, 0, 0, 3}, 9, {0, 0, 0, 0}},
        {{0, 0, 3, 3, 0, 0, 0, 3, 1}, 9, {0, 0, 3, 0, 0, 0, 1}},
        {{7, 0, 0, 3, 1}, 3, {7, 0, 0}},
        {{0, 0, 3, 0, 3}, 5, {0, 0, 0, 3}}, // what a removal joins is not looked at again
        {{1, 2, 3}, 0, {}},
    };
    for (const auto& row : rows) {
        Bytes target(row.nRoom + 1);
        const uint32_t nLen = LengthOf(row.source);
        target.resize(CH265ESParser::DiscardEmulationByte(row.source.data(), nLen, target.data(), row.nRoom));
        EXPECT_EQ(target, row.left);
    }
    EXPECT_EQ(CH265ESParser::DiscardEmulationByte(nullptr, 4, Bytes(4).data(), 4), 0U);
}

TEST(H265VPS, RateBehindEveryBranch)
{
    const struct
    {
        VPS vps;
        int nResult;
        int32_t nRate; // of one that held 7 before
    } rows[] = {
        {{.timing = {{1, 20}}}, 0, 20},
        {{.nSubLayersMinus1 = 6, .nMaxLayerId = 5, .nLayerSetsMinus1 = 9, .timing = {{2, 61}}}, 0, 30},
        {{.nSubLayersMinus1 = 7, .nLayerSetsMinus1 = 3, .timing = {{1, 3}}}, 0, 3},
        {{.timing = {{2, 1}}}, 0, 0},
        {{.timing = {{0, 20}}}, 0, 7},
        {{.timing = {{1, 0x80000001}}}, 0, -0x7FFFFFFF},
        {{}, 0, 7},
        {{.nMaxLayerId = 20, .nLayerSetsMinus1 = 63, .timing = {{1, 20}}}, 0, 20},
        {{.nMaxLayerId = 63, .nLayerSetsMinus1 = 63, .timing = {{1, 20}}}, 0, 1}, // longer than what is looked at: ones
        {{.nMaxLayerId = 1, .nLayerSetsMinus1 = 0xFFFFFFFE}, -1, 7},
    };
    for (const auto& row : rows) {
        CH265ESParser parser;
        ES_PARSER_INFO info{.frameRate = 7};
        EXPECT_EQ(ReadUnit(parser, row.vps.Unit(), info), row.nResult) << &row - rows;
        EXPECT_EQ(info.frameRate, row.nRate) << &row - rows;
    }
}

TEST(H265SPS, EveryBranchIsSteppedOver)
{
    const H265_PIC_SET three{.nNegative = 2, .nPositive = 1, .bInherits = true};
    const H265_PIC_SET allFour{.inherited = "uudd", .bInherits = true};
    const H265_PIC_SET twoOfFive{.inherited = "-u-d-", .bInherits = true};
    const H265_PIC_SET allThree{.inherited = "udu", .bInherits = true};
    const struct
    {
        const char* pName;
        SPS sps;
        const char* pTold = "352x288 of 352x288 in 8";
        int32_t nRate = 50;
    } rows[] = {
        {"plain", {}},
        {"sub-layers", {.nSubLayersMinus1 = 6}},
        {"one sub-layer", {.nSubLayersMinus1 = 1}},
        {"4:2:0", {.window = {{1, 2, 3, 5}}}, "346x272 of 352x288 in 8"},
        {"4:2:2", {.nChroma = 2, .window = {{1, 2, 3, 5}}}, "346x280 of 352x288 in 8"},
        {"4:4:4", {.nChroma = 3, .window = {{1, 2, 3, 5}}}, "349x280 of 352x288 in 8"},
        {"planes", {.nChroma = 3, .bSeparatePlanes = true, .nLumaDepthMinus8 = 2}, "352x288 of 352x288 in 10"},
        {"window beyond", {.window = {{200, 0, 0, 0}}}, "-48x288 of 352x288 in 8"},
        {"10 bit", {.nLumaDepthMinus8 = 2, .nChromaDepthMinus8 = 2}, "352x288 of 352x288 in 10"},
        {"grey", {.nChroma = 0, .nLumaDepthMinus8 = 4}, "352x288 of 352x288 in 12"},
        {"limits", {.nId = 15, .nPocLsbMinus4 = 12, .blocks = {27, 30, 27, 30}}},
        {"tools", {.bTools = true, .bWholeVui = true}},
        {"sets", {.sets = {three, allFour, twoOfFive, allThree, {.nNegative = 1}}, .nLongTerm = 3}},
        {"64 sets", {.sets = std::vector<H265_PIC_SET>(64)}},
        {"no VUI", {.bVui = false}, "352x288 of 352x288 in 8", 25},
        {"no timing", {.bWholeVui = true, .timing = {}}, "352x288 of 352x288 in 8", 25},
        {"rate below 1", {.timing = {{2, 1}}}, "352x288 of 352x288 in 8", 25},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        CH265ESParser parser;
        ES_PARSER_INFO info;
        EXPECT_EQ(ReadUnit(parser, row.sps.Unit(), info), 0);
        EXPECT_EQ(Told(info.frameWidth, info.frameHeight, info.frameCropBeforeWidth, info.frameCropBeforeHeight,
                       info.bitDepth),
                  row.pTold);
        EXPECT_EQ(info.frameRate, row.nRate);
        EXPECT_EQ(info.nColorPrimaries * 100 + info.nColorTransfer * 10 + info.nColorSpace,
                  row.sps.bWholeVui ? 463 : 0);
        H265_SPS sps{};
        const Bytes units = H265Unit(35, {0x50}, 3) + row.sps.Unit(3);
        EXPECT_TRUE(parser.GetSPSInfo(units.data(), LengthOf(units), sps));
        // Depths that differ are told by ParseSPS alone.
        EXPECT_EQ(sps.bit_depth_luma == 0, row.sps.nLumaDepthMinus8 != row.sps.nChromaDepthMinus8);
        EXPECT_EQ(Told(static_cast<int32_t>(sps.pic_width_in_luam_samples), sps.pic_height_in_luma_samples,
                       sps.cropBeforePicwidth_in_luam_samples, sps.cropBeforePicheight_in_luma_samples,
                       sps.bit_depth_luma == 0 ? row.sps.nLumaDepthMinus8 + 8 : sps.bit_depth_luma),
                  row.pTold);
    }
}

TEST(H265SPS, RefusedWithTheFunctionsName)
{
    const struct
    {
        SPS sps;
        const char* pMessage;
        bool bSize; // refused behind the size
        bool bByBoth = false;
    } rows[] = {
        {{.nSubLayersMinus1 = 7}, "sps max_sub_layer  is out of range.\n", false, true},
        {{.nId = 16}, "sps id  is out of range.\n", false, true},
        {{.nChroma = 4}, "chroma_format_idc is invalid.\n", false, true},
        {{.nLumaDepthMinus8 = 1}, "bit_depth_luma not equal bit_depth_chroma.\n", true, true},
        {{.nPocLsbMinus4 = 13}, "pic_order_cnt_lsb out range.\n", true},
        {{.blocks = {28, 0, 0, 0}}, "log2_min_luma_coding_block_size Invalid.\n", true},
        {{.blocks = {0, 31, 0, 0}}, "log2_diff_max_min_luma_coding_block_size Invalid.\n", true},
        {{.blocks = {0, 0, 1, 0}}, "log2_min_luma_transform_block_size Invalid.\n", true},
        {{.blocks = {0, 0, 0xFFFFFFFE, 0}}, "log2_min_luma_transform_block_size Invalid.\n", true},
        {{.blocks = {0, 0, 0, 31}}, "log2_diff_max_min_luma_transform_block_size Invalid.\n", true},
        {{.nSetsClaimed = 65}, "", true},
    };
    for (const auto& row : rows) {
        const Bytes unit = row.sps.Unit();
        CH265ESParser parser;
        ES_PARSER_INFO info;
        H265_SPS sps{};
        EXPECT_EQ(ReadUnit(parser, unit, info), -1);
        EXPECT_EQ(info.frameWidth, row.bSize ? 352 : 0);
        EXPECT_EQ(info.frameRate, 0);
        EXPECT_EQ(parser.GetSPSInfo(unit.data(), LengthOf(unit), sps), !row.bByBoth);
        const std::string log = LogOf([&] {
            ReadUnit(parser, unit, info);
            parser.GetSPSInfo(unit.data(), LengthOf(unit), sps);
        });
        EXPECT_EQ(CountOf(log, std::string(" ParseSPS ") + row.pMessage), *row.pMessage != '\0' ? 1U : 0U) << log;
        EXPECT_EQ(CountOf(log, std::string(" GetSPSInfo ") + row.pMessage), row.bByBoth ? 1U : 0U) << log;
        // It does not stop the scan.
        EXPECT_EQ(Parse(parser, unit + SLICE{}.Unit()).substr(0, 5), row.bSize ? "0 352" : "0 0x0");
    }
}

TEST(H265SPS, VuiRateWinsOverVpsRate)
{
    const auto rate = [](uint32_t nVpsRate, const H265_TIMING& vuiTiming) {
        CH265ESParser parser;
        ES_PARSER_INFO info;
        const Bytes units = VPS{.timing = {{1, nVpsRate}}}.Unit() + SPS{.timing = vuiTiming}.Unit() + SLICE{}.Unit();
        parser.Parse_KX(units.data(), static_cast<int32_t>(units.size()), info);
        return info.frameRate;
    };
    const char* pMessage = " ParseSPS Rate is not same in VPS and VUI, prior to use VUI\n";
    EXPECT_EQ(rate(25, {{1, 30}}), 30);
    EXPECT_EQ(CountOf(LogOf([&] { rate(25, {{1, 30}}); }), pMessage), 1U);
    EXPECT_EQ(CountOf(LogOf([&] { rate(30, {{1, 30}}), rate(0, {{1, 30}}), rate(30, {}); }), pMessage), 0U);
    EXPECT_EQ(rate(20, {}), 20);
}

TEST(H265Counts, RepeatedReadsEndAsIfAllWereDone)
{
    using Step = uint32_t (*)(CBitsStream&);
    const Step steps[] = {
        [](CBitsStream& bits) { return bits.GetOneBit(); },
        [](CBitsStream& bits) { return GetUe(bits) + bits.GetOneBit(); },
        [](CBitsStream& bits) { return GetFlag(bits) ? 1U : bits.GetBits(3); },
    };
    uint32_t nRandom = 1;
    const auto next = [&nRandom] { return nRandom = nRandom * 1664525 + 1013904223; };
    for (int nRound = 0; nRound < 3000; ++nRound) {
        Bytes bytes(next() >> 8 & 31);
        for (uint8_t& nByte : bytes)
            nByte = static_cast<uint8_t>(1U << (next() >> 28)); // zeros: long codes
        CBitsStream quick;
        quick.Init(bytes.data(), LengthOf(bytes));
        CBitsStream plain = quick;
        const Step pfnStep = steps[nRound % 3];
        const uint32_t nCount = next() >> 20 & 1023;
        uint32_t nSum = 0;
        for (uint32_t n = 0; n < nCount; ++n)
            nSum += pfnStep(plain);
        ASSERT_EQ(RepeatRead(quick, nCount, pfnStep), nSum);
        for (int n = 0; n < 9; ++n)
            ASSERT_EQ(quick.GetBits(13), plain.GetBits(13));
    }
}

TEST(H265Counts, BillionsTakeNoTime)
{
    const auto start = std::chrono::steady_clock::now();
    constexpr uint32_t nHuge = 0xFFFFFFFE;
    CH265ESParser parser;
    ES_PARSER_INFO info;
    for (uint32_t n = 0; n < 100; ++n) {
        // Of any length modulo a word: what repeats behind the end depends on it.
        const Bytes tail(n % 8, 0x40);
        ReadUnit(parser, SPS{.sets = {{.nNegative = nHuge, .nPositive = nHuge - n}}, .nSetsClaimed = 64}.Unit() + tail,
                 info);
        ReadUnit(parser, SPS{.nLongTerm = nHuge - n}.Unit() + tail, info);
        EXPECT_EQ(ReadUnit(parser, VPS{.nLayerSetsMinus1 = nHuge - n}.Unit() + tail, info), 0);
    }
    const Bytes ones(1 << 20, 0xFF);
    const Bytes sizeOfOnes = Bytes{4} + ones;
    EXPECT_EQ(parser.ParseSEI(ones.data(), 1 << 20, 39, info), -1);
    EXPECT_EQ(parser.ParseSEI(sizeOfOnes.data(), 1 << 20, 39, info), 0);
    Bytes openUnits; // none of them legal, so that the first has no end
    for (int n = 0; n < 1 << 18; ++n)
        openUnits.insert(openUnits.end(), {0, 0, 1, 0x81});
    EXPECT_EQ(Parse(parser, SPS{}.Unit() + openUnits).substr(0, 6), "-1 0x0");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(H265Damage, NothingIsReadOutsideAndNothingHangs)
{
    const std::vector<H265_PIC_SET> sets = {
        {.nNegative = 2}, {.inherited = "u-d", .bInherits = true}, {.nPositive = 60000}};
    const Bytes messages = H265Sei(1, Bytes(9, 0x12)) + H265Sei(137, Bytes(24, 3)) + H265Sei(144, Bytes(4, 1));
    const Bytes slices = SLICE{.nNalType = 1, .nType = 1, .nPocLsb = 7}.Unit(3) + SLICE{.bFirst = false}.Unit();
    const SPS whole{.bWholeVui = true, .bFieldInfo = true};
    const SPS deep{.nSubLayersMinus1 = 4, .bTools = true, .sets = sets, .nLongTerm = 2};
    const std::vector<Bytes> seeds = {
        VPS{.nMaxLayerId = 3, .nLayerSetsMinus1 = 2}.Unit() + whole.Unit() + H265Unit(39, messages) + slices,
        deep.Unit(3) + PPS{.bDependent = true, .bOutputFlag = true, .bExtraBit = true}.Unit() + slices,
        slices + VPS{.nLayerSetsMinus1 = 0xFFFFFFFE}.Unit() + SPS{.window = {{1, 2, 3, 4}}}.Unit()};
    CH265ESParser kept;
    size_t nTurn = 0;
    size_t nRead = 0;
    ForEachMutation(seeds, 100000, 265, [&](std::span<uint8_t> bytes) {
        const auto nSize = static_cast<uint32_t>(bytes.size());
        const auto nLen = static_cast<int32_t>(nSize);
        FrameInfo frame{};
        ES_PARSER_INFO info;
        H265_SPS sps{};
        h265Slice slice{};
        kept.Parse(bytes.data(), nSize, frame);
        kept.IsFullFrame(bytes.data(), nSize);
        kept.IsNextFrame(bytes.data(), nSize);
        nRead += kept.GetSPSInfo(bytes.data(), nSize, sps) ? 1U : 0U;
        const int nSubType = kept.GetFrameSubType(bytes.data(), nSize);
        ASSERT_TRUE(nSubType >= -1 && nSubType <= 2);
        if (nLen > 0) { // as one unit of each kind in turn
            constexpr uint8_t headers[] = {0x40, 0x42, 0x44, 0x4E, 0x02, 0x26};
            bytes[0] = headers[nTurn++ % std::size(headers)];
            kept.ParseNal(bytes.data(), nLen, info);
            kept.ParseSliceHeader(bytes.data(), nLen, slice);
        }
        ASSERT_TRUE(info.picStruct >= 0 && info.picStruct <= 3);
    });
    EXPECT_GT(nRead, 10000U); // else the damage never reaches what lies deep
}

} // namespace Marvane::FrameSift
