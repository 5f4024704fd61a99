// What real encoders write, against the facts that are known of it.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "ESParse/H265Nal.h"
#include "ESParse/H265TestSupport.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::json;

Bytes ReadFile(const std::string& name)
{
    std::ifstream file(std::string(FRAMESIFT_SAMPLES "/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<json> H265Streams()
{
    std::ifstream file(FRAMESIFT_SAMPLES "/manifest.json");
    std::vector<json> streams;
    const json manifest = json::parse(file);
    for (const json& stream : manifest["streams"]) {
        if (stream["codec"] == "h265")
            streams.push_back(stream);
    }
    return streams;
}

Bytes UnitOf(const Bytes& stream, const json& unit)
{
    const auto first = stream.begin() + unit["offset"].get<ptrdiff_t>();
    return {first, first + unit["length"].get<ptrdiff_t>()};
}

// Frames per second in whole numbers: 29 for 30000/1001; 25 where a stream tells none.
int WholeRate(const json& facts)
{
    const json& timing = facts["timing"];
    return timing.is_null() ? 25 : timing["time_scale"].get<int>() / timing["num_units_in_tick"].get<int>();
}

void ExpectColour(const FrameInfo& frame, const json& colour)
{
    const auto code = [&colour](const char* pName) { return colour.is_null() ? 2 : colour[pName].get<int>(); };
    EXPECT_EQ(int{frame.nColorPrimaries}, CKXConvert::ConvertHxxxColourPrimaries(code("primaries")));
    EXPECT_EQ(int{frame.nColorTransfer}, CKXConvert::ConvertHxxxTransferCharacteristics(code("transfer")));
    EXPECT_EQ(int{frame.nColorSpace}, CKXConvert::ConvertHxxxMatrixCoeffs(code("matrix")));
}

void ExpectHdr(const FrameInfo& frame, const json& hdr)
{
    static const json s_none = json::parse(R"({
        "mastering_display": {"primaries_as_coded": [0, 0, 0, 0, 0, 0], "white_point": [0, 0],
                              "max_luminance": 0, "min_luminance": 0},
        "content_light": {"max_content": 0, "max_frame_average": 0}})");
    const json& told = hdr.is_null() ? s_none : hdr;
    const json& display = told["mastering_display"];
    for (size_t n = 0; n < 6; ++n)
        EXPECT_EQ(uint16_t{frame.nDisplayPrimaries[n]}, display["primaries_as_coded"][n]);
    for (size_t n = 0; n < 2; ++n)
        EXPECT_EQ(uint16_t{frame.nWhitePoint[n]}, display["white_point"][n]);
    EXPECT_EQ(uint32_t{frame.nMaxLuminance}, display["max_luminance"]);
    EXPECT_EQ(uint32_t{frame.nMinLuminance}, display["min_luminance"]);
    EXPECT_EQ(uint16_t{frame.nMaxContentLightLevel}, told["content_light"]["max_content"]);
    EXPECT_EQ(uint16_t{frame.nMaxFrameAverageLightLevel}, told["content_light"]["max_frame_average"]);
}

} // namespace

TEST(H265Samples, EachFrameIsToldRight)
{
    for (const json& stream : H265Streams()) {
        SCOPED_TRACE(stream["file"].get<std::string>());
        const json& facts = stream["facts"];
        const Bytes bytes = ReadFile(stream["file"]);
        CH265ESParser parser;
        for (const json& unit : stream["units"]) {
            SCOPED_TRACE(unit["offset"].get<int>());
            const Bytes frameBytes = UnitOf(bytes, unit);
            FrameInfo frame{};
            EXPECT_EQ(parser.Parse(frameBytes.data(), LengthOf(frameBytes), frame), 0);
            EXPECT_EQ(std::string(1, "IPB"[frame.frameSubType]), unit["kind"]);
            EXPECT_EQ(int32_t{frame.width}, facts["width"]);
            EXPECT_EQ(int32_t{frame.height}, facts["height"]);
            EXPECT_EQ(int32_t{frame.cropBeforeWidth}, facts["coded_width"]);
            EXPECT_EQ(int32_t{frame.cropBeforeHeight}, facts["coded_height"]);
            EXPECT_EQ(int32_t{frame.nVideoBitDepth}, facts["bit_depth"]);
            EXPECT_EQ(int32_t{frame.frameRate}, WholeRate(facts));
            ExpectColour(frame, facts["colour"]);
            ExpectHdr(frame, facts["hdr"]);
            // Also for the stream of fields: its timing messages are so short that the scan leaves them alone.
            EXPECT_EQ(int32_t{frame.pictrueStructure}, 0);
        }
    }
}

TEST(H265Samples, BordersAndOrderOfDisplay)
{
    for (const json& stream : H265Streams()) {
        SCOPED_TRACE(stream["file"].get<std::string>());
        const Bytes bytes = ReadFile(stream["file"]);
        const std::string rate = stream["facts"]["source_frame_rate"];
        const double dFrames = std::stod(rate) / std::stod(rate.substr(rate.find('/') + 1)) / 1000;
        CH265ESParser full;
        CH265ESParser next;
        double dIdrTime = 0;
        for (const json& unit : stream["units"]) {
            SCOPED_TRACE(unit["offset"].get<int>());
            const Bytes frameBytes = UnitOf(bytes, unit);
            // A slice with less than 9 bytes behind its header is not looked at: no border.
            const bool bTooShort = frameBytes.size() < 4 + gsk_h265NalHeaderLen + 9;
            EXPECT_EQ(full.IsFullFrame(frameBytes.data(), LengthOf(frameBytes)), !bTooShort);
            EXPECT_EQ(next.IsNextFrame(frameBytes.data(), LengthOf(frameBytes)), !bTooShort);
            ES_PARSER_INFO info; // the parameter sets, which borders rest on
            full.Parse_KX(frameBytes.data(), static_cast<int32_t>(frameBytes.size()), info);
            CH265ESParser ahead = full;
            size_t nSlices = 0;
            for (size_t nPos = 0; nPos + 5 < frameBytes.size(); ++nPos) {
                const uint8_t* pNal = &frameBytes[nPos + 3];
                h265Slice slice{};
                const bool bUnit = pNal[-3] == 0 && pNal[-2] == 0 && pNal[-1] == 1 && full.IsLegalNal(pNal, 2);
                if (!bUnit || !ahead.ParseSliceHeader(pNal, static_cast<int32_t>(frameBytes.size() - nPos - 3), slice))
                    continue;
                ++nSlices;
                if (slice.first_slice_segment_in_pic_flag == 0)
                    continue; // read out of step, as their address is not stepped over
                const double dTime = unit["pts"];
                dIdrTime = unit["idr"] ? dTime : dIdrTime;
                EXPECT_EQ(static_cast<int32_t>(slice.frame_num), std::lround((dTime - dIdrTime) * dFrames));
            }
            EXPECT_EQ(nSlices >= 1, !bTooShort);
            EXPECT_LE(nSlices, unit["slices"]);
        }
    }
}

} // namespace Marvane::FrameSift
