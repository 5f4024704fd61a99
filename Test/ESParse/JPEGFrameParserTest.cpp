#include "ESParse/JPEGFrameParser.h"

#include "Support/Mutations.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

Bytes Segment(uint8_t nMarker, size_t nPayload = 14)
{
    return Bytes{0xFF, nMarker, 0, static_cast<uint8_t>(nPayload + 2)} + Bytes(nPayload, 0x11);
}

// 640 by 480.
Bytes FrameHead(uint8_t nMarker = 0xC0, uint8_t nLength = 8, uint8_t nPrecision = 8)
{
    return {0xFF, nMarker, 0, nLength, nPrecision, 0x01, 0xE0, 0x02, 0x80, 1};
}

const Bytes sc_start = Bytes{0xFF, 0xD8} + Segment(0xE0);

// "640x480", or "none".
std::string SizeOf(const Bytes& bytes)
{
    JPEGInfo info{7, 9};
    if (!CJPEGESParser::GetPicSize(bytes.data(), LengthOf(bytes), info))
        return info.width == 7 && info.height == 9 ? "none" : "none, but written to";
    return std::to_string(info.width) + "x" + std::to_string(info.height);
}

} // namespace

TEST(JPEGFrameParser, PictureSize)
{
    for (const auto& [pName, bytes, pSize] : Rows<const char*, Bytes, const char*>{
             {"behind one segment", sc_start + FrameHead(), "640x480"},
             {"behind more segments", sc_start + Segment(0xDB) + Segment(0xFE) + FrameHead(0xC2), "640x480"},
             {"right behind the start: stepped over", Bytes{0xFF, 0xD8} + FrameHead(), "none"},
             {"right behind the start, a second one later", Bytes{0xFF, 0xD8} + FrameHead() + FrameHead(0xC1),
              "640x480"},
             {"in a comment", sc_start + Bytes{0xFF, 0xFE, 0, 12} + FrameHead(), "none"},
             {"no start", Segment(0xE0) + FrameHead(), "none"},
             {"noise in front and fill bytes", Bytes{1, 0xFF, 0xC0, 0xD8} + sc_start + Bytes{7, 0xFF} + FrameHead(),
              "640x480"},
             {"behind the end of an image", sc_start + Bytes{0xFF, 0xD9} + FrameHead(0xC3), "640x480"},
             {"no marker without its first byte", sc_start + Bytes{0xC0, 0, 8, 8, 1, 1, 1, 1, 1}, "none"},
             {"a kind that is not known", sc_start + FrameHead(0xC9), "none"},
             {"a segment longer than the data", sc_start + Bytes{0xFF, 0xE1, 0xFF, 0xFF} + FrameHead(), "none"},
             {"length 4", sc_start + FrameHead(0xC0, 4), "none"},
             {"length up to the last byte", sc_start + FrameHead(), "640x480"},
             {"length one byte too long", sc_start + FrameHead(0xC0, 9), "none"},
             {"length 5, but the size is there", sc_start + FrameHead(0xC0, 5), "640x480"},
             {"length 5, data to the end of the width", Part(sc_start + FrameHead(0xC0, 5), 0, 29), "640x480"},
             {"length 5, and the width cut", Part(sc_start + FrameHead(0xC0, 5), 0, 28), "none"},
             {"length 5, and the data end with it", Part(sc_start + FrameHead(0xC0, 5), 0, 27), "none"},
             {"precision 0", sc_start + FrameHead(0xC0, 8, 0), "none"},
             {"precision 16", sc_start + FrameHead(0xC0, 8, 16), "640x480"},
             {"precision 17", sc_start + FrameHead(0xC0, 8, 17), "none"},
             {"a start without a segment", {0xFF, 0xD8, 0xFF, 0xE0}, "none"},
             {"a start with half a length", {0xFF, 0xD8, 0xFF, 0xE0, 0}, "none"},
             {"nothing", {}, "none"}})
        EXPECT_EQ(SizeOf(bytes), pSize) << pName;
    JPEGInfo info;
    EXPECT_FALSE(CJPEGESParser::GetPicSize(nullptr, 100, info));
}

TEST(JPEGFrameParser, ParseAndFullFrame)
{
    CJPEGESParser parser;
    FrameInfo frame{};
    frame.width = 5; // what the last one had does not stay
    EXPECT_EQ(parser.Parse(sc_start.data(), 10, frame), 1);
    EXPECT_EQ(int32_t{frame.width}, 0);
    EXPECT_EQ(parser.GetFrameSubType(nullptr, 0), 0);
    EXPECT_EQ(parser.GetEncodeType(), KX_ENCODE_VIDEO_JPEG);
    const Bytes bytes = {0xFF, 0xFF, 0xD8, 0xFF};
    EXPECT_TRUE(parser.IsFullFrame(bytes.data(), 4) && parser.IsNextFrame(bytes.data(), 4));
    EXPECT_FALSE(parser.IsNextFrame(bytes.data(), 3) || parser.IsFullFrame(nullptr, 4));
}

// Once the size is found, bytes behind it change nothing.
TEST(JPEGFrameParser, SurvivesMutations)
{
    std::vector<Bytes> seeds = {sc_start + FrameHead(), sc_start + Segment(0xDB) + FrameHead(0xC2) + Segment(0xC4)};
    for (const char* pFile : {"jpeg/comment_444.jpg", "jpeg/rgb_app14.jpg"})
        seeds.push_back(Part(ReadSample(pFile), 0, 220));
    size_t nFound = 0;
    ForEachMutation(seeds, 100000, 56, [&](std::span<uint8_t> bytes) {
        CJPEGESParser parser;
        const auto nLen = static_cast<uint32_t>(bytes.size());
        parser.IsFullFrame(bytes.data(), nLen);
        FrameInfo frame{};
        ASSERT_EQ(parser.Parse(bytes.data(), nLen, frame), 1);
        JPEGInfo info;
        if (!CJPEGESParser::GetPicSize(bytes.data(), nLen, info))
            return;
        const std::string size = std::to_string(frame.width) + "x" + std::to_string(frame.height);
        ASSERT_EQ(SizeOf(Bytes(bytes.begin(), bytes.end()) + sc_start + FrameHead()), size);
        ++nFound;
    });
    EXPECT_GT(nFound, 10000U);
}

TEST(JPEGFrameParser, Samples)
{
    for (const json& sample : SamplesIn("jpeg")) {
        SCOPED_TRACE(sample["file"]);
        const Bytes stream = ReadSample(sample["file"]);
        const json& facts = sample["facts"];
        // Arithmetic coding has frame heads of its own, which are stepped over.
        const bool bKnown = facts["sof_marker"] != "SOF9";
        for (const json& unit : sample["units"]) {
            const Bytes bytes = UnitOf(stream, unit);
            FrameInfo frame{};
            CJPEGESParser parser;
            parser.Parse(bytes.data(), LengthOf(bytes), frame);
            EXPECT_EQ(int32_t{frame.width}, bKnown ? facts["width"].get<int32_t>() : 0);
            EXPECT_EQ(int32_t{frame.height}, bKnown ? facts["height"].get<int32_t>() : 0);
            EXPECT_TRUE(parser.IsFullFrame(bytes.data(), LengthOf(bytes)));
        }
    }
}

} // namespace Marvane::FrameSift
