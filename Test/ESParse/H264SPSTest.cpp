#include "ESParse/H264Units.h"
#include "Support/LogOf.h"

namespace Marvane::FrameSift {

using namespace H264Units;

TEST(H264SPS, EveryBranchIsSteppedOver)
{
    const std::vector<int32_t> flat(16, 0);
    const std::vector<int32_t> endsEarly = {2, -5, -5}; // 8 + 2 - 5 - 5 = 0
    const std::vector<std::vector<int32_t>> lists = {flat, {}, endsEarly, {}, {}, flat, {}, std::vector<int32_t>(64)};
    const CBitWriter poc1 = CBitWriter().Ue(1).Flag(true).Se(-3).Se(5).Ue(15).Ses(std::vector<int32_t>(15, -7));
    for (const auto& [pName, sps, pTold] : Rows<const char*, SPS, const char*>{
             {"plain", {}, "352x288@0 of 352x288"},
             {"poc 0", {.poc = CBitWriter().Ue(0).Ue(12)}, "352x288@0 of 352x288"},
             {"poc 1", {.poc = poc1}, "352x288@0 of 352x288"},
             {"4:4:4", {.nProfile = 244, .high = High(3), .crop = {1, 2, 3, 4}}, "346x274@0 of 352x288"},
             {"lists", {.nProfile = 100, .high = High(1, 2, 2, lists)}, "352x288@0 of 352x288"},
             {"fields", {.bFrameMbsOnly = false, .crop = {0, 1, 2, 0}}, "350x280@0 of 352x288"},
             {"crop beyond", {.crop = {200, 0, 0, 0}}, "4294967248x288@0 of 352x288"},
             {"VUI", {.vui = Vui(1, 50, true)}, "352x288@25 of 352x288"},
             {"VUI without timing", {.vui = Vui(0, 0, true)}, "352x288@0 of 352x288"},
             {"tick 12", {.vui = Vui(12, 600)}, "352x288@25 of 352x288"},
             {"truncated", {.vui = Vui(1001, 60000)}, "352x288@29 of 352x288"},
             {"tick wraps", {.vui = Vui(0x80000000, 50)}, "352x288@0 of 352x288"},
             {"negative", {.vui = Vui(1, 0x80000000)}, "352x288@-1073741824 of 352x288"}}) {
        SCOPED_TRACE(pName);
        for (const size_t nStartCodeLen : {3U, 4U}) {
            CH264ESParser parser;
            const Bytes nal = sps.Nal(nStartCodeLen);
            h264SPS whole;
            EXPECT_EQ(parser.ParseSPS(nal.data(), LengthOf(nal), whole), 0);
            EXPECT_EQ(Told(whole), pTold);
            h264SPS size{.framerate = whole.framerate};
            EXPECT_TRUE(parser.GetPicSize(nal.data(), LengthOf(nal), size));
            EXPECT_EQ(Told(size), pTold);
            EXPECT_EQ(whole.interlace, sps.bFrameMbsOnly ? 0U : 1U);
            EXPECT_EQ(size.interlace, sps.bFrameMbsOnly ? 1U : 0U); // the opposite sense
        }
    }
    // Read by the wrong branch, these lists make another size: -224, 0.
    const CBitWriter high = High(1, 2, 2, {{-1000, -32}, flat, {}, {}, {}, {}, {}, {}});
    for (const uint32_t nProfile : {77U, 88U, 100U, 110U, 122U, 244U, 44U, 83U, 86U, 118U, 128U, 144U, 138U}) {
        const Bytes nal =
            SPS{.nProfile = nProfile, .high = nProfile == 77 || nProfile == 88 ? CBitWriter() : high}.Nal();
        h264SPS size;
        EXPECT_TRUE(CH264ESParser().GetPicSize(nal.data(), LengthOf(nal), size)) << nProfile;
        EXPECT_EQ(Told(size), "352x288@0 of 352x288") << nProfile;
    }
}

TEST(H264SPS, RefusedWithTheFunctionsName)
{
    std::string expected;
    const Rows<SPS, std::string> rows = {
        {{.nId = 32}, "sps_id out of range"},
        {{.nProfile = 100, .high = High(4)}, ""},
        {{.nProfile = 100, .high = High(1, 2, 0)}, "Different chroma and luma bit depth."},
        {{.nProfile = 144, .high = High(1, 7, 7)}, "Illagel bit depth."},
        {{.poc = CBitWriter().Ue(0).Ue(13)}, "Out of range."},
        {{.poc = CBitWriter().Ue(1).Flag(true).Se(-3).Se(5).Ue(16)}, ""},
        {{.poc = CBitWriter().Ue(3)}, ""}};
    for (const auto& [sps, message] : rows)
        expected += message.empty() ? "" : "warn ParseSPS " + message + "\nwarn GetPicSize " + message + "\n";
    EXPECT_EQ(LogOf([&] {
                  for (const auto& [sps, message] : rows) {
                      const Bytes nal = sps.Nal();
                      CH264ESParser parser;
                      h264SPS cleared{.width = 7, .height = 7};
                      h264SPS kept = cleared;
                      EXPECT_EQ(parser.ParseSPS(nal.data(), LengthOf(nal), cleared), -1) << message;
                      EXPECT_FALSE(parser.GetPicSize(nal.data(), LengthOf(nal), kept)) << message;
                      EXPECT_TRUE(cleared.width == 0 && kept.width == 7) << message;
                  }
              }),
              expected);
}

TEST(H264SPS, CutOffUnit)
{
    CH264ESParser parser;
    h264SPS sps;
    // What the copy held behind the unit, 0xC0 0x1E 0xD9 of its front, fills up the second word.
    const Bytes nal = SPS{}.Nal(3);
    EXPECT_EQ(parser.ParseSPS(nal.data(), 4 + 5, sps), 0);
    EXPECT_EQ(Told(sps), "448x3936@0 of 448x3936");
    EXPECT_TRUE(parser.GetPicSize(nal.data(), 4 + 5, sps)); // in place, ones follow
    EXPECT_EQ(sps.cropBeforeWidth, 496);
    EXPECT_FALSE(parser.GetPicSize(nal.data(), 4, sps) || parser.GetPicSize(nullptr, 9, sps));
    EXPECT_EQ(parser.ParseSPS(nullptr, 9, sps), -1);
    // Four bytes behind its header: the next word is still what the copy held, not ones, and gives an id of 31.
    const Bytes tiny = {0, 0, 1, 0x67, 0x0A, 0, 0x1E, 4, 0, 0, 1, 0x65, 0x88, 0x80, 0, 0, 0, 0, 0, 0, 0};
    FrameInfo frame{};
    EXPECT_EQ(parser.Parse(tiny.data(), LengthOf(tiny), frame), 0);
    EXPECT_EQ(int32_t{frame.width}, 16);
    // A code of 27 zeros, a one and 27 zeros: three zero bytes among them, and only the copy loses what prevents them.
    const Bytes escaped = SPS{.nLog2FrameNum = (1U << 27) - 1}.Nal();
    EXPECT_EQ(parser.ParseSPS(escaped.data(), LengthOf(escaped), sps), 0);
    EXPECT_EQ(Told(sps), "352x288@0 of 352x288");
    EXPECT_TRUE(!parser.GetPicSize(escaped.data(), LengthOf(escaped), sps) || sps.width != 352);
}

} // namespace Marvane::FrameSift
