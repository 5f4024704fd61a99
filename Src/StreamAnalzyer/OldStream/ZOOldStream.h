// The older streams, which carry no mark of their format. Until video shows what it is, a stream counts as audio alone.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_ZOOLDSTREAM_H
#define FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_ZOOLDSTREAM_H

#include <cstdint>
#include <deque>
#include <memory>

#include "IAnalyzer/IStreamAnalzyer.h"
#include "StreamAnalzyer/OldStream/OldAudio.h"

namespace Marvane::FrameSift {

enum ZOOLD_AUDIO_TYPE : int32_t
{
    AUDIO_TYPE_UNKNOWN = -1,
    AUDIO_TYPE_OLD = 0,
    AUDIO_TYPE_OLD_EX = 1
};

// The audio frames of a pass are delivered at its end: a video ID behind them makes the real parser, which then sees the
// same bytes, and a frame that is out cannot be taken back. The hand-over happens once, for good.
class CZOOldStream : public IStreamAnalzyer
{
public:
    CZOOldStream() = default;
    CZOOldStream(const CZOOldStream&) = delete;
    CZOOldStream& operator=(const CZOOldStream&) = delete;

    int ParseData(CLogicData* logicData, IFrameCallBack* frameCallBack) override;
    // That of the real parser; 0 as long as there is none.
    int GetType() override { return m_pOldStream != nullptr ? m_pOldStream->GetType() : 0; }
    void SetCallBackUserData(void* pUserData) override { m_pCallBackUserData = pUserData; }

private:
    int UseRealSubjectToParse(CLogicData* logicData, IFrameCallBack* frameCallBack);
    int PureAudioParse(CLogicData* logicData, IFrameCallBack* frameCallBack);
    int EndPass(CLogicData& logicData, IFrameCallBack& frameCallBack, int nKeepPos);
    bool BuildAnyAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    bool InitAudioType(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    bool QueueAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame);
    void CallBackAudioList(CLogicData& logicData, IFrameCallBack& frameCallBack);

    int InitRealSubjectToParse(CLogicData& logicData);
    int JudgeType(CLogicData& logicData, uint32_t nWord, int nPos);

    int m_nhbCount = 0; // HB IDs seen, in all passes together
    std::unique_ptr<IStreamAnalzyer> m_pOldStream;
    int m_frameNumber = 1;
    ZOOLD_AUDIO_TYPE m_audioType = AUDIO_TYPE_UNKNOWN;
    std::deque<ZOOldPureAudoFrame> m_lsAudio;
    void* m_pCallBackUserData = nullptr;
    bool m_bJudged = false; // in this pass
};

} // namespace Marvane::FrameSift

#endif
