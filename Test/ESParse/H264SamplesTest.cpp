// What the parser says of streams that real encoders made, against the facts that are known of them.
#include "ESParse/H264ESParser.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

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
    const auto nLen = LengthOf(bytes);
    // A slice of up to eight bytes is not read, and counts as of an I frame.
    const bool bTooShort = unit["nals"] == json{1} && nLen <= 4 + 1 + 8;
    const int32_t nSubType = bTooShort ? 0 : SubTypeOf(unit);
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
    EXPECT_EQ(parser.GetFrameSubType(bytes.data(), nLen), SubTypeOf(unit));
    EXPECT_EQ(parser.GetPicStructure(bytes.data(), nLen), PICTURE_STRUCTURE_FRAME); // none is coded in fields
    EXPECT_TRUE(parser.IsFullFrame(bytes.data(), nLen));
    EXPECT_EQ(parser.IsNextFrame(bytes.data(), nLen), !bTooShort);
    h264SPS size;
    EXPECT_EQ(parser.GetPicSize(bytes.data(), nLen, size), bSet);
    EXPECT_EQ((Picture{static_cast<int32_t>(size.width), static_cast<int32_t>(size.height), size.cropBeforeWidth,
                       size.cropBeforeHeight, whole[4]}),
              bSet ? whole : (Picture{0, 0, 0, 0, whole[4]}));
}

} // namespace

TEST(H264Samples, EveryUnitAsItsEncoderMadeIt)
{
    for (const json& sample : SamplesIn("h264")) {
        SCOPED_TRACE(sample["file"]);
        const Bytes stream = ReadSample(sample["file"]);
        CH264ESParser parser;
        const Picture whole = Expected(sample["facts"]);
        Picture last = whole;
        for (const json& unit : sample["units"]) {
            SCOPED_TRACE(unit["offset"]);
            ExpectUnit(parser, UnitOf(stream, unit), unit, whole, last);
        }
    }
}

} // namespace Marvane::FrameSift
