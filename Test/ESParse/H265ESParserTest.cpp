#include "ESParse/H265ESParser.h"

#include <chrono>

#include "ESParse/H265Nal.h"
#include "ESParse/H265Units.h"
#include "Support/Mutations.h"

namespace Marvane::FrameSift {

using namespace H265Units;

namespace {

// Their number, and each of them.
CBitWriter Sets(uint32_t nCount, std::initializer_list<CBitWriter> sets)
{
    CBitWriter bits;
    bits.Ue(nCount);
    for (const CBitWriter& set : sets)
        bits.Add(set);
    return bits;
}

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
    const std::string slices = "1111111111000000111111" + std::string(42, '0');
    for (uint8_t nType = 0; nType < 64; ++nType)
        EXPECT_EQ(CH265ESParser::IsH265VlcSlice(nType), slices[nType] == '1') << int{nType};
}

TEST(H265VPS, RateBehindEveryBranch)
{
    for (const auto& [vps, nResult, nRate] : Rows<VPS, int, int32_t>{
             // the rate of one that held 7 before
             {{.timing = Timing(1, 20)}, 0, 20},
             {{.nSubLayersMinus1 = 6, .nMaxLayerId = 5, .nLayerSetsMinus1 = 9, .timing = Timing(2, 61)}, 0, 30},
             {{.timing = Timing(2, 1)}, 0, 0},
             {{.timing = Timing(0, 20)}, 0, 7},
             {{.timing = Timing(1, 0x80000001)}, 0, -0x7FFFFFFF},
             {{}, 0, 7},
             // longer than what is looked at: ones
             {{.nMaxLayerId = 63, .nLayerSetsMinus1 = 63, .timing = Timing(1, 20)}, 0, 1},
             {{.nMaxLayerId = 1, .nLayerSetsMinus1 = 0xFFFFFFFE}, -1, 7}}) {
        CH265ESParser parser;
        ES_PARSER_INFO info{.frameRate = 7};
        EXPECT_EQ(ReadUnit(parser, vps.Nal(), info), nResult);
        EXPECT_EQ(info.frameRate, nRate);
    }
}

TEST(H265SPS, EveryBranchIsSteppedOver)
{
    const CBitWriter grey = CBitWriter().Ue(0);
    const CBitWriter c422 = CBitWriter().Ue(2);
    const CBitWriter c444 = CBitWriter().Ue(3).Flag(false);
    const CBitWriter planes = CBitWriter().Ue(3).Flag(true);
    const CBitWriter five =
        Sets(5, {PicSet(2, 1, true), InheritedSet("uudd"), InheritedSet("-u-d-"), InheritedSet("udu"), PicSet(1, 0)});
    CBitWriter many = CBitWriter().Ue(64);
    for (int n = 0; n < 64; ++n)
        many.Add(PicSet(0, 0));
    constexpr const char* pPlain = "352x288 of 352x288 in 8";
    for (const auto& [pName, sps, pTold, nRate] : Rows<const char*, SPS, const char*, int32_t>{
             {"sub-layers", {.nSubLayersMinus1 = 6}, pPlain, 50},
             {"4:2:0", {.window = {1, 2, 3, 5}}, "346x272 of 352x288 in 8", 50},
             {"4:2:2", {.chroma = c422, .window = {1, 2, 3, 5}}, "346x280 of 352x288 in 8", 50},
             {"4:4:4", {.chroma = c444, .window = {1, 2, 3, 5}}, "349x280 of 352x288 in 8", 50},
             {"planes", {.chroma = planes, .nLumaDepthMinus8 = 2}, "352x288 of 352x288 in 10", 50},
             {"window beyond", {.window = {200, 0, 0, 0}}, "-48x288 of 352x288 in 8", 50},
             {"grey", {.chroma = grey, .nLumaDepthMinus8 = 4}, "352x288 of 352x288 in 12", 50},
             {"limits", {.nId = 15, .nPocLsbMinus4 = 12, .blocks = {27, 30, 27, 30}}, pPlain, 50},
             {"tools", {.tools = AllTools(), .vui = Vui(Timing(1, 50), true)}, pPlain, 50},
             {"sets", {.sets = five, .longTerm = {3, 0, 3, 4}}, pPlain, 50},
             {"64 sets", {.sets = many}, pPlain, 50},
             {"no VUI", {.vui = {}}, pPlain, 25},
             {"no timing", {.vui = Vui({}, true)}, pPlain, 25},
             {"rate below 1", {.vui = Vui(Timing(2, 1))}, pPlain, 25}}) {
        SCOPED_TRACE(pName);
        CH265ESParser parser;
        ES_PARSER_INFO info;
        EXPECT_EQ(ReadUnit(parser, sps.Nal(), info), 0);
        EXPECT_EQ(Told(info.frameWidth, info.frameHeight, info.frameCropBeforeWidth, info.frameCropBeforeHeight,
                       info.bitDepth),
                  pTold);
        EXPECT_EQ(info.frameRate, nRate);
        const bool bColour = std::string("tools no timing").find(pName) != std::string::npos;
        EXPECT_EQ(info.nColorPrimaries * 100 + info.nColorTransfer * 10 + info.nColorSpace, bColour ? 463 : 0);
        H265_SPS asked{};
        const Bytes units = Unit(35, {0x50}, 3) + sps.Nal(3);
        EXPECT_TRUE(parser.GetSPSInfo(units.data(), LengthOf(units), asked));
        // Depths that differ are told by ParseSPS alone.
        EXPECT_EQ(asked.bit_depth_luma == 0, sps.nLumaDepthMinus8 != sps.nChromaDepthMinus8);
        EXPECT_EQ(Told(static_cast<int32_t>(asked.pic_width_in_luam_samples), asked.pic_height_in_luma_samples,
                       asked.cropBeforePicwidth_in_luam_samples, asked.cropBeforePicheight_in_luma_samples,
                       asked.bit_depth_luma == 0 ? sps.nLumaDepthMinus8 + 8 : asked.bit_depth_luma),
                  pTold);
    }
}

TEST(H265SPS, RefusedWithTheFunctionsName)
{
    const Rows<SPS, std::string, bool, bool> rows = {
        // refused behind the size; by GetSPSInfo too
        {{.nSubLayersMinus1 = 7}, "sps max_sub_layer  is out of range.", false, true},
        {{.nId = 16}, "sps id  is out of range.", false, true},
        {{.chroma = CBitWriter().Ue(4)}, "chroma_format_idc is invalid.", false, true},
        {{.nLumaDepthMinus8 = 1}, "bit_depth_luma not equal bit_depth_chroma.", true, true},
        {{.nPocLsbMinus4 = 13}, "pic_order_cnt_lsb out range.", true, false},
        {{.blocks = {28, 0, 0, 0}}, "log2_min_luma_coding_block_size Invalid.", true, false},
        {{.blocks = {0, 31, 0, 0}}, "log2_diff_max_min_luma_coding_block_size Invalid.", true, false},
        {{.blocks = {0, 0, 1, 0}}, "log2_min_luma_transform_block_size Invalid.", true, false},
        {{.blocks = {0, 0, 0xFFFFFFFE, 0}}, "log2_min_luma_transform_block_size Invalid.", true, false},
        {{.blocks = {0, 0, 0, 31}}, "log2_diff_max_min_luma_transform_block_size Invalid.", true, false},
        {{.sets = CBitWriter().Ue(65)}, "", true, false}};
    std::string expected;
    for (const auto& [sps, message, bSize, bByBoth] : rows) {
        const Bytes unit = sps.Nal();
        CH265ESParser parser;
        ES_PARSER_INFO info;
        EXPECT_EQ(ReadUnit(parser, unit, info), -1);
        EXPECT_EQ(info.frameWidth, bSize ? 352 : 0);
        EXPECT_EQ(info.frameRate, 0);
        // It does not stop the scan.
        EXPECT_EQ(Parse(parser, unit + SLICE{}.Nal()).substr(0, 5), bSize ? "0 352" : "0 0x0");
        expected += message.empty() ? "" : "warn ParseSPS " + message + "\n";
        expected += bByBoth ? "warn GetSPSInfo " + message + "\n" : "";
    }
    EXPECT_EQ(LogOf([&] {
                  for (const auto& [sps, message, bSize, bByBoth] : rows) {
                      const Bytes unit = sps.Nal();
                      CH265ESParser parser;
                      ES_PARSER_INFO info;
                      H265_SPS asked{};
                      ReadUnit(parser, unit, info);
                      EXPECT_EQ(parser.GetSPSInfo(unit.data(), LengthOf(unit), asked), !bByBoth);
                  }
              }),
              expected);
}

TEST(H265SPS, VuiRateWinsOverVpsRate)
{
    const auto rate = [](uint32_t nVpsRate, const CBitWriter& vuiTiming) {
        CH265ESParser parser;
        ES_PARSER_INFO info;
        const Bytes units = VPS{.timing = Timing(1, nVpsRate)}.Nal() + SPS{.vui = Vui(vuiTiming)}.Nal() + SLICE{}.Nal();
        parser.Parse_KX(units.data(), static_cast<int32_t>(units.size()), info);
        return info.frameRate;
    };
    EXPECT_EQ(LogOf([&] {
                  EXPECT_EQ(rate(30, Timing(1, 30)), 30);
                  EXPECT_EQ(rate(0, Timing(1, 30)), 30);
                  EXPECT_EQ(rate(20, {}), 20);
                  EXPECT_EQ(rate(25, Timing(1, 30)), 30);
              }),
              "warn ParseSPS Rate is not same in VPS and VUI, prior to use VUI\n");
}

TEST(H265Counts, RepeatedReadsEndAsIfAllWereDone)
{
    using Step = uint32_t (*)(CBitsStream&);
    const Step steps[] = {
        [](CBitsStream& bits) { return bits.GetOneBit(); },
        [](CBitsStream& bits) { return GetUe(bits) + bits.GetOneBit(); },
        [](CBitsStream& bits) { return GetFlag(bits) ? 1U : bits.GetBits(3); },
    };
    std::mt19937 random(1);
    for (size_t nRound = 0; nRound < 3000; ++nRound) {
        Bytes bytes(random() % 32);
        for (uint8_t& nByte : bytes)
            nByte = static_cast<uint8_t>(1U << random() % 16); // zeros: long codes
        CBitsStream quick;
        quick.Init(bytes.data(), LengthOf(bytes));
        CBitsStream plain = quick;
        const Step pfnStep = steps[nRound % 3];
        const uint32_t nCount = random() % 1024;
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
        ReadUnit(parser, SPS{.sets = CBitWriter().Ue(64).Add(PicSet(nHuge, nHuge - n))}.Nal() + tail, info);
        ReadUnit(parser, SPS{.longTerm = {nHuge - n}}.Nal() + tail, info);
        EXPECT_EQ(ReadUnit(parser, VPS{.nLayerSetsMinus1 = nHuge - n}.Nal() + tail, info), 0);
    }
    const Bytes ones(1 << 20, 0xFF);
    const Bytes sizeOfOnes = Bytes{4} + ones;
    EXPECT_EQ(parser.ParseSEI(ones.data(), 1 << 20, 39, info), -1);
    EXPECT_EQ(parser.ParseSEI(sizeOfOnes.data(), 1 << 20, 39, info), 0);
    Bytes openUnits; // none of them legal, so that the first has no end
    for (int n = 0; n < 1 << 18; ++n)
        openUnits.insert(openUnits.end(), {0, 0, 1, 0x81});
    EXPECT_EQ(Parse(parser, SPS{}.Nal() + openUnits).substr(0, 6), "-1 0x0");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(H265Damage, NothingIsReadOutsideAndNothingHangs)
{
    const CBitWriter sets = Sets(3, {PicSet(2, 0), InheritedSet("u-d"), PicSet(0, 60000)});
    const Bytes messages = Sei(1, Bytes(9, 0x12)) + Sei(137, Bytes(24, 3)) + Sei(144, Bytes(4, 1));
    const Bytes slices = SliceP(1, 7).Nal(3) + SLICE{.bFirst = false}.Nal();
    const SPS whole{.vui = Vui(Timing(1, 50), true, true)};
    const SPS deep{.nSubLayersMinus1 = 4, .tools = AllTools(), .sets = sets, .longTerm = {2, 0, 3}};
    const std::vector<Bytes> seeds = {
        VPS{.nMaxLayerId = 3, .nLayerSetsMinus1 = 2}.Nal() + whole.Nal() + Unit(39, messages) + slices,
        deep.Nal(3) + PPS{.bDependent = true, .bOutputFlag = true, .bExtraBit = true}.Nal() + slices,
        slices + VPS{.nLayerSetsMinus1 = 0xFFFFFFFE}.Nal() + SPS{.window = {1, 2, 3, 4}}.Nal()};
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
