// The fast pass, and the seeks by time that rest on it.
#include <atomic>
#include <thread>

#include "Support/ParsedRecording.h"

namespace Marvane::FrameSift {

namespace {

// One key frame and four others a second, as a recorder's clock tells it.
Bytes Seconds(uint32_t nFirst, uint32_t nCount, size_t nPayload, ZOAV_FRAME eKey = ZOAV_FRAME::I)
{
    Bytes bytes;
    for (uint32_t nSec = nFirst; nSec < nFirst + nCount; ++nSec) {
        const auto nMinute = static_cast<int32_t>(nSec / 60);
        const KX_TIME time = {2031, 4, 9, 10, nMinute, static_cast<int32_t>(nSec % 60), 0};
        for (uint32_t n = 0; n < 5; ++n) {
            const bool bKey = n == 0;
            const Bytes frame = ZoavFrame()
                                    .Type(bKey                        ? eKey
                                          : eKey == ZOAV_FRAME::Audio ? eKey
                                                                      : ZOAV_FRAME::P)
                                    .Seq(nSec * 5 + n)
                                    .Time(time)
                                    .ExtHead({0x81, 5, 5, 5})
                                    .Payload(Bytes(nPayload * (bKey ? 3 : 1), static_cast<uint8_t>(nSec)));
            bytes.insert(bytes.end(), frame.begin(), frame.end());
        }
    }
    return bytes;
}

struct FAST_PASS
{
    explicit FAST_PASS(const Bytes& bytes, bool bIndex = true) : file(bytes)
    {
        IFileManipPtr passFile = file.Open();
        nResult = parser.BaseParseFile(passFile, &collector, bIndex);
    }

    // The sequence number of the first sound frame that a reader gets behind the seek, or the seek's result.
    int64_t SeqAt(uint32_t nMilliseconds)
    {
        const int nSought = parser.SeekByTime(nMilliseconds);
        PLACED_FRAME placed;
        if (nSought != KX_SUCCESS)
            return nSought;
        do {
            EXPECT_EQ(ReadPlaced(parser, placed), KX_SUCCESS);
        } while (placed.frame.errorFlags != KX_ERROR_FLAGS_NOERROR && !testing::Test::HasFailure());
        return placed.frame.frameSeq;
    }

    RecordingFile file;
    CZOAVFile parser;
    CIndexCollector collector;
    int nResult = -1;
};

} // namespace

TEST(FileFastPass, TellsTheTimesFirstAndTheVideoFramesThen)
{
    const Bytes audio = ZoavFrame().Type(ZOAV_FRAME::Audio).Seq(1).Payload(Bytes(100, 1));
    const Bytes lonely = ZoavFrame().Type(ZOAV_FRAME::P).Seq(2).Payload(Bytes(100, 2));
    FAST_PASS pass(audio + lonely + Seconds(0, 90, 100) + audio + Filler(64));
    EXPECT_EQ(pass.nResult, KX_SUCCESS);
    ASSERT_EQ(pass.collector.infos.size(), 2u);
    EXPECT_EQ(pass.collector.infos[0].duration, 89u);
    EXPECT_EQ(pass.collector.infos[0].fileEndTime - pass.collector.infos[0].fileStartTime, 89000);
    EXPECT_EQ(pass.collector.infos[1].duration, 90u); // by the frames' intervals
    ASSERT_EQ(pass.collector.frames.size(), 450u);
    EXPECT_EQ(pass.collector.frames.front().nOffset, static_cast<int64_t>(audio.size() + lonely.size()));
    PLACED_FRAME placed;
    EXPECT_EQ(ReadPlaced(pass.parser, placed), KX_SUCCESS); // reads start where media does
    EXPECT_EQ(placed, pass.collector.frames.front());
}

TEST(FileFastPass, EverySecondIsFoundAtAKeyFrameInFrontOfIt)
{
    for (const size_t nPayload : {100u, 4000u}) {
        FAST_PASS pass(Seconds(0, 600, nPayload), false);
        ASSERT_EQ(pass.nResult, KX_SUCCESS);
        EXPECT_EQ(pass.collector.frames.size(), 0u);
        EXPECT_EQ(pass.SeqAt(0), 0);
        for (uint32_t nSec = 1; nSec < 599; nSec += 7) {
            // The first frame found of that second may be the key frame itself: the search then ends in front of it.
            const int64_t nSeq = pass.SeqAt(nSec * 1000);
            EXPECT_TRUE(nSeq == nSec * 5 || nSeq == nSec * 5 - 5) << nSec << ": " << nSeq;
        }
        EXPECT_GE(pass.SeqAt(UINT32_MAX), 596 * 5); // the end
    }
}

TEST(FileFastPass, AudioAloneStartsAnywhere)
{
    FAST_PASS pass(Seconds(0, 100, 100, ZOAV_FRAME::Audio));
    EXPECT_EQ(pass.nResult, KX_SUCCESS);
    ASSERT_EQ(pass.collector.infos.size(), 2u);
    EXPECT_EQ((Fields{pass.collector.infos[0].bPureAudio, pass.collector.infos[0].duration}), (Fields{1, 99}));
    EXPECT_GE(pass.collector.frames.size(), 499u);
    EXPECT_NEAR(static_cast<double>(pass.SeqAt(50000)), 250, 6);
    EXPECT_EQ(pass.parser.SeekByFileOffset(1000, KX_SEEK_I_FRAME), KX_SUCCESS);
}

TEST(FileFastPass, WithoutTimesItFailsAndSaysSoInTheSummary)
{
    for (const Bytes& bytes : {Bytes(), Filler(5000), Bytes(ZoavFrame().Type(ZOAV_FRAME::P).Payload(Bytes(100, 1)))}) {
        FAST_PASS pass(bytes);
        EXPECT_EQ(pass.nResult, -1);
        ASSERT_EQ(pass.collector.infos.size(), 1u);
        EXPECT_EQ(pass.collector.infos.front().fileStartTime, 0);
        EXPECT_EQ(pass.SeqAt(0), -1);
    }
}

TEST(FileFastPass, AFileOfManyGigabytesIsReadBehindItsFourth)
{
    constexpr int64_t nFar = int64_t{6} << 30;
    RecordingFile file(Seconds(0, 20, 2000));
    file.Write(Seconds(40, 20, 2000), nFar);
    IFileManipPtr passFile = file.Open();
    CZOAVFile parser;
    CIndexCollector collector;
    ASSERT_EQ(parser.BaseParseFile(passFile, &collector, false), KX_SUCCESS);
    EXPECT_EQ(collector.infos.front().duration, 59u);
    PLACED_FRAME placed;
    ASSERT_EQ(parser.SeekByFileOffset(nFar, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
    ASSERT_EQ(ReadPlaced(parser, placed), KX_SUCCESS);
    EXPECT_EQ((Fields{placed.nOffset, placed.frame.frameSeq}), (Fields{nFar, 200}));
    ASSERT_EQ(parser.SeekByFileOffset(nFar + 200000, KX_SEEK_I_FRAME), KX_SUCCESS);
    ASSERT_EQ(ReadPlaced(parser, placed), KX_SUCCESS);
    EXPECT_GT(placed.nOffset, nFar);
    EXPECT_TRUE(IsKey(placed));
    KX_INDEX_INFO index{};
    EXPECT_EQ(parser.SeekByFileOffset(nFar + (int64_t{1} << 40), KX_SEEK_I_FRAME), -1);
    EXPECT_EQ(parser.GetFrameByIndex(&index, nullptr, nullptr), KX_ERROR_PARAMETER);
}

TEST(FileSeek, ASmartPFrameIsReachedRightBehindItsKeyFrame)
{
    const auto frame = [](ZOAV_FRAME eType, bool bSmart, uint32_t nSeq) {
        return ZoavFrame()
            .Type(eType, bSmart ? 1 : 0)
            .Seq(nSeq)
            .Payload(Bytes(300, static_cast<uint8_t>(nSeq)))
            .Build();
    };
    const Bytes bytes = frame(ZOAV_FRAME::I, true, 1) + frame(ZOAV_FRAME::P, false, 2) + frame(ZOAV_FRAME::P, true, 3) +
                        frame(ZOAV_FRAME::P, false, 4) + frame(ZOAV_FRAME::P, false, 5) + Filler(64);
    ParsedRecording recording(bytes);
    const auto& told = recording.collector.frames;
    ASSERT_EQ(told.size(), 5u);
    EXPECT_EQ((Fields{told[0].frame.frameSubType, told[2].frame.frameSubType}), (Fields{18, 19}));
    ASSERT_EQ(recording.parser.SeekByFileOffset(told[4].nOffset, KX_SEEK_I_FRAME), KX_SUCCESS);
    ExpectSame(ReadToEnd(recording.parser), {told[0], told[2], told[3], told[4]});
    // A jump that was not used is not the next seek's.
    ASSERT_EQ(recording.parser.SeekByFileOffset(told[4].nOffset, KX_SEEK_I_FRAME), KX_SUCCESS);
    ASSERT_EQ(recording.parser.SeekByFileOffset(0, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
    ExpectSame(ReadToEnd(recording.parser), told);
}

TEST(FileSeek, WithoutAKeyFrameTheSearchSettlesForItsStart)
{
    const Bytes frame = ZoavFrame().Type(ZOAV_FRAME::P).Seq(7).Payload(Bytes(300, 1));
    ParsedRecording recording(frame + frame + frame + Filler(64));
    const auto nSecond = static_cast<int64_t>(frame.size());
    EXPECT_EQ(recording.parser.SeekByFileOffset(nSecond, KX_SEEK_I_FRAME), KX_SUCCESS);
    EXPECT_EQ(ReadToEnd(recording.parser).front().nOffset, nSecond);
    const auto nSize = static_cast<int64_t>(3 * frame.size() + 64);
    EXPECT_EQ(recording.parser.SeekByFileOffset(nSize, KX_SEEK_I_FRAME), -1); // but not for the file's end
    EXPECT_EQ(recording.parser.SeekByFileOffset(nSize, KX_SEEK_PRECISE_OFFSET), KX_SUCCESS);
    EXPECT_TRUE(ReadToEnd(recording.parser).empty());
    for (const int64_t nOutside : {int64_t{-1}, nSize + 1})
        EXPECT_EQ(recording.parser.SeekByFileOffset(nOutside, KX_SEEK_PRECISE_OFFSET), -1);
}

TEST(FileFastPassThreads, TheCallerReadsAndSeeksWhileTheIndexGrows)
{
    const RecordingFile file(Seconds(0, 300, 1500));
    CZOAVFile parser;
    CIndexCollector collector;
    std::atomic<bool> bReady = false;
    collector.onInfo = [&] { bReady = true; };
    IFileManipPtr passFile = file.Open();
    int nPassResult = -1;
    std::thread pass([&] { nPassResult = parser.BaseParseFile(passFile, &collector, true); });
    while (!bReady)
        std::this_thread::yield();
    PLACED_FRAME placed;
    int nProcess = 0;
    int nRead = 0;
    for (uint32_t nSec = 0; nProcess < 100; nSec = (nSec + 37) % 290) {
        parser.GetProcess(&nProcess);
        if (parser.SeekByTime(nSec * 1000) != KX_SUCCESS) // the first summary comes a moment before reads are open
            continue;
        for (int n = 0; n < 20 && ReadPlaced(parser, placed) == KX_SUCCESS; ++n)
            ++nRead;
        EXPECT_NEAR(placed.frame.frameSeq, nSec * 5 + 17, 8);
    }
    pass.join();
    EXPECT_EQ(nPassResult, KX_SUCCESS);
    EXPECT_EQ(collector.frames.size(), 1500u);
    EXPECT_GT(nRead, 0);
}

TEST(FileFastPassThreads, APassThatIsStoppedEndsAtItsNextBlock)
{
    const RecordingFile file(Seconds(0, 300, 1500));
    for (const bool bFast : {false, true}) {
        CZOAVFile parser;
        CIndexCollector collector;
        std::atomic<bool> bStarted = false;
        collector.onFrame = [&] { bStarted = true; };
        IFileManipPtr passFile = file.Open();
        std::thread pass([&] {
            EXPECT_EQ(bFast ? parser.BaseParseFile(passFile, &collector, true) : parser.ParseFile(passFile, &collector),
                      KX_SUCCESS);
        });
        while (!bStarted)
            std::this_thread::yield();
        parser.StopParse();
        pass.join();
        EXPECT_LE(collector.frames.size(), 1500u);
    }
}

} // namespace Marvane::FrameSift
