// Feeds a stream to a handle as a caller does, and collects what comes out.
#ifndef FRAMESIFT_TEST_SUPPORT_SIFT_H
#define FRAMESIFT_TEST_SUPPORT_SIFT_H

#include <cstdint>
#include <functional>
#include <ostream>
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

std::ostream& operator<<(std::ostream& out, const SIFTED_FRAME& frame);

// Answers the size of the next chunk.
using ChunkSizes = std::function<size_t()>;

ChunkSizes FixedChunks(size_t nSize);
ChunkSizes RandomChunks(uint32_t nSeed, size_t nMax);
inline ChunkSizes WholeChunk()
{
    return FixedChunks(SIZE_MAX);
}

// Takes all frames that are queued.
std::vector<SIFTED_FRAME> TakeFrames(void* handle);

// Each chunk lies in a heap block of just its size, and is overwritten before the next one is fed.
std::vector<SIFTED_FRAME> FeedInChunks(void* handle, const Bytes& stream, const ChunkSizes& sizes);

// The same on a handle of its own.
std::vector<SIFTED_FRAME> Sift(const Bytes& stream, const ChunkSizes& sizes = WholeChunk());

// Sequence numbers of the frames without error.
std::vector<int32_t> GoodSeqs(const std::vector<SIFTED_FRAME>& frames);

// Filler without any magic in it: the camera goes on, so that the parser need not wait for the end of the last frame.
Bytes Filler(size_t nSize);

} // namespace Marvane::FrameSift

#endif
