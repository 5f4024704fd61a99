// What the fuzz targets of the older formats have in common.
#ifndef FRAMESIFT_FUZZ_LEGACYTARGET_H
#define FRAMESIFT_FUZZ_LEGACYTARGET_H

#include "IAnalyzer/IFrameCallBack.h"
#include "Memory/LogicData.h"
#include "SiftedFrames.h"

namespace Marvane::FrameSift {

class CLegacyFrames : public IFrameCallBack
{
public:
    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo*, void*) override
    {
        // A damaged frame may claim a payload that is longer than itself, but no pointer leads out of the window.
        if (frame->errorFlags == KX_ERROR_FLAGS_NOERROR)
            frames.push_back(TakeSiftedFrame(*frame));
        else
            frames.push_back(ToSifted(*frame));
        return KX_SUCCESS;
    }

    std::vector<SIFTED_FRAME> frames;
};

// All of the stream in chunks of nChunk bytes, and then what a flush brings.
template <class Parser>
std::vector<SIFTED_FRAME> SiftLegacy(Parser&& parser, std::span<const uint8_t> stream, size_t nChunk)
{
    CLegacyFrames sink;
    CLogicData window;
    InChunks(stream, FixedChunks(nChunk), [&](Bytes& chunk) {
        window.JoinData(chunk.data(), static_cast<int>(chunk.size()));
        parser.ParseData(&window, &sink);
    });
    parser.FlushBuffer(&window, &sink);
    return sink.frames;
}

// Byte 0 chooses the cut, of 4 bytes or more: a window that is shorter is thrown away. make answers a new parser; the
// frames must be the same however the stream is cut, unless cutMatters says otherwise.
template <class Make, class CutMatters>
int FuzzLegacy(const uint8_t* pData, size_t nSize, Make make, CutMatters cutMatters)
{
    if (nSize < 5)
        return 0;
    const std::vector<uint8_t> stream(pData + 1, pData + nSize);
    const auto whole = SiftLegacy(make(), stream, stream.size());
    const auto cut = SiftLegacy(make(), stream, size_t{4} + pData[0]);
    if (!cutMatters(stream))
        CompareSifted(whole, cut);
    return 0;
}

inline bool NeverMatters(std::span<const uint8_t>)
{
    return false;
}

} // namespace Marvane::FrameSift

#endif
