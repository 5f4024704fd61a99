#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

#include "Support/Sift.h"
#include "Support/Testing.h"
#include "Support/ZoavParse.h"

namespace Marvane::FrameSift {

namespace {

// A sound frame in front lets the stream be recognised, filler behind lets the last frame be judged.
std::vector<SIFTED_FRAME> SiftBehindGoodFrame(const Bytes& stream)
{
    auto frames = Sift(ZoavFrame().Seq(1) + stream + Filler(100));
    EXPECT_FALSE(frames.empty());
    if (!frames.empty())
        frames.erase(frames.begin());
    return frames;
}

} // namespace

TEST(ZoavFrame, EveryFieldOfTheHead)
{
    const Bytes payload(100, 0xAB);
    const Bytes stream = ZoavFrame().TimeStamp(1000).Payload(payload);
    const auto frames = Sift(stream);
    ASSERT_EQ(frames.size(), 1U);
    const SIFTED_FRAME& frame = frames[0]; // the type of the stream is not told by a stream handle
    EXPECT_EQ((Fields{frame.frameType, frame.frameSubType, frame.frameSeq, frame.timeStamp, frame.errorFlags,
                      frame.frameLen, frame.streamType}),
              (Fields{KX_FRAME_TYPE_VIDEO, KX_FRAME_SUB_TYPE_VIDEO_I_FRAME, 1, 1000, KX_ERROR_FLAGS_NOERROR, 132, 0}));
    EXPECT_EQ(frame.time, (std::vector<int32_t>{2020, 1, 2, 3, 4, 5, 0}));
    EXPECT_EQ(frame.frame, stream);
    EXPECT_EQ(frame.payload, payload);
}

TEST(ZoavFrame, TypesAndSubTypes)
{
    for (const auto& [chType, chSubType, frameType, frameSubType] :
         Rows<uint8_t, uint8_t, int32_t, int32_t>{{0xFD, 0, 1, 0},
                                                  {0xFD, 1, 1, 18},
                                                  {0xFD, 2, 1, 20},
                                                  {0xFD, 3, 1, 0},
                                                  {0xFC, 0, 1, 1},
                                                  {0xFC, 1, 1, 19},
                                                  {0xFE, 1, 1, 2},
                                                  {0xFB, 0, 1, 8},
                                                  {0xF0, 7, 2, 0},
                                                  {0xF1, 0, 3, 15},
                                                  {0xF1, 5, 3, 7},
                                                  {0xF2, 20, 3, 29},
                                                  {0xF1, 25, 3, 28},
                                                  {0xF1, 26, 3, 0},
                                                  {0x55, 0, 3, 256},
                                                  {0x55, 200, 3, 200},
                                                  {0x80, 0, 0, 0}}) {
        STD_FRAME_HEAD head{};
        head.chType = chType;
        head.chSubType = chSubType;
        FrameInfo frame{};
        ParseStdFrameHead(head, frame);
        EXPECT_EQ(int32_t{frame.frameType}, frameType) << int{chType};
        EXPECT_EQ(int32_t{frame.frameSubType}, frameSubType) << int{chType} << "/" << int{chSubType};
    }
}

TEST(ZoavFrame, FamiliesMayMixHeadAndTail)
{
    const auto frames =
        CZoavParse().Feed(ZoavFrame().Family(ZOAV_FAMILY::MYAV).TailFamily(ZOAV_FAMILY::ZOAV).Payload(Filler(30)));
    EXPECT_EQ(int32_t{frames.at(0).frame.errorFlags}, KX_ERROR_FLAGS_NOERROR);
}

TEST(ZoavFrame, TheShortestOnesNeedBytesBehindThem)
{
    const Bytes empty = ZoavFrame().Payload({}).Build();
    ASSERT_EQ(empty.size(), 32U);
    const auto frames = Sift(empty + empty + Filler(15));
    ASSERT_EQ(frames.size(), 1U); // 47 bytes remain at the second
    EXPECT_EQ(frames[0].streamLen, 0);
    EXPECT_EQ(Sift(empty + empty + Filler(16)).size(), 2U);
}

TEST(ZoavFrame, PayloadPrefixes)
{
    const Bytes longOsd = {20, 0, 1, 2, 3, 4, 5, 9, 0, 0, 6, 0, 7, 8, 9, 10, 0, 0, 0, 0, 'O'};
    for (const auto& [pName, chSubType, payload, stripped] :
         Rows<const char*, uint8_t, Bytes, Bytes>{{"overlay", 18, {4, 1, 2, 3, 'P', 'Q'}, {'P', 'Q'}},
                                                  {"overlay that is all prefix", 18, {3, 1, 2}, {}},
                                                  {"overlay of no length", 18, {0, 1, 2}, {0, 1, 2}},
                                                  {"overlay longer than its payload", 18, {9, 1, 2}, {9, 1, 2}},
                                                  {"OSD", 17, {12, 0, 1, 2, 3, 4, 5, 0, 0, 0, 6, 0, 'O'}, {'O'}},
                                                  {"long OSD", 17, longOsd, {'O'}},
                                                  {"OSD longer than its payload", 17, {12, 0, 1}, {12, 0, 1}},
                                                  {"OSD of one byte", 17, {12}, {12}},
                                                  {"other data", 5, {4, 1, 2, 3}, {4, 1, 2, 3}}}) {
        SCOPED_TRACE(pName);
        const auto frames = SiftBehindGoodFrame(ZoavFrame().RawType(0xF1, chSubType).Payload(payload));
        ASSERT_FALSE(frames.empty());
        EXPECT_EQ(frames[0].payload, stripped);
        EXPECT_EQ(frames[0].streamLen, static_cast<int32_t>(stripped.size()));
    }
    FrameInfo frame{};
    Bytes payload = longOsd;
    frame.frameSubType = KX_FRAME_SUB_TYPE_DATA_OSD;
    frame.streamPointer = payload.data();
    frame.streamLen = static_cast<int32_t>(payload.size());
    StripPayloadPrefix(frame);
    EXPECT_EQ((Fields{frame.nOsdTopLeftCornercoordinateX, frame.nOsdTopLeftCornercoordinateY, frame.nOsdWordSize,
                      frame.nOsdWordAlignment, frame.nOsdRgbaValue}),
              (Fields{0x0201, 0x0403, 5, 6, 0x0A090807}));
}

TEST(ZoavDamage, OnlyTheDamagedFrameIsLost)
{
    const Bytes payload(100, 0xAB);
    for (const auto& [pName, damaged] : Rows<const char*, Bytes>{
             {"sum", ZoavFrame().Seq(2).Payload(payload).WrongSum()},
             {"type", ZoavFrame().Seq(2).Payload(payload).RawType(0x80)},
             {"tail length", ZoavFrame().Seq(2).Payload(payload).WrongTailLength()},
             {"tail magic", ZoavFrame().Seq(2).Payload(payload).WrongTailMagic()},
             {"length 0", ZoavFrame().Seq(2).Payload(payload).ClaimLength(0)},
             {"length of less than a tail", ZoavFrame().Seq(2).Payload(payload).ClaimLength(7)},
             {"length above the limit", ZoavFrame().Seq(2).Payload(payload).ClaimLength(0x1400000)},
             {"length with the sign bit", ZoavFrame().Seq(2).Payload(payload).ClaimLength(0xFFFFFFF8)},
             {"shorter than it is", ZoavFrame().Seq(2).Payload(payload).ClaimLength(100)}}) {
        SCOPED_TRACE(pName);
        const Bytes stream =
            ZoavFrame().Seq(1).Payload(payload) + damaged + ZoavFrame().Seq(3).Payload(payload).Build() + Filler(200);
        for (const size_t nChunk : {SIZE_MAX, size_t{1}, size_t{7}}) {
            const auto frames = Sift(stream, FixedChunks(nChunk));
            EXPECT_EQ(GoodSeqs(frames), (std::vector<int32_t>{1, 3}));
            ASSERT_GE(frames.size(), 3U);
            EXPECT_EQ(frames[1].errorFlags, KX_ERROR_FLAGS_LENGTH);
            EXPECT_EQ(frames[1].frameLen, 4);
            EXPECT_EQ(frames[1].frame, (Bytes{'Z', 'O', 'A', 'V'}));
            EXPECT_EQ(frames[1].time[0], 2020); // taken from the doubtful head all the same
        }
    }
}

TEST(ZoavDamage, ALengthWithinTheLimitIsWaitedFor)
{
    CZoavParse cycle;
    EXPECT_TRUE(cycle.Feed(ZoavFrame().ClaimLength(0x13FFFFF) + Filler(100)).empty());
    EXPECT_TRUE(cycle.Feed(ZoavFrame().Seq(2).Payload(Filler(40))).empty()); // held up by the false head, but not lost
    const auto frames = cycle.Feed(Filler(0x1400000)); // the false head, its tail, and the frame behind it
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ(int32_t{frames[2].frame.frameSeq}, 2);
    const FrameInfo longest = CZoavParse().Feed(ZoavFrame().Payload(Filler(0x13FFFFF - 32))).at(0).frame;
    EXPECT_EQ((Fields{longest.errorFlags, longest.frameLen}), (Fields{KX_ERROR_FLAGS_NOERROR, 0x13FFFFF}));
}

TEST(ZoavDamage, ATailAloneIsReportedAndPassed)
{
    const auto frames = SiftBehindGoodFrame(Bytes{'w', 'm', 'a', 'v'} + ZoavFrame().Seq(2).Payload(Filler(40)));
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ((Fields{frames[0].errorFlags, frames[0].frameLen, frames[1].frameSeq}),
              (Fields{KX_ERROR_FLAGS_LOST_HEADER, 4, 2}));
}

// A frame whose own head reads as its tail passes for sound; it has no payload that could be pointed at.
TEST(ZoavDamage, AFrameShorterThanItsHeadsHasNoPayload)
{
    Bytes head = ZoavFrame().Seq(0x76616F7A).ClaimLength(16).ClaimExtLength(30); // dwSeq reads "zoav"
    const auto frames = SiftBehindGoodFrame(head + Filler(200));
    ASSERT_GE(frames.size(), 2U);
    EXPECT_EQ(frames[0].errorFlags, KX_ERROR_FLAGS_LOSTFRAME); // by the letters that its number is made of
    const SIFTED_FRAME& frame = frames[1];
    EXPECT_EQ(frame.frameLen, 16);
    EXPECT_EQ(frame.streamLen, 16 - 32 - 30);
    EXPECT_TRUE(frame.payload.empty());
}

TEST(ZoavBlock, IsSteppedOverWhole)
{
    const auto block = [](uint8_t nLen) { return Bytes{'Z', 'O', 'I', 'I', nLen, 0, 0, 0}; };
    const Bytes good = ZoavFrame().Seq(2).Payload(Filler(40));
    const Bytes hidden = ZoavFrame().Seq(9).Payload(Filler(40));
    const auto frames = SiftBehindGoodFrame(block(static_cast<uint8_t>(8 + hidden.size())) + hidden + good);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].errorFlags, KX_ERROR_FLAGS_LOST_HEADER);
    EXPECT_EQ(frames[0].frameLen, static_cast<int32_t>(8 + hidden.size()));
    EXPECT_EQ(frames[1].frameSeq, 2);
    // One of length 0 steps over its ID, and a tiny one makes way too.
    for (uint8_t nLen : {uint8_t{0}, uint8_t{1}, uint8_t{5}})
        EXPECT_EQ(GoodSeqs(SiftBehindGoodFrame(block(nLen) + good)), std::vector<int32_t>{2}) << int{nLen};
    // One longer than the window waits; so does all behind it.
    CZoavParse cycle;
    EXPECT_TRUE(cycle.Feed(Bytes{'Z', 'O', 'I', 'I', 0, 1, 0, 0} + good).empty());
    EXPECT_EQ(cycle.Feed(Filler(256) + good).size(), 2U);
    // One longer than any frame could be is not waited for.
    EXPECT_EQ(GoodSeqs(SiftBehindGoodFrame(Bytes{'Z', 'O', 'I', 'I', 0xFF, 0xFF, 0xFF, 0xFF} + good)),
              std::vector<int32_t>{2});
}

TEST(ZoavLabel, FollowsTheMagicAndTheLevels)
{
    CZoavParse parse;
    EXPECT_EQ(parse.stream.GetType(), KX_STREAM_TYPE_ZOSTD);
    for (const auto& [eFamily, nType] : Rows<ZOAV_FAMILY, int>{
             {ZOAV_FAMILY::MYAV, 195}, {ZOAV_FAMILY::LXAV, 196}, {ZOAV_FAMILY::WMAV, 197}, {ZOAV_FAMILY::ZOAV, 8}}) {
        const ZoavFrame frame = ZoavFrame().Family(eFamily).Payload(Filler(40));
        EXPECT_EQ(int32_t{parse.Feed(frame).at(0).frame.streamType}, nType);
        const Bytes inLevels = ZoavFrame(frame).ExtHead({0x94, 2, 1, 0});
        EXPECT_EQ(int32_t{parse.Feed(inLevels).at(0).frame.streamType}, int{KX_STREAM_TYPE_SVC});
        EXPECT_EQ(parse.stream.GetType(), nType);
    }
}

TEST(ZoavReparse, TakesAWholeFrameAShortReadAndALongOne)
{
    const Bytes payload(50, 0xAB);
    Bytes frame = ZoavFrame().Seq(3).ExtHead({0x80, 0, 44, 36}).Payload(payload);
    for (const auto& [nRead, nStreamLen] :
         Rows<size_t, int32_t>{{frame.size(), 50}, {frame.size() - 20, 38}, {frame.size() + 30, 50}, {28, 0}}) {
        Bytes read = frame + Filler(100);
        read.resize(nRead);
        FrameInfo info{};
        info.framePointer = read.data();
        info.frameLen = static_cast<int32_t>(read.size());
        KX_INDEX_INFO index{};
        CZOAVStream stream;
        ASSERT_EQ(stream.ParseData(&index, &info), KX_SUCCESS) << nRead;
        EXPECT_EQ(int32_t{info.streamLen}, nStreamLen) << nRead;
        EXPECT_TRUE(info.streamPointer == read.data() + 28);
        EXPECT_EQ(int32_t{info.width}, 352);
    }
    Bytes other = ZoavFrame().Family(ZOAV_FAMILY::MYAV).Payload(payload);
    for (const auto& [pBytes, nLen] : {std::pair{frame.data(), 27}, {frame.data(), 23}, {other.data(), 82}}) {
        FrameInfo info{};
        info.framePointer = pBytes;
        info.frameLen = nLen;
        KX_INDEX_INFO index{};
        EXPECT_EQ(CZOAVStream().ParseData(&index, &info), KX_ERROR_PARAMETER) << nLen;
    }
}

} // namespace Marvane::FrameSift
