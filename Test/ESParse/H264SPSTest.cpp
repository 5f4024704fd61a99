#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ESParse/H264ESParser.h"
#include "ESParse/H264Units.h"
#include "Support/ChildProcess.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

using namespace H264Units;

TEST(H264SPS, EveryBranchIsSteppedOver)
{
    const std::vector<int32_t> flat(16, 0);
    const std::vector<int32_t> endsEarly = {2, -5, -5}; // 8 + 2 - 5 - 5 = 0
    const std::vector<int32_t> negative = {-1000, -32}; // -224, 0
    const struct
    {
        const char* pName;
        SPS sps;
        const char* pTold;
    } rows[] = {
        {"plain", {}, "352x288@0 of 352x288"},
        {"poc 0", {.nPocType = 0, .nPocBound = 12}, "352x288@0 of 352x288"},
        {"poc 1", {.nPocType = 1, .nPocBound = 15}, "352x288@0 of 352x288"},
        {"4:4:4", {.nProfile = 244, .nChroma = 3, .crop = {{1, 2, 3, 4}}}, "346x274@0 of 352x288"},
        {"lists",
         {.nProfile = 100, .scalingLists = {flat, {}, endsEarly, {}, {}, flat, {}, std::vector<int32_t>(64)}},
         "352x288@0 of 352x288"},
        {"fields", {.bFrameMbsOnly = false, .crop = {{0, 1, 2, 0}}}, "350x280@0 of 352x288"},
        {"crop beyond", {.crop = {{200, 0, 0, 0}}}, "4294967248x288@0 of 352x288"},
        {"VUI", {.timing = {{1, 50}}, .bWholeVui = true}, "352x288@25 of 352x288"},
        {"VUI without timing", {.bWholeVui = true}, "352x288@0 of 352x288"},
        {"tick 12", {.timing = {{12, 600}}}, "352x288@25 of 352x288"},
        {"truncated", {.timing = {{1001, 60000}}}, "352x288@29 of 352x288"},
        {"tick wraps", {.timing = {{0x80000000, 50}}}, "352x288@0 of 352x288"},
        {"negative", {.timing = {{1, 0x80000000}}}, "352x288@-1073741824 of 352x288"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        for (const size_t nStartCodeLen : {3U, 4U}) {
            CH264ESParser parser;
            const Bytes nal = row.sps.Nal(nStartCodeLen);
            h264SPS whole;
            EXPECT_EQ(parser.ParseSPS(nal.data(), LengthOf(nal), whole), 0);
            EXPECT_EQ(Told(whole), row.pTold);
            h264SPS size{.framerate = whole.framerate};
            EXPECT_TRUE(parser.GetPicSize(nal.data(), LengthOf(nal), size));
            EXPECT_EQ(Told(size), row.pTold);
            EXPECT_EQ(whole.interlace, row.sps.bFrameMbsOnly ? 0U : 1U);
            EXPECT_EQ(size.interlace, row.sps.bFrameMbsOnly ? 1U : 0U); // the opposite sense
        }
    }
    for (const uint32_t nProfile : {77U, 88U, 100U, 110U, 122U, 244U, 44U, 83U, 86U, 118U, 128U, 144U, 138U}) {
        CH264ESParser parser;
        h264SPS size;
        // Read by the wrong branch, these lists make another size.
        const Bytes nal = SPS{.nProfile = nProfile, .scalingLists = {negative, flat, {}, {}, {}, {}, {}, {}}}.Nal();
        EXPECT_TRUE(parser.GetPicSize(nal.data(), LengthOf(nal), size)) << nProfile;
        EXPECT_EQ(Told(size), "352x288@0 of 352x288") << nProfile;
    }
}

TEST(H264SPS, RefusedWithTheFunctionsName)
{
    const struct
    {
        SPS sps;
        const char* pMessage;
    } rows[] = {
        {{.nId = 32}, "sps_id out of range\n"},
        {{.nProfile = 100, .nChroma = 4}, ""},
        {{.nProfile = 100, .nChromaDepth = 0}, "Different chroma and luma bit depth.\n"},
        {{.nProfile = 144, .nLumaDepth = 7, .nChromaDepth = 7}, "Illagel bit depth.\n"},
        {{.nPocType = 0, .nPocBound = 13}, "Out of range.\n"},
        {{.nPocType = 1, .nPocBound = 16}, ""},
        {{.nPocType = 3}, ""},
    };
    for (const auto& row : rows) {
        const Bytes nal = row.sps.Nal();
        const auto run = RunInChild([&nal] {
            CKXLog::CreateLog("", 0, nullptr, KX_LOG_LevelWarn);
            CH264ESParser parser;
            h264SPS cleared{.width = 7, .height = 7};
            h264SPS kept = cleared;
            const bool bRefused = parser.ParseSPS(nal.data(), LengthOf(nal), cleared) == -1 &&
                                  !parser.GetPicSize(nal.data(), LengthOf(nal), kept);
            return bRefused && cleared.width == 0 && kept.width == 7 ? 0 : 1;
        });
        EXPECT_EQ(run.nExitCode, 0) << row.pMessage;
        const size_t nFirst = run.output.find(std::string(" ParseSPS ") + row.pMessage);
        const size_t nSecond = run.output.find(std::string(" GetPicSize ") + row.pMessage);
        EXPECT_EQ(nFirst < nSecond && nSecond != std::string::npos, *row.pMessage != '\0') << run.output;
    }
}

TEST(H264SPS, OnlyTheCopyLosesEmulationPrevention)
{
    // A code of 27 zeros, a one and 27 zeros: three zero bytes among them.
    const Bytes nal = SPS{.nLog2FrameNum = (1U << 27) - 1}.Nal();
    CH264ESParser parser;
    h264SPS copied;
    h264SPS inPlace;
    EXPECT_EQ(parser.ParseSPS(nal.data(), LengthOf(nal), copied), 0);
    EXPECT_EQ(Told(copied), "352x288@0 of 352x288");
    parser.GetPicSize(nal.data(), LengthOf(nal), inPlace);
    EXPECT_NE(Told(inPlace), Told(copied));
}

TEST(H264SPS, CutOffUnit)
{
    CH264ESParser parser;
    h264SPS sps;
    // What the copy held behind the unit, 0xC0 0x1E 0xD9 of its front, fills up the second word.
    const Bytes nal = SPS{}.Nal(3);
    EXPECT_EQ(parser.ParseSPS(nal.data(), 4 + 5, sps), 0);
    EXPECT_EQ(Told(sps), "448x3936@0 of 448x3936");
    // In place, ones follow.
    EXPECT_TRUE(parser.GetPicSize(nal.data(), 4 + 5, sps));
    EXPECT_EQ(sps.cropBeforeWidth, 496);
    EXPECT_FALSE(parser.GetPicSize(nal.data(), 4, sps));
    EXPECT_EQ(parser.ParseSPS(nullptr, 9, sps), -1);
    EXPECT_FALSE(parser.GetPicSize(nullptr, 9, sps));
}

} // namespace Marvane::FrameSift
