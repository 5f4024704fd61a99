#include "ESParse/MPEG2ESParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#endif

#include "Support/BitWriter.h"
#include "Support/Mutations.h"

namespace Marvane::FrameSift {

namespace {

Bytes Sequence(uint32_t nWidth = 720, uint32_t nHeight = 576, uint32_t nAspect = 2, uint32_t nRateCode = 3)
{
    return CBitWriter()
        .Bits(32, MPEG2_SEQUENCE)
        .Bits(12, nWidth)
        .Bits(12, nHeight)
        .Bits(4, nAspect)
        .Bits(4, nRateCode)
        .Bits(32, 0x03A9A380)
        .Raw();
}

Bytes Extension(uint32_t nId)
{
    return CBitWriter().Bits(32, MPEG2_EXTENSION).Bits(4, nId).Bits(60, 0x182000100000000).Raw();
}

Bytes Picture(uint32_t nType)
{
    return CBitWriter().Bits(32, MPEG2_PICTURE).Bits(10, 5).Bits(3, nType).Bits(19, 0x7FFF8).Raw();
}

Bytes PictureCoding(uint32_t nForward, uint32_t nBackward, uint32_t nStructure)
{
    return CBitWriter()
        .Bits(32, MPEG2_EXTENSION)
        .Bits(4, 8)
        .Bits(8, nForward)
        .Bits(8, nBackward)
        .Bits(4, 0xC | nStructure)
        .Bits(16, 0xF79C)
        .Raw();
}

const Bytes sc_slice = {0, 0, 1, 1, 0x43, 0xFE, 0x1F, 0x68};
const Bytes sc_userData = {0, 0, 1, 0xB2, 'u', 's', 'e', 'r'};
const Bytes sc_group = {0, 0, 1, 0xB8, 0, 8, 0, 0x40};

struct PARSED
{
    explicit PARSED(const Bytes& bytes, int32_t nSubType = 0)
    {
        frame.frameSubType = nSubType;
        nResult = parser.Parse(bytes.data(), static_cast<uint32_t>(bytes.size()), frame);
    }
    CMPEG2ESParser parser;
    FrameInfo frame{};
    int nResult;
};

Bytes ReadSampleFile(const std::string& file)
{
    std::ifstream stream(std::string(FRAMESIFT_SAMPLES) + "/" + file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

TEST(MPEG2ESParser, FrameRateIsTheTablesNumerator)
{
    const int32_t rates[] = {0, 24000, 24, 25, 30000, 30, 50, 60000, 60, 15, 5, 10, 12};
    for (uint32_t nCode = 1; nCode <= 12; ++nCode) {
        const PARSED parsed(Sequence(720, 576, 2, nCode) + Picture(1) + sc_slice);
        EXPECT_EQ(parsed.nResult, 0);
        EXPECT_EQ(int32_t{parsed.frame.frameRate}, rates[nCode]);
    }
}

TEST(MPEG2ESParser, ResultNamesTheFault)
{
    const struct
    {
        const char* pName;
        Bytes bytes;
        int nResult;
    } rows[] = {
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
        {"extensions that nobody reads", Extension(3) + Extension(7) + Extension(9) + sc_slice, 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PARSED(row.bytes).nResult, row.nResult) << row.pName;
    FrameInfo frame{};
    EXPECT_EQ(CMPEG2ESParser().Parse(nullptr, 100, frame), -1);
    EXPECT_EQ(CMPEG2ESParser().GetFrameSubType(nullptr, 100), -1);
    EXPECT_EQ(CMPEG2ESParser().GetEncodeType(), KX_ENCODE_VIDEO_MPEG2);
}

TEST(MPEG2ESParser, PictureType)
{
    const int32_t types[] = {-1, 0, 1, 2, -1, -1, -1, -1};
    for (uint32_t nType = 0; nType < 8; ++nType) {
        const Bytes bytes = sc_group + Picture(nType) + sc_slice;
        EXPECT_EQ(int32_t{PARSED(bytes).frame.frameSubType}, types[nType]);
        EXPECT_EQ(CMPEG2ESParser().GetFrameSubType(bytes.data(), static_cast<uint32_t>(bytes.size())), types[nType]);
    }
    const Bytes late = sc_slice + Picture(1);
    EXPECT_EQ(CMPEG2ESParser().GetFrameSubType(late.data(), static_cast<uint32_t>(late.size())), -1);
}

TEST(MPEG2ESParser, PictureCodingExtension)
{
    const struct
    {
        uint32_t nType, nForward, nBackward;
        int32_t nSubType;
    } rows[] = {{4, 0xFF, 0xFF, 0}, {4, 0x12, 0xFF, 1}, {4, 0x12, 0x34, 2}, {4, 0xFF, 0xF1, 2}, {2, 0xFF, 0xFF, 1}};
    for (const auto& row : rows) {
        const PARSED parsed(Picture(row.nType) + PictureCoding(row.nForward, row.nBackward, 2) + sc_slice);
        EXPECT_EQ(int32_t{parsed.frame.frameSubType}, row.nSubType);
        EXPECT_EQ(int32_t{parsed.frame.pictrueStructure}, 2);
    }
}

TEST(MPEG2ESParser, SizeHoldsForLaterFrames)
{
    PARSED parsed(Sequence(352, 288) + sc_userData + sc_slice); // user data suffice
    EXPECT_EQ(int32_t{parsed.frame.width}, 352);
    FrameInfo next{};
    const Bytes bytes = Picture(2) + sc_slice;
    EXPECT_EQ(parsed.parser.Parse(bytes.data(), static_cast<uint32_t>(bytes.size()), next), 0);
    EXPECT_EQ(int32_t{next.width}, 352);
    EXPECT_EQ(int32_t{next.height}, 288);
    EXPECT_EQ(int32_t{next.frameRate}, 25);
}

// The high bits of the size are added as they stand, and lost at the next picture head.
TEST(MPEG2ESParser, SequenceExtensionAddsToTheSize)
{
    const Bytes extension =
        CBitWriter().Bits(32, MPEG2_EXTENSION).Bits(4, 1).Bits(11, 0).Bits(2, 3).Bits(2, 1).Bits(29, 0).Raw();
    const PARSED bare(Sequence() + extension + sc_slice);
    EXPECT_EQ(int32_t{bare.frame.width}, 3);
    EXPECT_EQ(int32_t{bare.frame.height}, 1);
    EXPECT_EQ(int32_t{PARSED(Sequence() + extension + Picture(1) + sc_slice).frame.width}, 720);
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
    const Bytes sample = ReadSampleFile("mpeg2/576i25_tff.m2v");
    const std::vector<Bytes> seeds = {
        Bytes(sample.begin(), sample.begin() + std::min<ptrdiff_t>(120, std::ssize(sample))),
        Sequence() + Extension(1) + sc_userData + Picture(4) + PictureCoding(0xFF, 0xFF, 3) + sc_slice};
    size_t nSlices = 0;
    ForEachMutation(seeds, 100000, 55, [&](std::span<uint8_t> bytes) {
        CMPEG2ESParser parser;
        FrameInfo frame{};
        frame.width = INT32_MAX;
        const auto nLen = static_cast<uint32_t>(bytes.size());
        const int nResult = parser.Parse(bytes.data(), nLen, frame);
        ASSERT_GE(nResult, -4);
        ASSERT_LE(nResult, 0);
        ASSERT_LE(parser.GetFrameSubType(bytes.data(), nLen), 2);
        parser.IsFullFrame(bytes.data(), nLen);
        if (nResult == 0) {
            const Bytes longer = Bytes(bytes.begin(), bytes.end()) + Sequence(0);
            FrameInfo again{};
            again.width = INT32_MAX;
            ASSERT_EQ(CMPEG2ESParser().Parse(longer.data(), static_cast<uint32_t>(longer.size()), again), 0);
            ASSERT_EQ(std::memcmp(&frame, &again, sizeof frame), 0);
            ++nSlices;
        }
    });
    EXPECT_GT(nSlices, 10000U);
}

#if __has_include(<nlohmann/json.hpp>) // the facts are JSON

TEST(MPEG2ESParser, Samples)
{
    const auto manifest = nlohmann::json::parse(std::ifstream(std::string(FRAMESIFT_SAMPLES) + "/manifest.json"));
    int nStreams = 0;
    for (const nlohmann::json& sample : manifest["streams"]) {
        if (sample["codec"] != "mpeg1" && sample["codec"] != "mpeg2")
            continue;
        SCOPED_TRACE(sample["file"]);
        ++nStreams;
        const Bytes stream = ReadSampleFile(sample["file"]);
        const nlohmann::json& facts = sample["facts"];
        CMPEG2ESParser parser;
        for (const nlohmann::json& unit : sample["units"]) {
            const uint8_t* pUnit = stream.data() + unit["offset"].get<size_t>();
            FrameInfo frame{};
            ASSERT_EQ(parser.Parse(pUnit, unit["length"], frame), 0);
            EXPECT_EQ(int32_t{frame.width}, facts["width"]);
            EXPECT_EQ(int32_t{frame.height}, facts["height"]);
            EXPECT_EQ(std::to_string(frame.frameRate) + "/1", facts["frame_rate"]);
            const auto nKind = static_cast<int32_t>(std::string("IPB").find(unit["kind"].get<std::string>()));
            EXPECT_EQ(int32_t{frame.frameSubType}, nKind);
            EXPECT_EQ(parser.GetFrameSubType(pUnit, unit["length"]), nKind);
            EXPECT_TRUE(parser.IsFullFrame(pUnit, unit["length"]));
            // MPEG-1 has no field structure to tell.
            const auto& structure = facts["picture_structure"];
            EXPECT_EQ(int32_t{frame.pictrueStructure}, structure.is_null() ? 0 : structure[0].get<int32_t>());
        }
    }
    EXPECT_EQ(nStreams, 3);
}

#endif

} // namespace Marvane::FrameSift
