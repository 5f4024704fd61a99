// A parser of one stream format.
#ifndef FRAMESIFT_SRC_IANALYZER_ISTREAMANALZYER_H
#define FRAMESIFT_SRC_IANALYZER_ISTREAMANALZYER_H

#include <cstdint>

#include "IAnalyzer/IFrameCallBack.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

class CLogicData;

// Where a key frame lies in the window.
struct VIDEO_KEY_FRAME_INFO
{
    int32_t nVideoFramePos;
    int32_t nFrameSubType;
};

// A format overrides what it has; the defaults stand for "nothing of this kind".
class IStreamAnalzyer
{
public:
    virtual ~IStreamAnalzyer() = default;
    virtual int ParseData(CLogicData* logicData, IFrameCallBack* frameCallBack) = 0;
    virtual int GetType() = 0;
    virtual bool GetParam(const char*, int64_t&) { return true; }
    virtual bool SetParam(const char*, int64_t) { return true; }
    virtual int Init() { return 0; }
    virtual int FlushBuffer(CLogicData*, IFrameCallBack*) { return 0; }
    virtual int SetExtInfo(unsigned int, const unsigned char*, int) { return 0; }
    virtual void SetInfoProcCallback(fKXInfoCallback, void*) {}
    virtual void SetCallBackUserData(void*) {}
    virtual bool ParseFrameTime(CLogicData*, int64_t&) { return false; }
    virtual bool ParseKeyFrame(CLogicData*, bool) { return false; }
    virtual bool GetVideoKeyFrameInfo(VIDEO_KEY_FRAME_INFO&) { return false; }
    virtual void ClearKeyFrameInfo() {}
    virtual int GetNeedReadDataLen() { return 0; }
    virtual void SeekClear() {}
    virtual void SetVideoNumber(int) {}
    virtual void SetLowCpuPercentage(bool) {}
};

} // namespace Marvane::FrameSift

#endif
