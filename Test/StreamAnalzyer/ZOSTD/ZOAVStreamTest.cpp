#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

#include <gtest/gtest.h>

#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "ParserMethod/StreamAnalyzer.h"
#include "Support/Sift.h"

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

// What a handle whose type is fixed makes of the bytes in one cycle.
class COneCycle : public CStreamAnalyzer
{
public:
    COneCycle() : CStreamAnalyzer(0) { InitEx(KX_STREAM_TYPE_ZOSTD); }
    CLogicData& Window() { return m_logicData; }
    size_t Parse(Bytes stream)
    {
        m_bytes = std::move(stream);
        ParseData(m_bytes.data(), static_cast<int>(m_bytes.size()));
        frames.clear();
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        while (GetOneFrame(&frame, &ext) == KX_SUCCESS)
            frames.push_back(frame);
        return frames.size();
    }

    std::vector<FrameInfo> frames;

private:
    Bytes m_bytes;
};

} // namespace

TEST(ZoavFrame, WrittenByHand)
{
    Bytes stream = {
        'Z',  'O',  'A',  'V',  // dwFlag
        0xFD, 0x00, 0x00, 0x00, // chType: I frame; chSubType, chChannel, chSubSeq
        0x01, 0x00, 0x00, 0x00, // dwSeq
        0x84, 0x00, 0x00, 0x00, // dwFrameLen = 132
        0x05, 0x31, 0x44, 0x50, // dateTime: 2020-01-02 03:04:05
        0xE8, 0x03, 0x00, 0x77, // nTimeStamp = 1000, nExtFrameLen, nTotalValue
    };
    const Bytes payload(100, 0xAB);
    stream = stream + payload + Bytes{'z', 'o', 'a', 'v', 0x84, 0x00, 0x00, 0x00};
    EXPECT_EQ(stream, ZoavFrame().TimeStamp(1000).Payload(payload).Build());
    const auto frames = Sift(stream);
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0].frameType, KX_FRAME_TYPE_VIDEO);
    EXPECT_EQ(frames[0].frameSubType, KX_FRAME_SUB_TYPE_VIDEO_I_FRAME);
    EXPECT_EQ(frames[0].frameSeq, 1);
    EXPECT_EQ(frames[0].timeStamp, 1000);
    EXPECT_EQ(frames[0].time, (std::vector<int32_t>{2020, 1, 2, 3, 4, 5, 0}));
    EXPECT_EQ(frames[0].errorFlags, KX_ERROR_FLAGS_NOERROR);
    EXPECT_EQ(frames[0].frameLen, 132);
    EXPECT_EQ(frames[0].frame, stream);
    EXPECT_EQ(frames[0].payload, payload);
    EXPECT_EQ(frames[0].streamType, 0); // not told by a stream handle
}

TEST(ZoavFrame, TypesAndSubTypes)
{
    const struct
    {
        uint8_t chType, chSubType;
        int32_t frameType, frameSubType;
    } rows[] = {
        {0xFD, 0, 1, 0},   {0xFD, 1, 1, 18}, {0xFD, 2, 1, 20},  {0xFD, 3, 1, 0},     {0xFC, 0, 1, 1}, {0xFC, 1, 1, 19},
        {0xFE, 1, 1, 2},   {0xFB, 0, 1, 8},  {0xF0, 7, 2, 0},   {0xF1, 0, 3, 15},    {0xF1, 5, 3, 7}, {0xF2, 20, 3, 29},
        {0xF1, 25, 3, 28}, {0xF1, 26, 3, 0}, {0x55, 0, 3, 256}, {0x55, 200, 3, 200}, {0x80, 0, 0, 0},
    };
    for (const auto& row : rows) {
        STD_FRAME_HEAD head{};
        head.chType = row.chType;
        head.chSubType = row.chSubType;
        FrameInfo frame{};
        ParseStdFrameHead(head, frame);
        EXPECT_EQ(int32_t{frame.frameType}, row.frameType) << int{row.chType};
        EXPECT_EQ(int32_t{frame.frameSubType}, row.frameSubType) << int{row.chType} << "/" << int{row.chSubType};
    }
}

TEST(ZoavFrame, FamiliesMayMixHeadAndTail)
{
    COneCycle cycle;
    const Bytes stream =
        ZoavFrame().Family(ZOAV_FAMILY::MYAV).TailFamily(ZOAV_FAMILY::ZOAV).Payload(Filler(30)).Build();
    ASSERT_EQ(cycle.Parse(stream), 1U);
    EXPECT_EQ(int32_t{cycle.frames[0].errorFlags}, KX_ERROR_FLAGS_NOERROR);
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
    const struct
    {
        const char* pName;
        uint8_t chSubType;
        Bytes payload, stripped;
    } rows[] = {
        {"overlay", 18, {4, 1, 2, 3, 'P', 'Q'}, {'P', 'Q'}},
        {"overlay that is all prefix", 18, {3, 1, 2}, {}},
        {"overlay of no length", 18, {0, 1, 2}, {0, 1, 2}},
        {"overlay longer than its payload", 18, {9, 1, 2}, {9, 1, 2}},
        {"OSD", 17, {12, 0, 1, 2, 3, 4, 5, 0, 0, 0, 6, 0, 'O'}, {'O'}},
        {"long OSD", 17, longOsd, {'O'}},
        {"OSD longer than its payload", 17, {12, 0, 1}, {12, 0, 1}},
        {"OSD of one byte", 17, {12}, {12}},
        {"other data", 5, {4, 1, 2, 3}, {4, 1, 2, 3}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        const auto frames = SiftBehindGoodFrame(ZoavFrame().RawType(0xF1, row.chSubType).Payload(row.payload));
        ASSERT_FALSE(frames.empty());
        EXPECT_EQ(frames[0].payload, row.stripped);
        EXPECT_EQ(frames[0].streamLen, static_cast<int32_t>(row.stripped.size()));
    }
    FrameInfo frame{};
    Bytes payload = longOsd;
    frame.frameSubType = KX_FRAME_SUB_TYPE_DATA_OSD;
    frame.streamPointer = payload.data();
    frame.streamLen = static_cast<int32_t>(payload.size());
    StripPayloadPrefix(frame);
    EXPECT_EQ(uint16_t{frame.nOsdTopLeftCornercoordinateX}, 0x0201);
    EXPECT_EQ(uint16_t{frame.nOsdTopLeftCornercoordinateY}, 0x0403);
    EXPECT_EQ(uint8_t{frame.nOsdWordSize}, 5);
    EXPECT_EQ(uint8_t{frame.nOsdWordAlignment}, 6);
    EXPECT_EQ(uint32_t{frame.nOsdRgbaValue}, 0x0A090807U);
}

TEST(ZoavDamage, OnlyTheDamagedFrameIsLost)
{
    const Bytes payload(100, 0xAB);
    const struct
    {
        const char* pName;
        Bytes damaged;
    } rows[] = {
        {"sum", ZoavFrame().Seq(2).Payload(payload).WrongSum()},
        {"type", ZoavFrame().Seq(2).Payload(payload).RawType(0x80)},
        {"tail length", ZoavFrame().Seq(2).Payload(payload).WrongTailLength()},
        {"tail magic", ZoavFrame().Seq(2).Payload(payload).WrongTailMagic()},
        {"length 0", ZoavFrame().Seq(2).Payload(payload).ClaimLength(0)},
        {"length of less than a tail", ZoavFrame().Seq(2).Payload(payload).ClaimLength(7)},
        {"length above the limit", ZoavFrame().Seq(2).Payload(payload).ClaimLength(0x1400000)},
        {"length with the sign bit", ZoavFrame().Seq(2).Payload(payload).ClaimLength(0xFFFFFFF8)},
        {"shorter than it is", ZoavFrame().Seq(2).Payload(payload).ClaimLength(100)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pName);
        const Bytes stream = ZoavFrame().Seq(1).Payload(payload) + row.damaged +
                             ZoavFrame().Seq(3).Payload(payload).Build() + Filler(200);
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
    COneCycle cycle;
    EXPECT_EQ(cycle.Parse(ZoavFrame().ClaimLength(0x13FFFFF) + Filler(100)), 0U);
    EXPECT_EQ(cycle.Window().GetDeletedLen(), 0);
    EXPECT_EQ(cycle.Parse(ZoavFrame().Seq(2).Payload(Filler(40))), 0U); // held up by the false head, but not lost
    EXPECT_EQ(cycle.Parse(Filler(0x1400000)), 3U); // the false head, its tail, and the frame behind it
    EXPECT_EQ(int32_t{cycle.frames[2].frameSeq}, 2);
}

TEST(ZoavFrame, TheLongestIsTaken)
{
    COneCycle cycle;
    ASSERT_EQ(cycle.Parse(ZoavFrame().Seq(2).Payload(Filler(0x13FFFFF - 32))), 1U);
    EXPECT_EQ(int32_t{cycle.frames[0].errorFlags}, KX_ERROR_FLAGS_NOERROR);
    EXPECT_EQ(int32_t{cycle.frames[0].frameLen}, 0x13FFFFF);
}

TEST(ZoavDamage, ATailAloneIsReportedAndPassed)
{
    const auto frames = SiftBehindGoodFrame(Bytes{'w', 'm', 'a', 'v'} + ZoavFrame().Seq(2).Payload(Filler(40)));
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].errorFlags, KX_ERROR_FLAGS_LOST_HEADER);
    EXPECT_EQ(frames[0].frameLen, 4);
    EXPECT_EQ(frames[1].frameSeq, 2);
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
    COneCycle cycle;
    EXPECT_EQ(cycle.Parse(Bytes{'Z', 'O', 'I', 'I', 0, 1, 0, 0} + good), 0U);
    EXPECT_EQ(cycle.Parse(Filler(256) + good), 2U);
    // One longer than any frame could be is not waited for.
    EXPECT_EQ(GoodSeqs(SiftBehindGoodFrame(Bytes{'Z', 'O', 'I', 'I', 0xFF, 0xFF, 0xFF, 0xFF} + good)),
              std::vector<int32_t>{2});
}

TEST(ZoavLabel, FollowsTheMagicAndTheLevels)
{
    const struct
    {
        ZOAV_FAMILY eFamily;
        int nType;
    } rows[] = {{ZOAV_FAMILY::MYAV, 195}, {ZOAV_FAMILY::LXAV, 196}, {ZOAV_FAMILY::WMAV, 197}, {ZOAV_FAMILY::ZOAV, 8}};
    class CLast : public IFrameCallBack
    {
    public:
        int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo*, void*) override
        {
            nStreamType = frame->streamType;
            return 0;
        }
        int32_t nStreamType = 0;
    };
    CZOAVStream stream;
    EXPECT_EQ(stream.GetType(), KX_STREAM_TYPE_ZOSTD);
    for (const auto& row : rows) {
        for (const bool bLevels : {false, true}) {
            ZoavFrame frame;
            frame.Family(row.eFamily).Payload(Filler(40));
            if (bLevels)
                frame.ExtHead({0x94, 2, 1, 0});
            Bytes bytes = frame;
            CLogicData data;
            data.JoinData(bytes.data(), static_cast<int>(bytes.size()));
            CLast last;
            EXPECT_EQ(stream.ParseData(&data, &last), KX_SUCCESS);
            EXPECT_EQ(last.nStreamType, bLevels ? int{KX_STREAM_TYPE_SVC} : row.nType);
            EXPECT_EQ(stream.GetType(), row.nType);
        }
    }
}

TEST(ZoavReparse, TakesAWholeFrameAShortReadAndALongOne)
{
    const Bytes payload(50, 0xAB);
    Bytes frame = ZoavFrame().Seq(3).ExtHead({0x80, 0, 44, 36}).Payload(payload);
    const struct
    {
        size_t nRead;
        int32_t nStreamLen;
    } rows[] = {{frame.size(), 50}, {frame.size() - 20, 38}, {frame.size() + 30, 50}, {28, 0}};
    for (const auto& row : rows) {
        Bytes read = frame + Filler(100);
        read.resize(row.nRead);
        FrameInfo info{};
        info.framePointer = read.data();
        info.frameLen = static_cast<int32_t>(read.size());
        KX_INDEX_INFO index{};
        CZOAVStream stream;
        ASSERT_EQ(stream.ParseData(&index, &info), KX_SUCCESS) << row.nRead;
        EXPECT_EQ(int32_t{info.streamLen}, row.nStreamLen) << row.nRead;
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
