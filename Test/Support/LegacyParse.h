// Frames as one parser of the legacy formats makes them.
#ifndef FRAMESIFT_TEST_SUPPORT_LEGACYPARSE_H
#define FRAMESIFT_TEST_SUPPORT_LEGACYPARSE_H

#include <deque>

#include "IAnalyzer/IFrameCallBack.h"
#include "Memory/LogicData.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

struct LEGACY_FRAME
{
    FrameInfo frame{};
    Bytes payload; // empty if the frame has no pointer to it
    Bytes bytes;   // of the whole frame, likewise
    bool bHasExt = false;
    void* pUserData = nullptr;
};

template <class Parser>
class CLegacyParse : public IFrameCallBack
{
public:
    // Constructs the parser from args.
    template <class... Args>
    explicit CLegacyParse(Args&&... args) : parser(std::forward<Args>(args)...)
    {}

    // Answers the frames of this chunk. Their pointers hold as long as the object, unless they lead into the window.
    std::vector<LEGACY_FRAME> Feed(Bytes chunk)
    {
        m_frames.clear();
        m_chunks.push_back(std::move(chunk));
        window.JoinData(m_chunks.back().data(), static_cast<int>(m_chunks.back().size()));
        nResult = parser.ParseData(&window, this);
        return std::exchange(m_frames, {});
    }

    // The frames of all of it, cut into chunks of nChunk bytes.
    std::vector<LEGACY_FRAME> FeedInChunks(std::span<const uint8_t> stream, size_t nChunk)
    {
        std::vector<LEGACY_FRAME> all;
        for (size_t nPos = 0; nPos < stream.size(); nPos += nChunk) {
            const auto chunk = stream.subspan(nPos, std::min(nChunk, stream.size() - nPos));
            for (LEGACY_FRAME& frame : Feed(Bytes(chunk.begin(), chunk.end())))
                all.push_back(std::move(frame));
        }
        return all;
    }

    std::vector<LEGACY_FRAME> Flush()
    {
        m_frames.clear();
        nResult = parser.FlushBuffer(&window, this);
        return std::exchange(m_frames, {});
    }

    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) override
    {
        m_frames.push_back({*frame, Copy(frame->streamPointer, frame->streamLen),
                            Copy(frame->framePointer, frame->frameLen), ext != nullptr, userData});
        return KX_SUCCESS;
    }

    Parser parser;
    CLogicData window;
    int nResult = KX_SUCCESS; // of the last call

private:
    static Bytes Copy(const uint8_t* pBytes, int32_t nLen)
    {
        return pBytes != nullptr && nLen > 0 ? Bytes(pBytes, pBytes + nLen) : Bytes();
    }

    std::deque<Bytes> m_chunks;
    std::vector<LEGACY_FRAME> m_frames;
};

// All of a frame but where it lies.
inline std::tuple<Bytes, Bytes, Bytes> WithoutPointers(LEGACY_FRAME one)
{
    one.frame.framePointer = nullptr;
    one.frame.streamPointer = nullptr;
    const auto* pRecord = reinterpret_cast<const uint8_t*>(&one.frame);
    return {Bytes(pRecord, pRecord + sizeof one.frame), one.payload, one.bytes};
}

// The frames of a stream, however it is cut. Not into fewer than 4 bytes: a window that short is not kept.
template <class Parser>
std::vector<LEGACY_FRAME> FramesOf(const Bytes& stream)
{
    const auto whole = CLegacyParse<Parser>().Feed(stream);
    for (const size_t nChunk : {4U, 13U, 1000U}) {
        const auto inChunks = CLegacyParse<Parser>().FeedInChunks(stream, nChunk);
        EXPECT_TRUE(std::ranges::equal(whole, inChunks, {}, WithoutPointers, WithoutPointers)) << nChunk;
    }
    return whole;
}

} // namespace Marvane::FrameSift

#endif
