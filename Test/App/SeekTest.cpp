#include <fstream>

#include "App/CommandRun.h"
#include "FrameWriter/ExtHeads.h"
#include "FrameWriter/RecordingClock.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_frames = 60;
constexpr int sc_perStretch = 20;
constexpr int sc_cycle = 5; // a key frame and what depends on it
constexpr int sc_interval = 40;

// 20 frames from 10:00:00 on, 20 from 11:00:00 on, 20 from 10:00:00.400 on, numbered from 1.
CLOCK_MS ClockOf(int nSeq)
{
    constexpr CLOCK_MS starts[] = {0, 3600000, 400};
    const int n = nSeq - 1;
    return *ParseClock("2026-01-31T10:00:00") + starts[n / sc_perStretch] + n % sc_perStretch * sc_interval;
}

Bytes FrameAt(int nSeq, CLOCK_MS nClock, bool bMilliseconds = true)
{
    const KX_TIME time = *ClockToTime(nClock);
    ZoavFrame frame;
    frame.Type(nSeq % sc_cycle == 1 ? ZOAV_FRAME::I : ZOAV_FRAME::P).Seq(static_cast<uint32_t>(nSeq)).Time(time);
    frame.ExtHead(ExtHead81(1, 25));
    if (bMilliseconds)
        frame.ExtHead(ExtHeadA0(static_cast<uint16_t>(time.nMilliSecond)));
    return frame.Payload(Bytes(100, 0x11));
}

class Seek : public testing::Test
{
protected:
    void Write(const Bytes& stream)
    {
        std::ofstream(m_recording, std::ios::binary)
            .write(reinterpret_cast<const char*>(stream.data()), static_cast<std::streamsize>(stream.size()));
    }

    void WriteJumps()
    {
        Bytes stream;
        for (int nSeq = 1; nSeq <= sc_frames; ++nSeq)
            stream = stream + FrameAt(nSeq, ClockOf(nSeq));
        Write(stream);
    }

    // The number of the frame found; 0 for a failure.
    int SeqAt(const std::string& arguments)
    {
        const CommandResult result = RunFramesift("seek --json " + arguments + " " + m_recording);
        return result.nExitCode == 0 ? json::parse(result.output)["sequence"].get<int>() : 0;
    }

    const TempDirectory m_directory;
    const std::string m_recording = m_directory.Path() + "/recording";
};

} // namespace

TEST_F(Seek, TimesAreFoundThoughTheClockJumps)
{
    WriteJumps();
    const std::string day = "2026-01-31T";
    for (const auto& [time, nFrame, nKey] :
         Rows<std::string, int, int>{{day + "10:00:00", 1, 1},
                                     {day + "10:00:00.430", 11, 11}, // between two frames; shown again an hour later
                                     {day + "10:00:00.500", 13, 11},
                                     {day + "10:30:00", 20, 16},     // in the jump
                                     {day + "11:00:00.760", 40, 36}, // the last frame in front of the jump back
                                     {"0", 1, 1},
                                     {"0.76", 20, 16},
                                     {"+0.8", 21, 21}, // the jumps last one interval each
                                     {"1.6", 41, 41},
                                     {"1.679", 42, 41},
                                     {"2.36", 60, 56}}) {
        SCOPED_TRACE(time);
        EXPECT_EQ(SeqAt("--precise --time " + time), nFrame);
        EXPECT_EQ(SeqAt("--time " + time), nKey);
    }
}

TEST_F(Seek, EveryKeyFrameIsFoundByItsOwnTime)
{
    WriteJumps();
    for (int nSeq = 1; nSeq <= sc_frames; nSeq += sc_cycle)
        EXPECT_EQ(SeqAt("--time " + std::to_string((nSeq - 1) * sc_interval / 1000.0).substr(0, 5)), nSeq);
}

TEST_F(Seek, AFrameIsToldWithTheFormatOfItsOwnKeyFrame)
{
    const auto picture = [](ZOAV_FRAME eType, uint32_t nSeq, uint8_t nCodec) {
        const KX_TIME time = {2026, 1, 31, 10, 0, static_cast<int32_t>(nSeq), 0};
        ZoavFrame frame;
        frame.Type(eType).Seq(nSeq).Time(time).Payload(Bytes(100, 0x11));
        return (eType == ZOAV_FRAME::I ? frame.ExtHead(ExtHead81(nCodec, 25)) : frame).Build();
    };
    const Bytes front = picture(ZOAV_FRAME::I, 1, 1) + picture(ZOAV_FRAME::P, 2, 0);
    const Bytes wanted = picture(ZOAV_FRAME::P, 3, 0);
    Write(front + wanted + picture(ZOAV_FRAME::I, 4, 2) + picture(ZOAV_FRAME::P, 5, 0));
    const json first = json::parse(RunFramesift("frames --json --limit 1 " + m_recording).output);
    for (const std::string& place : std::vector<std::string>{"--time 2", "--offset " + std::to_string(front.size())}) {
        const json frame = json::parse(RunFramesift("seek --precise --json " + place + " " + m_recording).output);
        EXPECT_EQ(frame["sequence"], 3) << place;
        EXPECT_EQ(frame["codec"], first["codec"]) << place;
    }
}

TEST_F(Seek, TimesOutsideNameTheSpan)
{
    WriteJumps();
    for (const std::string time : {"2.361", "3600", "2026-01-31T09:59:59.999", "2026-01-31T11:00:00.761"}) {
        const CommandResult result = RunFramesift("seek --time " + time + " " + m_recording);
        EXPECT_EQ(result.nExitCode, 2) << time;
        EXPECT_EQ(result.output, "");
        EXPECT_NE(
            result.errors.find("covers 2026-01-31T10:00:00.000 to 2026-01-31T11:00:00.760 on its clock (2 jumps), "
                               "0 to 2.360 s from its start\n"),
            std::string::npos)
            << result.errors;
    }
    for (const std::string usage :
         {"", "--time 1 --offset 1", "--time -1", "--time 1.2345", "--time 10:00:00", "--offset -1", "--offset 999999"})
        EXPECT_EQ(RunFramesift("seek " + usage + " " + m_recording).nExitCode, 2) << usage;
}

TEST_F(Seek, ClocksWithoutMillisecondsAndRecordingsWithoutVideo)
{
    Bytes stream;
    for (int nSeq = 1; nSeq <= 20; ++nSeq) // four in a second
        stream = stream + FrameAt(nSeq, ClockOf(1) + (nSeq - 1) / 4 * 1000, false);
    Write(stream);
    EXPECT_EQ(SeqAt("--precise --time 2026-01-31T10:00:02"), 9);
    EXPECT_EQ(SeqAt("--precise --time 2.5"), 9);
    EXPECT_EQ(SeqAt("--precise --time 4"), 17);
    ASSERT_EQ(
        RunFramesift("mux -o " + m_recording + " --audio-codec g711a --audio " + SamplePath("audio/g711a_8k_160.alaw"))
            .nExitCode,
        0);
    EXPECT_EQ(SeqAt("--time 0.1"), 6);
}

TEST_F(Seek, OffsetsAreFoundAndFramesPrintedAsInAListing)
{
    WriteJumps();
    const int64_t nSize = static_cast<int64_t>(ReadText(m_recording).size()) / sc_frames;
    for (const auto& [nOffset, nFrame, nKey] : Rows<int64_t, int, int>{
             {nSize * 12, 13, 11}, {nSize * 12 + 1, 14, 11}, {nSize * 10, 11, 6}, {nSize * sc_frames, 0, 56}}) {
        SCOPED_TRACE(nOffset);
        EXPECT_EQ(SeqAt("--precise --offset " + std::to_string(nOffset)), nFrame);
        EXPECT_EQ(SeqAt("--offset " + std::to_string(nOffset)), nKey);
    }
    EXPECT_EQ(RunFramesift("seek --time 0 " + m_recording).output,
              RunFramesift("frames --limit 1 " + m_recording).output);
    json seek = json::parse(RunFramesift("seek --json --time 0 " + m_recording).output);
    json list = json::parse(RunFramesift("frames --json --limit 1 " + m_recording).output);
    seek.erase("raw"); // a file's record tells the type of the stream, a stream's does not
    list.erase("raw");
    EXPECT_EQ(seek, list);
}

} // namespace Marvane::FrameSift
