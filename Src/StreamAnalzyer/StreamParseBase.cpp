#include "StreamAnalzyer/StreamParseBase.h"

#include <algorithm>

#include "Memory/TryAlloc.h"
#include "Memory/WindowRead.h"
#include "StreamAnalzyer/WordSlider.h"

namespace Marvane::FrameSift {

int CStreamParseBase::ParseData(CLogicData* logicData, IFrameCallBack* frameCallBack)
{
    if (logicData == nullptr || frameCallBack == nullptr)
        return KX_ERROR_PARAMETER;
    m_pFrameCallBack = frameCallBack;
    CWordSlider slider(*logicData, logicData->Size());
    if (logicData->GetTakenLen() > 0)
        slider.Restart(int64_t{logicData->GetTakenLen()} - 1);
    DoInit();
    m_nSearchedLen = 0;
    int nWaitPos = 0;
    bool bGoOn = true;
    while (bGoOn && slider.SlideTo([this](int scanID) { return CheckFrameID(scanID); })) {
        nWaitPos = slider.WordPos();
        bGoOn = TakeFrame(*logicData, slider);
    }
    OnOneParseOver();
    // What was found out about the frame at the front holds for as long as it waits.
    const int nSearchedLen = std::max(nWaitPos == 0 ? logicData->GetSearchedLen() : 0, m_nSearchedLen);
    const int nResult = logicData->SetCurParseIndex(bGoOn ? slider.KeepPos() : nWaitPos);
    if (nResult != KX_SUCCESS)
        return nResult;
    if (bGoOn)
        logicData->SetTakenLen(slider.TakenLen());
    else
        logicData->SetSearchedLen(nSearchedLen);
    return nResult;
}

// False: the frame needs more bytes, which keeps the window from its head on.
bool CStreamParseBase::TakeFrame(CLogicData& logicData, CWordSlider& slider)
{
    const int nFramePos = slider.WordPos();
    FrameInfo frame{};
    ExtZOAVIFrameInfo ext{};
    if (!BuildFrame(&logicData, nFramePos, frame, ext))
        return false;
    if (IsEndTimeMode()) {
        // Only the time of the last frame is wanted: its body is walked through, as a later head may lie in it.
        DoCallBack(&frame, &ext);
        return true;
    }
    if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR)
        FrameVerify(&logicData, nFramePos, frame, ext);
    if (frame.errorFlags == KX_ERROR_FLAGS_LENGTH) {
        if (!GetActualFrameLength(&logicData, nFramePos, frame))
            return false;
        uint8_t* pFrame = logicData.GetData(nFramePos, frame.frameLen);
        frame.streamPointer = pFrame;
        frame.framePointer = pFrame;
    }
    // A frame of no length would be found again and again.
    const int32_t nStep = frame.frameLen > 0 ? frame.frameLen : 1;
    slider.Restart(int64_t{nFramePos} + nStep - 1);
    // A frame without a payload pointer counts as beginning with its payload.
    const auto nHeadLen = frame.streamPointer != nullptr && frame.framePointer != nullptr
                              ? static_cast<int>(frame.streamPointer - frame.framePointer)
                              : 0;
    // Before the callback, which asks the window where the frame lies in the stream.
    logicData.SetKeyPos(nFramePos + nHeadLen, nFramePos);
    DoCallBack(&frame, &ext);
    return true;
}

void CStreamParseBase::DoCallBack(FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    if (m_pFrameCallBack != nullptr)
        m_pFrameCallBack->OnFrame(frame, ext, m_pCallBackUserData);
}

void CStreamParseBase::SetInfoProcCallback(fKXInfoCallback pfInfoCallback, void* pUserData)
{
    m_pfInfoCallback = pfInfoCallback;
    m_pInfoUserData = pUserData;
}

void CStreamParseBase::SetActualFrameLength(int frameStartPos, int, int nEndIDPos, FrameInfo& frame)
{
    frame.frameLen = nEndIDPos - frameStartPos - 3;
}

bool CStreamParseBase::GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame)
{
    CWordSlider slider(*logicData, logicData->Size());
    slider.Restart(int64_t{frameStartPos} + 3);
    if (!SlideToBorder(*logicData, frameStartPos, slider))
        return false;
    SetActualFrameLength(frameStartPos, static_cast<int>(slider.Word()), static_cast<int>(slider.Pos()), frame);
    return true;
}

bool CStreamParseBase::SlideToBorder(CLogicData& logicData, int nFramePos, CWordSlider& slider)
{
    if (nFramePos == 0)
        slider.GoOnBehind(logicData.GetSearchedLen());
    if (slider.SlideTo([this](int scanID) { return IsBorderID(scanID); }))
        return true;
    m_nSearchedLen = CWordSlider::ToIndex(int64_t{logicData.Size()} - nFramePos);
    return false;
}

bool CStreamParseBase::IsEndStillAwaited(CLogicData& logicData, int nFramePos)
{
    if (nFramePos != 0 || logicData.GetSearchedLen() == 0)
        return false;
    CWordSlider slider(logicData, logicData.Size());
    return !SlideToBorder(logicData, nFramePos, slider);
}

bool CStreamParseBase::IsBorderBehind(CLogicData& logicData, int nFramePos, int nFrameLen)
{
    const auto nNext = ReadWordAt(logicData, int64_t{nFramePos} + nFrameLen);
    return nNext.has_value() && IsBorderID(static_cast<int>(*nNext));
}

bool CStreamParseBase::ParseFrameTime(CLogicData* logicData, int64_t& nTime)
{
    if (logicData == nullptr)
        return false;
    CWordSlider slider(*logicData, logicData->Size());
    if (!slider.SlideTo([this](int scanID) { return CheckFrameTimeID(scanID); })) {
        // Deliberately this way round: a window too short to keep anything of counts as done.
        return logicData->SetCurParseIndex(slider.KeepPos()) != KX_SUCCESS;
    }
    int nFramePos = slider.WordPos();
    if (!GetFrameTime(logicData, nFramePos, nTime)) {
        logicData->SetCurParseIndex(nFramePos);
        return false;
    }
    logicData->SetKeyPos(nFramePos, nFramePos);
    return true;
}

bool CStreamParseBase::ParseKeyFrame(CLogicData* logicData, bool bOnlyParseOneIframe)
{
    if (logicData == nullptr)
        return false;
    CWordSlider slider(*logicData, logicData->Size());
    int nFramePos = 0;
    while (slider.SlideTo([this](int scanID) { return CheckFrameTimeID(scanID); })) {
        nFramePos = slider.WordPos();
        int nFrameType = KX_FRAME_TYPE_UNKNOWN;
        int nFrameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID;
        const bool bTyped = GetFrameType(logicData, nFramePos, nFrameType, nFrameSubType);
        const bool bVideo = bTyped && nFrameType == KX_FRAME_TYPE_VIDEO;
        const bool bIFrame = bVideo && IsIFrameSubType(nFrameSubType);
        if (bIFrame || (bVideo && nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME))
            NoteKeyFrame({nFramePos, nFrameSubType});
        // A smart P frame is noted, but nothing can be decoded from it alone: the search goes on.
        if (bOnlyParseOneIframe && bIFrame)
            return true;
        int nFrameEndPos = nFramePos + 1;
        if (!bTyped || !GetFrameEndPos(logicData, nFramePos, nFrameEndPos)) {
            logicData->SetCurParseIndex(nFramePos - 3);
            return false;
        }
        slider.Restart(std::max(nFrameEndPos, nFramePos), 0);
    }
    logicData->SetCurParseIndex(nFramePos - 3);
    return false;
}

// A key frame that there is no memory to note is passed over, as if it were none.
void CStreamParseBase::NoteKeyFrame(const VIDEO_KEY_FRAME_INFO& info)
{
    (void)TryAlloc([&] { m_videoKeyFrameInfo.push_back(info); });
}

bool CStreamParseBase::GetVideoKeyFrameInfo(VIDEO_KEY_FRAME_INFO& info)
{
    if (m_videoKeyFrameInfo.empty())
        return false;
    info = m_videoKeyFrameInfo.back();
    m_videoKeyFrameInfo.pop_back();
    return true;
}

} // namespace Marvane::FrameSift
