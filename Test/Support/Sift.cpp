#include "Support/Sift.h"

#include <memory>
#include <random>

namespace Marvane::FrameSift {

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
    std::transform(infos.begin(), infos.end(), std::back_inserter(frames), ToSifted<KX_FRAME_INFO>);
    return frames;
}

std::vector<SIFTED_FRAME> FeedInChunks(void* handle, const Bytes& stream, const ChunkSizes& sizes)
{
    std::vector<SIFTED_FRAME> frames;
    InChunks(stream, sizes, [&](Bytes& chunk) {
        KX_ParseData(handle, chunk.data(), static_cast<int32_t>(chunk.size()));
        const auto taken = TakeFrames(handle);
        frames.insert(frames.end(), taken.begin(), taken.end());
    });
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

} // namespace Marvane::FrameSift
