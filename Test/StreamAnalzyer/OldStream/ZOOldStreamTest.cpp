#include "StreamAnalzyer/OldStream/ZOOldStream.h"

#include "FrameWriter/LegacyFrameWriter.h"
#include "Support/LegacyParse.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

using OldParse = CLegacyParse<CZOOldStream>;

// What a real stream's payload begins with.
Bytes Picture(size_t nSize = 40)
{
    return Bytes{0, 0, 1, 0xB6, 0x10} + Counting(nSize);
}

Bytes Audio(size_t nSize = 20)
{
    return OldAudioFrame(14, 2, Counting(nSize));
}

Bytes Blocks(int nFirst, int nCount)
{
    Bytes blocks;
    for (int n = 0; n < nCount; ++n)
        blocks = blocks + HbBlock({}, static_cast<uint32_t>(nFirst + n), Counting(100));
    return blocks;
}

std::vector<Fields> Told(const std::vector<LEGACY_FRAME>& frames)
{
    std::vector<Fields> told;
    for (const LEGACY_FRAME& one : frames)
        told.push_back({one.frame.frameType, one.frame.frameSeq, one.frame.frameLen, one.frame.errorFlags});
    return told;
}

} // namespace

TEST(ZOOldStream, AudioAloneIsParsedHereInBothForms)
{
    for (const auto& [bEx, nHeadLen, nStreamType] : Rows<bool, int, int>{{false, 8, 4}, {true, 16, 5}}) {
        Bytes wire;
        for (const size_t nSize : {size_t{20}, size_t{0}, size_t{300}}) {
            const Bytes samples = Counting(nSize);
            wire = wire + (bEx ? OldAudioFrameEx(14, 4, samples) : OldAudioFrame(14, 4, samples));
        }
        // Half of an ID behind it: the next chunk brings the rest.
        wire = wire + LegacyEndMark();
        for (const size_t nChunk : {size_t{5}, size_t{16}, size_t{1000}}) {
            OldParse parse;
            const auto frames = parse.FeedInChunks(wire, nChunk);
            EXPECT_EQ(Told(frames),
                      (std::vector<Fields>{{2, 1, nHeadLen + 20, 0}, {2, 2, nHeadLen, 0}, {2, 3, nHeadLen + 300, 0}}));
            ASSERT_FALSE(frames.empty());
            const FrameInfo& frame = frames.front().frame;
            EXPECT_EQ(frames.front().payload, Counting(20));
            EXPECT_EQ((Fields{frame.streamType, frame.samplesPerSec, frame.channels, frame.bitsPerSample}),
                      (Fields{nStreamType, 16000, 1, 16}));
            EXPECT_EQ(parse.parser.GetType(), KX_STREAM_TYPE_UNKNOWN);
        }
    }
}

TEST(ZOOldStream, WhichAudioHeadTheFirstFrameThatFitsSettles)
{
    // A long head whose frame looks like two short ones: the short one wins.
    Bytes both = OldAudioFrameEx(14, 4, Counting(20));
    both[6] = 12;
    OldParse parse;
    EXPECT_EQ(Told(parse.Feed(both + Bytes(8) + Audio())).front(), (Fields{2, 1, 4, KX_ERROR_FLAGS_LENGTH}));
    Bytes fitsBoth = OldAudioFrame(14, 4, Counting(8));
    fitsBoth = fitsBoth + LegacyEndMark() + Bytes{14, 4, 0, 0} + LegacyEndMark();
    OldParse shortOne;
    EXPECT_EQ(Told(shortOne.Feed(fitsBoth + Bytes(8))).front(), (Fields{2, 1, 16, 0}));
}

TEST(ZOOldStream, AWrongLengthCostsTheIDAlone)
{
    Bytes wrong = Audio() + Audio() + Audio() + LegacyEndMark();
    wrong[28 + 6] = 21;
    OldParse parse;
    EXPECT_EQ(Told(parse.Feed(wrong)),
              (std::vector<Fields>{{2, 1, 28, 0}, {2, 2, 4, KX_ERROR_FLAGS_LENGTH}, {2, 3, 28, 0}}));
}

TEST(ZOOldStream, VideoShowsTheFormat)
{
    const LEGACY_PICTURE picture;
    Bytes h264 = NewKeyFrame(NEW_HEADS::Ex1, {.bH264 = true}, Picture());
    for (const auto& [wire, nType, nFrames] :
         Rows<Bytes, int, size_t>{{NewKeyFrame(NEW_HEADS::New, picture, Picture()), KX_STREAM_TYPE_NEW, 2},
                                  {NewKeyFrame(NEW_HEADS::Ex, picture, Picture()), KX_STREAM_TYPE_NEW, 2},
                                  {NewOtherFrame(NEW_HEADS::Ex1, true, Picture()), KX_STREAM_TYPE_NEW, 2},
                                  {h264, KX_STREAM_TYPE_NEW, 2},
                                  {ZoptFrame(Picture()) + ZoptFrame(Picture()), KX_STREAM_TYPE_ZOPT, 3},
                                  {NewKeyFrame(NEW_HEADS::New, picture, Counting(40)), 0, 0},
                                  {Blocks(1, 6), KX_STREAM_TYPE_HB, 0}}) {
        // The audio in front is dropped here, and comes out of the parser that takes over.
        OldParse parse;
        const auto frames = parse.Feed(Audio() + wire + LegacyEndMark() + Bytes{1, 2, 3, 4});
        EXPECT_EQ(parse.parser.GetType(), nType);
        if (nType != KX_STREAM_TYPE_HB) {
            EXPECT_EQ(frames.size(), nFrames) << nType;
        }
    }
}

// Audio that was delivered in an earlier call stays delivered; what waits in the same window goes over.
TEST(ZOOldStream, TheHandOverAcrossChunks)
{
    const Bytes audio = Audio() + Audio();
    const Bytes video = NewKeyFrame(NEW_HEADS::New, {}, Picture()) + LegacyEndMark();
    OldParse parse;
    EXPECT_EQ(Told(parse.Feed(audio + Part(video, 0, 2))), (std::vector<Fields>{{2, 1, 28, 0}}));
    // The second audio frame waits for its next ID, and is no audio frame of this stage any more.
    EXPECT_EQ(Told(parse.Feed(Part(video, 2))), (std::vector<Fields>{{2, 1, 28, 0}, {1, 1, 61, 0}}));
    EXPECT_EQ(parse.parser.GetType(), KX_STREAM_TYPE_NEW);
}

TEST(ZOOldStream, SixHBIDsInAllHoweverTheyAreSpread)
{
    OldParse atOnce;
    atOnce.Feed(Blocks(1, 5));
    EXPECT_EQ(atOnce.parser.GetType(), 0);
    atOnce.Feed(Blocks(6, 1));
    EXPECT_EQ(atOnce.parser.GetType(), KX_STREAM_TYPE_HB);
    // Cut behind an ID, which then stays in the window and is seen again.
    for (const size_t nChunk : {size_t{100}, size_t{1040}, size_t{1044}}) {
        OldParse spread;
        spread.FeedInChunks(Blocks(1, 5), nChunk);
        spread.Feed({0, 0, 1, 0xB6});
        EXPECT_EQ(spread.parser.GetType(), 0) << nChunk;
        spread.Feed(Blocks(6, 1));
        EXPECT_EQ(spread.parser.GetType(), KX_STREAM_TYPE_HB) << nChunk;
    }
}

// How far the stream was judged is no place from which the end of a frame is looked for.
TEST(ZOOldStream, TheParserBehindTheHandOverLooksForItself)
{
    Bytes waiting(100, 0x55);
    std::copy_n(Bytes{0, 0, 1, 0xF1}.begin(), 4, waiting.begin() + 40);
    const Bytes first = Bytes{0, 0, 1, 0xB6} + Bytes(4, 0x11) + LegacyEndMark() + Bytes{14, 2, 0, 2} + waiting;
    const Bytes key = NewKeyFrame(NEW_HEADS::New, {}, Picture());
    const Bytes rest = Bytes(500, 0x55) + key + key + LegacyEndMark();
    OldParse whole;
    OldParse cut;
    const auto told = Told(whole.Feed(first + rest));
    ASSERT_EQ(told.size(), 4U);
    EXPECT_EQ(told.front(), (Fields{2, 1, 48, KX_ERROR_FLAGS_LENGTH}));
    EXPECT_TRUE(cut.Feed(first).empty());
    EXPECT_EQ(Told(cut.Feed(rest)), told);
}

TEST(ZOOldStream, HeadsOfMPEG4DecideNothing)
{
    OldParse parse;
    Bytes endless;
    for (int n = 0; n < 100000; ++n)
        endless.insert(endless.end(), {0, 0, 1, 0xB6, 0, 0, 1, 0xB0});
    EXPECT_TRUE(parse.Feed(endless).empty());
    EXPECT_EQ(parse.parser.GetType(), 0);
}

// A head that leads out of the window decides nothing, and is not waited for: with chunks smaller than a frame a ZOPT
// stream shows itself only once a frame and the next ID come in one chunk.
TEST(ZOOldStream, AZoptHeadIsNotWaitedFor)
{
    const Bytes wire = ZoptFrame(Picture(500)) + ZoptFrame(Picture(20)) + ZoptFrame(Picture(500));
    OldParse parse;
    parse.FeedInChunks(wire, 30);
    EXPECT_EQ(parse.parser.GetType(), 0);
    OldParse whole;
    whole.Feed(wire);
    EXPECT_EQ(whole.parser.GetType(), KX_STREAM_TYPE_ZOPT);
}

} // namespace Marvane::FrameSift
