#include "ESParse/H264ESParser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ESParse/H264Units.h"
#include "Support/Mutations.h"

namespace Marvane::FrameSift {

using namespace H264Units;

namespace {

FrameInfo Parse(CH264ESParser& parser, const Bytes& frame, int32_t nSubTypeBefore = 99)
{
    FrameInfo info{};
    info.frameSubType = nSubTypeBefore;
    EXPECT_EQ(parser.Parse(frame.data(), LengthOf(frame), info), 0);
    return info;
}

} // namespace

TEST(H264Nal, LegalReferenceMarks)
{
    CH264ESParser parser;
    // By type: '0' legal with nal_ref_idc 0 only, '1' with another only, '*' with both.
    const std::string rules = "*****101100001******************";
    for (uint32_t nType = 0; nType < 32; ++nType) {
        for (const uint32_t nRefIdc : {0U, 1U, 2U, 3U}) {
            const auto nHeader = static_cast<uint8_t>(nRefIdc << 5 | nType);
            const bool bLegal = rules[nType] == '*' || (rules[nType] == '0') == (nRefIdc == 0);
            EXPECT_EQ(parser.IsLegalNal(&nHeader, 1), bLegal) << int{nHeader};
            const auto nForbidden = static_cast<uint8_t>(nHeader | 0x80);
            EXPECT_FALSE(parser.IsLegalNal(&nForbidden, 1));
        }
    }
    EXPECT_FALSE(parser.IsLegalNal(nullptr, 1));
    EXPECT_FALSE(parser.IsLegalNal(Bytes{0x67}.data(), 0));
}

TEST(H264Slice, SubTypeAndStructure)
{
    const int32_t subTypes[] = {1, 2, 0, -1, -1, 1, 2, 0, -1, -1};
    for (uint32_t nType = 0; nType < std::size(subTypes); ++nType) {
        CH264ESParser parser;
        const Bytes nal = SLICE{.nType = nType, .nFrameNum = 9, .nFirstMb = 3}.Nal();
        h264Slice slice;
        EXPECT_EQ(parser.ParseSlice(nal.data(), LengthOf(nal), slice), 0);
        EXPECT_EQ(static_cast<int32_t>(slice.frame_type), subTypes[nType]);
        EXPECT_EQ(slice.slice_type * 100 + slice.first_mb_in_slice * 10 + slice.frame_num, nType * 100 + 39);
        EXPECT_EQ(parser.GetFrameSubType(nal.data(), LengthOf(nal)), subTypes[nType]);
        EXPECT_EQ(int32_t{Parse(parser, SPS{}.Nal() + nal).frameSubType}, subTypes[nType]);
    }
    CH264ESParser parser;
    h264Slice slice;
    const Bytes badSet = SLICE{.nPps = 256}.Nal();
    EXPECT_EQ(parser.ParseSlice(badSet.data(), LengthOf(badSet), slice), -1);
    for (const uint32_t nLen : {13U, 12U}) // nine bytes behind the header, eight
        EXPECT_EQ(parser.ParseSlice(SLICE{}.Nal(3).data(), nLen, slice), nLen == 13 ? 0 : -1);

    const Bytes set = SPS{.nLog2FrameNum = 6, .bFrameMbsOnly = false}.Nal();
    h264SPS size;
    EXPECT_TRUE(parser.GetPicSize(set.data(), LengthOf(set), size));
    const SLICE slices[] = {{.nFrameNum = 1000, .field = true, .nFrameNumBits = 10},
                            {.nFrameNum = 1023, .field = true, .bBottom = true, .nFrameNumBits = 10},
                            {.nFrameNum = 512, .field = false, .nFrameNumBits = 10}};
    for (int n = 0; n < 3; ++n) {
        const Bytes nal = slices[n].Nal();
        slice = {};
        EXPECT_EQ(parser.ParseSlice(nal.data(), LengthOf(nal), slice), 0);
        EXPECT_EQ(slice.frame_num, slices[n].nFrameNum);
        EXPECT_EQ(slice.picture_structure, static_cast<uint32_t>(n + 1));
        EXPECT_EQ(parser.GetPicStructure(nal.data(), LengthOf(nal)), n + 1);
    }
    EXPECT_EQ(parser.GetPicStructure(set.data(), LengthOf(set)), 0);
    EXPECT_EQ(parser.GetFrameSubType(set.data(), LengthOf(set)), -1);
}

TEST(H264Parse, FramesInheritFromTheLastIFrame)
{
    const Bytes set = SPS{.crop = {{0, 0, 0, 4}}, .timing = {{1, 50}}}.Nal();
    const Bytes other = SPS{.bFrameMbsOnly = false, .timing = {{1, 60}}}.Nal();
    const Bytes frameI = SLICE{}.Nal();
    const Bytes frameP = SLICE{.nType = 5, .nHeader = 0x41}.Nal();
    CH264ESParser parser;
    EXPECT_EQ(Told(Parse(parser, frameP)), "1 0x0@0 of 0x0");
    // A set before any I frame serves this frame alone, and leaves the caller's subtype.
    EXPECT_EQ(Told(Parse(parser, set + frameP, 42)), "42 352x280@25 of 352x288");
    EXPECT_EQ(Told(Parse(parser, frameP)), "1 0x0@0 of 0x0");
    EXPECT_EQ(Told(Parse(parser, set + frameI)), "0 352x280@25 of 352x288");
    EXPECT_EQ(Told(Parse(parser, SLICE{.nType = 3}.Nal())), "-1 352x280@25 of 352x288");
    EXPECT_EQ(Told(Parse(parser, other + frameP)), "1 352x280@25 of 352x288"); // waits for the next I frame
    EXPECT_EQ(Told(Parse(parser, frameI)), "0 352x288@30 of 0x0");
    EXPECT_EQ(Told(Parse(parser, frameP)), "1 352x288@30 of 0x0");
    EXPECT_EQ(Told(Parse(parser, SPS{.nId = 32}.Nal() + frameI)),
              "0 352x288@30 of 0x0"); // a refused set tells nothing
    EXPECT_EQ(int32_t{Parse(parser, set + frameI + frameP).pictrueStructure}, 0);
    FrameInfo info{};
    EXPECT_EQ(parser.Parse(nullptr, 1, info), -1);
    EXPECT_EQ(parser.Parse(frameI.data(), 0, info), -1);
    EXPECT_EQ(parser.GetEncodeType(), KX_ENCODE_VIDEO_ZO_H264);
}

TEST(H264Parse, WhereTheScanEnds)
{
    const Bytes set = SPS{}.Nal(3);
    const Bytes svc = NalUnit({0x74}, Bytes(20, 0x55), 3);
    CH264ESParser parser;
    EXPECT_EQ(Told(Parse(parser, set + svc + SLICE{.nType = 5}.Nal())), "0 352x288@0 of 352x288");
    EXPECT_TRUE(parser.IsSVC());
    // The last unit loses a byte: one behind its end, or one with the low bits of the rate, for which ones are read.
    const Bytes timed = SPS{.timing = {{1, 0x01010132}}}.Nal(3);
    EXPECT_EQ(Told(Parse(parser, timed + Bytes{0})), "0 352x288@8421529 of 352x288");
    EXPECT_EQ(Told(Parse(parser, timed)), "0 352x288@8421535 of 352x288");
    EXPECT_FALSE(parser.IsSVC());
    // A slice whose mark is illegal (IDR, nal_ref_idc 0) is passed over, and ends no unit either.
    EXPECT_EQ(int32_t{Parse(parser, SLICE{.nHeader = 0x05}.Nal() + SLICE{.nType = 6}.Nal()).frameSubType}, 2);
    // The first bytes of a unit are all that is read: with a start code behind 256 bytes it is none.
    h264Slice slice;
    const Bytes late = Bytes(256, 0xFF) + SLICE{.nType = 6}.Nal();
    EXPECT_EQ(parser.ParseSlice(late.data(), LengthOf(late), slice), 0);
    EXPECT_EQ(slice.slice_type, 0U); // ones, all zero codes

    ES_PARSER_INFO info;
    EXPECT_EQ(parser.Parse_KX(set.data(), 3, info), 0);
    EXPECT_EQ(parser.ParseNal(nullptr, 9, 7, info), -1);
}

TEST(H264FrameBorder, FullAndNextFrame)
{
    const Bytes set = SPS{.bFrameMbsOnly = false}.Nal();
    const auto field = [](uint32_t nFrameNum, uint32_t nFirstMb) {
        return SLICE{.nFrameNum = nFrameNum, .nFirstMb = nFirstMb, .field = true};
    };
    const SLICE frame{.nFrameNum = 1, .field = false};
    const struct
    {
        const char* pName;
        Bytes bytes;
        bool bFull;
        bool bNext;
    } rows[] = {
        {"first of a frame", frame.Nal(), true, true},
        {"the same behind three bytes", frame.Nal(3), true, true},
        {"second of it", SLICE{.nFrameNum = 1, .nFirstMb = 5, .field = false}.Nal(3), false, false},
        {"a field of it", field(1, 0).Nal(), true, false}, // the same frame_num
        {"second of the next frame", field(2, 5).Nal(3), true, true},
        {"and its next slice", field(2, 9).Nal(), false, false},
        {"parameter set", set, false, true},
        {"message", NalUnit({0x06}, {5, 0}), false, true},
        {"end of sequence", NalUnit({0x0A}, {0}), false, false},
        {"illegal mark", SLICE{.nHeader = 0x05}.Nal(), false, false},
        {"subset", NalUnit({0x6F}, {1}), true, true},
        {"slice cut off", Bytes{0, 0, 1, 0x65, 0x80}, true, false},
        {"header cut off", Bytes{0, 0, 1}, false, false},
    };
    CH264ESParser full;
    CH264ESParser next;
    ES_PARSER_INFO info;
    full.ParseNal(set.data(), LengthOf(set), 7, info);
    next.ParseNal(set.data(), LengthOf(set), 7, info);
    for (const auto& row : rows) {
        EXPECT_EQ(full.IsFullFrame(row.bytes.data(), LengthOf(row.bytes)), row.bFull) << row.pName;
        EXPECT_EQ(next.IsNextFrame(row.bytes.data(), LengthOf(row.bytes)), row.bNext) << row.pName;
        EXPECT_EQ(full.IsSVC(), std::string(row.pName) == "subset");
        EXPECT_FALSE(next.IsSVC()); // stays
    }
    EXPECT_FALSE(full.IsFullFrame(nullptr, 9) || next.IsNextFrame(nullptr, 9));
}

TEST(H264Damage, NothingIsReadOutsideAndNothingHangs)
{
    const std::vector<int32_t> list(64, 1);
    const SPS high{.nProfile = 100, .scalingLists = {{}, {}, {}, {}, {}, {}, list, list}, .bWholeVui = true};
    const SPS fields{.nPocType = 1, .nPocBound = 15, .bFrameMbsOnly = false, .crop = {{1, 2, 3, 4}}};
    const Bytes slices = SLICE{.field = true}.Nal(3) + SLICE{.nType = 6, .nFrameNum = 3, .nFirstMb = 70000}.Nal();
    const std::vector<Bytes> seeds = {high.Nal(3) + slices, fields.Nal() + slices, slices + fields.Nal(), high.Nal(),
                                      NalUnit({0x6F}, Bytes(9, 0)) + NalUnit({0x06}, Bytes(300, 0)) + slices};
    CH264ESParser kept;
    size_t nRead = 0;
    ForEachMutation(seeds, 100000, 264, [&](std::span<uint8_t> bytes) {
        const auto nLen = static_cast<uint32_t>(bytes.size());
        FrameInfo frame{};
        h264SPS size;
        h264Slice slice;
        kept.Parse(bytes.data(), nLen, frame);
        kept.IsFullFrame(bytes.data(), nLen);
        kept.IsNextFrame(bytes.data(), nLen);
        kept.ParseSPS(bytes.data(), nLen, size);
        kept.ParseSlice(bytes.data(), nLen, slice);
        nRead += kept.GetPicSize(bytes.data(), nLen, size) ? 1U : 0U;
        const int nStructure = kept.GetPicStructure(bytes.data(), nLen);
        const int nSubType = kept.GetFrameSubType(bytes.data(), nLen);
        ASSERT_TRUE(nStructure >= 0 && nStructure <= 3 && nSubType >= -1 && nSubType <= 2);
    });
    EXPECT_GT(nRead, 10000U); // else the damage never reaches what lies deep
}

} // namespace Marvane::FrameSift
