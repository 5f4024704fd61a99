// The public calls on any bytes. Properties: no crash, no leak; the payload of a sound frame lies within the frame; how
// the caller cuts the stream changes no frame.
#include "SiftedFrames.h"

namespace Marvane::FrameSift {

namespace {

struct SIFTED_STREAM
{
    int32_t nStreamType = 0;
    std::vector<SIFTED_FRAME> frames;
};

SIFTED_STREAM SiftStream(std::span<const uint8_t> stream, size_t nChunk)
{
    SIFTED_STREAM sifted;
    void* handle = KX_CreateFrameSift(0);
    InChunks(stream, FixedChunks(nChunk), [&](Bytes& chunk) {
        KX_ParseData(handle, chunk.data(), static_cast<int32_t>(chunk.size()));
        KX_FRAME_INFO frame;
        while (KX_GetOneFrame(handle, &frame) == KX_SUCCESS)
            sifted.frames.push_back(TakeSiftedFrame(frame));
    });
    KX_GetStreamType(handle, &sifted.nStreamType);
    KX_Destroy(handle);
    return sifted;
}

// Detection may depend on the cut: some of its signs count once for each call.
bool IsZoav(const SIFTED_STREAM& sifted)
{
    return sifted.nStreamType == KX_STREAM_TYPE_ZOSTD || sifted.nStreamType == KX_STREAM_TYPE_STD_MY ||
           sifted.nStreamType == KX_STREAM_TYPE_STD_LX || sifted.nStreamType == KX_STREAM_TYPE_STD_WM;
}

} // namespace

} // namespace Marvane::FrameSift

// Byte 0 chooses the cut; the stream follows.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    using namespace Marvane::FrameSift;
    if (nSize < 2)
        return 0;
    const std::span<const uint8_t> stream(pData + 1, nSize - 1);
    const SIFTED_STREAM whole = SiftStream(stream, stream.size());
    const SIFTED_STREAM cut = SiftStream(stream, size_t{1} + pData[0]);
    if (IsZoav(whole) && IsZoav(cut) && !CutMayMatter(stream, whole.frames))
        CompareSifted(whole.frames, cut.frames);
    return 0;
}
