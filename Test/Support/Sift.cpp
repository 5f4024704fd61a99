#include "Support/Sift.h"

#include <algorithm>
#include <memory>
#include <random>

namespace Marvane::FrameSift {

namespace {

Bytes CopyOf(const uint8_t* pBytes, int32_t nLen)
{
    return pBytes != nullptr && nLen > 0 ? Bytes(pBytes, pBytes + nLen) : Bytes();
}

// With a watermark in doubt streamLen is only what the stream claims.
Bytes PayloadOf(const KX_FRAME_INFO& info)
{
    if (info.errorFlags != KX_ERROR_FLAGS_WATERMARK)
        return CopyOf(info.streamPointer, info.streamLen);
    const auto nBehind = static_cast<int32_t>(info.framePointer + info.frameLen - info.streamPointer);
    return CopyOf(info.streamPointer, std::min(info.streamLen, nBehind));
}

SIFTED_FRAME ToSifted(const KX_FRAME_INFO& info)
{
    const KX_TIME& time = info.frameTime;
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
            PayloadOf(info),
            CopyOf(info.framePointer, info.frameLen)};
}

} // namespace

std::ostream& operator<<(std::ostream& out, const SIFTED_FRAME& frame)
{
    return out << "{type " << frame.frameType << "/" << frame.frameSubType << " seq " << frame.frameSeq << " error "
               << frame.errorFlags << " length " << frame.frameLen << " payload " << frame.streamLen << "}";
}

ChunkSizes FixedChunks(size_t nSize)
{
    return [nSize] { return nSize; };
}

ChunkSizes RandomChunks(uint32_t nSeed, size_t nMax)
{
    auto pRandom = std::make_shared<std::mt19937>(nSeed);
    return [pRandom, nMax] { return std::uniform_int_distribution<size_t>(1, nMax)(*pRandom); };
}

std::vector<SIFTED_FRAME> TakeFrames(void* handle)
{
    std::vector<SIFTED_FRAME> frames;
    KX_FRAME_INFO info{};
    // The records are fetched first and their bytes copied afterwards: all frames of a cycle stay readable together.
    std::vector<KX_FRAME_INFO> infos;
    while (KX_GetOneFrame(handle, &info) == KX_SUCCESS)
        infos.push_back(info);
    std::transform(infos.begin(), infos.end(), std::back_inserter(frames), ToSifted);
    return frames;
}

std::vector<SIFTED_FRAME> FeedInChunks(void* handle, const Bytes& stream, const ChunkSizes& sizes)
{
    std::vector<SIFTED_FRAME> frames;
    for (size_t nPos = 0; nPos < stream.size();) {
        const size_t nLen = std::min(sizes(), stream.size() - nPos);
        const auto pChunk = std::make_unique<uint8_t[]>(nLen);
        std::copy_n(stream.data() + nPos, nLen, pChunk.get());
        KX_ParseData(handle, pChunk.get(), static_cast<int32_t>(nLen));
        const auto taken = TakeFrames(handle);
        frames.insert(frames.end(), taken.begin(), taken.end());
        std::fill_n(pChunk.get(), nLen, uint8_t{0xEE});
        nPos += nLen;
    }
    return frames;
}

std::vector<SIFTED_FRAME> Sift(const Bytes& stream, const ChunkSizes& sizes)
{
    void* handle = KX_CreateFrameSift(0);
    auto frames = FeedInChunks(handle, stream, sizes);
    KX_Destroy(handle);
    return frames;
}

std::vector<int32_t> GoodSeqs(const std::vector<SIFTED_FRAME>& frames)
{
    std::vector<int32_t> seqs;
    for (const SIFTED_FRAME& frame : frames) {
        if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
            seqs.push_back(frame.frameSeq);
    }
    return seqs;
}

Bytes Filler(size_t nSize)
{
    return Bytes(nSize, 0x11);
}

} // namespace Marvane::FrameSift
