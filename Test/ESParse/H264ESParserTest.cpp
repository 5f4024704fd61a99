#include "ESParse/H264ESParser.h"

#include "ESParse/H264Units.h"
#include "Support/Mutations.h"

namespace Marvane::FrameSift {

using namespace H264Units;

namespace {

// The subtype in front of the size.
std::string Parse(CH264ESParser& parser, const Bytes& bytes, int32_t nSubTypeBefore = 99)
{
    FrameInfo frame{};
    frame.frameSubType = nSubTypeBefore;
    EXPECT_EQ(parser.Parse(bytes.data(), LengthOf(bytes), frame), 0);
    EXPECT_EQ(int32_t{frame.pictrueStructure}, 0);
    return std::to_string(int32_t{frame.frameSubType}) + " " +
           Told({.width = static_cast<uint32_t>(int32_t{frame.width}),
                 .height = static_cast<uint32_t>(int32_t{frame.height}),
                 .framerate = static_cast<uint32_t>(int32_t{frame.frameRate}),
                 .cropBeforeHeight = frame.cropBeforeHeight,
                 .cropBeforeWidth = frame.cropBeforeWidth});
}

} // namespace

TEST(H264Nal, LegalReferenceMarks)
{
    CH264ESParser parser;
    // By type: '0' legal with nal_ref_idc 0 only, '1' with another only, '*' with both.
    const std::string rules = "*****101100001******************";
    for (uint32_t nHeader = 0; nHeader < 256; ++nHeader) {
        const char chRule = rules[nHeader & 31];
        const bool bLegal = chRule == '*' || (chRule == '0') == (nHeader >> 5 == 0);
        EXPECT_EQ(parser.IsLegalNal(Bytes{static_cast<uint8_t>(nHeader)}.data(), 1), bLegal && nHeader < 128);
    }
    EXPECT_FALSE(parser.IsLegalNal(nullptr, 1) || parser.IsLegalNal(Bytes{0x67}.data(), 0));
}

TEST(H264Slice, SubTypeAndStructure)
{
    const int32_t subTypes[] = {1, 2, 0, -1, -1, 1, 2, 0, -1, -1};
    CH264ESParser parser;
    h264Slice slice;
    for (uint32_t nType = 0; nType < std::size(subTypes); ++nType) {
        const Bytes nal = SLICE{.nType = nType, .nFrameNum = 9, .nFirstMb = 3}.Nal();
        EXPECT_EQ(parser.ParseSlice(nal.data(), LengthOf(nal), slice), 0);
        EXPECT_EQ(static_cast<int32_t>(slice.frame_type), subTypes[nType]);
        EXPECT_EQ(slice.slice_type * 100 + slice.first_mb_in_slice * 10 + slice.frame_num, nType * 100 + 39);
        EXPECT_EQ(parser.GetFrameSubType(nal.data(), LengthOf(nal)), subTypes[nType]);
    }
    const Bytes badSet = SLICE{.nPps = 256}.Nal();
    EXPECT_EQ(parser.ParseSlice(badSet.data(), LengthOf(badSet), slice), -1);
    for (const uint32_t nLen : {13U, 12U}) // nine bytes behind the header, eight
        EXPECT_EQ(parser.ParseSlice(SLICE{}.Nal(3).data(), nLen, slice), nLen == 13 ? 0 : -1);

    const Bytes set = SPS{.nLog2FrameNum = 6, .bFrameMbsOnly = false}.Nal();
    h264SPS size;
    EXPECT_TRUE(parser.GetPicSize(set.data(), LengthOf(set), size));
    int nStructure = 0;
    for (const SLICE& field : {SLICE{.nFrameNum = 1000, .field = true, .nFrameNumBits = 10},
                               SLICE{.nFrameNum = 1023, .field = true, .bBottom = true, .nFrameNumBits = 10},
                               SLICE{.nFrameNum = 512, .field = false, .nFrameNumBits = 10}}) {
        const Bytes nal = field.Nal();
        slice = {};
        EXPECT_EQ(parser.ParseSlice(nal.data(), LengthOf(nal), slice), 0);
        EXPECT_EQ(slice.frame_num, field.nFrameNum);
        EXPECT_EQ(slice.picture_structure, static_cast<uint32_t>(++nStructure));
        EXPECT_EQ(parser.GetPicStructure(nal.data(), LengthOf(nal)), nStructure);
    }
    EXPECT_EQ(parser.GetPicStructure(set.data(), LengthOf(set)), 0);
    EXPECT_EQ(parser.GetFrameSubType(set.data(), LengthOf(set)), -1);
}

TEST(H264Parse, FramesInheritFromTheLastIFrame)
{
    const Bytes set = SPS{.crop = {0, 0, 0, 4}, .vui = Vui(1, 50)}.Nal();
    const Bytes other = SPS{.bFrameMbsOnly = false, .vui = Vui(1, 60)}.Nal();
    const Bytes frameI = SLICE{}.Nal();
    const Bytes frameP = SLICE{.nType = 5, .nHeader = 0x41}.Nal();
    CH264ESParser parser;
    EXPECT_EQ(Parse(parser, frameP), "1 0x0@0 of 0x0");
    // A set before any I frame serves this frame alone, and leaves the caller's subtype.
    EXPECT_EQ(Parse(parser, set + frameP, 42), "42 352x280@25 of 352x288");
    EXPECT_EQ(Parse(parser, frameP), "1 0x0@0 of 0x0");
    EXPECT_EQ(Parse(parser, set + frameI), "0 352x280@25 of 352x288");
    EXPECT_EQ(Parse(parser, SLICE{.nType = 3}.Nal()), "-1 352x280@25 of 352x288");
    EXPECT_EQ(Parse(parser, other + frameP), "1 352x280@25 of 352x288"); // waits for the next I frame
    EXPECT_EQ(Parse(parser, frameI), "0 352x288@30 of 0x0");
    EXPECT_EQ(Parse(parser, frameP), "1 352x288@30 of 0x0");
    EXPECT_EQ(Parse(parser, SPS{.nId = 32}.Nal() + frameI), "0 352x288@30 of 0x0"); // a refused set tells nothing
    FrameInfo info{};
    EXPECT_TRUE(parser.Parse(nullptr, 1, info) == -1 && parser.Parse(frameI.data(), 0, info) == -1);
    EXPECT_EQ(parser.GetEncodeType(), KX_ENCODE_VIDEO_ZO_H264);
}

TEST(H264Parse, WhereTheScanEnds)
{
    const Bytes set = SPS{}.Nal(3);
    const Bytes svc = NalUnit({0x74}, Bytes(20, 0x55), 3);
    CH264ESParser parser;
    EXPECT_EQ(Parse(parser, set + svc + SLICE{.nType = 5}.Nal()), "0 352x288@0 of 352x288");
    EXPECT_TRUE(parser.IsSVC());
    // The last unit loses a byte: one behind its end, or one with the low bits of the rate, for which ones are read.
    const Bytes timed = SPS{.vui = Vui(1, 0x01010132)}.Nal(3);
    EXPECT_EQ(Parse(parser, timed + Bytes{0}), "0 352x288@8421529 of 352x288");
    EXPECT_EQ(Parse(parser, timed), "0 352x288@8421535 of 352x288");
    EXPECT_FALSE(parser.IsSVC());
    // A slice whose mark is illegal (IDR, nal_ref_idc 0) is passed over, and ends no unit either.
    EXPECT_TRUE(Parse(parser, SLICE{.nHeader = 0x05}.Nal() + SLICE{.nType = 6}.Nal()).starts_with("2 "));
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
    const auto slice = [](uint32_t nFrameNum, uint32_t nFirstMb, bool bField, size_t nStartCodeLen = 4) {
        return SLICE{.nFrameNum = nFrameNum, .nFirstMb = nFirstMb, .field = bField}.Nal(nStartCodeLen);
    };
    CH264ESParser full;
    CH264ESParser next;
    ES_PARSER_INFO info;
    full.ParseNal(set.data(), LengthOf(set), 7, info);
    next.ParseNal(set.data(), LengthOf(set), 7, info);
    for (const auto& [pName, bytes, bFull, bNext] :
         Rows<const char*, Bytes, bool, bool>{{"first of a frame", slice(1, 0, false), true, true},
                                              {"the same behind three bytes", slice(1, 0, false, 3), true, true},
                                              {"second of it", slice(1, 5, false, 3), false, false},
                                              {"a field of it", slice(1, 0, true), true, false}, // the same frame_num
                                              {"second of the next frame", slice(2, 5, true, 3), true, true},
                                              {"and its next slice", slice(2, 9, true), false, false},
                                              {"parameter set", set, false, true},
                                              {"message", NalUnit({0x06}, {5, 0}), false, true},
                                              {"end of sequence", NalUnit({0x0A}, {0}), false, false},
                                              {"illegal mark", SLICE{.nHeader = 0x05}.Nal(), false, false},
                                              {"subset", NalUnit({0x6F}, {1}), true, true},
                                              {"slice cut off", {0, 0, 1, 0x65, 0x80}, true, false},
                                              {"header cut off", {0, 0, 1}, false, false}}) {
        EXPECT_EQ(full.IsFullFrame(bytes.data(), LengthOf(bytes)), bFull) << pName;
        EXPECT_EQ(next.IsNextFrame(bytes.data(), LengthOf(bytes)), bNext) << pName;
        EXPECT_EQ(full.IsSVC(), std::string(pName) == "subset");
        EXPECT_FALSE(next.IsSVC()); // stays
    }
    EXPECT_FALSE(full.IsFullFrame(nullptr, 9) || next.IsNextFrame(nullptr, 9));
}

TEST(H264Damage, NothingIsReadOutsideAndNothingHangs)
{
    const std::vector<int32_t> list(64, 1);
    const SPS high{
        .nProfile = 100, .high = High(1, 2, 2, {{}, {}, {}, {}, {}, {}, list, list}), .vui = Vui(1, 50, true)};
    const SPS fields{.poc = CBitWriter().Ue(1).Flag(true).Se(-3).Se(5).Ue(15).Ses(std::vector<int32_t>(15, -7)),
                     .bFrameMbsOnly = false,
                     .crop = {1, 2, 3, 4}};
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
