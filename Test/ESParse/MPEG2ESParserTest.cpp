#include "ESParse/MPEG2ESParser.h"

#include "Support/BitWriter.h"
#include "Support/Mutations.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

Bytes Sequence(uint32_t nWidth = 720, uint32_t nHeight = 576, uint32_t nAspect = 2, uint32_t nRateCode = 3)
{
    return CBitWriter()
        .Bits(32, MPEG2_SEQUENCE)
        .Bits(24, nWidth << 12 | nHeight)
        .Bits(8, nAspect << 4 | nRateCode)
        .Bits(32, 0x03A9A380)
        .Raw();
}

Bytes Extension(uint32_t nId, uint64_t nContent = 0x182000100000000)
{
    return CBitWriter().Bits(32, MPEG2_EXTENSION).Bits(4, nId).Bits(60, nContent).Raw();
}

Bytes Picture(uint32_t nType)
{
    return CBitWriter().Bits(32, MPEG2_PICTURE).Bits(10, 5).Bits(3, nType).Bits(19, 0x7FFF8).Raw();
}

Bytes PictureCoding(uint32_t nForward, uint32_t nBackward, uint32_t nStructure)
{
    return Extension(8, uint64_t{nForward} << 52 | uint64_t{nBackward} << 44 | (0xCULL | nStructure) << 40);
}

const Bytes sc_slice = {0, 0, 1, 1, 0x43, 0xFE, 0x1F, 0x68};
const Bytes sc_userData = {0, 0, 1, 0xB2, 'u', 's', 'e', 'r'};
const Bytes sc_group = {0, 0, 1, 0xB8, 0, 8, 0, 0x40};

struct PARSED
{
    explicit PARSED(const Bytes& bytes) { Parse(bytes); }
    void Parse(const Bytes& bytes) { nResult = parser.Parse(bytes.data(), LengthOf(bytes), frame); }

    CMPEG2ESParser parser;
    FrameInfo frame{};
    int nResult = 1;
};

} // namespace

TEST(MPEG2ESParser, ResultNamesTheFault)
{
    for (const auto& [pName, bytes, nResult] : Rows<const char*, Bytes, int>{
             {"sound", Sequence() + Extension(1) + Extension(2) + sc_group + Picture(1) + sc_slice, 0},
             {"a slice right behind a display extension with colours", Extension(2) + sc_slice, 0},
             {"last slice code", {0, 0, 1, 0xAF}, 0},
             {"behind the slice nothing counts", sc_slice + Sequence(0), 0},
             {"no slice", Sequence() + Picture(1), -1},
             {"nothing", {}, -1},
             {"shorter than a code", {0, 0, 1}, -1},
             {"width 0", Sequence(0) + sc_slice, -1},
             {"height 0", Sequence(720, 0) + sc_slice, -1},
             {"aspect ratio 0", Sequence(720, 576, 0) + sc_slice, -2},
             {"rate code 0", Sequence(720, 576, 2, 0) + sc_slice, -3},
             {"rate code 13", Sequence(720, 576, 2, 13) + sc_slice, -3},
             {"sequence extension without sequence", Extension(1) + sc_slice, -4},
             {"sequence extension behind user data", Sequence() + sc_userData + Extension(1) + sc_slice, -4},
             {"picture extension without picture", Sequence() + PictureCoding(0, 0, 3) + sc_slice, -4},
             {"picture extension behind a group head", Picture(1) + sc_group + PictureCoding(0, 0, 3) + sc_slice, 0},
             {"extensions that nobody reads", Extension(3) + Extension(7) + Extension(9) + sc_slice, 0}})
        EXPECT_EQ(PARSED(bytes).nResult, nResult) << pName;
    FrameInfo frame{};
    EXPECT_EQ(CMPEG2ESParser().Parse(nullptr, 100, frame), -1);
    EXPECT_EQ(CMPEG2ESParser().GetFrameSubType(nullptr, 100), -1);
    EXPECT_EQ(CMPEG2ESParser().GetEncodeType(), KX_ENCODE_VIDEO_MPEG2);
}

TEST(MPEG2ESParser, RatesTypesAndStructures)
{
    const int32_t rates[] = {0,     24000, 24, 25, 30000, 30, 50,
                             60000, 60,    15, 5,  10,    12}; // of the fractions, as they stand
    for (uint32_t nCode = 1; nCode <= 12; ++nCode)
        EXPECT_EQ(int32_t{PARSED(Sequence(720, 576, 2, nCode) + Picture(1) + sc_slice).frame.frameRate}, rates[nCode]);
    const int32_t types[] = {-1, 0, 1, 2, -1, -1, -1, -1};
    for (uint32_t nType = 0; nType < 8; ++nType) {
        const Bytes bytes = sc_group + Picture(nType) + sc_slice;
        EXPECT_EQ(int32_t{PARSED(bytes).frame.frameSubType}, types[nType]);
        EXPECT_EQ(CMPEG2ESParser().GetFrameSubType(bytes.data(), LengthOf(bytes)), types[nType]);
    }
    const Bytes late = sc_slice + Picture(1);
    EXPECT_EQ(CMPEG2ESParser().GetFrameSubType(late.data(), LengthOf(late)), -1);
    for (const auto& [nType, nForward, nBackward, nSubType] : Rows<uint32_t, uint32_t, uint32_t, int32_t>{
             {4, 0xFF, 0xFF, 0}, {4, 0x12, 0xFF, 1}, {4, 0x12, 0x34, 2}, {4, 0xFF, 0xF1, 2}, {2, 0xFF, 0xFF, 1}}) {
        const PARSED parsed(Picture(nType) + PictureCoding(nForward, nBackward, 2) + sc_slice);
        EXPECT_EQ(int32_t{parsed.frame.frameSubType}, nSubType);
        EXPECT_EQ(int32_t{parsed.frame.pictrueStructure}, 2);
    }
}

TEST(MPEG2ESParser, SizeHoldsForLaterFrames)
{
    PARSED parsed(Sequence(352, 288) + sc_userData + sc_slice); // user data suffice
    parsed.frame = {};
    parsed.Parse(Picture(2) + sc_slice);
    EXPECT_EQ((Fields{parsed.frame.width, parsed.frame.height, parsed.frame.frameRate}), (Fields{352, 288, 25}));
    // The high bits of the size are added as they stand, and lost at the next picture head.
    const Bytes extension = Extension(1, uint64_t{3} << 47 | uint64_t{1} << 45);
    const PARSED bare(Sequence() + extension + sc_slice);
    EXPECT_EQ((Fields{bare.frame.width, bare.frame.height,
                      PARSED(Sequence() + extension + Picture(1) + sc_slice).frame.width}),
              (Fields{3, 1, 720}));
}

TEST(MPEG2ESParser, FullFrame)
{
    CMPEG2ESParser parser;
    for (int nCode = 0; nCode < 256; ++nCode) {
        const Bytes bytes = {9, 0, 0, 0, 1, static_cast<uint8_t>(nCode)};
        const bool bFull = nCode <= 1 || nCode == 0xB3 || nCode == 0xB7 || nCode == 0xB8;
        EXPECT_EQ(parser.IsFullFrame(bytes.data(), 6), bFull) << nCode;
        EXPECT_EQ(parser.IsNextFrame(bytes.data(), 6), bFull) << nCode;
        EXPECT_FALSE(parser.IsFullFrame(bytes.data(), 5));
    }
    EXPECT_FALSE(parser.IsFullFrame(nullptr, 6));
}

// Once there is a slice, nothing behind it counts: not the end of the buffer either.
TEST(MPEG2ESParser, SurvivesMutations)
{
    const std::vector<Bytes> seeds = {Part(ReadSample("mpeg2/576i25_tff.m2v"), 0, 120),
                                      Sequence() + Extension(1) + sc_userData + Picture(4) +
                                          PictureCoding(0xFF, 0xFF, 3) + sc_slice};
    size_t nSlices = 0;
    ForEachMutation(seeds, 100000, 55, [&](std::span<uint8_t> bytes) {
        CMPEG2ESParser parser;
        FrameInfo frame{};
        frame.width = INT32_MAX;
        const auto nLen = static_cast<uint32_t>(bytes.size());
        const int nResult = parser.Parse(bytes.data(), nLen, frame);
        ASSERT_TRUE(nResult >= -4 && nResult <= 0);
        ASSERT_LE(parser.GetFrameSubType(bytes.data(), nLen), 2);
        parser.IsFullFrame(bytes.data(), nLen);
        if (nResult == 0) {
            const Bytes longer = Bytes(bytes.begin(), bytes.end()) + Sequence(0);
            FrameInfo again{};
            again.width = INT32_MAX;
            ASSERT_EQ(CMPEG2ESParser().Parse(longer.data(), LengthOf(longer), again), 0);
            ASSERT_EQ(std::memcmp(&frame, &again, sizeof frame), 0);
            ++nSlices;
        }
    });
    EXPECT_GT(nSlices, 10000U);
}

TEST(MPEG2ESParser, Samples)
{
    for (const std::string folder : {"mpeg1", "mpeg2"}) {
        for (const json& sample : SamplesIn(folder)) {
            SCOPED_TRACE(sample["file"]);
            const Bytes stream = ReadSample(sample["file"]);
            const json& facts = sample["facts"];
            // MPEG-1 has no field structure to tell.
            const auto& structure = facts["picture_structure"];
            CMPEG2ESParser parser;
            for (const json& unit : sample["units"]) {
                const Bytes bytes = UnitOf(stream, unit);
                FrameInfo frame{};
                ASSERT_EQ(parser.Parse(bytes.data(), LengthOf(bytes), frame), 0);
                EXPECT_EQ(int32_t{frame.width}, facts["width"]);
                EXPECT_EQ(int32_t{frame.height}, facts["height"]);
                EXPECT_EQ(std::to_string(frame.frameRate) + "/1", facts["frame_rate"]);
                EXPECT_EQ(int32_t{frame.frameSubType}, SubTypeOf(unit));
                EXPECT_EQ(parser.GetFrameSubType(bytes.data(), LengthOf(bytes)), SubTypeOf(unit));
                EXPECT_TRUE(parser.IsFullFrame(bytes.data(), LengthOf(bytes)));
                EXPECT_EQ(int32_t{frame.pictrueStructure}, structure.is_null() ? 0 : structure[0].get<int32_t>());
            }
        }
    }
}

} // namespace Marvane::FrameSift
