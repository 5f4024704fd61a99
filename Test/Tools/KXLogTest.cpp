#include "Tools/KXLog.h"

#include <atomic>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <string_view>
#include <thread>

#include "Support/ChildProcess.h"
#include "Support/Matches.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"
#include "Tools/KXSystem.h"

namespace Marvane::FrameSift {
namespace {

void WriteLine(int level, const char* message)
{
    CKXLog::WriteLog(level, "SIFTKIT", "Src/FrameSift", "KX_Destroy", 836, "55751", "%s handle %d.\n", message, 7);
}

// A child's exit code is the result of the call to CreateLog, so that a test can look at it.
int WriteEveryLevel(int nExitCode = 0)
{
    for (int level = KX_LOG_LevelFatal; level <= KX_LOG_LevelHidden; ++level)
        WriteLine(level, "x");
    return nExitCode;
}

// The date as a line shows it.
std::string PrintedDate()
{
    const KXSystemTime now = CKXSystem::getCurrentTime();
    std::ostringstream text;
    text << now.year << '-' << std::setfill('0') << std::setw(2) << now.month + 1 << '-' << std::setw(2) << now.day;
    return text.str();
}

// The level words of the lines in text, as "fatal error "; "?" for a line of another form.
std::string LevelWords(const std::string& text)
{
    const testing::Matcher<std::string> form =
        testing::MatchesRegex("[^ ]+ [^ ]+ [a-z]+ SIFTKIT Src/FrameSift:836 tid:-?[0-9]+ KX_Destroy x handle 7[.]");
    std::string words;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::string date;
        std::string time;
        std::string word;
        std::istringstream(line) >> date >> time >> word;
        words += (form.Matches(line) ? word : "?") + " ";
    }
    return words;
}

TEST(KXLog, SilentUntilAsked)
{
    EXPECT_EQ(RunInChild([] { return WriteEveryLevel(); }).output, "");
    EXPECT_EQ(RunInChild([] { return WriteEveryLevel(CKXLog::CreateLog(nullptr, 0, nullptr, 7)); }).nExitCode, 1);
}

TEST(KXLog, LineToTheLetter)
{
    const std::string dateBefore = PrintedDate();
    const ChildResult result = RunInChild([] {
        const int nResult = CKXLog::CreateLog("", 0, nullptr, KX_LOG_LevelHidden);
        WriteLine(KX_LOG_LevelTrace, "KX_Destroy");
        KX_WRITE_LOG(KX_LOG_LevelHidden, "Src/Test", "%d\n", 42);
        return nResult;
    });
    EXPECT_EQ(result.nExitCode, 0);
    const std::string date = "(" + dateBefore + "|" + PrintedDate() + ")"; // the day may have changed meanwhile
    const std::string when = date + " [0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3} ";
    // A forked thread keeps its number.
    const std::string thread = " tid:" + std::to_string(CKXSystem::getCurrentThreadID()) + " ";
    const std::string form = when + "trace SIFTKIT Src/FrameSift:836" + thread + "KX_Destroy KX_Destroy handle 7[.]\n" +
                             when + "hidden SIFTKIT Src/Test:[0-9]+" + thread + "operator[(][)] 42\n";
    EXPECT_TRUE(Matches(result.output, form)) << result.output;
}

TEST(KXLog, WritesUpToItsLevel)
{
    const std::string words = LevelWords(RunInChild([] {
                                             for (const int nLevel : {0, 3, 7})
                                                 WriteEveryLevel(CKXLog::CreateLog("", 0, nullptr, nLevel));
                                             return 0;
                                         }).output);
    EXPECT_EQ(words, "fatal error warn fatal error warn info trace debug hidden ");
    EXPECT_EQ(CKXLog::TranslateLoglevelToString(0) + CKXLog::TranslateLoglevelToString(8), "");
}

TEST(KXLog, FileNames)
{
    const TempDirectory directory;
    const std::string whole = directory.Path() + "/FlowMorph.log.1";
    for (const std::string& path : {directory.Path(), whole}) {
        const ChildResult result =
            RunInChild([&path] { return WriteEveryLevel(CKXLog::CreateLog(path.c_str(), 0, nullptr, 2)); });
        EXPECT_EQ(result.nExitCode, 0);
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(LevelWords(ReadText(directory.Path() + "/SiftKit.log")), "fatal error ");
    EXPECT_EQ(LevelWords(ReadText(whole)), "fatal error ");
}

TEST(KXLog, ModuleHandleMeansOwnDirectory)
{
    char path[256];
    CKXSystem::GetModulePath(nullptr, path, sizeof path);
    const std::string logName = std::string(path) + "SiftKit.log";
    std::filesystem::remove(logName);
    RunInChild([] {
        int nModule = 0;
        return WriteEveryLevel(CKXLog::CreateLog("/nowhere", 0, &nModule, 1));
    });
    EXPECT_EQ(LevelWords(ReadText(logName)), "fatal ");
    std::filesystem::remove(logName);
}

// The first file stays, whatever comes; only the level changes. Standard output takes over and keeps.
TEST(KXLog, LaterCalls)
{
    const TempDirectory first;
    const TempDirectory second;
    const ChildResult result = RunInChild([&] {
        if (CKXLog::CreateLog("/nowhere/at/all", 0, nullptr, 7) != 0) // not told, and the level stays
            return 1;
        WriteEveryLevel();
        CKXLog::CreateLog(first.Path().c_str(), 0, nullptr, 2);
        WriteEveryLevel();
        CKXLog::CreateLog(second.Path().c_str(), 0, nullptr, 1);
        WriteEveryLevel();
        CKXLog::CreateLog("", 0, nullptr, 1);
        CKXLog::CreateLog(second.Path().c_str(), 0, nullptr, 3);
        WriteEveryLevel();
        return 0;
    });
    EXPECT_EQ(result.nExitCode, 0);
    EXPECT_EQ(LevelWords(ReadText(first.Path() + "/SiftKit.log")), "fatal error fatal ");
    EXPECT_TRUE(std::filesystem::is_empty(second.Path()));
    EXPECT_EQ(LevelWords(result.output), "fatal error warn ");
}

TEST(KXLog, DropsOverlongLineWhole)
{
    const TempDirectory directory;
    const std::string name = directory.Path() + "/SiftKit.log";
    const ChildResult result = RunInChild([&] {
        CKXLog::CreateLog(directory.Path().c_str(), 0, nullptr, 1);
        WriteLine(1, "");
        const size_t nBare = ReadText(name).size();
        WriteLine(1, std::string(8190 - nBare, 'a').c_str());
        WriteLine(1, std::string(8191 - nBare, 'b').c_str());
        CKXLog::WriteLog(1, std::string(9000, 'b').c_str(), "", "", 1, "", "b");
        WriteLine(1, "c");
        return ReadText(name).size() == nBare + 8190 + nBare + 1 ? 0 : 1;
    });
    EXPECT_EQ(result.nExitCode, 0);
    EXPECT_EQ(ReadText(name).find("bb"), std::string::npos);
}

// Several threads write while another sets the level: so many lines that a switch between threads in the middle of one is
// all but sure.
TEST(KXLogThreads, LinesStayWhole)
{
    const TempDirectory directory;
    for (const std::string& path : {directory.Path(), std::string()}) { // a file, standard output
        const ChildResult result = RunInChild([&] {
            CKXLog::CreateLog(path.c_str(), 0, nullptr, 7);
            std::vector<std::thread> threads;
            for (int i = 0; i < 3; ++i)
                threads.emplace_back([] {
                    for (int n = 0; n < 2000; ++n)
                        WriteLine(7, "x");
                });
            for (int n = 0; n < 2000; ++n)
                CKXLog::CreateLog(path.c_str(), 0, nullptr, 7);
            std::for_each(threads.begin(), threads.end(), [](std::thread& thread) { thread.join(); });
            return 0;
        });
        EXPECT_EQ(result.nExitCode, 0); // also what ThreadSanitizer has to say
        const std::string words = LevelWords(path.empty() ? result.output : ReadText(path + "/SiftKit.log"));
        EXPECT_EQ(words.find('?'), std::string::npos);
        EXPECT_EQ(words.size(), 6000 * std::string("hidden ").size());
        EXPECT_EQ(result.output.empty(), !path.empty());
    }
}

// The first line may be written while the log is being opened.
TEST(KXLogThreads, OpenedWhileWriting)
{
    const TempDirectory directory;
    const ChildResult result = RunInChild([&] {
        std::atomic<bool> bStop = false;
        std::thread writer([&] {
            while (!bStop)
                WriteLine(KX_LOG_LevelFatal, "x");
        });
        CKXLog::CreateLog(directory.Path().c_str(), 0, nullptr, KX_LOG_LevelFatal);
        while (std::filesystem::file_size(directory.Path() + "/SiftKit.log") == 0)
            std::this_thread::yield();
        bStop = true;
        writer.join();
        return 0;
    });
    EXPECT_EQ(result.nExitCode, 0);
}

} // namespace
} // namespace Marvane::FrameSift
