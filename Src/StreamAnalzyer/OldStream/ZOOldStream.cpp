#include "StreamAnalzyer/OldStream/ZOOldStream.h"

#include <algorithm>

#include "Memory/TryAlloc.h"
#include "Memory/WindowRead.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/WordSlider.h"
#include "Tools/FrameHelper.h"

namespace Marvane::FrameSift {

namespace {

constexpr OLD_AUDIO_FORM sc_form = {sizeof(ZOOLD_STREAM_AUDIO_HEADER), KX_STREAM_TYPE_NEW, BAD_SAMPLES::AsTold};
constexpr OLD_AUDIO_FORM sc_formEx = {sizeof(ZOOLD_STREAM_AUDIO_HEADER_EX), KX_STREAM_TYPE_HB, BAD_SAMPLES::Mend};
constexpr int32_t sc_idLen = 4;

// The next frame must begin where this one ends. The end of the data speaks neither for nor against it.
bool FrameLengthVerify(CLogicData& logicData, int nFramePos, const FrameInfo& frame)
{
    const auto nNext = ReadWordAt(logicData, int64_t{nFramePos} + frame.frameLen);
    return !nNext.has_value() || *nNext == sc_wordAudio;
}

// Only the ID is stepped over.
void MarkWrongLength(FrameInfo& frame)
{
    frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
    frame.frameLen = sc_idLen;
}

} // namespace

int CZOOldStream::ParseData(CLogicData* logicData, IFrameCallBack* frameCallBack)
{
    return m_pOldStream != nullptr ? UseRealSubjectToParse(logicData, frameCallBack)
                                   : PureAudioParse(logicData, frameCallBack);
}

int CZOOldStream::UseRealSubjectToParse(CLogicData* logicData, IFrameCallBack* frameCallBack)
{
    m_pOldStream->SetCallBackUserData(m_pCallBackUserData);
    return m_pOldStream->ParseData(logicData, frameCallBack);
}

int CZOOldStream::PureAudioParse(CLogicData* logicData, IFrameCallBack* frameCallBack)
{
    if (logicData == nullptr || frameCallBack == nullptr)
        return KX_ERROR_PARAMETER;
    m_lsAudio.clear();
    m_bJudged = false;
    CWordSlider slider(*logicData, logicData->Size());
    while (slider.SlideTo([](int nWord) { return IsLegacyAudioOrVideo(static_cast<uint32_t>(nWord)); })) {
        if (slider.Word() != sc_wordAudio) {
            m_lsAudio.clear();
            if (InitRealSubjectToParse(*logicData) == KX_STREAM_TYPE_UNKNOWN)
                continue;
            if (m_pOldStream != nullptr) {
                logicData->SetSearchedLen(0); // what was judged here has not been searched for the end of a frame
                return UseRealSubjectToParse(logicData, frameCallBack);
            }
            // No memory for the parser: the next cycle tries again, with all bytes.
            logicData->SetCurParseIndex(0);
            return KX_SUCCESS;
        }
        const int nFramePos = slider.WordPos();
        FrameInfo frame{};
        if (!BuildAnyAudioFrame(*logicData, nFramePos, frame))
            return EndPass(*logicData, *frameCallBack, nFramePos);
        if (!QueueAudioFrame(*logicData, nFramePos, frame))
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        slider.Restart(int64_t{nFramePos} + frame.frameLen - 1);
    }
    return EndPass(*logicData, *frameCallBack, slider.KeepPos());
}

int CZOOldStream::EndPass(CLogicData& logicData, IFrameCallBack& frameCallBack, int nKeepPos)
{
    CallBackAudioList(logicData, frameCallBack);
    const int nJudgedLen = m_bJudged ? CWordSlider::ToIndex(logicData.Size()) : logicData.GetSearchedLen();
    const int nResult = logicData.SetCurParseIndex(nKeepPos);
    if (nResult == KX_SUCCESS)
        logicData.SetSearchedLen(std::max(nJudgedLen - nKeepPos, 0));
    return nResult;
}

// False if more bytes are needed.
bool CZOOldStream::BuildAnyAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    if (m_audioType == AUDIO_TYPE_UNKNOWN)
        return InitAudioType(logicData, nFramePos, frame);
    if (!BuildOldAudioFrame(logicData, nFramePos, m_audioType == AUDIO_TYPE_OLD ? sc_form : sc_formEx, frame))
        return false;
    if (!FrameLengthVerify(logicData, nFramePos, frame))
        MarkWrongLength(frame);
    return true;
}

// Which head the stream uses is settled by the first frame whose end fits one of them; if both fit, the short one wins.
bool CZOOldStream::InitAudioType(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    FrameInfo frameEx{};
    if (!BuildOldAudioFrame(logicData, nFramePos, sc_formEx, frameEx) ||
        !BuildOldAudioFrame(logicData, nFramePos, sc_form, frame))
        return false;
    if (FrameLengthVerify(logicData, nFramePos, frame)) {
        m_audioType = AUDIO_TYPE_OLD;
    } else if (FrameLengthVerify(logicData, nFramePos, frameEx)) {
        m_audioType = AUDIO_TYPE_OLD_EX;
        frame = frameEx;
    } else {
        MarkWrongLength(frame);
    }
    return true;
}

bool CZOOldStream::QueueAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    frame.frameSeq = m_frameNumber;
    CFrameHelper::CountOn(m_frameNumber);
    ZOOldPureAudoFrame audio{frame};
    logicData.SetKeyPos(nFramePos + static_cast<int>(frame.streamPointer - frame.framePointer), nFramePos);
    logicData.GetKeyPos(audio.nStreamOffset, audio.nFrameOffset);
    return TryAlloc([&] { m_lsAudio.push_back(audio); });
}

void CZOOldStream::CallBackAudioList(CLogicData& logicData, IFrameCallBack& frameCallBack)
{
    const int64_t nWindowPos = logicData.GetDeletedLen();
    while (!m_lsAudio.empty()) {
        ZOOldPureAudoFrame audio = m_lsAudio.front();
        m_lsAudio.pop_front();
        // Whoever asks the window where the frame lies is to learn of this one, not of the last that was read.
        logicData.SetKeyPos(static_cast<int>(audio.nStreamOffset - nWindowPos),
                            static_cast<int>(audio.nFrameOffset - nWindowPos));
        frameCallBack.OnPureAudioFrame(&audio, m_pCallBackUserData);
    }
}

} // namespace Marvane::FrameSift
