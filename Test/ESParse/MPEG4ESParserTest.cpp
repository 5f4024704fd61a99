#include "ESParse/MPEG4ESParser.h"

#include "Support/BitWriter.h"
#include "Support/LogOf.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

// The fields in which the heads of video object layers differ.
struct VOL
{
    uint32_t nType = 1;
    uint32_t nVerid = 0; // 0: no identifier
    uint32_t nAspect = 1;
    bool bControl = true;
    uint32_t nVbvBits = 0; // 79 in the standard
    uint32_t nShape = 0;
    uint32_t nResolution = 25;
    int nIncrement = 1; // -1: no fixed rate
    uint32_t nWidth = 704;
    uint32_t nHeight = 576;
};

Bytes Vol(const VOL& vol)
{
    CBitWriter writer;
    writer.Bits(32, MPEG4_FIRST_VOL).Bits(1, 0).Bits(8, vol.nType);
    writer.Optional(vol.nVerid != 0 ? CBitWriter().Bits(4, vol.nVerid).Bits(3, 1) : CBitWriter());
    writer.Bits(4, vol.nAspect).Bits(vol.nAspect == 15 ? 16 : 0, 0x0C0B).Flag(vol.bControl);
    if (vol.bControl)
        writer.Bits(3, 2).Flag(vol.nVbvBits != 0).Bits(std::min(vol.nVbvBits, 64U), UINT64_MAX);
    for (uint32_t n = 64; n < vol.nVbvBits; ++n)
        writer.Flag(true);
    writer.Bits(2, vol.nShape).Bits(vol.nShape == 3 && vol.nVerid != 1 ? 4 : 0, 5);
    writer.Flag(true).Bits(16, vol.nResolution).Flag(true).Flag(vol.nIncrement >= 0);
    if (vol.nIncrement >= 0)
        writer.Bits(vol.nResolution > 2 ? static_cast<uint32_t>(std::bit_width(vol.nResolution - 1)) : 1,
                    static_cast<uint32_t>(vol.nIncrement));
    return writer.Flag(true).Bits(13, vol.nWidth).Flag(true).Bits(13, vol.nHeight).Flag(true).Raw();
}

Bytes StudioVol(uint32_t nShape, uint32_t nChroma, uint32_t nDepth)
{
    CBitWriter writer;
    writer.Bits(32, MPEG4_LAST_VOL).Bits(1, 0).Bits(8, 14).Bits(4, 1).Bits(2, nShape).Bits(5, 0);
    writer.Bits(1, 0).Bits(2, nChroma).Bits(4, nDepth).Bits(1, 1).Bits(14, 9000).Bits(1, 1).Bits(14, 5000);
    return writer.Bits(8, 0xFF).Raw();
}

Bytes Sequence(uint8_t nProfileAndLevel)
{
    return {0, 0, 1, 0xB0, nProfileAndLevel};
}

Bytes Vop(uint8_t nCodingType)
{
    return {0, 0, 1, 0xB6, static_cast<uint8_t>(nCodingType << 6 | 0x10), 0x60, 0xD1, 0x82};
}

// Result, width, height and frameSubType of Parse; result, width and height of GetPicSize.
Fields AnswersOf(const Bytes& bytes)
{
    FrameInfo frame{};
    frame.frameSubType = 9;
    MPEG4_INFO info;
    const int nResult = CMPEG4ESParser().Parse(bytes.data(), LengthOf(bytes), frame);
    const bool bSize = CMPEG4ESParser::GetPicSize(bytes.data(), LengthOf(bytes), info);
    return {nResult, frame.width, frame.height, frame.frameSubType, bSize ? 1 : 0, info.nWidth, info.nHeight};
}

// Rate, and whether it is one to be trusted.
Fields RateOf(const Bytes& bytes)
{
    FrameInfo frame{};
    frame.frameRate = -1;
    bool bHbe = false;
    EXPECT_EQ(CMPEG4ESParser::ParseBlock20(bytes.data(), LengthOf(bytes), frame, bHbe), 0);
    return {frame.frameRate, bHbe ? 1 : 0};
}

const Bytes sc_colouredObject = {0, 0, 1, 0xB5, 0x88, 0x8E, 0x50, 0x10, 0x10, 0x13};
const Bytes sc_userData = {0, 0, 1, 0xB2, 'X', 'v', 'i', 'D', '0', '0', '6', '9'};
const Bytes sc_group = {0, 0, 1, 0xB3, 0x00, 0x10, 0x07};

} // namespace

TEST(MPEG4ESParser, SizeAndRateOfAVideoObjectLayer)
{
    for (const auto& [pName, vol, nRate, bSound] : Rows<const char*, VOL, int32_t, bool>{
             {"plain", {}, 25, true},
             {"a verid", {.nVerid = 2}, 25, true},
             {"an aspect ratio in full", {.nAspect = 15}, 25, true},
             {"vbv parameters as the rate is read", {.nVbvBits = 78}, 25, true},
             {"no rate", {.nResolution = 0}, -1, false},
             {"no fixed rate", {.nResolution = 12, .nIncrement = -1}, 12, true},
             {"NTSC", {.nResolution = 30000, .nIncrement = 1001}, 30, true},
             {"rounded up from one half", {.nResolution = 15, .nIncrement = 2}, 8, true},
             {"one bit of increment", {.nResolution = 1, .nIncrement = 1}, 1, true},
             {"endless", {.nResolution = 1, .nIncrement = 0}, INT32_MAX, false},
             {"50", {.nResolution = 50}, 50, true},
             {"31", {.nResolution = 31}, 31, false},
             {"grey with its extension", {.nVerid = 2, .nShape = 3}, 25, true},
             {"grey without", {.nVerid = 1, .nShape = 3}, 25, true}}) {
        SCOPED_TRACE(pName);
        EXPECT_EQ(RateOf(Part(Vol(vol), 4)), (Fields{nRate, bSound ? 1 : 0}));
        // The size is read behind vbv parameters of the right length, and of rectangles with a rate only.
        const bool bSize = vol.nVbvBits == 0 && vol.nShape == 0 && vol.nResolution != 0;
        const Fields expected = bSize ? Fields{0, 704, 576, 9, 1, 704, 576} : Fields{-1, 0, 0, 9, 0, 0, 0};
        EXPECT_EQ(AnswersOf(Vol(vol)), expected);
    }
    for (const VOL& vol : {VOL{.bControl = false}, VOL{.nVbvBits = 79}, VOL{.nType = 17, .nIncrement = -1}})
        EXPECT_EQ(AnswersOf(Vol(vol) + Vop(1)), (Fields{0, 704, 576, 9, 1, 704, 576}));
    EXPECT_EQ(AnswersOf(Vol({.nWidth = 8191, .nHeight = 1})), (Fields{0, 8191, 1, 9, 1, 8191, 1}));
}

TEST(MPEG4ESParser, PicturesAndTheHeadsInFrontOfThem)
{
    const Bytes size = Vol({});
    for (const auto& [pName, bytes, nSubType, bNext, answers] : Rows<const char*, Bytes, int, bool, Fields>{
             {"I", Vop(0), 0, true, {-1, 0, 0, 0, 0, 0, 0}},
             {"P", Vop(1), 1, true, {-1, 0, 0, 1, 0, 0, 0}},
             {"B", Vop(2), 2, true, {-1, 0, 0, 1, 0, 0, 0}},
             {"S", Vop(3), 1, false, {-1, 0, 0, 1, 0, 0, 0}},
             {"two", Vop(3) + Vop(0), 1, false, {-1, 0, 0, 0, 0, 0, 0}},
             {"in front of its size", Vop(0) + size, 0, true, {0, 704, 576, 0, 1, 704, 576}},
             {"behind all heads", sc_colouredObject + sc_userData + sc_group + Vop(0), 0, true, {-1, 0, 0, 0, 0, 0, 0}},
             {"a code in skipped bytes", {0, 0, 1, 0xB2, 0, 0, 1, 0xB6, 0x50}, 1, true, {-1, 0, 0, 9, 0, 0, 0}},
             {"no size, then a size", Vol({.nShape = 1}) + size, -1, false, {-1, 0, 0, 9, 0, 0, 0}},
             {"other codes", Bytes{0, 0, 1, 0xB1, 0, 0, 1, 0x1F} + size, -1, false, {0, 704, 576, 9, 1, 704, 576}}}) {
        SCOPED_TRACE(pName);
        CMPEG4ESParser parser;
        EXPECT_EQ(parser.GetFrameSubType(bytes.data(), LengthOf(bytes)), nSubType);
        EXPECT_EQ(parser.IsFullFrame(bytes.data(), LengthOf(bytes)), nSubType >= 0);
        EXPECT_EQ(parser.IsNextFrame(bytes.data(), LengthOf(bytes)), bNext);
        EXPECT_EQ(AnswersOf(bytes), answers);
    }
    CMPEG4ESParser parser;
    const Bytes cut = {0xFF, 0, 0, 1, 0xB6};
    EXPECT_EQ((Fields{parser.GetFrameSubType(cut.data(), 5), parser.IsFullFrame(cut.data(), 5),
                      parser.IsFullFrame(cut.data(), 4), parser.IsNextFrame(cut.data(), 5)}),
              (Fields{-1, 1, 0, 0}));
    FrameInfo frame{};
    MPEG4_INFO info;
    EXPECT_EQ((Fields{parser.Parse(nullptr, 9, frame), parser.Parse(cut.data(), 0, frame),
                      parser.GetFrameSubType(nullptr, 9), parser.GetPicSize(nullptr, 9, info),
                      parser.IsFullFrame(nullptr, 9), parser.IsNextFrame(nullptr, 9), parser.GetEncodeType()}),
              (Fields{-1, -1, -1, 0, 0, 0, KX_ENCODE_VIDEO_MPEG4}));
}

TEST(MPEG4ESParser, StudioProfilesStandAlone)
{
    const Bytes studioObject = {0, 0, 1, 0xB5, 0x11};
    const Bytes otherObject = {0, 0, 1, 0xB5, 0x12};
    const Bytes sound = StudioVol(0, 1, 10);
    const Fields sized = {0, 9000, 5000, 9, 1, 9000, 5000};
    const Fields refused = {-1, 0, 0, 9, 0, 0, 0};
    // Parse and GetPicSize tell each, but for what only Parse looks at.
    const std::string log = LogOf(
        [&] {
            for (const auto& [bytes, answers] : Rows<Bytes, Fields>{
                     {Sequence(0xE1) + studioObject + sound, sized},
                     {Sequence(0x08) + Sequence(0xE8) + sound, sized},
                     {Sequence(0xE0) + sound, sized}, // no level of a studio profile, which is no matter
                     {sound, refused},
                     {Sequence(0xE1) + StudioVol(0, 0, 10), refused},
                     {Sequence(0xE1) + StudioVol(0, 1, 8), refused},
                     {Sequence(0xE1) + Vol({}), refused},
                     {Sequence(0xE1) + otherObject + sound, {-1, 0, 0, 9, 1, 9000, 5000}},
                     {Sequence(0xE1) + Sequence(0xE9) + sound, {-1, 0, 0, 9, 1, 9000, 5000}}}) {
                EXPECT_EQ(AnswersOf(bytes), answers);
                std::puts("|");
            }
        },
        false);
    EXPECT_EQ(log, "|\n|\n|\n"
                   "warn MPEG4 Invalid data.\nwarn MPEG4 Invalid data.\n|\n"
                   "warn MPEG4 illegal chroma format\nwarn MPEG4 illegal chroma format\n|\n"
                   "warn MPEG4 error patch\nwarn MPEG4 error patch\n|\n"
                   "warn MPEG4 error patch\nwarn MPEG4 error patch\n|\n"
                   "warn VO type 2|\n"
                   "warn Mixes studio and non studio profile|\n");
    FrameInfo frame{};
    CMPEG4ESParser parser; // keeps what it saw
    EXPECT_EQ(parser.Parse(Sequence(0xE4).data(), 5, frame), -1);
    EXPECT_EQ(parser.Parse(Vol({}).data(), LengthOf(Vol({})), frame), -1);
}

TEST(MPEG4ESParser, Samples)
{
    for (const json& sample : SamplesIn("mpeg4")) {
        SCOPED_TRACE(sample["file"]);
        const Bytes stream = ReadSample(sample["file"]);
        const json& facts = sample["facts"];
        const int32_t nWidth = facts["width"];
        const int32_t nHeight = facts["height"];
        CMPEG4ESParser parser;
        for (const json& unit : sample["units"]) {
            const Bytes bytes = UnitOf(stream, unit);
            const int32_t nSubType = SubTypeOf(unit);
            ASSERT_EQ(parser.GetFrameSubType(bytes.data(), LengthOf(bytes)), nSubType);
            EXPECT_EQ(parser.IsNextFrame(bytes.data(), LengthOf(bytes)), unit["vop"] != "S");
            const Bytes code = {0, 0, 1, 0x20};
            const auto vol = std::search(bytes.begin(), bytes.end(), code.begin(), code.end());
            const bool bVol = vol != bytes.end();
            EXPECT_EQ(bVol, unit["key"]);
            EXPECT_EQ(AnswersOf(bytes), bVol ? (Fields{0, nWidth, nHeight, 9, 1, nWidth, nHeight})
                                             : (Fields{-1, 0, 0, nSubType == 0 ? 0 : 1, 0, 0, 0}));
            if (!bVol)
                continue;
            const double dRate =
                facts["vop_time_increment_resolution"].get<double>() / facts["fixed_vop_time_increment"].get<double>();
            // 11 bytes are as much as a plain head needs.
            EXPECT_EQ(RateOf(Bytes(vol + 4, vol + 15)), (Fields{static_cast<int64_t>(dRate + 0.5), 1}));
        }
    }
}

// Whether the ones are there or missing.
TEST(MPEG4ESParser, WhatIsMissingOfALayerReadsAsOnes)
{
    const Bytes head = {0xF9, 0x5E, 0xB1, 0x71, 0xD2, 0xF2, 0x92, 0x1B, 0x54, 0x11, 0x7A, 0x00, 0x00};
    for (size_t nLen = 0; nLen <= head.size(); ++nLen)
        EXPECT_EQ(RateOf(Part(head, 0, nLen)), RateOf(Part(head, 0, nLen) + Bytes(20 - nLen, 0xFF))) << nLen;
}

} // namespace Marvane::FrameSift
