// Frames as the ZOAV parser makes them, before a handle blanks what it does not tell.
#ifndef FRAMESIFT_TEST_SUPPORT_ZOAVPARSE_H
#define FRAMESIFT_TEST_SUPPORT_ZOAVPARSE_H

#include <deque>
#include <utility>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Memory/LogicData.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

namespace Marvane::FrameSift {

struct PARSED_FRAME
{
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    bool bHasExt = false;
};

class CZoavParse : public IFrameCallBack
{
public:
    CZoavParse() { m_window.Init(0); }

    // Answers the frames of this chunk. Their pointers hold as long as the object.
    std::vector<PARSED_FRAME> Feed(Bytes chunk)
    {
        m_frames.clear();
        m_chunks.push_back(std::move(chunk));
        m_window.JoinData(m_chunks.back().data(), static_cast<int>(m_chunks.back().size()));
        stream.ParseData(&m_window, this);
        return m_frames;
    }

    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void*) override
    {
        m_frames.push_back({*frame, ext != nullptr ? *ext : ExtZOAVIFrameInfo{}, ext != nullptr});
        return KX_SUCCESS;
    }

    CZOAVStream stream;

private:
    CLogicData m_window;
    std::deque<Bytes> m_chunks;
    std::vector<PARSED_FRAME> m_frames;
};

} // namespace Marvane::FrameSift

#endif
