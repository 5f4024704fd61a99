#include <cstdlib>
#include <fstream>

#include "App/CommandRun.h"
#include "FrameWriter/LegacyFrameWriter.h"
#include "FrameWriter/RecordingClock.h"
#include "Support/Samples.h"
#include "Support/Sift.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

const std::string sc_mpeg4 = "mpeg4/cif25_ip.m4v";
const std::string sc_noFrame = "no frame of a stream of type old (194) in ";
constexpr size_t sc_groupFrames = 100; // 20 s at 5 pictures a second

class LegacyReading : public testing::Test
{
protected:
    void Write(const Bytes& bytes) const
    {
        std::ofstream(m_recording, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    CommandResult Run(const std::string& verb) const { return RunFramesift(verb + " " + m_recording); }

    std::string Mux(const std::string& arguments) const
    {
        const CommandResult mux = RunFramesift("mux -o " + m_recording + " --family " + arguments);
        EXPECT_EQ(mux.nExitCode, 0) << mux.errors;
        return mux.errors;
    }

    const TempDirectory m_directory;
    const std::string m_recording = m_directory.Path() + "/recording";
    const std::string m_part = m_directory.Path() + "/part";
};

std::string AudioOf(size_t nBytes, const std::string& directory)
{
    const std::string path = directory + "/audio";
    std::ofstream(path, std::ios::binary) << ReadText(SamplePath("audio/g711a_8k_160.alaw")).substr(0, nBytes);
    return " --audio-codec g711a --audio " + path;
}

// A key frame and those that repeat its time.
Bytes Group(CLOCK_MS nSeconds)
{
    const Bytes payload = {0, 0, 1, 0x65, 9, 8, 7, 6};
    LEGACY_PICTURE picture;
    picture.bH264 = true;
    picture.nFrameRate = 5;
    picture.time = *ClockToTime(*ParseClock("2014-05-06T07:00:00") + nSeconds * 1000);
    Bytes group = NewKeyFrame(NEW_HEADS::New, picture, payload);
    const Bytes other = OldAudioFrame(14, 2, Filler(20)) + NewOtherFrame(NEW_HEADS::New, true, payload);
    for (size_t n = 1; n < sc_groupFrames; ++n)
        group.insert(group.end(), other.begin(), other.end());
    return group;
}

} // namespace

TEST_F(LegacyReading, ASlowPipeIsReadAsAFileIs)
{
    for (const std::string family : {"hb", "zopt"}) {
        Mux(family + " --video-codec mpeg4 --video " + SamplePath(sc_mpeg4));
        const std::string line = "{ head -c 3000 " + m_recording + "; sleep 0.3; tail -c +3001 " + m_recording +
                                 "; } | " FRAMESIFT_COMMAND " frames --csv - 2>&1 >" + m_part;
        ASSERT_EQ(std::system((line + " | grep -q damage").c_str()), 0);
        EXPECT_TRUE(ReadText(m_part) == Run("frames --csv").output) << ReadText(m_part);
    }
}

TEST_F(LegacyReading, AFormatWithoutAFrameIsNone)
{
    Write(LegacyEndMark() + Filler(300));
    for (const std::string verb : {"frames", "ivs", "info", "check", "index", "seek --offset 0"}) {
        const CommandResult run = Run(verb);
        EXPECT_EQ(run.nExitCode, 4) << verb;
        EXPECT_NE((run.output + run.errors).find(sc_noFrame), std::string::npos) << verb << run.output << run.errors;
    }
    for (const auto& [chCode, bHint] :
         Rows<uint8_t, bool>{{0xB0, true}, {0xB6, true}, {0, true}, {1, true}, {0xB3, false}}) {
        Write(Bytes{0, 0, 1, chCode} + Bytes(4000, 0x55));
        for (const std::string verb : {"frames --chunk 3", "info", "check"}) {
            const CommandResult run = Run(verb);
            EXPECT_EQ(run.nExitCode, 4) << verb;
            const std::string told = run.output + run.errors;
            EXPECT_EQ(told.find("elementary MPEG-4 needs --type 1") != std::string::npos, bHint) << verb << told;
        }
    }
}

TEST_F(LegacyReading, FramesThatShareATimeMakeNoJumpOfTheClock)
{
    const Bytes last = Group(91); // 31 s behind a group of 20 s
    const size_t nGroup = last.size();
    Write(Group(0) + Group(20) + Group(40) + Group(60) + last + LegacyEndMark());
    const json info = json::parse(Run("info --json").output);
    EXPECT_EQ(info["gaps"]["clock_jumps"], 2) << info["gaps"]; // of video and of audio
    // In running time, the last group begins 20 s behind the one in front.
    for (const auto& [time, nGroups] : Rows<std::string, size_t>{{"20", 1}, {"59", 2}, {"60", 3}, {"80", 4}}) {
        const CommandResult seek = Run("seek --json --time " + time);
        ASSERT_EQ(seek.nExitCode, 0) << seek.errors;
        EXPECT_EQ(json::parse(seek.output)["offset"], nGroups * nGroup) << time;
    }
    const CommandResult cut = Run("cut --from 40 --to 59 -o " + m_part);
    EXPECT_EQ(ReadText(m_part).size(), nGroup + 4);
    EXPECT_NE(cut.errors.find(", " + std::to_string(nGroup + 4) + " bytes\n"), std::string::npos) << cut.errors;
}

TEST_F(LegacyReading, TheTableShowsWhatARecordKnows)
{
    const Bytes picture = {0, 0, 1, 0xB3, 0x6B, 0xD7, 0x40, 0, 0, 1, 0xB6, 0x10, 1, 2, 3, 4};
    Bytes unlikely = ZoptFrame(picture);
    unlikely[4] = 50; // where no frame begins
    const Bytes two = ZoptFrame(picture) + ZoptFrame(picture);
    Write(two + unlikely + two + two + LegacyEndMark());
    const std::string table = Run("frames").output;
    EXPECT_NE(table.find("  13:30:29  "), std::string::npos) << table;
    const std::string damaged = Run("frames --errors-only").output;
    EXPECT_EQ(damaged.find(" 50 "), std::string::npos) << damaged;
    const json row = json::parse(Run("frames --errors-only --json").output);
    EXPECT_TRUE(row["error"] == "length" && row["payload_length"].is_null() && row["payload_offset"].is_null()) << row;
}

TEST_F(LegacyReading, MuxTellsWhatWillNotBeSeen)
{
    for (const auto& [family, nFrames, bSeen] :
         Rows<std::string, size_t, bool>{{"audio", 1, false}, {"audio", 2, true}, {"audio-ex", 1, true}}) {
        const std::string errors = Mux(family + AudioOf(160 * nFrames, m_directory.Path()));
        EXPECT_EQ(errors.find("one audio frame alone is not seen") == std::string::npos, bSeen) << family << errors;
        EXPECT_EQ(Run("frames --type 194").nExitCode, bSeen ? 0 : 4) << family;
    }

    // Each picture of these has a few bytes: the last ones are cut short together.
    Bytes stream = ReadSample(sc_mpeg4);
    for (const uint8_t chLast : {uint8_t{1}, uint8_t{2}, uint8_t{3}})
        stream = stream + Bytes{0, 0, 1, 0xB6, 0x56} + Bytes(35, chLast);
    Write(stream);
    ASSERT_EQ(std::rename(m_recording.c_str(), m_part.c_str()), 0);
    const std::string errors = Mux("mpeg4 --video-codec mpeg4 --video " + m_part);
    EXPECT_NE(errors.find("the last 2 pictures begin within 96 bytes of the end"), std::string::npos) << errors;
}

} // namespace Marvane::FrameSift
