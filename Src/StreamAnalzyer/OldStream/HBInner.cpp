// What becomes of blocks and audio frames once they are cut: payloads go to the inner parser, frames to the user.
#include "StreamAnalzyer/OldStream/HBStream.h"

namespace Marvane::FrameSift {

void CHBStream::DoCallBack(FrameInfo* frame, ExtZOAVIFrameInfo*)
{
    OnFrame(frame, nullptr, nullptr);
}

int CHBStream::OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo*, void*)
{
    // A bad frame shows in the restart alone.
    if (frame->streamType == KX_STREAM_TYPE_HB && frame->errorFlags == KX_ERROR_FLAGS_NOERROR)
        OnHBFrame(*frame);
    else if (frame->streamType == KX_STREAM_TYPE_RAW_MPEG4)
        OnRawFrame(*frame);
    return KX_SUCCESS;
}

void CHBStream::OnHBFrame(FrameInfo& frame)
{
    if (frame.frameType == KX_FRAME_TYPE_AUDIO) {
        Deliver(frame);
        return;
    }
    if (m_clearStep == STEP_NEED_CLEAR)
        RestartAtIFrame();
    else
        FeedInner(frame);
}

void CHBStream::FeedInner(FrameInfo& block)
{
    // Without memory bytes of the payload are missing now, and the window may hold none that are still there.
    if (m_rwExLogicData.JoinData(block.streamPointer, block.streamLen) != KX_SUCCESS ||
        m_rwEx.ParseData(&m_rwExLogicData, this) != KX_SUCCESS)
        RestartAtIFrame();
}

void CHBStream::OnRawFrame(FrameInfo& frame)
{
    if (m_clearStep == STEP_BEGIN_FIND_I_FRAME && frame.frameType == KX_FRAME_TYPE_VIDEO &&
        frame.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME)
        m_clearStep = STEP_FINISH;
    if (m_clearStep != STEP_FINISH)
        return;
    uint8_t* pCopy = m_linkedBuffer.InsertBuffer(frame.framePointer, static_cast<uint32_t>(frame.frameLen));
    if (pCopy == nullptr) {
        // The copies of this pass stay up to its end, as frames that were delivered lead into them.
        RestartAtIFrame();
        return;
    }
    frame.framePointer = pCopy;
    frame.streamPointer = pCopy;
    FillHBInfo(frame);
    Deliver(frame);
}

void CHBStream::FillHBInfo(FrameInfo& frame) const
{
    frame.streamType = KX_STREAM_TYPE_HB;
    frame.frameRate = m_prevIFrameInfo.frameRate;
}

void CHBStream::Deliver(FrameInfo& frame)
{
    if (m_pFrameCallBack != nullptr)
        m_pFrameCallBack->OnFrame(&frame, nullptr, nullptr);
}

void CHBStream::RestartAtIFrame()
{
    m_rwExLogicData.ClearBuffer();
    m_clearStep = STEP_BEGIN_FIND_I_FRAME;
}

int CHBStream::ClearInsideMemory()
{
    m_clearStep = STEP_FINISH;
    m_linkedBuffer.Clear();
    m_rwExLogicData.ClearBuffer();
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
