#include "StreamAnalzyer/RawStream/RawMPEG4Stream.h"

#include <cmath>

#include "FrameWriter/LegacyFrameWriter.h"
#include "StreamAnalzyer/RawStream/RawMPEG4StreamEx.h"
#include "Support/BitWriter.h"
#include "Support/LegacyParse.h"
#include "Support/Samples.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

Bytes Code(uint8_t chCode, const Bytes& behind = {})
{
    return Bytes{0, 0, 1, chCode} + behind;
}

Bytes Vop(uint8_t chFirst, size_t nLen = 110)
{
    return Code(0xB6, Bytes{chFirst} + Bytes(nLen - 5, 0x55));
}

Bytes UserData(uint8_t chRate)
{
    return Code(0xB2, {'a', 'b', 'c', 'd', 'e', 'f', chRate});
}

// A rate in the place where it is looked for, with or without buffer sizes in front.
Bytes Layer(uint32_t nRate, bool bLong = false)
{
    CBitWriter layer;
    layer.Bits(9, 1).Bits(5, 1).Bits(4, 0xB).Flag(bLong).Bits(bLong ? 62 : 0, 1).Bits(bLong ? 16 : 0, 1);
    return Code(0x20, layer.Bits(3, 1).Bits(16, nRate).Bits(32, 0x80000000).Raw());
}

std::vector<Fields> FactsOf(const std::vector<LEGACY_FRAME>& frames)
{
    std::vector<Fields> facts;
    facts.reserve(frames.size());
    for (const auto& [frame, payload, bytes, bHasExt, pUserData] : frames)
        facts.push_back({frame.frameType, frame.frameSubType, frame.frameSeq, frame.frameLen, frame.errorFlags});
    return facts;
}

int64_t RateOf(const std::string& fraction)
{
    return std::lround(std::stod(fraction) / std::stod(fraction.substr(fraction.find('/') + 1)));
}

} // namespace

TEST(RawMpeg4, SamplesComeOutUnitByUnit)
{
    for (const json& sample : SamplesIn("mpeg4")) {
        SCOPED_TRACE(sample["file"]);
        const json& facts = sample["facts"];
        const Bytes stream = ReadSample(sample["file"]);
        // One more unit: those at the end are too short to be looked at with nothing behind them.
        const auto frames = FramesOf<CRawMPEG4Stream>(stream + UnitOf(stream, sample["units"][0]) + LegacyEndMark());
        ASSERT_EQ(frames.size(), sample["units"].size() + 1);
        for (size_t n = 0; n < sample["units"].size(); ++n) {
            SCOPED_TRACE(n);
            const FrameInfo& frame = frames[n].frame;
            const json& unit = sample["units"][n];
            EXPECT_EQ(frames[n].payload, UnitOf(stream, unit));
            EXPECT_EQ(frames[n].bytes, frames[n].payload);
            EXPECT_EQ((Fields{frame.frameType, frame.frameSubType, frame.frameEncodeType, frame.streamType,
                              frame.frameSeq, frame.width, frame.height, frame.frameRate, frame.deinterlace}),
                      (Fields{KX_FRAME_TYPE_VIDEO, SubTypeOf(unit), KX_ENCODE_VIDEO_MPEG4, KX_STREAM_TYPE_RAW_MPEG4,
                              static_cast<int64_t>(n + 1), facts["width"], facts["height"], RateOf(facts["frame_rate"]),
                              KX_DEINTERLACE_NONE}));
        }
    }
}

TEST(RawMpeg4, RateComesFromTheLayerOrTheUserData)
{
    const Rows<const char*, Bytes, int32_t> rows = {
        {"none", {}, 25},
        {"user data", UserData(100), 100},
        {"user data, one a second", UserData(255), 1},
        {"user data, too high", UserData(101), 25},
        {"user data, 0", UserData(0), 25},
        {"layer wins", Layer(15) + UserData(12), 15},
        {"unlikely layer", Layer(40000) + UserData(12), 12},
        {"unlikely layer alone", Layer(40000), 40000},
        {"long layer", Layer(20, true) + UserData(12), 20},
        {"last user data", UserData(12) + UserData(13), 13},
        {"behind the heads", Bytes(81, 0x55) + UserData(12) + UserData(13), 12},
    };
    for (const auto& [pName, heads, nRate] : rows) {
        SCOPED_TRACE(pName);
        const auto frames = FramesOf<CRawMPEG4Stream>(Code(0xB0, {0xF5}) + heads + Vop(0x10) + LegacyEndMark());
        ASSERT_FALSE(frames.empty());
        EXPECT_EQ(int32_t{frames[0].frame.frameRate}, nRate);
    }
}

TEST(RawMpeg4, GroupTellsTheTime)
{
    // 13:37:42, with the marker bit in the middle.
    const Bytes group = Code(0xB3, CBitWriter().Bits(5, 13).Bits(6, 37).Bits(1, 1).Bits(6, 42).Raw());
    const auto frames = FramesOf<CRawMPEG4Stream>(Code(0xB0, {0xF5}) + group + Vop(0x10) + LegacyEndMark());
    ASSERT_EQ(frames.size(), 1U);
    const KX_TIME time = frames[0].frame.frameTime;
    EXPECT_EQ((Fields{time.nDay, time.nHour, time.nMinute, time.nSecond}), (Fields{0, 13, 37, 42}));
    EXPECT_EQ(int32_t{frames[0].frame.timeStamp}, static_cast<int32_t>(CKXConvert::KXTimeToTimeStamp(time)));
}

TEST(RawMpeg4, FrameEndsAtTheNextBorder)
{
    const Bytes sound = OldAudioFrame(14, 2, Counting(9));
    const Rows<const char*, Bytes, std::vector<Fields>> rows = {
        {"short pictures",
         Vop(0x10, 30) + Vop(0x50, 6) + Vop(0x90) + Vop(0xD0),
         {{1, 0, 1, 30, 0}, {1, 1, 2, 6, 0}, {1, 2, 3, 110, 0}, {1, 1, 4, 110, 0}}},
        {"picture in the first 100 bytes", Code(0xB0, Bytes(92, 0x55)) + Vop(0x50), {{1, 1, 1, 206, 0}}},
        {"picture behind them", Code(0xB0, Bytes(93, 0x55)) + Vop(0x50), {{1, 0, 1, 97, 0}, {1, 1, 2, 110, 0}}},
        {"sound between", Vop(0x10) + sound + Vop(0x50), {{1, 0, 1, 110, 0}, {2, 0, 1, 17, 0}, {1, 1, 2, 110, 0}}},
        {"sound with a wrong length",
         Vop(0x10) + sound + Bytes(50, 0x55) + sound,
         {{1, 0, 1, 110, 0}, {2, 0, 1, 4, KX_ERROR_FLAGS_LENGTH}, {2, 0, 2, 17, 0}}},
        {"99 bytes", Vop(0x10, 95), {}},
        {"100 bytes", Vop(0x10, 96), {{1, 0, 1, 96, 0}}},
    };
    for (const auto& [pName, stream, facts] : rows) {
        SCOPED_TRACE(pName);
        EXPECT_EQ(FactsOf(FramesOf<CRawMPEG4Stream>(stream + LegacyEndMark())), facts);
    }
}

TEST(RawMpeg4, LastFrameComesOutWhenFlushed)
{
    CLegacyParse<CRawMPEG4Stream> parse;
    EXPECT_TRUE(parse.Feed(Vop(0x50)).empty());
    const auto frames = parse.Flush();
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0].bytes, Vop(0x50));
    // No I frame so far.
    EXPECT_EQ((Fields{frames[0].frame.width, frames[0].frame.frameRate}), (Fields{0, 0}));
}

TEST(RawMpeg4, SoundInBlocksHasTheLongHeadAndIsNotDoubted)
{
    const Bytes payload = Counting(9);
    const auto frames = FramesOf<CRawMPEG4StreamEx>(OldAudioFrameEx(7, 14, payload) + Bytes(4, 0x55));
    ASSERT_EQ(frames.size(), 1U);
    const FrameInfo& frame = frames[0].frame;
    EXPECT_EQ(frames[0].payload, payload);
    EXPECT_EQ(frames[0].bytes, OldAudioFrameEx(7, 0, payload)); // a rate that there is not is set to 0
    EXPECT_EQ((Fields{frame.streamType, frame.frameEncodeType, frame.samplesPerSec, frame.bitsPerSample, frame.channels,
                      frame.frameLen, frame.errorFlags}),
              (Fields{KX_STREAM_TYPE_AUDIO, 7, 8000, 8, 1, 25, 0}));
}

} // namespace Marvane::FrameSift
