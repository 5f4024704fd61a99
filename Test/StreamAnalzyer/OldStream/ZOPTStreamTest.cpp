#include "StreamAnalzyer/OldStream/ZOPTStream.h"

#include "FrameWriter/LegacyFrameWriter.h"
#include "Support/LegacyParse.h"
#include "Support/Samples.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

using ZoptParse = CLegacyParse<CZOPTStream>;

const Bytes sc_iVop = {0, 0, 1, 0xB6, 0x10, 1, 2, 3};
const Bytes sc_pVop = {0, 0, 1, 0xB6, 0x50, 1, 2, 3};

Bytes UserData(uint8_t chRate)
{
    return {0, 0, 1, 0xB2, 1, 2, 3, 4, 5, 6, chRate};
}

FrameInfo ParseOne(const Bytes& body)
{
    ZoptParse parse;
    const auto frames = parse.Feed(ZoptFrame(body) + LegacyEndMark());
    EXPECT_EQ(frames.size(), 1U);
    return frames.empty() ? FrameInfo{} : frames.front().frame;
}

} // namespace

TEST(ZOPTStream, RealPicturesTellTheirSizeAndRate)
{
    for (const json& sample : SamplesIn("mpeg4")) {
        SCOPED_TRACE(sample["file"].get<std::string>());
        const Bytes stream = ReadSample(sample["file"]);
        Bytes wire;
        for (const json& unit : sample["units"])
            wire = wire + ZoptFrame(UnitOf(stream, unit)) + OldAudioFrame(14, 0, Counting(20));
        ZoptParse parse;
        const auto frames = parse.FeedInChunks(wire + LegacyEndMark(), 1400);
        ASSERT_EQ(frames.size(), 2 * sample["units"].size());
        const json& facts = sample["facts"];
        // Truncated from a sum with one half: 30000/1001 reads as 30.
        const int nRate = facts["frame_rate"] == "30000/1001" ? 30 : std::stoi(facts["frame_rate"].get<std::string>());
        for (size_t n = 0; n < frames.size(); n += 2) {
            const FrameInfo& frame = frames[n].frame;
            const json& unit = sample["units"][n / 2];
            EXPECT_EQ(frames[n].payload, UnitOf(stream, unit));
            // The format knows no B pictures.
            EXPECT_EQ((Fields{frame.frameSubType, frame.width, frame.height, frame.frameRate, frame.frameSeq,
                              frame.streamType, frame.deinterlace}),
                      (Fields{unit["kind"] == "I" ? 0 : 1, facts["width"], facts["height"], nRate,
                              static_cast<int64_t>(n / 2) + 1, 3, 2}));
            const FrameInfo& audio = frames[n + 1].frame;
            EXPECT_EQ((Fields{audio.frameType, audio.streamType, audio.samplesPerSec, audio.frameSeq}),
                      (Fields{2, 6, 8000, static_cast<int64_t>(n / 2) + 1}));
        }
    }
}

TEST(ZOPTStream, WhatTheHeadsOfAnIFrameLeaveOpen)
{
    for (const auto& [nCode, nRate] :
         Rows<int, int>{{1, 1}, {100, 100}, {101, 25}, {200, 25}, {254, 25}, {255, 1}, {0, 25}}) {
        const FrameInfo frame = ParseOne(UserData(static_cast<uint8_t>(nCode)) + sc_iVop);
        EXPECT_EQ((Fields{frame.frameRate, frame.width, frame.height, frame.frameSubType}),
                  (Fields{nRate, 352, 288, 0}))
            << nCode;
    }
    const FrameInfo timed = ParseOne(Bytes{0, 0, 1, 0xB3, 0x6B, 0xD7, 0x40} + sc_iVop); // 13:30:29
    const KX_TIME time = timed.frameTime;
    EXPECT_EQ((Fields{time.nHour, time.nMinute, time.nSecond, time.nYear, time.nDay}), (Fields{13, 30, 29, 0, 0}));
    EXPECT_EQ(static_cast<uint32_t>(int32_t{timed.timeStamp}), CKXConvert::KXTimeToTimeStamp(time));
    // Behind the body begins the next frame: nothing of it is taken for a rate.
    const FrameInfo cut = ParseOne(sc_iVop + Part(UserData(9), 0, 10));
    EXPECT_EQ(int32_t{cut.frameRate}, 25);
    const FrameInfo other = ParseOne(sc_pVop);
    EXPECT_EQ((Fields{other.frameSubType, other.width, other.frameRate}), (Fields{1, 0, 0}));
}

TEST(ZOPTStream, AFrameThatEndsNowhereGoesToTheNextID)
{
    Bytes wrong = ZoptFrame(sc_iVop) + ZoptFrame(sc_pVop) + ZoptFrame(sc_pVop) + LegacyEndMark();
    wrong[4] = 9;
    ZoptParse parse;
    const auto frames = parse.Feed(wrong);
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ((Fields{frames[0].frame.errorFlags, frames[0].frame.frameLen, frames[1].frame.errorFlags}),
              (Fields{KX_ERROR_FLAGS_LENGTH, 16, 0}));
    EXPECT_TRUE(frames[0].bHasExt);
}

// A studio profile that a picture has shown holds, however often a frame of wrong length behind it is built anew.
TEST(ZOPTStream, WhatAPictureTeachesOutlivesAFrameThatWaits)
{
    const Bytes studio = Bytes{0, 0, 1, 0xB0, 0xE1} + sc_iVop;
    const json sample = SampleOf("mpeg4/qcif15_ip.m4v");
    const Bytes picture = UnitOf(ReadSample(sample["file"]), sample["units"][0]);
    Bytes audio = OldAudioFrame(14, 2, Counting(60));
    audio[6] = 20;
    const auto frames = FramesOf<CZOPTStream>(ZoptFrame(studio) + audio + ZoptFrame(picture) + LegacyEndMark());
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ(int32_t{frames[2].frame.width}, 352); // assumed, as the profiles do not mix
}

} // namespace Marvane::FrameSift
