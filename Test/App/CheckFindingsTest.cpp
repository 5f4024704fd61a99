#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "App/CommandRun.h"
#include "Check/FileCheck.h"
#include "Check/ReportText.h"
#include "FrameWriter/ExtHeads.h"
#include "Frames/CodeNames.h"
#include "Mux/PayloadSeal.h"
#include "Support/Samples.h"
#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_h264 = 2; // codec of head 0x81, on the wire
const Bytes sc_key(16, 0x5A);
const Bytes sc_picture = {0, 0, 0, 1, 0x67, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

class CheckFindings : public testing::Test
{
protected:
    std::string Write(const Bytes& bytes) const
    {
        std::string path = m_directory.Path() + "/x.zoav";
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        return path;
    }
    CHECK_REPORT Of(const Bytes& bytes, const CHECK_OPTIONS& options = {}) const
    {
        return CheckFile(Write(bytes), options);
    }

    const TempDirectory m_directory;
};

// "I1 P2 A1 D7": kinds and numbers.
Bytes Recording(const std::string& frames)
{
    const std::map<char, ZOAV_FRAME> types = {
        {'I', ZOAV_FRAME::I}, {'P', ZOAV_FRAME::P}, {'A', ZOAV_FRAME::Audio}, {'D', ZOAV_FRAME::Data}};
    Bytes bytes;
    char chKind = 0;
    uint32_t nSeq = 0;
    for (std::istringstream text(frames); text >> chKind >> nSeq;)
        bytes = bytes + ZoavFrame().Type(types.at(chKind)).Seq(nSeq).Payload(sc_picture).Build();
    return bytes;
}

// "2 video lost; 1 out-of-order".
std::string Told(const CHECK_REPORT& report)
{
    std::string text;
    for (const auto& [nType, nCount] : report.lostByType)
        text += "; " + std::to_string(nCount) + " " + FrameTypeName(nType) + " lost";
    for (size_t n = 0; n < gsk_findingKinds; ++n) {
        const auto eKind = static_cast<FINDING_KIND>(n);
        if (eKind != FINDING_KIND::LostFrames && report.findings.Count(eKind) > 0)
            text += "; " + std::to_string(report.findings.Count(eKind)) + " " + FindingName(eKind);
    }
    return text.empty() ? text : text.substr(2);
}

ZoavFrame Sealed(ZOAV_FRAME eType, uint32_t nSeq, const Bytes& payload)
{
    const SEAL_OPTIONS options = {sc_key, CIPHER_HEAD::Whole, CHECKSUM::Crc32};
    ZoavFrame frame;
    frame.Type(eType).Seq(nSeq).ExtHead(ExtHead81(sc_h264, 25));
    CPayloadSeal(options).Put(payload, frame);
    return frame;
}

} // namespace

TEST_F(CheckFindings, NumbersOfEachKind)
{
    const Rows<const char*, const char*> rows = {
        // Kinds that are numbered apart: the numbers of the one must not fill the gaps of the other.
        {"I1 A1 P2 A2 P3 A3 A4 A5 A6 P7", "3 video lost"},
        {"A1 I1 A2 P2 A3 P3 A4 A5 A6 P6", "2 video lost"},
        {"I1 D9 P2 D3 P3 D77 P5", "1 video lost"},
        {"I4294967294 P4294967295 P0 P2", "1 video lost"},
        {"I1 A1 A2 P2 A3 A4 P3 A7 A8", "2 audio lost"},
        {"I1 A1 A2 P2 A3 A4 P3 A7", "2 audio lost"},
        {"A1 A2 A3 A4 A6 A7", "1 audio lost"},
        // Audio numbers that do not run by one prove nothing.
        {"A1 A2 A3 A6 A7 A8", ""},
        {"A1 A2 A3 A4 A7 A9 A11", ""},
        {"A5 A3 A9 A2 A2 A40", ""},
        // Kinds that are numbered together.
        {"I1 A2 P3 A4 D5 P6 P7 A8 P9", ""},
        {"I1 A2 P3 A4 P5 P7 A8", "1 unknown lost"},
        {"I1 A2 P3 P4 A5 A6 A7 A8 P9 A10 A12 P13", "1 unknown lost"},
        // Late is not lost.
        {"I1 P2 P4 P3 P5", "1 out-of-order"},
        {"I1 P5 P3 P6", "2 video lost; 1 out-of-order"},
        {"I1 P5 P3 P3 P6", "2 video lost; 1 out-of-order; 1 repeated-number"},
        {"A1 A2 A3 A4 A6 A5 A7", "1 out-of-order"},
        {"I1 P2 P2 P3", "1 repeated-number"},
        {"I1 P2 P3 P2 P4", "1 repeated-number"},
        {"I50 P51 I1 P2 P4", "1 video lost; 1 sequence-restart"},
        {"I50 P51 P1", "1 sequence-restart"},
        {"I1 P40 P5 P6 P7", "38 video lost; 1 sequence-restart"}, // too far back for a late one
    };
    for (const auto& [pFrames, pTold] : rows)
        EXPECT_EQ(Told(Of(Recording(pFrames))), pTold) << pFrames;
    EXPECT_NE(ReportText(Of(Recording("I1 P5 P3 P6"))).find("2 video frames lost: of the numbers 2 to 4"),
              std::string::npos);
}

TEST_F(CheckFindings, FirstFrameThatADecoderCanStartFrom)
{
    const Bytes front = Recording("P3 A1 P4");
    const auto findings = Of(front + Recording("I5 P6")).findings.Listed();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].eKind, FINDING_KIND::NoKeyFrame);
    EXPECT_EQ(findings[0].nOffset, 0);
    EXPECT_EQ(findings[0].after->nOffset, std::ssize(front));
    EXPECT_FALSE(Of(front).findings.Listed()[0].after);
    EXPECT_EQ(Told(Of(Recording("A1 I1 P2"))), "");
}

TEST_F(CheckFindings, APayloadSumThatOthersHave)
{
    const auto frame = [](ZOAV_FRAME eType, uint32_t nSeq, bool bSum) {
        ZoavFrame built = ZoavFrame().Type(eType).Seq(nSeq).Payload(Bytes(64, 0));
        return bSum ? built.ExtHead(ExtHead88(0, 0)).Build() : built.Build();
    };
    const Bytes front = frame(ZOAV_FRAME::I, 1, true);
    const auto recording = [&](bool b2, bool b3, bool b4) {
        return front + frame(ZOAV_FRAME::P, 2, b2) + frame(ZOAV_FRAME::P, 3, b3) + frame(ZOAV_FRAME::P, 4, b4);
    };
    const CHECK_REPORT report = Of(recording(false, true, true));
    EXPECT_EQ(report.eCode, EXIT_CODE::Done);
    EXPECT_EQ(Told(report), "1 no-payload-sum");
    EXPECT_EQ(report.findings.Listed()[0].nOffset, std::ssize(front));
    EXPECT_EQ(report.nSummed, 3U);
    EXPECT_EQ(Told(Of(recording(false, false, false))), ""); // only key frames have one
    EXPECT_EQ(Told(Of(recording(true, true, true) + ZoavFrame().Type(ZOAV_FRAME::P).Seq(5).Build())), ""); // no payload
}

TEST_F(CheckFindings, WhatLiesInAStretch)
{
    const Bytes broken = ZoavFrame().Seq(2).Payload(sc_picture).WrongSum();
    const Bytes block = {'Z', 'O', 'I', 'I', 8, 0, 0, 0};
    const Bytes head = ZoavFrame().Seq(4).ClaimLength(90000).Payload(sc_picture);
    const Bytes stream = Recording("I1") + broken + block + Recording("P3") + head + Recording("P5") + head + broken;
    for (const size_t nChunk : {size_t{1} << 20, size_t{11}}) {
        const CHECK_REPORT report = Of(stream, {.key = {}, .clock = {}, .nChunk = nChunk});
        ASSERT_EQ(Told(report), "2 video lost; 2 stretch; 1 unfinished") << ReportText(report);
        std::vector<Fields> contents;
        for (const auto& finding : report.findings.Listed()) {
            const auto [nHeads, nTails, nBlocks] = finding.contents;
            if (finding.eKind == FINDING_KIND::Stretch)
                contents.push_back(
                    {static_cast<int64_t>(nHeads), static_cast<int64_t>(nTails), static_cast<int64_t>(nBlocks)});
        }
        EXPECT_EQ(contents, (std::vector<Fields>{{1, 1, 1}, {1, 1, 0}})) << nChunk;
    }
}

TEST_F(CheckFindings, AKeyIsTriedOnACopy)
{
    const Bytes frames = Sealed(ZOAV_FRAME::I, 1, sc_picture).Build() + Sealed(ZOAV_FRAME::P, 2, Bytes(33, 7)).Build();
    const CHECK_REPORT right = Of(frames, {.key = sc_key, .clock = {}});
    EXPECT_EQ(Told(right), "");
    EXPECT_EQ(right.nSummed, 2U);
    EXPECT_EQ(right.nDeciphered, 2U);
    EXPECT_EQ(right.nDecipheredKeys, 1U);
    EXPECT_EQ(right.nUnlikePicture, 0U);
    const CHECK_REPORT wrong = Of(frames, {.key = Bytes(16, 1), .clock = {}});
    EXPECT_EQ(wrong.eCode, EXIT_CODE::Done);
    EXPECT_EQ(wrong.nUnlikePicture, 1U);
    EXPECT_NE(ReportText(wrong).find("1 of 1 deciphered key frames do not begin like a picture"), std::string::npos);

    const Bytes mark = {'T', 'E', 'X', 'T', 1, 2, 3, 4, 4, 0, 0, 0, 'm', 'a', 'r', 'k'}; // the sum is none of it
    const Bytes text(64, 7);
    const Rows<Bytes, int32_t, int32_t> rows = {
        // the error with the key and without
        {Sealed(ZOAV_FRAME::P, 2, text).DamagedPayload(5), KX_ERROR_FLAGS_DATA_VERIFY, KX_ERROR_FLAGS_DATA_VERIFY},
        {Sealed(ZOAV_FRAME::P, 2, mark).Type(ZOAV_FRAME::P, 6), KX_ERROR_FLAGS_WATERMARK, KX_ERROR_FLAGS_NOERROR},
        {ZoavFrame().Type(ZOAV_FRAME::P).Seq(2).ExtHead(ExtHead95(0, 8, 64)).Payload(text),
         KX_ERROR_FLAGS_DECRYPTION_FAILURE, KX_ERROR_FLAGS_NOERROR}};
    for (const auto& [frame, nWithKey, nWithoutKey] : rows) {
        for (const bool bKey : {true, false}) {
            const CHECK_REPORT report = Of(Recording("I1") + frame, {.key = bKey ? sc_key : Bytes(), .clock = {}});
            const int32_t nFlag = bKey ? nWithKey : nWithoutKey;
            const bool bGood = nFlag == KX_ERROR_FLAGS_NOERROR;
            EXPECT_EQ(report.damagedByFlag.count(nFlag), bGood ? 0U : 1U) << nFlag;
            EXPECT_EQ(report.GoodFrames(), bGood ? 2U : 1U) << nFlag;
        }
    }
}

TEST_F(CheckFindings, ListsLessForAPersonThanForAProgram)
{
    std::string frames = "I1";
    for (int n = 0; n < 30; ++n)
        frames += " P1";
    const std::string check = "check " + Write(Recording(frames));
    const auto lines = [](const std::string& output) {
        size_t nLines = 0;
        for (size_t nPos = 0; (nPos = output.find("\n  at ", nPos)) != std::string::npos; ++nPos)
            ++nLines;
        return nLines;
    };
    const std::string text = RunFramesift(check).output;
    EXPECT_EQ(lines(text), 20U) << text;
    EXPECT_NE(text.find("and 10 more of the kind repeated-number"), std::string::npos) << text;
    EXPECT_LT(text.find("  bytes "), text.find("  at "));
    EXPECT_EQ(lines(RunFramesift(check + " --max-findings 25").output), 25U);
    const auto object = nlohmann::json::parse(RunFramesift(check + " --json").output);
    EXPECT_EQ(object["files"][0]["findings"].size(), 30U);
    EXPECT_NE(RunFramesift(check + " --clock-back 0.5").errors.find("whole seconds"), std::string::npos);
}

TEST_F(CheckFindings, ExitCodesHoldWhenNothingCanBeWritten)
{
    const std::string path = Write(Recording("I1 P2 A1"));
    const Rows<std::string, int> rows = {{"frames nofile 2>/dev/full", 3},
                                         {"check nofile 2>/dev/full", 3},
                                         {"frames " + path + " 2>/dev/full", 0},
                                         {"frames " + path + " >/dev/full 2>&1", 3},
                                         {"check " + path + " >/dev/full 2>&1", 3},
                                         {"frames --help >/dev/full", 3},
                                         {"frames 2>&-", 2}};
    for (const auto& [arguments, nExitCode] : rows)
        EXPECT_EQ(RunFramesift(arguments).nExitCode, nExitCode) << arguments;

    // A file that is opened must not become the standard error that is closed.
    const std::string mux = "mux --video-codec h264 --video - <" + SamplePath("h264/16x16.h264") + " -o ";
    const std::string copy = m_directory.Path() + "/copy";
    EXPECT_EQ(RunFramesift(mux + path).nExitCode, 0);
    EXPECT_EQ(RunFramesift(mux + copy + " 2>&-").nExitCode, 0);
    EXPECT_EQ(ReadText(copy), ReadText(path));
}

TEST_F(CheckFindings, AListingThatStopsEarlyCallsNothingDamaged)
{
    const std::string text = RunFramesift("frames --limit 2 --chunk 120 " + Write(Recording("I1 P2 P3 P4"))).errors;
    EXPECT_NE(text.find("damage  none\n"), std::string::npos) << text;
    EXPECT_NE(text.find(" not looked at\n"), std::string::npos) << text;
    EXPECT_NE(text.find("of what was read so far"), std::string::npos) << text;
}

} // namespace Marvane::FrameSift
