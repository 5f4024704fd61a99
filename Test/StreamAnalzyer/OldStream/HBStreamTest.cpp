#include "StreamAnalzyer/OldStream/HBStream.h"

#include <ctime>

#include "FrameWriter/LegacyFrameWriter.h"
#include "Support/LegacyParse.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

// A sample over and over, in numbered blocks that may be damaged.
class CBlocks
{
public:
    explicit CBlocks(const json& sample, size_t nTimes, uint32_t nFirstNumber = 1)
    {
        const Bytes once = ReadSample(sample["file"]);
        for (size_t n = 0; n < nTimes; ++n) {
            for (const json& unit : sample["units"])
                m_units.emplace_back(UnitOf(once, unit), unit["key"]);
            m_stream = std::move(m_stream) + once;
        }
        for (size_t nPos = 0; nPos < m_stream.size(); nPos += gsk_hbBlockPayload)
            blocks.push_back(HbBlock({}, nFirstNumber++, Part(m_stream, nPos, gsk_hbBlockPayload)));
    }

    Bytes Joined() const
    {
        Bytes joined;
        for (const Bytes& block : blocks)
            joined = std::move(joined) + block;
        return joined + LegacyEndMark();
    }

    // The pictures that are closed in front of block nLost, and those from the first I frame on that begins in block nFed
    // or behind it.
    std::vector<Bytes> PicturesWithout(size_t nLost, size_t nFed) const
    {
        std::vector<Bytes> pictures;
        bool bFound = false;
        size_t nPos = 0;
        for (const auto& [unit, bKey] : m_units) {
            bFound = bFound || (bKey && nPos >= nFed * gsk_hbBlockPayload);
            nPos += unit.size();
            if (nPos + 4 <= (bFound ? m_stream.size() : nLost * gsk_hbBlockPayload))
                pictures.push_back(unit);
        }
        return pictures;
    }

    std::vector<Bytes> blocks;

private:
    Bytes m_stream;
    std::vector<std::pair<Bytes, bool>> m_units;
};

std::vector<Bytes> PicturesIn(const std::vector<LEGACY_FRAME>& frames)
{
    std::vector<Bytes> pictures;
    for (const LEGACY_FRAME& one : frames) {
        if (one.frame.frameType == KX_FRAME_TYPE_VIDEO)
            pictures.push_back(one.bytes);
    }
    return pictures;
}

} // namespace

TEST(HbStream, SamplesComeOutOfTheBlocks)
{
    for (const json& sample : SamplesIn("mpeg4")) {
        SCOPED_TRACE(sample["file"]);
        const CBlocks blocks(sample, 2);
        const auto frames = FramesOf<CHBStream>(blocks.Joined());
        EXPECT_EQ(PicturesIn(frames), blocks.PicturesWithout(0, 0));
        for (const auto& [frame, payload, bytes, bHasExt, pUserData] : frames) {
            EXPECT_EQ(payload, bytes);
            EXPECT_FALSE(bHasExt || pUserData != nullptr);
            // The picture's own size, the rate of the blocks.
            EXPECT_EQ((Fields{frame.streamType, frame.width, frame.height, frame.frameRate}),
                      (Fields{KX_STREAM_TYPE_HB, sample["facts"]["width"], sample["facts"]["height"], 25}));
        }
    }
}

TEST(HbStream, DamageCostsThePicturesUpToTheNextIFrame)
{
    // Block 4 is damaged, the fifth one of them all.
    const Rows<const char*, void (*)(std::vector<Bytes>&), size_t, size_t> rows = {
        {"none", [](auto&) {}, 0, 0},
        {"lost", [](auto& blocks) { blocks[4].clear(); }, 4, 7},
        {"other number", [](auto& blocks) { blocks[4][12] ^= 64; }, 4, 6},
        {"other size", [](auto& blocks) { blocks[4][6] ^= 8; }, 4, 6},
        {"other rate from here on",
         [](auto& blocks) { std::for_each(blocks.begin() + 4, blocks.end(), [](auto& block) { block[5] ^= 8; }); }, 4,
         5},
        {"too long", [](auto& blocks) { blocks[4].push_back(0x55); }, 4, 6},
        {"no ID", [](auto& blocks) { blocks[4][3] = 0; }, 3, 6},
    };
    const Bytes sound = OldAudioFrameEx(14, 2, Counting(20));
    for (const auto& [pName, damage, nLost, nFed] : rows) {
        SCOPED_TRACE(pName);
        CBlocks blocks(SampleOf("mpeg4/cif25_ip.m4v"), 3);
        damage(blocks.blocks);
        blocks.blocks[5] = sound + blocks.blocks[5] + sound;
        const auto frames = FramesOf<CHBStream>(blocks.Joined());
        const auto pictures = PicturesIn(frames);
        EXPECT_EQ(pictures, blocks.PicturesWithout(nLost, nFed));
        EXPECT_EQ(frames.size(), pictures.size() + 2); // sound comes out all the while
    }
}

TEST(HbStream, NumberZeroLeavesTheNextBlockToBeTheFirst)
{
    const CBlocks blocks(SampleOf("mpeg4/cif25_ip.m4v"), 1, 0);
    const auto frames = FramesOf<CHBStream>(blocks.Joined());
    auto pictures = blocks.PicturesWithout(0, 0);
    pictures.erase(pictures.begin()); // it began in block 0
    EXPECT_EQ(PicturesIn(frames), pictures);
}

TEST(HbStream, HeadIsRead)
{
    LEGACY_PICTURE picture;
    picture.nWidth = 1008;
    picture.nHeight = 2032;
    picture.nSeconds = 4102444799; // 2099-12-31 23:59:59 UTC
    CHBStream stream;
    CLogicData window;
    Bytes block = HbBlock(picture, 0x89ABCDEF, Counting(gsk_hbBlockPayload)) + LegacyEndMark();
    ASSERT_EQ(window.JoinData(block.data(), static_cast<int>(block.size())), KX_SUCCESS);
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    ASSERT_TRUE(stream.CheckFrameID(0x1F2) && stream.BuildFrame(&window, 0, frame, ext));
    const KX_TIME time = frame.frameTime;
    EXPECT_EQ((Fields{frame.width, frame.height, frame.frameRate, frame.frameSeq, frame.frameLen, frame.streamLen,
                      frame.streamPointer - block.data(), time.nYear, time.nMonth, time.nDay, time.nHour, time.nMinute,
                      time.nSecond}),
              (Fields{1008, 2032, 25, static_cast<int32_t>(0x89ABCDEF), 1040, 1024, 16, 2099, 12, 31, 23, 59, 59}));
    tm parts = {59, 59, 23, 31, 11, 199, 0, 0, 0, 0, nullptr};
    EXPECT_EQ(int32_t{frame.timeStamp}, static_cast<int32_t>(mktime(&parts)));
}

TEST(HbStream, SoundIsNumberedOnceHoweverLongItWaits)
{
    const Bytes sound = OldAudioFrameEx(48, 14, Counting(20));
    const auto frames = FramesOf<CHBStream>(sound + Bytes(50, 0x55) + sound + LegacyEndMark());
    ASSERT_EQ(frames.size(), 1U); // not the one that something unknown follows
    const FrameInfo& frame = frames[0].frame;
    EXPECT_EQ(frames[0].bytes, OldAudioFrameEx(48, 0, Counting(20)));
    EXPECT_EQ((Fields{frame.streamType, frame.frameSeq, frame.streamLen}), (Fields{KX_STREAM_TYPE_HB, 2, 20}));
}

TEST(HbStream, ASizeHoldsThoughItsPictureIsLost)
{
    const json sample = SampleOf("mpeg4/qcif15_ip.m4v");
    const Bytes picture = UnitOf(ReadSample(sample["file"]), sample["units"][0]) + Bytes(1024, 0x55);
    const Bytes bare = Bytes{0, 0, 1, 0xB6, 0x10} + Bytes(1019, 0x55);
    Bytes stream = HbBlock({}, 1, picture);
    for (const uint32_t nNumber : {3U, 4U, 5U, 6U}) // block 3 shows the loss, block 4 begins anew
        stream = stream + HbBlock({}, nNumber, bare);
    const auto frames = FramesOf<CHBStream>(stream + LegacyEndMark());
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ((Fields{frames[0].frame.width, frames[0].frame.height}), (Fields{176, 144}));
}

} // namespace Marvane::FrameSift
