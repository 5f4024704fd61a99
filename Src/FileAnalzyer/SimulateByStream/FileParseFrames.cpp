// What happens to a frame that the stream parser finds, by the stage that listens.
#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "StreamAnalzyer/StreamParseBase.h"

namespace Marvane::FrameSift {

namespace {

bool IsKeyFrame(const FrameInfo& frame)
{
    return frame.frameType == KX_FRAME_TYPE_VIDEO && IsIFrameSubType(frame.frameSubType);
}

} // namespace

int CFileParseBase::OnFrame(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx, void* userData)
{
    if (userData == nullptr)
        return OnFrameCommon(frameInfo, frameInfoEx);
    return OnFrameBase(frameInfo, frameInfoEx, reinterpret_cast<intptr_t>(userData));
}

KX_INDEX_INFO CFileParseBase::IndexOf(CLogicData& window, int64_t nBase) const
{
    KX_INDEX_INFO index{};
    window.GetKeyPos(index.streamOffset, index.frameOffset);
    index.streamOffset += nBase;
    index.frameOffset += nBase;
    return index;
}

void CFileParseBase::ParseFileInfo(const FrameInfo& frameInfo)
{
    // A damaged frame counts here too: whoever makes room for the largest frame must have room for it.
    if (static_cast<uint32_t>(frameInfo.frameLen) > m_FileInfo.maxframesize)
        m_FileInfo.maxframesize = static_cast<uint32_t>(frameInfo.frameLen);
    if (frameInfo.errorFlags != KX_ERROR_FLAGS_NOERROR)
        return;
    ++m_FileInfo.framenum;
    if (frameInfo.frameType == KX_FRAME_TYPE_AUDIO)
        ++m_FileInfo.audionum;
    if (frameInfo.frameType != KX_FRAME_TYPE_VIDEO)
        return;
    ++m_FileInfo.videonum;
    if (IsKeyFrame(frameInfo)) {
        ++m_FileInfo.keyframenum;
        m_nFrameRate = frameInfo.frameRate;
    }
    // Milliseconds as long as the pass runs. A clock that jumps inside the file plays no part.
    if (m_nFrameRate != 0)
        m_FileInfo.duration += static_cast<uint32_t>(1000 / m_nFrameRate);
}

int CFileParseBase::IndexFrame(KX_INDEX_INFO& index, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    const int nResult = m_IndexList.InputFrame(&index, frameInfo, frameInfoEx);
    m_bFrameLost = m_bFrameLost || nResult == KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    return nResult;
}

int CFileParseBase::OnFrameCommon(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    KX_INDEX_INFO index = IndexOf(m_logicData, m_nSliceStartPos);
    ParseFileInfo(*frameInfo);
    if (const int nResult = IndexFrame(index, frameInfo, frameInfoEx); nResult != KX_SUCCESS)
        return nResult;
    if (m_pIndexCallBack == nullptr)
        return KX_SUCCESS;
    // Behind InputFrame: the index keeps the cipher, as the bytes in the file keep it.
    ClearFinishedCipher(*frameInfo);
    return m_pIndexCallBack->OnIndex(&index, frameInfo, frameInfoEx);
}

int CFileParseBase::OnFrameBase(FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx, intptr_t nUse)
{
    if (nUse == CALLBACK_USE_BASE_INDEX) {
        KX_INDEX_INFO index = IndexOf(m_logicDataIndex, m_BeginPos);
        ParseFileInfo(*frameInfo);
        OnBaseParseIndex(&index, frameInfo, frameInfoEx);
        return KX_SUCCESS;
    }
    KX_INDEX_INFO index = IndexOf(m_logicData, m_nSliceStartPos);
    switch (nUse) {
    case CALLBACK_USE_BASE_BEGIN_TIME:
        m_frameStore.InputFileFrame(&index, frameInfo, frameInfoEx);
        break;
    case CALLBACK_USE_BASE_END_TIME:
        KeepEndFrame(index, *frameInfo);
        break;
    case CALLBACK_USE_BASE_FRAME:
        m_bGotFrame = true;
        m_bFrameLost = m_frameStore.InputFileFrame(&index, frameInfo, frameInfoEx) != KX_SUCCESS || m_bFrameLost;
        break;
    case CALLBACK_USE_BASE_PRE_INDEX_GOT_FRAME:
        NotePreIndexFrame(*frameInfo);
        break;
    default:
        break;
    }
    return KX_SUCCESS;
}

// One frame is enough: the last usable one, but not one of time 0 behind one that has a time. A window of 200 MiB may
// hold millions.
void CFileParseBase::KeepEndFrame(KX_INDEX_INFO& index, FrameInfo& frameInfo)
{
    if (!IsUsableEnd(frameInfo))
        return;
    const bool bHasTime = RecalcTimeStamp(&frameInfo) != 0;
    if (!bHasTime && m_bEndFrameHasTime)
        return;
    m_bEndFrameHasTime = bHasTime;
    m_frameStore.Clear();
    m_frameStore.InputFileFrame(&index, &frameInfo, nullptr);
}

// The first stage of the index ends once the kinds that the begin stage saw have shown up.
void CFileParseBase::NotePreIndexFrame(const FrameInfo& frameInfo)
{
    if (frameInfo.frameEncodeType == 0)
        return;
    if (frameInfo.frameType == KX_FRAME_TYPE_VIDEO)
        m_bPreGotVideo = true;
    if (frameInfo.frameType == KX_FRAME_TYPE_AUDIO)
        m_bPreGotAudio = true;
    m_bPreIndexGotFrame =
        (m_bHaveVideo || m_bHaveAudio) && (!m_bHaveVideo || m_bPreGotVideo) && (!m_bHaveAudio || m_bPreGotAudio);
}

// Audio alone is reported whole; of all else the video frames, from the first key frame on.
int CFileParseBase::OnBaseParseIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (m_pIndexCallBack == nullptr)
        return KX_SUCCESS;
    if (IsPureAudio())
        return m_pIndexCallBack->OnIndex(indexInfo, frameInfo, frameInfoEx);
    m_bIndexGotIframe = m_bIndexGotIframe || IsKeyFrame(*frameInfo);
    if (!m_bIndexGotIframe || frameInfo->frameType != KX_FRAME_TYPE_VIDEO)
        return KX_SUCCESS;
    return m_pIndexCallBack->OnIndex(indexInfo, frameInfo, frameInfoEx);
}

} // namespace Marvane::FrameSift
