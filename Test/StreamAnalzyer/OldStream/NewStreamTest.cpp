#include "StreamAnalzyer/OldStream/NewStream.h"

#include "FrameWriter/LegacyFrameWriter.h"
#include "Support/LegacyParse.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

using NewParse = CLegacyParse<CNewStream>;

struct VARIANT
{
    int nType;
    NEW_HEADS eHeads;
    int nKeyHeadLen;
    int nOtherHeadLen;
};

constexpr VARIANT sc_variants[] = {{KX_STREAM_TYPE_NEW, NEW_HEADS::New, 16, 8},
                                   {KX_STREAM_TYPE_NEW_EX, NEW_HEADS::Ex, 16, 8},
                                   {KX_STREAM_TYPE_NEW_EX1, NEW_HEADS::Ex1, 20, 12}};

Bytes Key(const LEGACY_PICTURE& picture, size_t nPayload = 40)
{
    return NewKeyFrame(NEW_HEADS::New, picture, Counting(nPayload));
}

Bytes Other(size_t nPayload = 30)
{
    return NewOtherFrame(NEW_HEADS::New, true, Counting(nPayload));
}

FrameInfo ParseOne(const VARIANT& variant, const LEGACY_PICTURE& picture)
{
    NewParse parse(variant.nType);
    const auto frames = parse.Feed(NewKeyFrame(variant.eHeads, picture, Counting(40)) + LegacyEndMark());
    EXPECT_EQ(frames.size(), 1U);
    return frames.empty() ? FrameInfo{} : frames.front().frame;
}

std::vector<int32_t> Errors(const std::vector<LEGACY_FRAME>& frames)
{
    std::vector<int32_t> errors;
    for (const LEGACY_FRAME& one : frames)
        errors.push_back(one.frame.errorFlags);
    return errors;
}

} // namespace

TEST(NewStream, EachVariantHasItsHeadsAndKeyFrames)
{
    const auto samples = SamplesIn("mpeg4");
    for (const VARIANT& variant : sc_variants) {
        for (const bool bH264 : {false, true}) {
            SCOPED_TRACE(testing::Message() << variant.nType << " " << bH264);
            LEGACY_PICTURE picture;
            picture.bH264 = bH264;
            const Bytes stream = ReadSample(samples.front()["file"]);
            const auto& units = samples.front()["units"];
            Bytes wire;
            for (const json& unit : units) {
                const Bytes payload = UnitOf(stream, unit);
                wire = wire + (unit["key"] ? NewKeyFrame(variant.eHeads, picture, payload)
                                           : NewOtherFrame(variant.eHeads, bH264, payload));
            }
            NewParse parse(variant.nType);
            const auto frames = parse.Feed(wire + LegacyEndMark());
            ASSERT_EQ(frames.size(), units.size());
            for (size_t n = 0; n < frames.size(); ++n) {
                const FrameInfo& frame = frames[n].frame;
                const bool bKey = units[n]["key"];
                EXPECT_EQ(frames[n].payload, UnitOf(stream, units[n]));
                EXPECT_EQ((Fields{frame.frameType, frame.frameSubType, frame.streamType, frame.frameEncodeType,
                                  frame.width, frame.height, frame.frameRate, frame.frameSeq, frame.errorFlags}),
                          (Fields{1, bKey ? 0 : 1, 4, bH264 ? 4 : 1, 352, 288, 25, static_cast<int64_t>(n) + 1, 0}));
                EXPECT_EQ(frame.streamPointer - frame.framePointer, bKey ? variant.nKeyHeadLen : variant.nOtherHeadLen);
                EXPECT_EQ(KX_TIME(frame.frameTime).nHour, 4);
            }
            EXPECT_EQ(parse.parser.GetType(), KX_STREAM_TYPE_NEW);
        }
    }
}

TEST(NewStream, InterlaceAndYearAsRecordersCountThem)
{
    LEGACY_PICTURE picture;
    for (const auto& [nWidth, nHeight, chInterlace, chReserved, bH264, nDeinterlace] :
         Rows<int, int, int, int, bool, int>{{704, 576, 0, 0, true, 0},
                                             {352, 480, 0, 0, false, 0},
                                             {640, 480, 0, 0, true, 2},
                                             {640, 480, 3, 0, true, 3},
                                             {704, 576, 0, 0x12, true, 1},
                                             {704, 576, 0, 0x12, false, 0}}) {
        picture = {.nWidth = nWidth, .nHeight = nHeight};
        picture.chInterlace = static_cast<uint8_t>(chInterlace);
        picture.chReserved = static_cast<uint8_t>(chReserved);
        picture.bH264 = bH264;
        EXPECT_EQ(int32_t{ParseOne(sc_variants[0], picture).deinterlace}, nDeinterlace) << nWidth << " " << chReserved;
    }
    for (const auto& [nYear, nRead, nReadEx1] : Rows<int, int, int>{
             {2019, 2019, 2019}, {2020, 2004, 2020}, {2049, 2033, 2049}, {2050, 2008, 2050}, {2062, 2004, 2062}}) {
        picture.time.nYear = nYear;
        EXPECT_EQ(KX_TIME(ParseOne(sc_variants[1], picture).frameTime).nYear, nRead);
        EXPECT_EQ(KX_TIME(ParseOne(sc_variants[2], picture).frameTime).nYear, nReadEx1);
    }
}

TEST(NewStream, AFrameWaitsForTheNextID)
{
    const Bytes wire = Key({}, 100) + LegacyEndMark();
    NewParse parse(KX_STREAM_TYPE_NEW);
    EXPECT_TRUE(parse.Feed(Part(wire, 0, 119)).empty());
    EXPECT_EQ(parse.Feed(Part(wire, 119)).size(), 1U);
}

TEST(NewStream, LengthsThatLeadNowhere)
{
    // The top byte of a length is no part of it, and leaves the window too.
    Bytes top = Key({}, 0x40) + Other();
    top[15] = 1;
    NewParse parse(KX_STREAM_TYPE_NEW);
    const auto sound = parse.Feed(top + Other());
    ASSERT_EQ(Errors(sound), (std::vector<int32_t>{0, 0}));
    EXPECT_EQ(sound.front().payload.size(), 0x40U);
    EXPECT_EQ(sound.front().bytes[15], 0);

    // Too long for the window, or ending nowhere: the next ID ends the frame.
    for (const uint8_t chMiddleByte : Bytes{0xF0, 0x00}) {
        Bytes wrong = Key({}, 60) + Other() + Other() + LegacyEndMark();
        wrong[12] = 61;
        wrong[14] = chMiddleByte;
        NewParse damaged(KX_STREAM_TYPE_NEW);
        const auto frames = damaged.Feed(wrong);
        ASSERT_EQ(Errors(frames), (std::vector<int32_t>{KX_ERROR_FLAGS_LENGTH, 0, 0}));
        EXPECT_EQ(frames.front().bytes, Part(wrong, 0, 76));
        EXPECT_TRUE(frames.front().frame.streamPointer == frames.front().frame.framePointer);
    }
    // A byte of ones behind the ID reads as a border.
    LEGACY_PICTURE ones;
    ones.chReserved = 0xFF;
    Bytes wrong = Key(ones, 60) + Other() + LegacyEndMark();
    wrong[14] = 0xF0;
    NewParse damaged(KX_STREAM_TYPE_NEW);
    const auto frames = damaged.Feed(wrong);
    ASSERT_EQ(Errors(frames), (std::vector<int32_t>{KX_ERROR_FLAGS_LENGTH, 0}));
    EXPECT_EQ(int32_t{frames.front().frame.frameLen}, 1);
}

TEST(NewStream, NumbersAndWhatIsNoFrame)
{
    NewParse parse(KX_STREAM_TYPE_NEW);
    const LEGACY_PICTURE flat = {.nHeight = 0};
    const auto frames =
        parse.Feed(Other() + Key({}) + OldAudioFrame(14, 2, Counting(20)) + Other() + Key(flat) + Other() +
                   NewDataFrame(5, Counting(9)) + NewDataFrame(3, Counting(30)) + LegacyEndMark());
    std::vector<Fields> told;
    for (const LEGACY_FRAME& one : frames)
        told.push_back({one.frame.frameType, one.frame.frameSeq, one.frame.width, one.frame.streamLen});
    // The first has no key frame in front, the flat key frame and the one behind it are dropped.
    EXPECT_EQ(told, (std::vector<Fields>{
                        {1, 0, 0, 30}, {1, 1, 352, 40}, {2, 1, 0, 20}, {1, 2, 352, 30}, {3, 1, 0, 9}, {3, 2, 0, 35}}));
    EXPECT_EQ(int32_t{frames[2].frame.samplesPerSec}, 8000);
    EXPECT_EQ(KX_TIME(frames[2].frame.frameTime).nYear, 2008); // 2024, as recorders count
}

TEST(NewStream, ABadSampleRateCodeIsMendedInTheStream)
{
    NewParse parse(KX_STREAM_TYPE_NEW);
    const auto frames =
        parse.Feed(OldAudioFrame(48, 14, Counting(20)) + OldAudioFrame(7, 13, Counting(20)) + LegacyEndMark());
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ((Fields{frames[0].bytes[5], frames[0].frame.samplesPerSec, frames[0].frame.bitsPerSample}),
              (Fields{0, 8000, 8}));
    EXPECT_EQ((Fields{frames[1].bytes[5], frames[1].frame.samplesPerSec, frames[1].frame.bitsPerSample}),
              (Fields{13, 64000, 8}));
}

// Whether a length is believed depends on the room that the window has, and so on the chunks. Of sound frames none is
// lost by it: the room has grown when the frame has come.
TEST(NewStream, ALengthAboveTheRoomOfTheWindowIsNotWaitedFor)
{
    Bytes wrong = Key({}, 60) + Other() + Other() + LegacyEndMark();
    wrong[13] = 0x50; // 20 KiB more than there is
    NewParse small(KX_STREAM_TYPE_NEW);
    EXPECT_EQ(Errors(small.Feed(wrong)), (std::vector<int32_t>{KX_ERROR_FLAGS_LENGTH, 0, 0}));
    NewParse large(KX_STREAM_TYPE_NEW);
    EXPECT_TRUE(large.Feed(wrong + Bytes(10000)).empty());
}

} // namespace Marvane::FrameSift
