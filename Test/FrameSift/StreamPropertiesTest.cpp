// What holds for any stream: how the caller cuts it changes nothing, and damage costs only what it touched.

#include <set>

#include "ParserMethod/StreamAnalyzer.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

std::vector<int32_t> Numbers(size_t nCount)
{
    std::vector<int32_t> numbers(nCount);
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

std::vector<int32_t> Without(std::vector<int32_t> numbers, int32_t nNumber)
{
    std::erase(numbers, nNumber);
    return numbers;
}

// Good frames that came out, those left out that were touched.
std::vector<int32_t> GoodUntouched(const Bytes& stream, uint32_t nSeed, int32_t nTouched)
{
    return Without(GoodSeqs(Sift(stream, RandomChunks(nSeed, 3000))), nTouched);
}

class CWindowWatch : public CStreamAnalyzer
{
public:
    CWindowWatch() : CStreamAnalyzer(0) { Init(); }
    uint32_t Size() { return m_logicData.Size(); }
    uint32_t Feed(const Bytes& stream, size_t nChunk)
    {
        uint32_t nMax = 0;
        InChunks(stream, FixedChunks(nChunk), [&](Bytes& chunk) {
            ParseData(chunk.data(), static_cast<int>(chunk.size()));
            nMax = std::max(nMax, m_logicData.MaxSize());
        });
        return nMax;
    }
};

} // namespace

TEST(StreamProperty, TheCutChangesNoFrame)
{
    for (uint32_t nSeed = 1; nSeed <= 6; ++nSeed) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        auto frames = RandomFrames(nSeed, 60, nSeed % 2 == 0 ? 200 : 5000, &HideMagics);
        for (Bytes& frame : frames) {
            if (random() % 4 == 0)
                frame = RandomBytes(random, random() % 300) + frame;
            if (random() % 20 == 0) // a foreign block is stepped over whole: the frame hidden in it is never seen
                frame = Bytes{'Z', 'O', 'I', 'I', 0xE8, 3, 0, 0} + ZoavFrame().Seq(9999).Payload(Filler(960)) + frame;
        }
        const Bytes stream = Joined(frames);
        const auto whole = Sift(stream);
        EXPECT_EQ(GoodSeqs(whole), Numbers(60));
        for (const size_t nChunk : {size_t{1}, size_t{3}, size_t{47}, size_t{1400}, size_t{65536}})
            EXPECT_EQ(Sift(stream, FixedChunks(nChunk)), whole) << nChunk;
        EXPECT_EQ(Sift(stream, RandomChunks(nSeed, 10)), whole);
        EXPECT_EQ(Sift(stream, RandomChunks(nSeed, 20000)), whole);
    }
}

TEST(StreamProperty, TheCutOfADamagedStreamChangesNoRecordEither)
{
    for (uint32_t nSeed = 1; nSeed <= 30; ++nSeed) {
        SCOPED_TRACE(nSeed);
        std::mt19937 random(nSeed);
        Bytes stream = Joined(RandomFrames(nSeed, 40, 400));
        for (int n = 0; n < 40; ++n)
            stream[random() % stream.size()] ^= static_cast<uint8_t>(1U << random() % 8);
        stream.erase(stream.begin() + static_cast<ptrdiff_t>(random() % (stream.size() / 2)),
                     stream.begin() + static_cast<ptrdiff_t>(stream.size() / 2));
        const auto whole = Sift(stream);
        for (const size_t nChunk : {size_t{1}, size_t{1400}})
            EXPECT_EQ(Sift(stream, FixedChunks(nChunk)), whole) << nChunk;
        EXPECT_EQ(Sift(stream, RandomChunks(nSeed, 500)), whole);
    }
}

// A flipped bit, often in the head; or bytes lost; or rubbish in between.
TEST(StreamProperty, DamageCostsAtMostItsOwnFrame)
{
    const auto frames = RandomFrames(1, 30, 150);
    for (uint32_t nSeed = 1; nSeed <= 600; ++nSeed) {
        std::mt19937 random(nSeed);
        const size_t nTouched = 1 + random() % (frames.size() - 1); // not the first: it lets the type be known
        auto damaged = frames;
        Bytes& frame = damaged[nTouched];
        const size_t nFrom = random() % (random() % 2 == 0 ? 24 : frame.size());
        if (nSeed % 3 == 0)
            frame = Part(frame, 0, nFrom) + RandomBytes(random, 1 + random() % 2000) + Part(frame, nFrom);
        else if (nSeed % 3 == 1)
            frame = Part(frame, 0, nFrom) + Part(frame, nFrom + 1 + random() % (frame.size() - nFrom));
        else
            frame[nFrom] ^= static_cast<uint8_t>(1U << random() % 8);
        const auto nSeq = static_cast<int32_t>(nTouched + 1);
        EXPECT_EQ(GoodUntouched(Joined(damaged) + Filler(4096), nSeed, nSeq), Without(Numbers(30), nSeq))
            << "seed " << nSeed << ", byte " << nFrom;
    }
}

// After a cut only the frame in the middle of which the stream begins or ends is lost.
TEST(StreamProperty, AnyTruncationIsWithstood)
{
    const auto frames = RandomFrames(3, 10, 100);
    const Bytes stream = Joined(frames);
    for (size_t nCut = 0; nCut < stream.size(); nCut += 7) {
        const auto head = GoodSeqs(Sift(Part(stream, 0, nCut), FixedChunks(100)));
        const auto tail = GoodSeqs(Sift(Part(stream, nCut), FixedChunks(100)));
        EXPECT_GE(head.size() + tail.size() + 1, frames.size()) << nCut;
    }
}

TEST(StreamProperty, NoiseIsWithstood)
{
    for (uint32_t nSeed = 1; nSeed <= 50; ++nSeed) {
        std::mt19937 random(nSeed);
        Bytes noise = RandomBytes(random, 20000);
        // Magics strewn in, so that every path behind them is taken.
        constexpr std::string_view magics[] = {"ZOAV", "zoav", "ZOII", "MYAV", "lxav", "ZOPT", "RIFF"};
        for (int n = 0; n < 400; ++n) {
            const auto magic = magics[random() % std::size(magics)];
            std::copy(magic.begin(), magic.end(), noise.begin() + static_cast<ptrdiff_t>(random() % 19000));
        }
        const Bytes good = ZoavFrame().Seq(1).Payload(Filler(40));
        Sift(good + noise, RandomChunks(nSeed, 3000));
        Sift(noise + good, RandomChunks(nSeed, 300));
    }
}

TEST(StreamProperty, MemoryStaysBoundedWhateverComes)
{
    // Never recognised: what is kept grows to 4 MiB, and with the chunk that passes the limit no further.
    CWindowWatch unknown;
    EXPECT_LE(unknown.Feed(Filler(9 << 20), 100000), (4U << 20) + 600000);
    // Recognised, then rubbish for ever: nothing of it is kept.
    CWindowWatch known;
    EXPECT_LE(known.Feed(ZoavFrame().Payload(Filler(40)) + Filler(9 << 20), 100000), 200000U);
    // A head that promises 5 MiB is waited for; behind it all is given up again.
    CWindowWatch waiting;
    const Bytes stream = ZoavFrame().ClaimLength(0x500000) + Filler(9 << 20);
    EXPECT_LE(waiting.Feed(stream, 1 << 20), 7U << 20);
}

TEST(StreamProperty, OfAnUnknownStreamFourBytesOutliveTheLimit)
{
    constexpr size_t nLimit = 0x400000;
    CWindowWatch watch;
    watch.Feed(Bytes(nLimit, 0), nLimit);
    watch.Feed({0}, 1);
    EXPECT_EQ(watch.Size(), nLimit + 1); // all kept, up to the limit
    watch.Feed({0}, 1);
    EXPECT_EQ(watch.Size(), 4U + 1);
    EXPECT_EQ(watch.GetLastError(), KX_ERROR_UNGET_STREAM_TYPE);
}

// Many false heads in one cycle make the window's front part grow over and over. The frames queued before stay
// readable, and what is kept for them does not grow with the square of the window.
TEST(StreamProperty, FramesStayReadableHoweverOftenTheWindowGrows)
{
    const auto frames = RandomFrames(5, 20, 400);
    Bytes falseHeads;
    while (falseHeads.size() < 700000)
        falseHeads.insert(falseHeads.end(), {'Z', 'O', 'A', 'V'});
    // The head in front claims more than comes first, so all of it is kept, and then judged in one cycle.
    const Bytes held = ZoavFrame().Seq(500).ClaimLength(60000) + Joined(frames);
    void* handle = KX_CreateFrameSift(0);
    EXPECT_TRUE(FeedInChunks(handle, held, WholeChunk()).empty());
    const auto taken = FeedInChunks(handle, ZoavFrame().Seq(21).Payload(Filler(9000)) + falseHeads, WholeChunk());
    KX_Destroy(handle);
    EXPECT_EQ(GoodSeqs(taken), Numbers(21));
    size_t nGood = 0;
    for (const SIFTED_FRAME& frame : taken) {
        if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR && nGood < frames.size()) {
            EXPECT_EQ(frame.frame, frames[nGood++]);
        }
    }
}

} // namespace Marvane::FrameSift
