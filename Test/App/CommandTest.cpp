#include <unistd.h>

#include <fstream>

#include "App/CommandRun.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

class CommandFailures : public testing::Test
{
protected:
    // The code is right, standard output is empty, and standard error holds one line that tells what is wrong.
    void ExpectFailure(const std::string& arguments, int nExitCode, const std::string& text)
    {
        SCOPED_TRACE(arguments);
        const CommandResult result = RunFramesift(arguments);
        EXPECT_EQ(result.nExitCode, nExitCode);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        EXPECT_EQ(result.errors.find("framesift: "), 0U) << result.errors;
        EXPECT_NE(result.errors.find(text), std::string::npos) << result.errors;
    }

    std::string WriteFile(const std::string& name, const std::string& bytes)
    {
        const std::string path = m_directory.Path() + "/" + name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    const TempDirectory m_directory;
    const std::string m_output = " -o " + m_directory.Path() + "/out.zoav";
    const std::string m_h264 = "mux --video-codec h264 --video " + SamplePath("h264/16x16.h264");
};

} // namespace

TEST_F(CommandFailures, WrongUsage)
{
    ExpectFailure("", 2, "name a verb");
    ExpectFailure("bogus", 2, "bogus");
    ExpectFailure("frames", 2, "FILE");
    ExpectFailure("frames --json --csv x", 2, "--csv");
    ExpectFailure("frames --type pictures x", 2, "pictures");
    ExpectFailure("frames --chunk 0 x", 2, "--chunk");
    ExpectFailure("frames --log-level 3 x", 2, "--log");
    ExpectFailure("mux" + m_output, 2, "--video");
    ExpectFailure("mux --video x" + m_output, 2, "--video-codec");
    ExpectFailure("mux --video x --video-codec vp8" + m_output, 2, "vp8");
    ExpectFailure("mux --audio x --audio-codec pcm16 --audio-rate 24000" + m_output, 2, "24000");
    for (const std::string rate : {"0", "256", "25/0", "30000/", "70000/1001", "x"})
        ExpectFailure(m_h264 + " --fps " + rate + m_output, 2, "--fps");
    for (const std::string size : {"0x480", "640", "640x", "640x480x2", "70000x1"})
        ExpectFailure(m_h264 + " --size " + size + m_output, 2, "--size");
    ExpectFailure(m_h264 + " --start 2026-02-30T10:00:00" + m_output, 2, "--start");
    ExpectFailure(m_h264 + " --family mp4" + m_output, 2, "--family");
    ExpectFailure(m_h264 + " --cipher-head 89" + m_output, 2, "--key");
    ExpectFailure(m_h264 + " --cipher-head 90 --key " + std::string(32, '1') + m_output, 2, "--cipher-head");
    ExpectFailure(m_h264 + " --checksum md5" + m_output, 2, "--checksum");
    ExpectFailure("frames --key 12 x", 2, "32, 48 or 64 hex digits");
    ExpectFailure("frames --key @" + SamplePath("README.md") + " x", 2, "--key");
    ExpectFailure("frames x --kyes-only", 2, "no option --kyes-only");
}

TEST_F(CommandFailures, CannotRead)
{
    ExpectFailure("frames " + m_directory.Path() + "/none", 3, "No such file");
    ExpectFailure("frames " + m_directory.Path(), 3, "directory");
    ExpectFailure("frames --key @" + m_directory.Path() + "/none x", 3, "No such file");
    ExpectFailure("mux --video-codec h264 --video " + m_directory.Path() + "/none" + m_output, 3, "No such file");
    ExpectFailure("frames '" + m_directory.Path() + "/a\n\xFF'", 3, "a\\x0a\\xff");
}

TEST_F(CommandFailures, FormatNotRecognised)
{
    ExpectFailure("frames " + WriteFile("empty", ""), 4, "empty");
    ExpectFailure("frames - < /dev/null", 4, "standard input is empty");
    ExpectFailure("frames " + WriteFile("zeros", std::string(5000000, '\0')), 4, "no known stream format");
    ExpectFailure("mux --audio-codec aac --audio " + SamplePath("h264/16x16.h264") + m_output, 4, "no unit of aac");
    EXPECT_FALSE(std::ifstream(m_directory.Path() + "/out.zoav")); // no output without an input
}

TEST_F(CommandFailures, CannotWrite)
{
    ExpectFailure(m_h264 + " -o " + m_directory.Path() + "/none/out.zoav", 3, "No such file");
    ExpectFailure(m_h264 + " -o /dev/full", 3, "incomplete");
    const std::string path = WriteFile("in.h264", ReadText(SamplePath("h264/16x16.h264")));
    ExpectFailure("mux --video-codec h264 --video " + path + " -o " + path, 2, "input and the output");
    EXPECT_EQ(ReadText(path), ReadText(SamplePath("h264/16x16.h264")));
}

TEST_F(CommandFailures, AReaderThatGoesAwayEndsAListingInPeace)
{
    ASSERT_EQ(RunFramesift(m_h264 + m_output).nExitCode, 0);
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    const std::string toNobody = " >&" + std::to_string(ends[1]);
    ExpectFailure("frames " + m_directory.Path() + "/out.zoav" + toNobody, 0, "has closed it; stopped");
    ExpectFailure(m_h264 + " -o -" + toNobody, 3, "incomplete"); // half a recording is no success
    close(ends[1]);
}

TEST(CommandHelp, EachVerbHasAnExample)
{
    for (const std::string arguments : {"--help", "frames --help", "mux --help"}) {
        const CommandResult result = RunFramesift(arguments);
        EXPECT_EQ(result.nExitCode, 0);
        EXPECT_NE(result.output.find("Example"), std::string::npos) << result.output;
        EXPECT_EQ(result.errors, "");
    }
    EXPECT_EQ(RunFramesift("--version").output, "framesift 1.3.44.55751\n");
}

} // namespace Marvane::FrameSift
