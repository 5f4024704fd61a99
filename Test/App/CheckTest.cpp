#include <fstream>
#include <nlohmann/json.hpp>

#include "App/CommandRun.h"
#include "Check/FileCheck.h"
#include "Check/ReportText.h"
#include "FrameWriter/ExtHeads.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

constexpr CLOCK_MS sc_start = 1900000000000;
constexpr size_t sc_headSize = 24;

ZoavFrame Video(uint32_t nSeq, CLOCK_MS nAfterStart)
{
    const KX_TIME time = *ClockToTime(sc_start + nAfterStart);
    ZoavFrame frame;
    frame.Type(nSeq % 10 == 1 ? ZOAV_FRAME::I : ZOAV_FRAME::P).Seq(nSeq).Time(time);
    return frame.ExtHead(ExtHeadA0(static_cast<uint16_t>(time.nMilliSecond)));
}

// Ten frames a second, each of 100 bytes to 1100.
std::vector<Bytes> Camera(uint32_t nSeed, uint32_t nCount)
{
    std::mt19937 random(nSeed);
    std::vector<Bytes> frames;
    for (uint32_t nSeq = 1; nSeq <= nCount; ++nSeq)
        frames.push_back(Video(nSeq, nSeq * 100).Payload(RandomBytes(random, 64 + random() % 1000)));
    return frames;
}

class Check : public testing::Test
{
protected:
    std::string Write(const std::string& name, const Bytes& bytes) const
    {
        const std::string path = m_directory.Path() + "/" + name;
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        return path;
    }

    CHECK_REPORT Of(const Bytes& bytes, const CHECK_OPTIONS& options = {}) const
    {
        CHECK_REPORT report = CheckFile(Write("x.zoav", bytes), options);
        EXPECT_EQ(report.nBytes, bytes.size());
        EXPECT_EQ(report.BytesInParts(), bytes.size());
        return report;
    }

    const TempDirectory m_directory;
};

// The only finding of a kind.
FINDING Sole(const CHECK_REPORT& report, FINDING_KIND eKind)
{
    EXPECT_EQ(report.findings.Count(eKind), 1U) << ReportText(report);
    for (const FINDING& finding : report.findings.Listed()) {
        if (finding.eKind == eKind)
            return finding;
    }
    return {};
}

// A stretch of a stream, changed by chance, and how many frames it leaves whole.
struct DAMAGED_STREAM
{
    DAMAGED_STREAM(const std::vector<Bytes>& frames, std::mt19937& random) : bytes(Joined(frames))
    {
        const size_t nFrom = random() % bytes.size();
        const size_t nTo = std::min(bytes.size(), nFrom + 64 + random() % 3000);
        size_t nPos = 0;
        for (const Bytes& frame : frames) {
            nWhole += nPos + frame.size() <= nFrom || nPos >= nTo ? 1 : 0;
            nPos += frame.size();
        }
        const auto from = bytes.begin() + static_cast<ptrdiff_t>(nFrom);
        const auto to = bytes.begin() + static_cast<ptrdiff_t>(nTo);
        const uint32_t nHow = random() % 4;
        if (nHow == 0)
            bytes.erase(from, to);
        else
            std::generate(from, to, [&] { return nHow == 1 ? uint8_t{0} : static_cast<uint8_t>(random()); });
        if (nHow == 3) { // a head that waits for what never comes
            const Bytes head = Video(7, 0).ClaimLength(static_cast<uint32_t>(random() % 20000000)).Build();
            std::copy_n(head.begin(), std::min(sc_headSize, static_cast<size_t>(to - from)), from);
        }
    }

    Bytes bytes;
    size_t nWhole = 0;
};

} // namespace

TEST_F(Check, NoDamageHidesAWholeFrameAndAllBytesAreAccountedFor)
{
    std::mt19937 random(1);
    for (uint32_t nSeed = 0; nSeed < 60; ++nSeed) {
        SCOPED_TRACE(nSeed);
        const DAMAGED_STREAM stream(Camera(nSeed, 40), random);
        std::string first;
        for (const size_t nChunk : {size_t{1} << 20, size_t{5000}, 1 + random() % 700}) {
            const CHECK_REPORT report = Of(stream.bytes, {.key = {}, .clock = {}, .nChunk = nChunk});
            const std::string text = ReportText(report);
            first = first.empty() ? text : first;
            EXPECT_EQ(text, first) << nChunk;
            EXPECT_GE(report.GoodFrames(), stream.nWhole) << text;
            uint64_t nListed = report.nGoodBytes;
            for (const FINDING& finding : report.findings.Listed())
                nListed += finding.nBytes;
            EXPECT_EQ(nListed, stream.bytes.size()) << text; // the findings say where, and overlap nowhere
        }
    }
}

TEST_F(Check, TellsWhatHappenedToARecording)
{
    const std::vector<Bytes> frames = Camera(1, 50);
    const Bytes stream = Joined(frames);
    const auto at = [&](size_t nFrame) {
        return std::ssize(Joined({frames.begin(), frames.begin() + static_cast<ptrdiff_t>(nFrame)}));
    };
    const CHECK_REPORT clean = Of(stream);
    EXPECT_EQ(clean.eCode, EXIT_CODE::Done);
    EXPECT_TRUE(clean.findings.Listed().empty());
    EXPECT_EQ(clean.nGoodBytes, stream.size());

    const CHECK_REPORT cut = Of(Bytes(stream.begin(), stream.end() - 30));
    EXPECT_EQ(cut.eCode, EXIT_CODE::Damage);
    const FINDING unfinished = Sole(cut, FINDING_KIND::Unfinished);
    EXPECT_EQ(unfinished.nOffset, at(49));
    EXPECT_EQ(unfinished.nAnnounced, frames[49].size());
    EXPECT_EQ(cut.nUnfinishedBytes, frames[49].size() - 30);
    for (const size_t nLeft : {1U, 3U, 4U, 23U, 24U, 47U}) { // at all depths of a head
        const CHECK_REPORT shortly = Of(Bytes(stream.begin(), stream.begin() + at(49) + static_cast<ptrdiff_t>(nLeft)));
        EXPECT_EQ(shortly.nUnfinishedBytes, nLeft);
        EXPECT_EQ(shortly.findings.Listed().size(), 1U);
    }

    Bytes overwritten = stream;
    std::fill(overwritten.begin() + at(20) + 10, overwritten.begin() + at(22) - 10, uint8_t{0x55});
    const CHECK_REPORT hole = Of(overwritten);
    const FINDING stretch = Sole(hole, FINDING_KIND::Stretch);
    EXPECT_EQ(stretch.nOffset, at(20));
    EXPECT_EQ(stretch.nBytes, static_cast<uint64_t>(at(22) - at(20)));
    EXPECT_EQ(stretch.after->nSeq, 23U);
    EXPECT_EQ(Sole(hole, FINDING_KIND::LostFrames).nLost, 2U);

    // The frame in front of the gap now promises bytes that the file does not have; the last ones stand behind it all
    // the same.
    Bytes shortened = stream;
    shortened.erase(shortened.begin() + at(46) + 40, shortened.begin() + at(48) + 70);
    const CHECK_REPORT nearEnd = Of(shortened);
    EXPECT_EQ(nearEnd.GoodFrames(), 47U);
    EXPECT_EQ(nearEnd.nUnfinishedBytes, 0U);
    EXPECT_EQ(Sole(nearEnd, FINDING_KIND::Stretch).after->nSeq, 50U);

    const CHECK_REPORT beheaded = Of(Bytes(stream.begin() + 50, stream.end()));
    EXPECT_EQ(Sole(beheaded, FINDING_KIND::Stretch).nOffset, 0);
    EXPECT_EQ(beheaded.GoodFrames(), 49U);
}

TEST_F(Check, AFrameTooShortForTheParserEndsARecording)
{
    const Bytes last = Video(51, 5100);
    ASSERT_LT(last.size(), 48U);
    EXPECT_EQ(Of(Joined(Camera(2, 50)) + last).eCode, EXIT_CODE::Done);
    EXPECT_EQ(Of(Joined(Camera(2, 50)) + last + Bytes{1, 2, 3}).nOutsideBytes, 3U);
}

TEST_F(Check, ManyWaitingHeadsAreWorkForOnePass)
{
    const Bytes whole = Video(7, 0).ClaimLength(0x1300000);
    const Bytes head(whole.begin(), whole.begin() + sc_headSize);
    Bytes stream = Joined(Camera(3, 5));
    while (stream.size() < 3000000)
        stream = std::move(stream) + head + Video(8, 0).Payload(Filler(20)).Build();
    stream = std::move(stream) + head;
    const CHECK_REPORT report = Of(stream);
    EXPECT_EQ(report.nUnfinishedBytes, sc_headSize);
    EXPECT_EQ(report.nOutsideBytes, (report.GoodFrames() - 5) * sc_headSize);
    EXPECT_EQ(report.findings.Listed().size(), 1000U + 1000 + 1 + 1); // stretches, repeated numbers, one gap, the end
    EXPECT_EQ(report.findings.Count(FINDING_KIND::Stretch), report.GoodFrames() - 5);
}

TEST_F(Check, NumbersAndClock)
{
    const auto recording = [](std::vector<std::pair<uint32_t, CLOCK_MS>> frames) {
        Bytes stream;
        for (const auto& [nSeq, nTime] : frames)
            stream = stream + Video(nSeq, nTime).Payload(Filler(50)).Build();
        return stream;
    };
    const CHECK_REPORT lost = Of(recording({{5, 0}, {6, 40}, {6, 40}, {10, 200}}));
    EXPECT_EQ(lost.eCode, EXIT_CODE::Damage);
    EXPECT_EQ(lost.LostFrames(), 3U);
    EXPECT_NE(ReportText(lost).find("numbers 7 to 9, between 2030-03-17T17:46:40.040 and 2030-03-17T17:46:40.200"),
              std::string::npos)
        << ReportText(lost);
    EXPECT_EQ(Of(recording({{UINT32_MAX, 0}, {0, 40}, {2, 80}})).LostFrames(), 1U); // the numbers wrap

    const CHECK_REPORT restart = Of(recording({{50, 0}, {1, 40}, {2, 80}}));
    EXPECT_EQ(restart.eCode, EXIT_CODE::Done);
    EXPECT_EQ(Sole(restart, FINDING_KIND::SequenceRestart).before->nSeq, 50U);

    const Bytes jumps = recording({{1, 5000}, {2, 4000}, {3, 14000}, {4, 12999}, {5, 23000}});
    const CHECK_REPORT report = Of(jumps);
    EXPECT_EQ(report.eCode, EXIT_CODE::Done);
    ASSERT_EQ(report.findings.Listed().size(), 2U); // neither 1 s back nor 10 s ahead is too much
    EXPECT_EQ(report.findings.Listed()[0].nJump, -1001);
    EXPECT_EQ(report.findings.Listed()[1].nJump, 10001);
    EXPECT_TRUE(Of(jumps, {.key = {}, .clock = {2000, 11000}}).findings.Listed().empty());
}

TEST_F(Check, FramesThatAreThereButDamagedOrEnciphered)
{
    const Bytes zeros(64, 0);
    const Bytes summed = Video(2, 0).ExtHead(ExtHead88(0, 0)).Payload(zeros);
    const Bytes flipped = Video(3, 0).ExtHead(ExtHead88(0, 0)).Payload(zeros).DamagedPayload(9);
    const Bytes mark = {'T', 'E', 'X', 'T', 1, 2, 3, 4, 4, 0, 0, 0, 'm', 'a', 'r', 'k'}; // the sum is none of it
    const Bytes watermark = Video(4, 0).Type(ZOAV_FRAME::P, 6).Payload(mark);
    const Bytes enciphered = Video(5, 0).ExtHead(ExtHead89(0)).Payload(zeros);
    const Bytes block = Bytes{'Z', 'O', 'I', 'I', 20, 0, 0, 0} + Filler(12);
    const CHECK_REPORT report = Of(block + block + Camera(4, 1)[0] + summed + flipped + watermark + enciphered);
    EXPECT_EQ(report.eCode, EXIT_CODE::Damage);
    // A damaged frame is there: none is lost.
    const std::vector<uint64_t> told = {report.GoodFrames(),  report.nSummed,      report.nEnciphered,
                                        report.nDamagedBytes, report.LostFrames(), report.nBlockBytes};
    EXPECT_EQ(told, (std::vector<uint64_t>{3, 1, 1, flipped.size() + watermark.size(), 0, 40}));
    EXPECT_EQ(report.damagedByFlag,
              (std::map<int32_t, uint64_t>{{KX_ERROR_FLAGS_DATA_VERIFY, 1}, {KX_ERROR_FLAGS_WATERMARK, 1}}));
    const CHECK_REPORT withKey = Of(enciphered + block, {.key = Bytes(16, 1), .clock = {}});
    EXPECT_EQ(withKey.nEnciphered, 0U);
    EXPECT_EQ(withKey.eCode, EXIT_CODE::Done); // blocks are no damage
    EXPECT_EQ(Of(enciphered + block + Filler(1)).eCode, EXIT_CODE::Damage);
}

TEST_F(Check, SeveralFilesAndTheWorstOfThemAsText)
{
    const Bytes stream = Joined(Camera(5, 20));
    const std::string clean = Write("clean", stream);
    const std::string damaged = Write("damaged", Bytes(stream.begin(), stream.end() - 1));
    EXPECT_EQ(RunFramesift("check " + clean).nExitCode, 0);
    EXPECT_EQ(RunFramesift("check " + clean + " " + damaged + " - <" + clean).nExitCode, 1);
    EXPECT_EQ(RunFramesift("check " + m_directory.Path() + " " + damaged).nExitCode, 3);
    const CommandResult result = RunFramesift("check " + Write("empty", {}) + " none " + damaged + " " + clean);
    EXPECT_EQ(result.nExitCode, 4);
    EXPECT_NE(result.output.find("clean: no damage found\n"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("damaged: DAMAGED: cut off at the end\n"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("empty: NO RECORDING"), std::string::npos) << result.output;
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 2) << result.errors;
    EXPECT_EQ(RunFramesift("check").nExitCode, 2);
    EXPECT_EQ(RunFramesift("check --max-findings -1 " + clean).nExitCode, 2);
    EXPECT_NE(RunFramesift("check --help").output.find("Example:"), std::string::npos);
}

TEST_F(Check, JsonHoldsFindingsAndErrorsAlike)
{
    using nlohmann::json;
    Bytes stream = Joined(Camera(6, 5)) + Video(9, 1000).Payload(Filler(50)).Build() + Filler(10);
    const std::string path = Write("x", stream);
    const std::string abc = Write("abc", {'a', 'b', 'c'});
    const CommandResult result = RunFramesift("check --json --max-findings 0 " + path + " none " + abc);
    EXPECT_EQ(result.nExitCode, 4);
    const auto limited = json::parse(result.output);
    EXPECT_EQ(limited["schema_version"], 1);
    EXPECT_EQ(limited["exit_code"], 4);
    const json& files = limited["files"];
    ASSERT_EQ(files.size(), 3U);
    EXPECT_TRUE(files[0]["findings"].empty());
    EXPECT_EQ(files[0]["totals"]["frames"]["lost"], 3);
    EXPECT_EQ(files[0]["totals"]["findings_left_out"]["stretch"], 1);
    EXPECT_EQ(files[1]["verdict"], "unreadable");
    EXPECT_NE(files[1]["error"].get<std::string>().find("No such file"), std::string::npos);
    EXPECT_EQ(files[2]["verdict"], "not-recognised");
    EXPECT_EQ(files[2]["sha256"], // of FIPS 180-2
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");

    const auto full = json::parse(RunFramesift("check --json - < " + path).output)["files"][0];
    EXPECT_EQ(full["verdict"], "damaged");
    ASSERT_EQ(full["findings"].size(), 2U);
    const json lost = {{"finding", "lost-frames"}, {"first_lost", 6}, {"last_lost", 8}};
    const json stretch = {{"finding", "stretch"}, {"offset", stream.size() - 10}, {"bytes", 10}, {"after", nullptr}};
    for (const auto& [nFinding, expected] : Rows<size_t, json>{{0, lost}, {1, stretch}}) {
        for (const auto& [name, value] : expected.items())
            EXPECT_EQ(full["findings"][nFinding].at(name), value) << name;
    }
}

} // namespace Marvane::FrameSift
