#include "AudioParser/AudioParser.h"

#include "Support/Samples.h"

namespace Marvane::FrameSift {

TEST(AudioParser, AdtsHeadsOfRealStreams)
{
    for (const json& sample : SamplesIn("audio")) {
        if (sample["codec"] != "aac")
            continue;
        const Bytes stream = ReadSample(sample["file"]);
        for (const json& unit : sample["units"]) {
            const Bytes head = Part(UnitOf(stream, unit), 0, 7);
            FrameInfo frame{};
            ASSERT_EQ(CAudioParser::ParseAAC(head.data(), 7, &frame), KX_SUCCESS);
            ASSERT_EQ(int32_t{frame.samplesPerSec}, sample["facts"]["rate"]);
            ASSERT_EQ(int32_t{frame.channels}, sample["facts"]["channels"]);
        }
    }
}

TEST(AudioParser, HeadsThatTellNoRate)
{
    FrameInfo frame{};
    frame.samplesPerSec = 1;
    for (const auto& [nIndex, nRate] : Rows<int, int32_t>{{13, 1}, {15, 1}, {12, 7350}, {0, 96000}}) {
        const Bytes head = {0, 0, static_cast<uint8_t>(nIndex << 2 | 0xC3), 0xFF, 0, 0, 0};
        EXPECT_EQ(CAudioParser::ParseAAC(head.data(), 7, &frame), KX_SUCCESS);
        EXPECT_EQ((Fields{frame.samplesPerSec, frame.channels}), (Fields{nRate, 7}));
    }
    const uint8_t nByte = 0;
    EXPECT_EQ(CAudioParser::ParseAAC(nullptr, 0, &frame), KX_ERROR_EMPTY_PTR);
    EXPECT_EQ(CAudioParser::ParseAAC(&nByte, 7, nullptr), KX_ERROR_EMPTY_PTR);
    EXPECT_EQ(CAudioParser::ParseAAC(&nByte, 6, &frame), KX_ERROR_PARAMETER);
}

} // namespace Marvane::FrameSift
