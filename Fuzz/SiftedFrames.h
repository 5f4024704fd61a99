// What a stream was separated into, copied out so that two ways of feeding it can be compared.
#ifndef FRAMESIFT_FUZZ_SIFTEDFRAMES_H
#define FRAMESIFT_FUZZ_SIFTEDFRAMES_H

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

struct SIFTED_FRAME
{
    int32_t errorFlags = 0;
    int32_t streamLen = 0;
    std::vector<int32_t> numbers;
    std::vector<uint8_t> frame;
    std::vector<uint8_t> payload;

    bool operator==(const SIFTED_FRAME&) const = default;
};

// Copies a frame record, public or internal; reads all the bytes that it leads to.
template <class Record>
SIFTED_FRAME TakeSiftedFrame(const Record& record)
{
    const KX_TIME time = record.frameTime;
    SIFTED_FRAME sifted;
    sifted.errorFlags = record.errorFlags;
    sifted.streamLen = record.streamLen;
    sifted.numbers = {record.frameType, record.frameSubType,  record.frameEncodeType,
                      record.streamLen, record.frameLen,      record.timeStamp,
                      record.frameSeq,  record.frameRate,     record.width,
                      record.height,    record.samplesPerSec, record.bitsPerSample,
                      record.channels,  time.nYear,           time.nMonth,
                      time.nDay,        time.nHour,           time.nMinute,
                      time.nSecond,     time.nMilliSecond};
    if (record.framePointer != nullptr && record.frameLen > 0)
        sifted.frame.assign(record.framePointer, record.framePointer + record.frameLen);
    // With a watermark in doubt streamLen is only what the stream claims.
    if (record.streamPointer != nullptr && record.streamLen > 0 && record.errorFlags != KX_ERROR_FLAGS_WATERMARK)
        sifted.payload.assign(record.streamPointer, record.streamPointer + record.streamLen);
    const bool bInside =
        record.streamLen <= 0 || (record.streamPointer >= record.framePointer &&
                                  record.streamPointer + record.streamLen <= record.framePointer + record.frameLen);
    // The payload of a sound frame lies within the frame.
    if (record.errorFlags == KX_ERROR_FLAGS_NOERROR && !bInside)
        std::abort();
    return sifted;
}

// Hands the stream to feed(pChunk, nLength) in chunks. Each lies in a heap block of just its size, so that a read past
// it is found, and is overwritten before the next one, as callers do.
template <class Feed>
void FeedInChunks(std::span<const uint8_t> stream, size_t nChunk, Feed&& feed)
{
    while (!stream.empty()) {
        const size_t nLength = std::min(nChunk, stream.size());
        const auto pChunk = std::make_unique<uint8_t[]>(nLength);
        std::copy_n(stream.begin(), nLength, pChunk.get());
        feed(pChunk.get(), static_cast<int32_t>(nLength));
        std::fill_n(pChunk.get(), nLength, uint8_t{0xDB});
        stream = stream.subspan(nLength);
    }
}

// How the caller cuts the stream changes no record, but for these. A ZOII block that the stream's end cuts off is let pass
// if the window, not what remains of it, is long enough. And a frame whose extension heads reach past its end is accepted
// if the bytes there have come.
inline bool CutMayMatter(std::span<const uint8_t> stream, const std::vector<SIFTED_FRAME>& whole)
{
    constexpr std::string_view block = "ZOII";
    return std::search(stream.begin(), stream.end(), block.begin(), block.end()) != stream.end() ||
           std::any_of(whole.begin(), whole.end(), [](const SIFTED_FRAME& frame) { return frame.streamLen < 0; });
}

inline void PrintSifted(const char* pName, const std::vector<SIFTED_FRAME>& frames)
{
    std::fprintf(stderr, "%s: %zu frames\n", pName, frames.size());
    for (const SIFTED_FRAME& frame : frames) {
        std::fprintf(stderr, "  error %d, %zu and %zu bytes:", frame.errorFlags, frame.frame.size(),
                     frame.payload.size());
        for (const int32_t nNumber : frame.numbers)
            std::fprintf(stderr, " %d", nNumber);
        std::fputc('\n', stderr);
    }
}

// Aborts if the two ways gave different frames.
inline void CompareSifted(const std::vector<SIFTED_FRAME>& whole, const std::vector<SIFTED_FRAME>& cut)
{
    if (whole == cut)
        return;
    PrintSifted("whole", whole);
    PrintSifted("cut", cut);
    std::abort();
}

} // namespace Marvane::FrameSift

#endif
