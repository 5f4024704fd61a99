#include "Frames/FrameSource.h"

#include <string_view>

#include "FrameWriter/ExtHeads.h"
#include "Frames/FrameState.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

TEST(FrameSource, OffsetsLeadToTheFramesWhateverTheChunk)
{
    auto parts = RandomFrames(6, 30, 300);
    parts.insert(parts.begin() + 10, Bytes{'Z', 'O', 'I', 'I', 0xD0, 0x07, 0, 0} + Filler(2000 - 8));
    parts.insert(parts.begin() + 20, Filler(77) + ZoavFrame().WrongSum().Payload(Filler(50)).Build());
    const Bytes stream = Joined(parts);
    for (const size_t nChunk : {size_t{1}, size_t{333}, size_t{1500}, size_t{4000}, stream.size()}) {
        SCOPED_TRACE(nChunk);
        CFrameSource source;
        size_t nFrames = 0;
        InChunks(stream, FixedChunks(nChunk), [&](Bytes& chunk) {
            source.Feed(chunk);
            for (LISTED_FRAME listed; source.Next(listed);) {
                nFrames += IsLostFrame(listed.frame) ? 0U : 1U; // audio counts along here, which makes gaps in video
                constexpr std::string_view firstLetters = "ZMLWzmlw";
                const auto nOffset = static_cast<size_t>(listed.nFrameOffset);
                ASSERT_LT(nOffset, stream.size());
                EXPECT_NE(firstLetters.find(static_cast<char>(stream[nOffset])), std::string_view::npos) << nOffset;
                const int32_t nFrameLen = listed.frame.frameLen;
                const uint8_t* pFrame = listed.frame.framePointer;
                if (pFrame != nullptr) {
                    EXPECT_TRUE(std::equal(pFrame, pFrame + nFrameLen, stream.begin() + listed.nFrameOffset));
                }
            }
        });
        EXPECT_EQ(nFrames, 30U + 1 + 2); // the block; a damaged head and its tail
        EXPECT_EQ(source.UnfinishedBytes(), 0U);
    }
    CFrameSource cut;
    Bytes beginning(stream.begin(), stream.begin() + 30);
    cut.Feed(beginning);
    EXPECT_EQ(cut.UnfinishedBytes(), 30U);
}

TEST(FrameSource, WhatAHandleBlanksStandsInTheParsedRecord)
{
    const Bytes key = ZoavFrame().Type(ZOAV_FRAME::I, 1).ExtHead({0x80, 1, 44, 36}).ExtHead({0x89, 2, 0, 0});
    const Bytes next = ZoavFrame().Type(ZOAV_FRAME::P).Seq(2).ExtHead(ExtHead82(640, 480)).Payload(Filler(64));
    Bytes stream = key + next;
    CFrameSource source;
    source.Feed(stream);
    LISTED_FRAME listed;
    ASSERT_TRUE(source.Next(listed));
    EXPECT_EQ((Fields{listed.frame.frameSubType, listed.parsed.frameSubType, listed.frame.nEncryptType,
                      listed.parsed.nEncryptType, listed.parsed.deinterlace}),
              (Fields{KX_FRAME_SUB_TYPE_VIDEO_I_FRAME, KX_FRAME_SUB_TYPE_VIDEO_SMART_I_FRAME, 0, KX_ENCRYPT_3DES,
                      KX_DEINTERLACE_SINGLE}));
    EXPECT_EQ(listed.nAnnouncedWidth, 352);
    EXPECT_EQ(listed.nAnnouncedHeight, 288);
    ASSERT_TRUE(source.Next(listed)); // its size is that of the key frame, whatever its own head says
    EXPECT_EQ(int32_t{listed.parsed.width}, 352);
    EXPECT_EQ(listed.nAnnouncedWidth, 640);
    EXPECT_EQ(listed.nAnnouncedHeight, 480);
    EXPECT_FALSE(source.Next(listed));
}

} // namespace Marvane::FrameSift
