// Where a parser delivers its frames.
#ifndef FRAMESIFT_SRC_IANALYZER_IFRAMECALLBACK_H
#define FRAMESIFT_SRC_IANALYZER_IFRAMECALLBACK_H

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

// A frame of a legacy stream that has shown no video yet. Such frames are delivered at the end of a pass, so each brings
// the key positions of when it was read.
struct ZOOldPureAudoFrame : FrameInfo
{
    int64_t nFrameOffset = 0; // in the stream or file
    int64_t nStreamOffset = 0;
};
static_assert(sizeof(ZOOldPureAudoFrame) == 400);

class IFrameCallBack
{
public:
    virtual ~IFrameCallBack() = default;
    virtual int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) = 0;

    // A frame whose positions matter to some; to all others it is a frame.
    virtual int OnPureAudioFrame(ZOOldPureAudoFrame* frame, void* userData)
    {
        return OnFrame(frame, nullptr, userData);
    }
};

} // namespace Marvane::FrameSift

#endif
