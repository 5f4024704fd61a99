// What the parser says of streams that real encoders made, against the facts that are known of them.
#if __has_include(<nlohmann/json.hpp>) // the facts are JSON; without a reader for it the other tests still build

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ESParse/H264ESParser.h"
#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::json;

std::ifstream OpenSample(const std::string& file)
{
    return std::ifstream(std::string(FRAMESIFT_SAMPLES) + "/" + file, std::ios::binary);
}

// Width, height, width and height before cropping, rate.
using Picture = std::vector<int32_t>;

// The facts as the parser takes them.
Picture Expected(const json& facts)
{
    const int32_t nCodedWidth = facts["coded_width"];
    const int32_t nCodedHeight = facts["coded_height"];
    const int32_t nCropX = nCodedWidth - facts["width"].get<int32_t>();
    const int32_t nCropY = nCodedHeight - facts["height"].get<int32_t>();
    // The parser crops by two pixels a unit for every chroma format; the standard's unit is one pixel high for 4:2:2,
    // and one each way for 4:4:4.
    const int32_t nTimesX = facts["chroma"] == "4:4:4" ? 2 : 1;
    const int32_t nTimesY = facts["chroma"] == "4:2:0" ? 1 : 2;
    // Whole pictures a second: 30000/1001 is 29. Without timing, none.
    const json& timing = facts["timing"];
    const int32_t nRate =
        timing.is_null() ? 0 : timing["time_scale"].get<int32_t>() / timing["num_units_in_tick"].get<int32_t>() / 2;
    return {nCodedWidth - nTimesX * nCropX, nCodedHeight - nTimesY * nCropY, nCodedWidth, nCodedHeight, nRate};
}

bool Has(const json& unit, int nNalType)
{
    return std::ranges::count(unit["nals"].get<std::vector<int>>(), nNalType) > 0;
}

void ExpectUnit(CH264ESParser& parser, const Bytes& bytes, const json& unit, const Picture& whole, Picture& last)
{
    const auto nLen = static_cast<uint32_t>(bytes.size());
    const int32_t nKind = unit["kind"] == "I" ? 0 : unit["kind"] == "P" ? 1 : 2;
    // A slice of up to eight bytes is not read, and counts as of an I frame.
    const bool bTooShort = unit["nals"] == json{1} && nLen <= 4 + 1 + 8;
    const int32_t nSubType = bTooShort ? 0 : nKind;
    const bool bSet = Has(unit, 7);
    // An I frame without a parameter set of its own has no size before cropping, nor have those behind it.
    if (nSubType == 0)
        last = bSet ? whole : Picture{whole[0], whole[1], 0, 0, whole[4]};
    FrameInfo frame{};
    EXPECT_EQ(parser.Parse(bytes.data(), nLen, frame), 0);
    EXPECT_EQ(int32_t{frame.frameSubType}, nSubType);
    EXPECT_EQ((Picture{frame.width, frame.height, frame.cropBeforeWidth, frame.cropBeforeHeight, frame.frameRate}),
              last);
    // The upper layer's parameter set ends the scan; its slices come too late to be seen.
    EXPECT_EQ(parser.IsSVC(), Has(unit, 15));
    EXPECT_EQ(parser.GetFrameSubType(bytes.data(), nLen), nKind);
    EXPECT_EQ(parser.GetPicStructure(bytes.data(), nLen), PICTURE_STRUCTURE_FRAME); // none is coded in fields
    EXPECT_TRUE(parser.IsFullFrame(bytes.data(), nLen));
    EXPECT_EQ(parser.IsNextFrame(bytes.data(), nLen), !bTooShort);
    h264SPS size;
    EXPECT_EQ(parser.GetPicSize(bytes.data(), nLen, size), bSet);
    const Picture told = {static_cast<int32_t>(size.width), static_cast<int32_t>(size.height), size.cropBeforeWidth,
                          size.cropBeforeHeight, whole[4]};
    EXPECT_EQ(told, bSet ? whole : (Picture{0, 0, 0, 0, whole[4]}));
}

} // namespace

TEST(H264Samples, EveryUnitAsItsEncoderMadeIt)
{
    const json manifest = json::parse(OpenSample("manifest.json"));
    size_t nUnits = 0;
    for (const json& sample : manifest["streams"]) {
        if (sample["codec"] != "h264")
            continue;
        SCOPED_TRACE(sample["file"].get<std::string>());
        auto file = OpenSample(sample["file"]);
        CH264ESParser parser;
        const Picture whole = Expected(sample["facts"]);
        Picture last = whole;
        for (const json& unit : sample["units"]) {
            SCOPED_TRACE(unit["offset"].get<size_t>());
            Bytes bytes(unit["length"].get<size_t>());
            file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
            ExpectUnit(parser, bytes, unit, whole, last);
            ++nUnits;
        }
    }
    EXPECT_GT(nUnits, 400U);
}

} // namespace Marvane::FrameSift

#endif
