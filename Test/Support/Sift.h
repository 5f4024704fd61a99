// Feeds a stream to a handle as a caller does, and collects what comes out.
#ifndef FRAMESIFT_TEST_SUPPORT_SIFT_H
#define FRAMESIFT_TEST_SUPPORT_SIFT_H

#include <algorithm>
#include <cstdint>
#include <functional>
#include <ostream>
#include <span>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// A frame as it came out, with copies of the bytes that its pointers led to.
struct SIFTED_FRAME
{
    int32_t frameType, frameSubType, frameEncodeType, streamType, errorFlags, frameSeq, timeStamp;
    int32_t frameRate, width, height, samplesPerSec, bitsPerSample, channels, streamLen, frameLen;
    std::vector<int32_t> time;
    Bytes payload;
    Bytes frame;

    bool operator==(const SIFTED_FRAME&) const = default;
};

inline Bytes CopyOf(const uint8_t* pBytes, int32_t nLen)
{
    return pBytes != nullptr && nLen > 0 ? Bytes(pBytes, pBytes + nLen) : Bytes();
}

// Of a frame record, public or internal.
template <class Record>
SIFTED_FRAME ToSifted(const Record& info)
{
    const KX_TIME time = info.frameTime;
    // With a watermark in doubt streamLen is only what the stream claims.
    int32_t nPayload = info.streamLen;
    if (info.errorFlags == KX_ERROR_FLAGS_WATERMARK)
        nPayload = std::min(nPayload, static_cast<int32_t>(info.framePointer + info.frameLen - info.streamPointer));
    return {info.frameType,
            info.frameSubType,
            info.frameEncodeType,
            info.streamType,
            info.errorFlags,
            info.frameSeq,
            info.timeStamp,
            info.frameRate,
            info.width,
            info.height,
            info.samplesPerSec,
            info.bitsPerSample,
            info.channels,
            info.streamLen,
            info.frameLen,
            {time.nYear, time.nMonth, time.nDay, time.nHour, time.nMinute, time.nSecond, time.nMilliSecond},
            CopyOf(info.streamPointer, nPayload),
            CopyOf(info.framePointer, info.frameLen)};
}

inline std::ostream& operator<<(std::ostream& out, const SIFTED_FRAME& frame)
{
    return out << "{type " << frame.frameType << "/" << frame.frameSubType << " seq " << frame.frameSeq << " error "
               << frame.errorFlags << " length " << frame.frameLen << " payload " << frame.streamLen << "}";
}

// Answers the size of the next chunk.
using ChunkSizes = std::function<size_t()>;

inline ChunkSizes FixedChunks(size_t nSize)
{
    return [nSize] { return nSize; };
}
inline ChunkSizes WholeChunk()
{
    return FixedChunks(SIZE_MAX);
}
ChunkSizes RandomChunks(uint32_t nSeed, size_t nMax);

// Hands the stream to feed in chunks, each in a heap block of just its size, so that a read past it is found. It is
// overwritten before the next one comes.
template <class Feed>
void InChunks(std::span<const uint8_t> stream, const ChunkSizes& sizes, Feed feed)
{
    while (!stream.empty()) {
        const size_t nLen = std::min(sizes(), stream.size());
        Bytes chunk(stream.begin(), stream.begin() + static_cast<ptrdiff_t>(nLen));
        feed(chunk);
        std::fill(chunk.begin(), chunk.end(), uint8_t{0xEE});
        stream = stream.subspan(nLen);
    }
}

// Takes all frames that are queued.
std::vector<SIFTED_FRAME> TakeFrames(void* handle);

std::vector<SIFTED_FRAME> FeedInChunks(void* handle, const Bytes& stream, const ChunkSizes& sizes);

// The same on a handle of its own.
std::vector<SIFTED_FRAME> Sift(const Bytes& stream, const ChunkSizes& sizes = WholeChunk());

// Sequence numbers of the frames without error.
std::vector<int32_t> GoodSeqs(const std::vector<SIFTED_FRAME>& frames);

// Filler without any magic in it: the camera goes on, so that the parser need not wait for the end of the last frame.
inline Bytes Filler(size_t nSize)
{
    return Bytes(nSize, 0x11);
}

} // namespace Marvane::FrameSift

#endif
