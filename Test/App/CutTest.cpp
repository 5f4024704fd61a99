#include <cstdlib>
#include <fstream>

#include "App/CommandRun.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

class Cut : public testing::Test
{
protected:
    void SetUp() override { m_bGStreamer = std::system("command -v gst-launch-1.0 >/dev/null") == 0; }

    std::string In(const std::string& name) const { return m_directory.Path() + "/" + name; }

    void Run(const std::string& arguments)
    {
        const CommandResult result = RunFramesift(arguments);
        EXPECT_EQ(result.nExitCode, 0) << arguments << "\n" << result.errors;
        m_errors = result.errors;
    }

    // What GStreamer's own parser makes of a stream, in units of its output; the identity element names each.
    int64_t UnitsByGStreamer(const std::string& path, const std::string& parser) const
    {
        const std::string log = In("gst.log");
        const std::string line = "gst-launch-1.0 -v filesrc location=" + path + " ! " + parser +
                                 " ! identity silent=false ! fakesink >" + log + " 2>&1";
        EXPECT_EQ(std::system(line.c_str()), 0) << ReadText(log);
        const std::string text = ReadText(log);
        int64_t nUnits = 0;
        for (size_t nPos = 0; (nPos = text.find("last-message = chain", nPos)) != std::string::npos; ++nPos)
            ++nUnits;
        return nUnits;
    }

    const TempDirectory m_directory;
    const std::string m_recording = In("recording");
    const std::string m_part = In("part");
    std::string m_errors;
    bool m_bGStreamer = false;
};

struct ROUND_TRIP
{
    std::string file, codec, parser;
    size_t nFirst, nEnd; // units of the part
};

// Of a picture, at 25 in a second.
std::string SecondsOf(size_t nUnit)
{
    return std::to_string(nUnit / 25) + "." + std::to_string(1000 + nUnit % 25 * 40).substr(1);
}

} // namespace

TEST_F(Cut, StreamsComeBackByteForByteAndGStreamerReadsThem)
{
    std::string speech = ReadText(SamplePath("audio/g711a_8k_160.alaw")); // a unit each 20 ms, two for each picture
    while (speech.size() < 60U * 320)
        speech += speech;
    std::ofstream(In("speech"), std::ios::binary) << speech;
    for (const ROUND_TRIP& row : std::vector<ROUND_TRIP>{
             {"h264/cif_baseline_25.h264", "h264", "h264parse ! video/x-h264,alignment=au", 25, 40},
             {"h264/cif_intra_refresh.h264", "h264", "h264parse ! video/x-h264,alignment=au", 20, 59},
             {"h265/cif_opengop_cra.h265", "h265", "h265parse ! video/x-h265,alignment=au", 9, 30},
             {"mpeg4/vga_ntsc_ipb.m4v", "mpeg4", "mpeg4videoparse", 12, 20},
             {"mpeg2/576p25.m2v", "mpeg2", "mpegvideoparse", 0, 20}, // the second key picture has no sequence head
             {"jpeg/vga_mjpeg.mjpg", "jpeg", "jpegparse", 5, 9}}) {
        SCOPED_TRACE(row.file);
        const json units = SampleOf(row.file)["units"];
        const std::string stream = ReadText(SamplePath(row.file));
        Run("mux -o " + m_recording + " --video-codec " + row.codec + " --video " + SamplePath(row.file) +
            " --audio-codec g711a --audio " + In("speech"));
        const std::string times = " --from " + SecondsOf(row.nFirst) + " --to " + SecondsOf(row.nEnd - 1);
        Run("cut" + times + " -o " + m_part + " " + m_recording);
        Run("check " + m_part);
        Run("extract --video " + In("video") + " --audio " + In("audio") + " " + m_part);
        const size_t nBegin = units[row.nFirst]["offset"];
        const size_t nEnd = units[row.nEnd]["offset"];
        EXPECT_TRUE(ReadText(In("video")) == stream.substr(nBegin, nEnd - nBegin));
        // Audio of the same moment stands behind its picture.
        EXPECT_TRUE(ReadText(In("audio")) == speech.substr(row.nFirst * 320, (row.nEnd - row.nFirst) * 320));
        if (m_bGStreamer) {
            EXPECT_EQ(UnitsByGStreamer(In("video"), row.parser), static_cast<int64_t>(row.nEnd - row.nFirst));
        }
        // The same part without the detour.
        Run("extract" + times + " --video " + In("direct") + " " + m_recording);
        EXPECT_TRUE(ReadText(In("direct")) == ReadText(In("video")));
    }
    if (!m_bGStreamer)
        GTEST_SKIP() << "gst-launch-1.0 is not installed: nobody but ourselves has read the streams";
}

TEST_F(Cut, FramesStayAsTheyStandEncipheredOnesToo)
{
    const std::string key = " --key 000102030405060708090a0b0c0d0e0f";
    Run("mux -o " + m_recording + key + " --checksum crc32 --video-codec h264 --video " +
        SamplePath("h264/cif_baseline_25.h264"));
    const std::string whole = ReadText(m_recording);
    // All of it but what belongs to no frame.
    std::ofstream(m_recording, std::ios::binary) << std::string(7, 'x') << whole << whole.substr(0, 30);
    Run("cut --to 100 -o " + m_part + " " + m_recording);
    EXPECT_EQ(ReadText(m_part), whole);
    EXPECT_NE(m_errors.find("37 bytes belong to no frame"), std::string::npos) << m_errors;
    EXPECT_NE(m_errors.find("ends in front of --to"), std::string::npos) << m_errors;
    EXPECT_NE(m_errors.find("50 video frames (2 key)"), std::string::npos) << m_errors;
    const CommandResult toPipe = RunFramesift("cut --from 2026-01-31T10:00:01.500 -o - " + m_recording);
    EXPECT_TRUE(whole.ends_with(toPipe.output));
    Run("cut --from 1.5 -o " + m_part + " " + m_recording);
    EXPECT_EQ(ReadText(m_part), toPipe.output);
    Run("check" + key + " " + m_part);
}

TEST_F(Cut, WhatIsRefusedLeavesTheFilesAlone)
{
    Run("mux -o " + m_recording + " --video-codec h264 --video " + SamplePath("h264/16x16.h264"));
    const std::string whole = ReadText(m_recording);
    std::ofstream(m_part) << "mine";
    for (const auto& [arguments, nExitCode, text] :
         Rows<std::string, int, std::string>{{"-o " + m_part + " ", 2, "--from"},
                                             {"--from 1 -o " + m_recording + " ", 2, "the input and the output"},
                                             {"--from 1 -o " + m_part + " ", 2, "covers"},
                                             {"--from 0.2 --to 0.1 -o " + m_part + " ", 2, "covers"},
                                             {"--to 2026-01-31T09:00:00 -o " + m_part + " ", 2, "covers"},
                                             {"--from 0 -o " + In("none/x") + " ", 3, "No such file"},
                                             {"--from 0 -o /dev/full ", 3, "incomplete"}}) {
        const CommandResult result = RunFramesift("cut " + arguments + m_recording);
        EXPECT_EQ(result.nExitCode, nExitCode) << arguments;
        EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors;
    }
    EXPECT_EQ(ReadText(m_recording), whole);
    EXPECT_EQ(ReadText(m_part), "mine");
}

} // namespace Marvane::FrameSift
