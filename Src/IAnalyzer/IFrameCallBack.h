// Where a parser delivers its frames.
#ifndef FRAMESIFT_SRC_IANALYZER_IFRAMECALLBACK_H
#define FRAMESIFT_SRC_IANALYZER_IFRAMECALLBACK_H

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

class IFrameCallBack
{
public:
    virtual ~IFrameCallBack() = default;
    virtual int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) = 0;
};

} // namespace Marvane::FrameSift

#endif
