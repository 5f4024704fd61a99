#include <fstream>
#include <sstream>

#include "App/CommandRun.h"
#include "FrameWriter/LegacyFrameWriter.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

const std::string sc_mpeg4 = "mpeg4/cif25_ip.m4v";
const std::string sc_h264 = "h264/cif_baseline_25.h264";
const std::string sc_audio = "audio/g711a_8k_160.alaw";
const std::string sc_start = " --start 2014-05-06T07:08:09 ";

struct FAMILY
{
    std::string name;
    std::string video; // a sample; empty: audio alone
    std::string inner;
    std::string type; // for readers, where it does not show
    bool bIndexed;
    bool bClock;
    bool bMark; // ends with the ID of a next frame
};

const std::vector<FAMILY> sc_families = {
    {"new", sc_mpeg4, "new", "", true, true, true},
    {"new-ex", sc_h264, "new", "", true, true, true},
    {"new-ex1", sc_h264, "new", "--type 194 ", true, true, true},
    {"hb", sc_mpeg4, "hb", "", false, false, true},
    {"hb", "mpeg4/vga_ntsc_ipb.m4v", "hb", "--type 194 ", false, false, true},
    {"hb", "mpeg4/qcif15_ip.m4v", "hb", "", false, false, true}, // less than the blocks that it takes to be known
    {"zopt", sc_mpeg4, "zopt", "", true, false, true},
    {"audio", "", "audio", "", true, false, true},
    {"audio-ex", "", "audio", "", false, false, true},
    {"mpeg4", sc_mpeg4, "raw-mpeg4", "--type 1 ", true, false, false},
};

std::string VideoOption(const std::string& sample)
{
    return sample.empty() ? ""
                          : " --video " + SamplePath(sample) + " --video-codec " + sample.substr(0, sample.find('/'));
}

std::vector<json> Lines(const std::string& text)
{
    std::vector<json> objects;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        objects.push_back(json::parse(line));
    return objects;
}

class Legacy : public testing::Test
{
protected:
    std::string In(const std::string& name) const { return m_directory.Path() + "/" + name; }

    CommandResult Mux(const std::string& arguments) const
    {
        return RunFramesift("mux -o " + m_recording + " " + arguments);
    }

    void MuxFamily(const FAMILY& family) const
    {
        const CommandResult mux = Mux("--family " + family.name + VideoOption(family.video) + sc_start + "--audio " +
                                      SamplePath(sc_audio) + " --audio-codec g711a");
        ASSERT_EQ(mux.nExitCode, 0) << mux.errors;
        EXPECT_EQ(mux.errors.find("--start has no effect") != std::string::npos, !family.bClock && family.name != "hb");
    }

    const TempDirectory m_directory;
    const std::string m_recording = m_directory.Path() + "/recording";
};

// What a frame says against the unit that went in, by the recording's own bytes where the frame stands in it.
void ExpectUnit(const json& frame, const json& unit, const std::string& stream, const std::string& recording)
{
    ASSERT_EQ(frame["payload_length"], unit["length"]);
    if (!frame["payload_offset"].is_null()) {
        EXPECT_TRUE(recording.substr(frame["payload_offset"], frame["payload_length"]) ==
                    stream.substr(unit["offset"], unit["length"]));
    }
}

void ExpectFormat(const json& frame, const json& unit, const json& width)
{
    if (frame["kind"] == "video") {
        EXPECT_EQ(frame["subtype"], unit["kind"]);
        EXPECT_EQ(frame["width"], width);
    } else {
        EXPECT_EQ(frame["codec"], "g711a");
        EXPECT_EQ(frame["sample_rate"], 8000);
    }
}

// The frames of one kind against the units of a sample.
void ExpectUnits(const std::vector<json>& frames, const std::string& kind, const std::string& sample,
                 const std::string& recording)
{
    const std::string stream = ReadText(SamplePath(sample));
    const json facts = SampleOf(sample);
    const json width = kind == "video" ? facts["facts"]["width"] : json();
    const json& units = facts["units"];
    size_t nUnit = 0;
    for (const json& frame : frames) {
        if (frame["kind"] != kind)
            continue;
        ASSERT_LT(nUnit, units.size());
        const json& unit = units[nUnit++];
        SCOPED_TRACE(nUnit);
        EXPECT_EQ(frame["sequence"], nUnit);
        ExpectUnit(frame, unit, stream, recording);
        ExpectFormat(frame, unit, width);
    }
    EXPECT_EQ(nUnit, units.size());
}

} // namespace

TEST_F(Legacy, WhatMuxWritesIsListedUnitByUnit)
{
    for (const FAMILY& family : sc_families) {
        SCOPED_TRACE(family.name);
        MuxFamily(family);
        const std::string list = "frames --json " + family.type;
        const CommandResult whole = RunFramesift(list + m_recording);
        EXPECT_EQ(whole.nExitCode, 0) << whole.errors;
        if (family.name != "hb") { // where what comes in front of the sixth block at once is lost
            EXPECT_TRUE(RunFramesift(list + "--chunk 700 " + m_recording).output == whole.output);
        }
        EXPECT_NE(whole.errors.find("): " + family.inner + "\n"), std::string::npos) << whole.errors;
        const std::string damage = family.name == "hb" ? "damage  not looked at" : "damage  none\n";
        EXPECT_NE(whole.errors.find(damage), std::string::npos) << whole.errors;
        EXPECT_EQ(whole.errors.find(" on only end the last frame") != std::string::npos, family.bMark);
        const auto frames = Lines(whole.output);
        for (const json& frame : frames) {
            EXPECT_EQ(frame["inner_format"], family.inner);
            EXPECT_EQ(frame["time"].is_null(), !family.bClock);
            EXPECT_EQ(frame["payload_offset"].is_null(), family.name == "hb" && frame["kind"] == "video");
        }
        const std::string recording = ReadText(m_recording);
        ExpectUnits(frames, "audio", sc_audio, recording);
        if (!family.video.empty())
            ExpectUnits(frames, "video", family.video, recording);
        const std::string text = RunFramesift("frames " + family.type + "--type audio --limit 1 " + m_recording).output;
        EXPECT_NE(text.find(" " + family.inner + ": 8000 Hz"), std::string::npos) << text;
    }
}

TEST_F(Legacy, ExtractGivesTheStreamsBack)
{
    for (const FAMILY& family : sc_families) {
        SCOPED_TRACE(family.name);
        MuxFamily(family);
        const std::string video = family.video.empty() ? "" : "--video " + In("video") + " ";
        const CommandResult extract =
            RunFramesift("extract " + family.type + video + "--audio " + In("audio") + " " + m_recording);
        EXPECT_EQ(extract.nExitCode, 0) << extract.errors;
        EXPECT_EQ(extract.errors.find("bytes are no whole frame"), std::string::npos) << extract.errors;
        EXPECT_TRUE(ReadText(In("audio")) == ReadText(SamplePath(sc_audio)));
        if (!video.empty()) {
            EXPECT_TRUE(ReadText(In("video")) == ReadText(SamplePath(family.video)));
        }
        const CommandResult part = RunFramesift("extract " + family.type + "--audio - --from 0 " + m_recording);
        EXPECT_EQ(part.nExitCode, family.bClock ? 0 : 4) << part.errors;
    }
}

TEST_F(Legacy, TheIndexIsTheListingUnlessThereIsNone)
{
    for (const FAMILY& family : sc_families) {
        SCOPED_TRACE(family.name);
        MuxFamily(family);
        const CommandResult index =
            RunFramesift("index " + family.type + m_recording + " -o " + In("index-" + family.name));
        const CommandResult seek = RunFramesift("seek --json --offset 3000 " + family.type + m_recording);
        const CommandResult precise = RunFramesift("seek --json --precise --offset 3000 " + family.type + m_recording);
        if (!family.bIndexed) {
            for (const auto& refused : {index, seek, precise}) {
                EXPECT_EQ(refused.nExitCode, 4);
                EXPECT_NE(refused.errors.find("no index"), std::string::npos) << refused.errors;
            }
            EXPECT_FALSE(std::ifstream(In("index-" + family.name)));
            continue;
        }
        const auto frames = Lines(RunFramesift("frames --json " + family.type + m_recording).output);
        std::istringstream lines(ReadText(In("index-" + family.name)));
        std::string line;
        std::getline(lines, line);
        json key = family.video.empty() ? json() : frames[0];
        json next;
        for (const json& frame : frames) {
            ASSERT_TRUE(std::getline(lines, line));
            const std::string offset = frame["offset"].dump();
            EXPECT_EQ(line.substr(line.find(',') + 1, offset.size() + 1), offset + ",");
            if (frame["offset"] <= 3000 && (frame["subtype"] == "I" || family.video.empty()))
                key = frame;
            if (frame["offset"] >= 3000 && next.is_null())
                next = frame;
        }
        EXPECT_FALSE(std::getline(lines, line));
        for (const auto& [result, expected] : Rows<CommandResult, json>{{seek, key}, {precise, next}}) {
            ASSERT_EQ(result.nExitCode, 0) << result.errors;
            const json found = json::parse(result.output);
            for (const char* pField : {"offset", "frame_length", "kind", "width", "time", "inner_format"})
                EXPECT_EQ(found[pField], expected[pField]) << pField;
            EXPECT_TRUE(found["sequence"].is_null());
        }
    }
}

TEST_F(Legacy, InfoAndCheckAccountForWhatHasPlaces)
{
    for (const FAMILY& family : sc_families) {
        SCOPED_TRACE(family.name);
        MuxFamily(family);
        const CommandResult run = RunFramesift("info --json " + family.type + m_recording);
        ASSERT_EQ(run.nExitCode, 0) << run.errors;
        const json info = json::parse(run.output);
        EXPECT_EQ(info["inner_format"], family.inner);
        EXPECT_EQ(info["bytes"], ReadText(m_recording).size());
        EXPECT_EQ(info["frames"]["by_kind"]["audio"], 25);
        if (!family.video.empty()) {
            EXPECT_EQ(info["frames"]["by_kind"]["video"], SampleOf(family.video)["units"].size());
        }
        const CommandResult check = RunFramesift("check " + family.type + m_recording);
        if (family.name == "hb") {
            EXPECT_TRUE(info["gaps"].is_null() && info["damage"].is_null());
            EXPECT_EQ(check.nExitCode, 4);
            continue;
        }
        EXPECT_EQ(info["damage"]["bytes_in_no_frame"], 0);
        EXPECT_EQ(check.nExitCode, 0) << check.output;
        // The last frame waits for what would end it; the raw stream's is whole by definition.
        std::string cut = ReadText(m_recording);
        cut.resize(cut.size() - (family.bMark ? 4 : 10));
        std::ofstream(m_recording, std::ios::binary) << cut;
        EXPECT_EQ(RunFramesift("check " + family.type + m_recording).nExitCode, family.bMark ? 1 : 0);
        const json waiting = json::parse(RunFramesift("info --json " + family.type + m_recording).output)["damage"];
        EXPECT_EQ(waiting["unfinished_bytes"] > 0, family.bMark) << waiting;
    }
}

TEST_F(Legacy, MuxRefusesWhatAFamilyCannotCarry)
{
    std::ofstream(m_recording) << "precious";
    const std::string audio = " --audio " + SamplePath(sc_audio) + " --audio-codec g711a ";
    for (const auto& [arguments, told] : Rows<std::string, std::string>{
             {"new" + VideoOption("h265/16x16.h265"), "carries video of h264, mpeg4"},
             {"new" + VideoOption("h264/638x362_main.h264"), "multiples of 8, up to 2040x2040"},
             {"new-ex --fps 30000/1001" + VideoOption(sc_h264), "whole numbers from 1 to 31"},
             {"new-ex1 --fps 50" + VideoOption(sc_h264), "whole numbers from 1 to 31"},
             {"hb" + VideoOption(sc_h264), "carries video of mpeg4"},
             {"hb --size 360x288" + VideoOption(sc_mpeg4), "multiples of 16, up to 1008x2032"},
             {"hb --size 1024x288" + VideoOption(sc_mpeg4), "up to 1008x2032"},
             {"hb" + audio, "needs --video"},
             {"audio" + VideoOption(sc_mpeg4), "no --video"},
             {"zopt --audio-channels 2" + VideoOption(sc_mpeg4) + audio, "one channel only"},
             {"audio-ex --audio-rate 24000" + audio, "8000, 11025, 16000"},
             {"mpeg4 --key 000102030405060708090a0b0c0d0e0f" + VideoOption(sc_mpeg4), "no ciphers"},
             {"zopt --checksum crc32" + VideoOption(sc_mpeg4), "no payload sums"},
             {"new --ivs " + SamplePath("ivs/scene.json"), "no metadata"}}) {
        const CommandResult mux = Mux("--family " + arguments);
        EXPECT_EQ(mux.nExitCode, 2) << arguments << mux.errors;
        EXPECT_NE(mux.errors.find(told), std::string::npos) << mux.errors;
        EXPECT_EQ(ReadText(m_recording), "precious");
    }
}

TEST_F(Legacy, MuxTellsWhatReadersWillMakeOfIt)
{
    for (const auto& [arguments, told] : Rows<std::string, std::string>{
             {"new" + VideoOption(sc_h264), "take the year 2026 for 2010"},
             {"new-ex --start 2063-01-01T00:00:00" + VideoOption(sc_h264), "take the year 2063 for 2005"},
             {"audio --audio-codec mp2 --audio " + SamplePath("audio/mp2_48k_stereo_192.mp2"), "2 channels"},
             {"mpeg4" + VideoOption(sc_mpeg4), "--type 1"}}) {
        const CommandResult mux = Mux("--family " + arguments);
        EXPECT_EQ(mux.nExitCode, 0) << mux.errors;
        EXPECT_NE(mux.errors.find(told), std::string::npos) << mux.errors;
    }
    const CommandResult ex1 = Mux("--family new-ex1" + VideoOption(sc_h264));
    EXPECT_EQ(std::count(ex1.errors.begin(), ex1.errors.end(), '\n'), 1) << ex1.errors;
}

TEST_F(Legacy, ATypeThatIsFixedMustHaveAParserAndFrames)
{
    MuxFamily(sc_families[0]);
    for (const auto& [arguments, nExitCode] : Rows<std::string, int>{{"frames --type 5 ", 2},
                                                                     {"frames --type 194,1 ", 2},
                                                                     {"frames --type 99999999999 ", 2},
                                                                     {"info --type 0 ", 2},
                                                                     {"index --type video ", 2},
                                                                     {"seek --offset 0 --type 7 ", 2},
                                                                     {"frames --type 8 ", 4},
                                                                     {"index --type 8 ", 4},
                                                                     {"check --type 197 ", 4},
                                                                     {"frames --type 194,video ", 0},
                                                                     {"cut --to 0 -o /dev/null --type 194 ", 0}})
        EXPECT_EQ(RunFramesift(arguments + m_recording).nExitCode, nExitCode) << arguments;
}

} // namespace Marvane::FrameSift
