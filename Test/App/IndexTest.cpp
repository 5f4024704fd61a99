#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

#include "App/CommandRun.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"

namespace Marvane::FrameSift {

namespace {

class IndexOfARecording : public testing::Test
{
protected:
    void SetUp() override
    {
        const CommandResult mux =
            RunFramesift("mux --video " + SamplePath("h264/cif_slices4.h264") + " --video-codec h264 --audio " +
                         SamplePath("audio/g711a_8k_160.alaw") + " --audio-codec g711a -o " + m_recording);
        ASSERT_EQ(mux.nExitCode, 0) << mux.errors;
    }

    static std::vector<json> Objects(const std::string& text)
    {
        std::vector<json> objects;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            objects.push_back(json::parse(line));
        return objects;
    }

    const TempDirectory m_directory;
    const std::string m_recording = m_directory.Path() + "/recording";
    const std::string m_output = m_directory.Path() + "/output";
};

// Whether the process has a handler for SIGINT.
bool CatchesSigint(pid_t nProcess)
{
    std::ifstream status("/proc/" + std::to_string(nProcess) + "/status");
    for (std::string word; status >> word;) {
        uint64_t nMask = 0;
        if (word == "SigCgt:" && status >> std::hex >> nMask)
            return (nMask >> (SIGINT - 1) & 1) != 0;
    }
    return false;
}

bool IsRunning(pid_t nProcess)
{
    siginfo_t ended = {};
    return waitid(P_PID, static_cast<id_t>(nProcess), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0;
}

// Starts the command, presses Ctrl-C as soon as it listens for that, and answers the exit code; -1 if the signal killed it.
int InterruptFramesift(std::vector<std::string> arguments, const std::string& errors)
{
    const pid_t nChild = fork();
    if (nChild == 0) {
        std::signal(SIGINT, SIG_DFL); // who runs the tests in the background has it ignored
        if (std::freopen(errors.c_str(), "w", stderr) == nullptr)
            _exit(99);
        arguments.insert(arguments.begin(), FRAMESIFT_COMMAND);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        execv(pointers[0], pointers.data());
        _exit(99);
    }
    while (IsRunning(nChild) && !CatchesSigint(nChild))
        usleep(1000);
    usleep(100000); // into the pass
    kill(nChild, SIGINT);
    int nStatus = 0;
    waitpid(nChild, &nStatus, 0);
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

} // namespace

TEST_F(IndexOfARecording, HoldsTheFramesWithTheirNumbers)
{
    const CommandResult index = RunFramesift("index --json " + m_recording);
    ASSERT_EQ(index.nExitCode, 0) << index.errors;
    auto entries = Objects(index.output);
    auto frames = Objects(RunFramesift("frames --json " + m_recording).output);
    ASSERT_EQ(entries.size(), frames.size());
    for (size_t n = 0; n < frames.size(); ++n) {
        EXPECT_EQ(entries[n]["index"], n);
        entries[n].erase("index");
        entries[n].erase("raw"); // a file client is told more than a stream client
        frames[n].erase("raw");
        EXPECT_EQ(entries[n], frames[n]) << n;
    }
    // CSV: the same table with a column in front.
    std::istringstream expected(RunFramesift("frames --csv " + m_recording).output);
    const CommandResult csv = RunFramesift("index " + m_recording + " -o " + m_output);
    EXPECT_EQ(csv.nExitCode, 0) << csv.errors;
    EXPECT_EQ(csv.output, "");
    std::istringstream written(ReadText(m_output));
    int nNumber = -1;
    for (std::string frame, entry; std::getline(expected, frame); ++nNumber) {
        ASSERT_TRUE(std::getline(written, entry));
        EXPECT_EQ(entry, (nNumber < 0 ? "index" : std::to_string(nNumber)) + "," + frame);
    }
    EXPECT_EQ(nNumber, static_cast<int>(frames.size()));
    const auto keys = Objects(RunFramesift("index --json --keys-only " + m_recording).output);
    ASSERT_EQ(keys.size(), 2U);
    EXPECT_EQ(frames.at(keys[1]["index"])["offset"], keys[1]["offset"]);
}

TEST_F(IndexOfARecording, NeverWritesOverTheRecording)
{
    const std::string before = ReadText(m_recording);
    EXPECT_EQ(RunFramesift("index " + m_recording + " -o " + m_recording).nExitCode, 2);
    EXPECT_EQ(ReadText(m_recording), before);
    EXPECT_EQ(RunFramesift("index " + m_recording + ".none -o " + m_output).nExitCode, 3);
    EXPECT_FALSE(std::filesystem::exists(m_output));
    EXPECT_EQ(RunFramesift("index " + m_recording + " -o /dev/full").nExitCode, 3);
}

TEST_F(IndexOfARecording, CtrlCStopsAPassAndKeepsWhatIsWritten)
{
    const std::string whole = RunFramesift("index " + m_recording).output;
    std::filesystem::resize_file(m_recording, uintmax_t{1} << 40); // a hole behind the frames: hours of reading
    const std::string errors = m_directory.Path() + "/errors";
    EXPECT_EQ(InterruptFramesift({"index", m_recording, "-o", m_output}, errors), 130);
    EXPECT_EQ(ReadText(errors), "framesift: interrupted\n");
    EXPECT_EQ(ReadText(m_output), whole);
    EXPECT_EQ(InterruptFramesift({"info", m_recording}, errors), 130);
    EXPECT_EQ(ReadText(errors), "framesift: interrupted\n");
    // While it is still looked for what format it is.
    std::ofstream(m_recording, std::ios::trunc).close();
    std::filesystem::resize_file(m_recording, uintmax_t{1} << 40);
    EXPECT_EQ(InterruptFramesift({"info", m_recording}, errors), 130);
}

} // namespace Marvane::FrameSift
