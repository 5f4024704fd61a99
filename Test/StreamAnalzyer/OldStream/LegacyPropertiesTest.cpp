// What holds for any stream of the older formats: how it is cut changes nothing, and damage costs only what it touched.
#include "Memory/LogicData.h"
#include "Support/RandomLegacy.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

class CCollector : public IFrameCallBack
{
public:
    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo*, void*) override
    {
        frames.push_back(ToSifted(*frame));
        return KX_SUCCESS;
    }

    std::vector<SIFTED_FRAME> frames;
};

std::vector<SIFTED_FRAME> Parse(LEGACY_FORMAT eFormat, const Bytes& stream, const ChunkSizes& sizes = WholeChunk())
{
    const auto pParser = MakeLegacyParser(eFormat);
    CCollector collector;
    CLogicData window;
    InChunks(stream, sizes, [&](Bytes& chunk) {
        window.JoinData(chunk.data(), static_cast<int>(chunk.size()));
        pParser->ParseData(&window, &collector);
    });
    return collector.frames;
}

std::vector<Bytes> GoodPayloads(const std::vector<SIFTED_FRAME>& frames)
{
    std::vector<Bytes> payloads;
    for (const SIFTED_FRAME& frame : frames) {
        if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
            payloads.push_back(frame.payload);
    }
    return payloads;
}

void ExpectSameFrames(const std::vector<SIFTED_FRAME>& left, const std::vector<SIFTED_FRAME>& right)
{
    const auto [l, r] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    if (l != left.end() && r != right.end())
        ADD_FAILURE() << "frame " << l - left.begin() << ": " << *l << " and " << *r;
    else
        EXPECT_EQ(left.size(), right.size());
}

} // namespace

// Frames up to 60 KB, which are longer than the room that the window starts with.
TEST(LegacyProperty, TheCutChangesNoFrame)
{
    for (const LEGACY_FORMAT eFormat : gsk_legacyFormats) {
        for (uint32_t nSeed = 1; nSeed <= 4; ++nSeed) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(eFormat) << " seed " << nSeed);
            const size_t nMaxPayload = nSeed % 2 == 0 ? 300 : 60000;
            const auto frames = RandomLegacyFrames(eFormat, nSeed, 40, nMaxPayload);
            const Bytes stream = Joined(frames);
            const auto whole = Parse(eFormat, stream);
            EXPECT_GT(whole.size(), 5U);
            if (eFormat != LEGACY_FORMAT::Hb) { // whose blocks are no frames
                EXPECT_EQ(whole.size() + 1, frames.size());
            }
            for (const size_t nChunk : {size_t{4}, size_t{64}, size_t{1400}, size_t{65536}})
                ExpectSameFrames(Parse(eFormat, stream, FixedChunks(nChunk)), whole);
            ExpectSameFrames(Parse(eFormat, Bytes(4, 0x55) + stream, RandomChunks(nSeed, 3000)), whole);
        }
    }
}

// A length that was damaged may reach to the next ID, one that lost its ID is swallowed by the frame in front. What a
// ZOPT head claims is waited for, up to 4 GiB: its upper bytes are left out here.
TEST(LegacyProperty, DamageCostsAtMostItsOwnFrameAndTheOneInFront)
{
    for (const LEGACY_FORMAT eFormat : {LEGACY_FORMAT::New, LEGACY_FORMAT::NewEx, LEGACY_FORMAT::NewEx1,
                                        LEGACY_FORMAT::Zopt, LEGACY_FORMAT::RawMpeg4}) {
        const auto frames = RandomLegacyFrames(eFormat, 3, 200, 1500);
        const auto sound = GoodPayloads(Parse(eFormat, Joined(frames)));
        for (uint32_t nSeed = 1; nSeed <= 60; ++nSeed) {
            std::mt19937 random(nSeed);
            auto damaged = frames;
            const size_t nTouched = 1 + random() % 10; // so much follows that no length is waited for in vain
            Bytes& frame = damaged[nTouched];
            const size_t nByte = random() % (random() % 2 == 0 ? 5 : frame.size());
            if (eFormat == LEGACY_FORMAT::Zopt && nByte >= 6 && nByte < 8)
                continue;
            frame[nByte] ^= static_cast<uint8_t>(1U << random() % 8);
            auto left = GoodPayloads(Parse(eFormat, Joined(damaged), RandomChunks(nSeed, 5000)));
            // All that stood in front of the one in front, and all behind.
            ASSERT_GE(left.size() + 2, sound.size()) << static_cast<int>(eFormat) << " seed " << nSeed;
            EXPECT_TRUE(std::equal(sound.begin(), sound.begin() + static_cast<ptrdiff_t>(nTouched) - 1, left.begin()));
            const auto nBehind = static_cast<ptrdiff_t>(sound.size() - nTouched - 1);
            EXPECT_TRUE(std::equal(sound.end() - nBehind, sound.end(), left.end() - nBehind));
        }
    }
}

TEST(LegacyProperty, NoiseIsWithstood)
{
    constexpr uint8_t codes[] = {0xF0, 0xF1, 0xF2, 0xFA, 0xFB, 0xFC, 0xFD, 0xB0, 0xB2, 0xB3, 0xB6, 0x20, 0};
    for (const LEGACY_FORMAT eFormat : gsk_legacyFormats) {
        for (uint32_t nSeed = 1; nSeed <= 12; ++nSeed) {
            std::mt19937 random(nSeed);
            Bytes noise = RandomBytes(random, 20000);
            for (int n = 0; n < 600; ++n) {
                const auto place = noise.begin() + static_cast<ptrdiff_t>(random() % 19000);
                const Bytes id = n % 9 == 0 ? Bytes{'Z', 'O', 'P', 'T', 60, 0, 0, 0}
                                            : Bytes{0, 0, 1, codes[random() % std::size(codes)], 0, 2, 40, 0};
                std::copy(id.begin(), id.end(), place);
            }
            const Bytes sound = Joined(RandomLegacyFrames(eFormat, nSeed, 5, 300));
            Parse(eFormat, noise + sound, RandomChunks(nSeed, 3000));
            Sift(sound + noise + sound, RandomChunks(nSeed, 300));
        }
    }
}

} // namespace Marvane::FrameSift
