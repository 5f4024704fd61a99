// What the fuzz targets of single parsers share.
#ifndef FRAMESIFT_FUZZ_REQUIRE_H
#define FRAMESIFT_FUZZ_REQUIRE_H

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

using Answers = std::vector<int64_t>;

inline void Require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

// A picture as Parse fills it; written nowhere else. All else keeps the pattern that it was filled with.
struct FUZZ_PICTURE
{
    FUZZ_PICTURE() { std::memset(&frame, 0xA5, sizeof frame); }

    // The fields that the parsers may write, and the end of the frame's use: they are taken back to the pattern.
    void Take(Answers& answers)
    {
        FUZZ_PICTURE untouched;
        FrameInfo& from = untouched.frame;
        answers.insert(answers.end(),
                       {frame.frameSubType, frame.frameRate, frame.width, frame.height, frame.cropBeforeWidth,
                        frame.cropBeforeHeight, frame.pictrueStructure, frame.nVideoBitDepth, frame.nColorPrimaries,
                        frame.nColorTransfer, frame.nColorSpace, frame.nMaxLuminance, frame.nMinLuminance,
                        frame.nMaxContentLightLevel, frame.nMaxFrameAverageLightLevel});
        from.frameSubType = frame.frameSubType;
        from.frameRate = frame.frameRate;
        from.width = frame.width;
        from.height = frame.height;
        from.cropBeforeWidth = frame.cropBeforeWidth;
        from.cropBeforeHeight = frame.cropBeforeHeight;
        from.pictrueStructure = frame.pictrueStructure;
        if (bH265) {
            from.nVideoBitDepth = frame.nVideoBitDepth;
            from.nColorPrimaries = frame.nColorPrimaries;
            from.nColorTransfer = frame.nColorTransfer;
            from.nColorSpace = frame.nColorSpace;
            from.nMaxLuminance = frame.nMaxLuminance;
            from.nMinLuminance = frame.nMinLuminance;
            from.nMaxContentLightLevel = frame.nMaxContentLightLevel;
            from.nMaxFrameAverageLightLevel = frame.nMaxFrameAverageLightLevel;
            std::memcpy(from.nDisplayPrimaries, frame.nDisplayPrimaries, sizeof frame.nDisplayPrimaries);
            std::memcpy(from.nWhitePoint, frame.nWhitePoint, sizeof frame.nWhitePoint);
        }
        Require(std::memcmp(&frame, &from, sizeof frame) == 0);
    }

    FrameInfo frame;
    bool bH265 = false;
};

// Asks two new parsers, which must say the same, and then one that has seen other bytes and these before. The bytes lie
// in a block of just their size, so that a read past them is found.
template <class Parser, class Ask>
void AskNewAndKept(const uint8_t* pData, size_t nSize, Ask ask)
{
    const std::vector<uint8_t> block(pData, pData + nSize);
    const std::span<const uint8_t> bytes(block);
    Parser first;
    Parser second;
    Require(ask(first, bytes) == ask(second, bytes));
    ask(first, bytes.subspan(nSize / 2));
    ask(first, bytes);
}

} // namespace Marvane::FrameSift

#endif
