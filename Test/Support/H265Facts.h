// The facts of an H.265 sample, as frames tell them.
#ifndef FRAMESIFT_TEST_SUPPORT_H265FACTS_H
#define FRAMESIFT_TEST_SUPPORT_H265FACTS_H

#include "IAnalyzer/FrameInfo.h"
#include "Support/Samples.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

inline void ExpectH265Facts(const FrameInfo& frame, const json& facts)
{
    EXPECT_EQ(int32_t{frame.width}, facts["width"]);
    EXPECT_EQ(int32_t{frame.height}, facts["height"]);
    EXPECT_EQ(int32_t{frame.cropBeforeWidth}, facts["coded_width"]);
    EXPECT_EQ(int32_t{frame.cropBeforeHeight}, facts["coded_height"]);
    EXPECT_EQ(int32_t{frame.nVideoBitDepth}, facts["bit_depth"]);
    const json& colour = facts["colour"];
    const auto code = [&colour](const char* pName) { return colour.is_null() ? 2 : colour[pName].get<int>(); };
    EXPECT_EQ(int{frame.nColorPrimaries}, CKXConvert::ConvertHxxxColourPrimaries(code("primaries")));
    EXPECT_EQ(int{frame.nColorTransfer}, CKXConvert::ConvertHxxxTransferCharacteristics(code("transfer")));
    EXPECT_EQ(int{frame.nColorSpace}, CKXConvert::ConvertHxxxMatrixCoeffs(code("matrix")));
    static const json s_none = json::parse(R"({
        "mastering_display": {"primaries_as_coded": [0, 0, 0, 0, 0, 0], "white_point": [0, 0],
                              "max_luminance": 0, "min_luminance": 0},
        "content_light": {"max_content": 0, "max_frame_average": 0}})");
    const json& told = facts["hdr"].is_null() ? s_none : facts["hdr"];
    const json& display = told["mastering_display"];
    for (size_t n = 0; n < 6; ++n)
        EXPECT_EQ(uint16_t{frame.nDisplayPrimaries[n]}, display["primaries_as_coded"][n]);
    EXPECT_EQ((json{uint16_t{frame.nWhitePoint[0]}, uint16_t{frame.nWhitePoint[1]}}), display["white_point"]);
    EXPECT_EQ(uint32_t{frame.nMaxLuminance}, display["max_luminance"]);
    EXPECT_EQ(uint32_t{frame.nMinLuminance}, display["min_luminance"]);
    EXPECT_EQ(uint16_t{frame.nMaxContentLightLevel}, told["content_light"]["max_content"]);
    EXPECT_EQ(uint16_t{frame.nMaxFrameAverageLightLevel}, told["content_light"]["max_frame_average"]);
}

} // namespace Marvane::FrameSift

#endif
