#include "Frames/FrameSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"

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
        for (size_t nPos = 0; nPos < stream.size(); nPos += nChunk) {
            Bytes chunk(stream.begin() + static_cast<ptrdiff_t>(nPos),
                        stream.begin() + static_cast<ptrdiff_t>(std::min(nPos + nChunk, stream.size())));
            source.Feed(chunk);
            for (LISTED_FRAME listed; source.Next(listed); ++nFrames) {
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
        }
        EXPECT_EQ(nFrames, 30U + 1 + 2); // the block; a damaged head and its tail
        EXPECT_EQ(source.UnfinishedBytes(), 0U);
    }
    CFrameSource cut;
    Bytes beginning(stream.begin(), stream.begin() + 30);
    cut.Feed(beginning);
    EXPECT_EQ(cut.UnfinishedBytes(), 30U);
}

} // namespace Marvane::FrameSift
