// The frame scan that the stream formats share.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_STREAMPARSEBASE_H
#define FRAMESIFT_SRC_STREAMANALZYER_STREAMPARSEBASE_H

#include <cstdint>
#include <vector>

#include "IAnalyzer/IStreamAnalzyer.h"

namespace Marvane::FrameSift {

class CWordSlider;

// Carried in the user data of the frame callback: which stage of file parsing listens. A live stream leaves it at 0.
enum CALLBACK_USE : intptr_t
{
    CALLBACK_USE_COMMON = 0,
    CALLBACK_USE_BASE_BEGIN_TIME = 1,
    CALLBACK_USE_BASE_END_TIME = 2,
    CALLBACK_USE_BASE_INDEX = 3,
    CALLBACK_USE_BASE_FRAME = 4,
    CALLBACK_USE_BASE_PRE_INDEX_GOT_FRAME = 5
};

// A big-endian 32-bit word slides over the window. At each word that the format knows, the format builds a frame, and
// the scan steps over it. A format tells the scan what it needs through the virtual operations below.
class CStreamParseBase : public IStreamAnalzyer
{
public:
    int ParseData(CLogicData* logicData, IFrameCallBack* frameCallBack) override;
    int SetExtInfo(unsigned int, const unsigned char*, int) override { return 0; }
    void SetInfoProcCallback(fKXInfoCallback pfInfoCallback, void* pUserData) override;
    void SetCallBackUserData(void* pUserData) override { m_pCallBackUserData = pUserData; }
    bool ParseFrameTime(CLogicData* logicData, int64_t& nTime) override;
    bool ParseKeyFrame(CLogicData* logicData, bool bOnlyParseOneIframe) override;
    bool GetVideoKeyFrameInfo(VIDEO_KEY_FRAME_INFO& info) override;
    void ClearKeyFrameInfo() override { m_videoKeyFrameInfo.clear(); }
    int GetNeedReadDataLen() override { return m_nNeedReadDataLen; }

    // True if the word can start a frame of this format.
    virtual bool CheckFrameID(int scanID) = 0;

    // False: not enough bytes yet, the scan stops here. True: frameLen says how far to step, the frame good or not.
    virtual bool BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) = 0;

    // Deeper checks of a frame that was built without error; may set errorFlags.
    virtual void FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext) = 0;

    // True if the word bounds a frame, for the search of the actual length.
    virtual bool IsBorderID(int scanID) = 0;
    virtual void DoCallBack(FrameInfo* frame, ExtZOAVIFrameInfo* ext);
    virtual void DoInit() {}

    // nEndIDPos is the index of the last byte of the border word.
    virtual void SetActualFrameLength(int frameStartPos, int nEndID, int nEndIDPos, FrameInfo& frame);
    virtual void OnOneParseOver() {}
    virtual bool GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame);
    virtual bool HandleParseData(FrameInfo&, void*) { return true; }
    virtual bool GetFrameTime(CLogicData*, int&, int64_t&) { return false; }
    virtual bool CheckFrameTimeID(int) { return false; }
    virtual bool GetFrameEndPos(CLogicData*, int, int&) { return false; }
    virtual bool GetFrameType(CLogicData*, int, int&, int&) { return false; }

protected:
    // Slides on to the border that ends the frame at nFramePos. False at the window's end; then the next cycle's search
    // for the end of the same frame goes on where this one stopped.
    bool SlideToBorder(CLogicData& logicData, int nFramePos, CWordSlider& slider);
    // Of a frame whose end was searched for in an earlier cycle: true if the end has not come yet. It need not be built
    // meanwhile, which spares its heads a look at each chunk.
    bool IsEndStillAwaited(CLogicData& logicData, int nFramePos);
    // True if a border stands right behind so many bytes of the frame.
    bool IsBorderBehind(CLogicData& logicData, int nFramePos, int nFrameLen);

    bool IsEndTimeMode() const { return UseOfCallBack() == CALLBACK_USE_BASE_END_TIME; }
    CALLBACK_USE UseOfCallBack() const
    {
        return static_cast<CALLBACK_USE>(reinterpret_cast<intptr_t>(m_pCallBackUserData));
    }

    IFrameCallBack* m_pFrameCallBack = nullptr;
    int32_t m_nScanID = 0; // the word that matched
    fKXInfoCallback m_pfInfoCallback = nullptr;
    void* m_pInfoUserData = nullptr;
    void* m_pCallBackUserData = nullptr; // a CALLBACK_USE
    int32_t m_nNeedReadDataLen = 0;
    std::vector<VIDEO_KEY_FRAME_INFO> m_videoKeyFrameInfo; // the last one is taken first

private:
    bool TakeFrame(CLogicData& logicData, CWordSlider& slider);
    void NoteKeyFrame(const VIDEO_KEY_FRAME_INFO& info);

    int m_nSearchedLen = 0; // of the frame that waits, see CLogicData
};

} // namespace Marvane::FrameSift

#endif
