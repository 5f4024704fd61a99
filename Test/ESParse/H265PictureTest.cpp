// What messages and slices tell of pictures, and what a scan makes of it.
#include "ESParse/H265Units.h"

namespace Marvane::FrameSift {

using namespace H265Units;

TEST(H265Sei, WhichMessagesAreRead)
{
    const Bytes light = Sei(144, CBitWriter().Bits(16, 1000).Bits(16, 400).Raw());
    CH265ESParser parser;
    const auto read = [&](const Bytes& messages, uint8_t nNalType = 39) {
        ES_PARSER_INFO info;
        EXPECT_EQ(ReadUnit(parser, Unit(nNalType, messages), info), 0);
        return int{info.nMaxContentLightLevel};
    };
    const Bytes behindLong = Sei(300, Bytes(600, 7)) + light + Bytes(9, 0x80);
    EXPECT_EQ(read(behindLong), 1000);
    EXPECT_EQ(read(behindLong, 40), 0); // a suffix
    // A message in the last 8 bytes is left alone; in a scan, the next start code stands behind it.
    EXPECT_EQ(read(light + Bytes{0x80, 0}), 0);
    ES_PARSER_INFO info;
    const Bytes scanned = Unit(39, light + Bytes{0x80}, 3) + SLICE{}.Nal(3);
    EXPECT_EQ(parser.Parse_KX(scanned.data(), static_cast<int32_t>(scanned.size()), info), 0);
    EXPECT_EQ(info.nMaxContentLightLevel, 1000);
}

TEST(H265Sei, PictureTiming)
{
    CH265ESParser parser;
    ES_PARSER_INFO info;
    const auto read = [&](uint32_t nPicStruct, uint32_t nScanType) {
        const Bytes payload = CBitWriter().Bits(4, nPicStruct).Bits(2, nScanType).Bits(34, 0).Raw();
        info.picStruct = 9;
        EXPECT_EQ(ReadUnit(parser, Unit(39, Sei(1, payload) + Bytes(4, 0x80)), info), 0);
        return info.picStruct;
    };
    EXPECT_EQ(read(1, 0), 9); // not announced by a parameter set
    ReadUnit(parser, SPS{.vui = Vui(Timing(1, 50), false, true)}.Nal(), info);
    ReadUnit(parser, SPS{.vui = {}}.Nal(), info); // leaves the announcement as it was
    const std::string structures = "3123333331212999";
    for (uint32_t n = 0; n < 16; ++n)
        EXPECT_EQ(read(n, 0), structures[n] - '0') << n;
    // Each tells a scan type that disagrees, and of these two lets it pass.
    EXPECT_EQ(
        LogOf([&] { read(0, 0), read(0, 1), read(11, 0), read(11, 1), read(12, 2); }),
        "warn Parse_SEI_Pic_Timing pic_struct 0 indicates it's coded as FRAME, but source_scan_type is 0\n"
        "warn Parse_SEI_Pic_Timing pic_struct 11 indicates it's coded INTERLACED(Top), but source_scan_type is 1\n"
        "warn Parse_SEI_Pic_Timing pic_struct 12 indicates it's coded INTERLACED(Bottom), but source_scan_type is 2\n");
    EXPECT_EQ(LogOf([&] { ReadUnit(parser, Unit(39, Bytes(20, 0xFF)), info); }), "warn ParseSEI Invalid Data\n");
}

TEST(H265Slice, SubTypes)
{
    CH265ESParser parser;
    ES_PARSER_INFO info{.frameSubType = -1};
    const auto add = [&](const SLICE& slice) {
        EXPECT_EQ(ReadUnit(parser, slice.Nal(), info), 0);
        return info.frameSubType;
    };
    // The weakest of a picture's slices wins.
    const uint32_t types[] = {2, 1, 2, 0, 1, 2, 3};
    const int32_t subTypes[] = {0, 1, 1, 2, 2, 2, 2};
    for (size_t n = 0; n < std::size(types); ++n)
        EXPECT_EQ(add({.nNalType = 1, .nType = types[n]}), subTypes[n]);
    EXPECT_EQ(LogOf([&] { add({.nType = 3}); }), "trace ParseSlice Unknown Slice Type 3\n");
    const auto read = [&](const PPS& pps, const SLICE& slice) {
        EXPECT_EQ(ReadUnit(parser, pps.Nal(), info), 0);
        info.frameSubType = -1;
        return add(slice);
    };
    EXPECT_EQ(read({}, {.nType = 1, .bFirst = false}), 1); // no address is stepped over
    EXPECT_EQ(read({.bDependent = true}, {.nType = 1}), 1);
    EXPECT_EQ(read({.bDependent = true}, {.nType = 1, .bFirst = false, .dependent = false}), 1);
    EXPECT_EQ(read({.bDependent = true}, {.nType = 1, .bFirst = false, .dependent = true}), -1);
    EXPECT_EQ(read({.bExtraBit = true}, {.nNalType = 0, .bExtraBit = true}), 0);
}

TEST(H265Slice, PictureOrder)
{
    CH265ESParser parser;
    ES_PARSER_INFO info;
    const auto read = [&](const SLICE& slice, const PPS& pps = {}) -> std::string {
        ReadUnit(parser, pps.Nal(), info);
        h265Slice head{};
        head.frame_num = 77;
        const Bytes unit = slice.Nal(3);
        if (!parser.ParseSliceHeader(&unit[3], static_cast<int32_t>(unit.size() - 3), head))
            return "refused";
        return std::to_string(head.frame_type) + (head.first_slice_segment_in_pic_flag != 0 ? " first " : " ") +
               std::to_string(static_cast<int32_t>(head.frame_num));
    };
    ReadUnit(parser, SPS{}.Nal(), info);
    EXPECT_EQ(read({.nPocLsb = 9}), "0 first 0");
    EXPECT_EQ(read(SliceP(1, 100)), "1 first 100");
    EXPECT_EQ(read(SliceP(1, 200)), "1 first 200");
    EXPECT_EQ(read(SliceP(1, 10)), "1 first 266");
    for (const int nType : {0, 2, 4, 6, 7, 8, 9})
        EXPECT_EQ(read(SliceP(static_cast<uint8_t>(nType), 130)), "1 first 386"); // none that others count from
    EXPECT_EQ(read({.nNalType = 1, .nPocLsb = 130, .nTemporalIdPlus1 = 2}), "0 first 386");
    EXPECT_EQ(read(SliceP(1, 250)), "1 first 250"); // from 266, not from 386
    EXPECT_EQ(read(SliceP(16, 5)), "1 first 5");    // begins anew
    EXPECT_EQ(read(SliceP(21, 250)), "1 first -6");

    const PPS all{.bDependent = true, .bOutputFlag = true, .bExtraBit = true};
    const SLICE second{
        .nNalType = 1, .nPocLsb = 3, .bFirst = false, .dependent = false, .bExtraBit = true, .bOutputFlag = true};
    EXPECT_EQ(read(second, all), "0 3");
    EXPECT_EQ(read({.nNalType = 1, .bFirst = false, .dependent = true}, all), "0 77");
    EXPECT_EQ(read({.nType = 3}), "refused");
    EXPECT_EQ(read({.nTemporalIdPlus1 = 0}), "refused");
    for (const int nType : {10, 15, 22, 32})
        EXPECT_EQ(read(SliceP(static_cast<uint8_t>(nType), 1)), "refused");
    h265Slice head{};
    const Bytes unit = SLICE{}.Nal();
    EXPECT_TRUE(parser.ParseSliceHeader(&unit[4], 11, head));
    EXPECT_FALSE(parser.ParseSliceHeader(&unit[4], 10, head) || parser.ParseSliceHeader(nullptr, 11, head));

    H265_SPS sps{};
    sps.log2_max_pic_order_cnt_lsb = 4;
    EXPECT_EQ(CH265ESParser::ComputePOC(&sps, -3, 15, 1), -1); // from a remainder of -3
    EXPECT_EQ(CH265ESParser::ComputePOC(&sps, 24, 0, 1), 32);  // halfway counts as ahead
    EXPECT_EQ(CH265ESParser::ComputePOC(&sps, 16, 8, 1), 24);
    sps.log2_max_pic_order_cnt_lsb = 0xFFFFFFFF;
    EXPECT_EQ(CH265ESParser::ComputePOC(&sps, INT32_MAX, INT32_MIN, 1), 0);
}

TEST(H265Parse, FramesInheritFromTheLastIFrame)
{
    const Bytes timing = Unit(39, Sei(1, {0x10, 0, 0, 0, 0}) + Bytes(4, 0x80));
    const Bytes sps = SPS{.vui = Vui(Timing(1, 50), false, true)}.Nal();
    const Bytes other = SPS{.nWidth = 64, .nLumaDepthMinus8 = 2, .nChromaDepthMinus8 = 2}.Nal();
    const Bytes frameI = SLICE{}.Nal();
    const Bytes frameP = SliceP(1, 0).Nal();
    CH265ESParser parser;
    EXPECT_EQ(Parse(parser, frameI), "0 0x0 of 0x0 in 0 @0 0");
    EXPECT_EQ(Parse(parser, sps + timing + frameI), "0 352x288 of 352x288 in 8 @50 1");
    EXPECT_EQ(Parse(parser, Bytes(5, 0)), "-1 352x288 of 352x288 in 8 @50 1");
    // Of its own, a P frame tells its subtype only, and the depth.
    EXPECT_EQ(Parse(parser, other + timing + frameP), "1 352x288 of 352x288 in 10 @50 1");
    EXPECT_EQ(Parse(parser, VPS{.timing = Timing(1, 9)}.Nal() + frameI), "0 352x288 of 352x288 in 10 @50 0");
    EXPECT_EQ(Parse(parser, other + frameI), "0 64x288 of 64x288 in 10 @50 0");
    EXPECT_EQ(parser.GetFrameSubType(frameP.data(), LengthOf(frameP)), 1);
    EXPECT_EQ(parser.GetEncodeType(), KX_ENCODE_VIDEO_ZO_H265);
    EXPECT_EQ(Parse(parser, {}, -1), "-1 64x288 of 64x288 in 10 @50 0");
}

TEST(H265Parse, WhereTheScanEnds)
{
    const Bytes sps = SPS{}.Nal();
    const Bytes slice = SLICE{}.Nal();
    const Bytes higherLayer = NalUnit({0x43, 0x01}, Bytes(40, 0x55));
    CH265ESParser parser;
    EXPECT_EQ(Parse(parser, slice + sps + slice), "0 0x0 of 0x0 in 0 @0 0"); // not past the first slice
    EXPECT_EQ(Parse(parser, sps + higherLayer), "-1 0x0 of 0x0 in 0 @0 0");  // the last unit is left alone
    EXPECT_EQ(Parse(parser, sps + higherLayer + slice), "0 352x288 of 352x288 in 8 @50 0");

    // Of last units only one with a single byte is read; from here on slices may be dependent.
    const Bytes dependent = SLICE{.bFirst = false, .dependent = true}.Nal();
    const Bytes pps = Unit(34, {0xE0, 0x80}, 3);
    ES_PARSER_INFO info;
    for (const int32_t nLen : {7, 6}) {
        EXPECT_EQ(parser.Parse_KX(pps.data(), nLen, info), 0);
        EXPECT_EQ(parser.GetFrameSubType(dependent.data(), LengthOf(dependent)) == -1, nLen == 6);
    }

    // A slice that goes through ParseNal ends the next scan behind its first unit.
    const Bytes frame = PPS{}.Nal() + sps + slice;
    EXPECT_EQ(ReadUnit(parser, slice, info), 0);
    EXPECT_EQ(parser.GetFrameSubType(frame.data(), LengthOf(frame)), -1);
    EXPECT_EQ(parser.GetFrameSubType(frame.data(), LengthOf(frame)), 0);
    EXPECT_EQ(ReadUnit(parser, slice, info), 0);
    EXPECT_EQ(parser.GetFrameSubType(slice.data(), LengthOf(slice)), 0); // a slice at the front takes that back
    EXPECT_EQ(parser.GetFrameSubType(frame.data(), LengthOf(frame)), 0);
    for (const Bytes& refused : {Bytes{0xC2, 1, 0}, Bytes{0x42}, Bytes{}}) // forbidden bit; cut off; nothing
        EXPECT_EQ(parser.ParseNal(refused.data(), static_cast<int32_t>(refused.size()), info), -1);
}

TEST(H265FrameBorder, FullAndNextFrame)
{
    const Bytes sps = SPS{}.Nal();
    CH265ESParser full;
    ES_PARSER_INFO info;
    ReadUnit(full, sps, info);
    CH265ESParser next = full;
    for (const auto& [pName, bytes, bFull, bNext] : Rows<const char*, Bytes, bool, bool>{
             {"first slice", SLICE{}.Nal(), true, true},
             {"next slice of it", SLICE{.bFirst = false}.Nal(3), false, false},
             {"first slice, same count", SLICE{}.Nal(3), true, true},
             {"another count", SliceP(1, 1, false).Nal(), true, true},
             {"the same again", SliceP(1, 1, false).Nal(), false, false},
             {"message, then the same", Unit(39, {5, 0}) + SliceP(1, 1, false).Nal(), false, false},
             {"delimiter, then a first one", Unit(35, {0x50}) + SliceP(1, 1).Nal(), true, true},
             {"parameter set", PPS{}.Nal(), false, true},
             {"of a higher layer", NalUnit({0x45, 0x01}, {0x80}), false, false},
             {"slice cut off", {0, 0, 1, 0x26, 1, 0x80}, false, false},
             {"header cut off", {0, 0, 1, 0x40}, false, false}}) {
        EXPECT_EQ(full.IsFullFrame(bytes.data(), LengthOf(bytes)), bFull) << pName;
        EXPECT_EQ(next.IsNextFrame(bytes.data(), LengthOf(bytes)), bNext) << pName;
    }
    EXPECT_FALSE(full.IsFullFrame(nullptr, 9) || next.IsNextFrame(nullptr, 9) || next.IsSVC());
}

} // namespace Marvane::FrameSift
