// What holds for any recording, good or damaged: index, reads and seeks tell of the same frames.
#include "Support/Mutations.h"
#include "Support/ParsedRecording.h"
#include "Support/RandomStream.h"
#include "Support/ZoavParse.h"

namespace Marvane::FrameSift {

namespace {

// Sound frames, some of which get hurt; filler behind them, so that none waits for its end.
Bytes RandomRecording(uint32_t nSeed, bool bDamaged)
{
    std::mt19937 random(nSeed);
    std::vector<Bytes> frames = RandomFrames(nSeed, 30 + random() % 60, 9000);
    for (Bytes& frame : frames) {
        if (bDamaged && random() % 6 == 0)
            frame[random() % frame.size()] ^= static_cast<uint8_t>(1 + random() % 255);
        if (bDamaged && random() % 12 == 0)
            frame.resize(random() % frame.size());
    }
    return Joined(frames) + Filler(64);
}

std::vector<PLACED_FRAME> Indexed(const std::vector<PLACED_FRAME>& frames)
{
    std::vector<PLACED_FRAME> indexed;
    std::copy_if(frames.begin(), frames.end(), std::back_inserter(indexed),
                 [](const PLACED_FRAME& placed) { return IsIndexed(placed.frame); });
    return indexed;
}

std::vector<PLACED_FRAME> ReadFrom(CFileParseBase& parser, int64_t nOffset, int nSeekType)
{
    EXPECT_EQ(parser.SeekByFileOffset(nOffset, nSeekType), KX_SUCCESS) << nOffset;
    return ReadToEnd(parser);
}

void ExpectSuffix(const std::vector<PLACED_FRAME>& part, const std::vector<PLACED_FRAME>& whole)
{
    ASSERT_LE(part.size(), whole.size());
    ExpectSame(part, {whole.end() - static_cast<ptrdiff_t>(part.size()), whole.end()});
}

void ExpectIndexAgrees(ParsedRecording& recording)
{
    const std::vector<PLACED_FRAME>& told = recording.collector.frames;
    int nCount = 0;
    ASSERT_EQ(recording.parser.GetIndexCount(-1, &nCount), KX_SUCCESS);
    ASSERT_EQ(nCount, static_cast<int>(told.size()));
    std::vector<KX_INDEX_INFO> indices(told.size());
    std::vector<FrameInfo> records(told.size());
    ASSERT_EQ(recording.parser.GetAllIndex(-1, indices.data(), records.data(), nCount, &nCount), KX_SUCCESS);
    for (size_t n = 0; n < told.size(); ++n) {
        EXPECT_EQ(std::memcmp(&indices[n], &recording.collector.indices[n], sizeof(KX_INDEX_INFO)), 0) << n;
        KX_INDEX_INFO index{};
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        ASSERT_EQ(recording.parser.GetOneIndex(static_cast<int>(n), &index, &frame, &ext), KX_SUCCESS);
        EXPECT_EQ((PLACED_FRAME{index.frameOffset, ToSifted(frame)}), told[n]) << n;
        EXPECT_EQ((Fields{records[n].frameSeq, records[n].frameLen}), (Fields{frame.frameSeq, frame.frameLen}));
    }
}

} // namespace

TEST(RecordingProperties, IndexReadsAndSeeksAgree)
{
    for (uint32_t nSeed = 1; nSeed <= 24; ++nSeed) {
        SCOPED_TRACE(nSeed);
        const bool bDamaged = nSeed % 2 == 0;
        const Bytes bytes = RandomRecording(nSeed, bDamaged);
        ParsedRecording recording(bytes);
        EXPECT_EQ(recording.nResult, KX_SUCCESS);
        const std::vector<PLACED_FRAME>& told = recording.collector.frames;
        for (const PLACED_FRAME& placed : told) {
            const Bytes there = Part(bytes, static_cast<size_t>(placed.nOffset), placed.frame.frame.size());
            EXPECT_EQ(there, placed.frame.frame);
        }
        ExpectIndexAgrees(recording);

        const std::vector<PLACED_FRAME> whole = ReadFrom(recording.parser, 0, KX_SEEK_PRECISE_OFFSET);
        ExpectSame(Indexed(whole), told);
        for (const PLACED_FRAME& placed : told) {
            ExpectSuffix(ReadFrom(recording.parser, placed.nOffset, KX_SEEK_PRECISE_OFFSET), whole);
            if (!IsKey(placed))
                continue;
            // The search ends at the offset given: a key frame is reached from behind its first byte. It believes the
            // lengths of damaged heads, and may then start at another frame.
            const auto from = ReadFrom(recording.parser, placed.nOffset + 48, KX_SEEK_I_FRAME);
            ASSERT_FALSE(from.empty());
            EXPECT_TRUE(bDamaged || from.front() == placed) << from.front() << " for " << placed;
            ExpectSuffix(Indexed(from), told);
        }
        std::mt19937 random(nSeed);
        for (int n = 0; n < 10; ++n) {
            const auto from = Indexed(
                ReadFrom(recording.parser, static_cast<int64_t>(random() % bytes.size()), KX_SEEK_PRECISE_OFFSET));
            ExpectSuffix(from, told);
        }
    }
}

TEST(RecordingProperties, FileAndStreamTellOfTheSameFrames)
{
    const Bytes bytes = RandomRecording(5, true);
    CZoavParse stream;
    const auto parsed = stream.Feed(bytes);
    const ParsedRecording recording(bytes);
    std::vector<PLACED_FRAME> fromStream;
    std::vector<PLACED_FRAME> fromFile;
    for (const PARSED_FRAME& one : parsed)
        fromStream.emplace_back(0, ToSifted(one.frame));
    for (const PLACED_FRAME& placed : recording.collector.frames)
        fromFile.emplace_back(0, placed.frame);
    ExpectSame(fromFile, Indexed(fromStream));
}

TEST(RecordingProperties, ACutAtAnyByteKeepsEveryWholeFrame)
{
    const std::vector<Bytes> frames = RandomFrames(3, 5, 120);
    const Bytes bytes = Joined(frames);
    const std::vector<PLACED_FRAME> whole = ParsedRecording(bytes + Filler(64)).collector.frames;
    ASSERT_EQ(whole.size(), frames.size());
    for (size_t nSize = 0; nSize <= bytes.size(); ++nSize) {
        ParsedRecording cut(Part(bytes, 0, nSize));
        std::vector<PLACED_FRAME> expected;
        for (const PLACED_FRAME& placed : whole) {
            // 48 bytes must follow a frame's first one before it is looked at.
            if (placed.nOffset + std::max(placed.frame.frameLen, 48) <= static_cast<int64_t>(nSize))
                expected.push_back(placed);
        }
        SCOPED_TRACE(nSize);
        ExpectSame(cut.collector.frames, expected);
        ASSERT_EQ(cut.collector.infos.size(), 1u);
        ExpectSame(Indexed(ReadFrom(cut.parser, 0, KX_SEEK_PRECISE_OFFSET)), expected);
    }
}

TEST(RecordingProperties, DamageOfAnyKindEndsThePassAndTheReads)
{
    ForEachMutation({RandomRecording(11, false), RandomRecording(12, true)}, 150, 9, [](std::span<uint8_t> damaged) {
        ParsedRecording recording(Bytes(damaged.begin(), damaged.end()));
        const auto whole = ReadFrom(recording.parser, 0, KX_SEEK_PRECISE_OFFSET);
        ExpectSame(Indexed(whole), recording.collector.frames);
        if (damaged.size() > 1) // what is found depends on the damage; that the search ends does not
            recording.parser.SeekByFileOffset(static_cast<int64_t>(damaged.size() / 2), KX_SEEK_I_FRAME);
        ReadToEnd(recording.parser);
    });
}

} // namespace Marvane::FrameSift
