// Where a pass over a recording delivers its index.
#ifndef FRAMESIFT_SRC_IANALYZER_IINDEXCALLBACK_H
#define FRAMESIFT_SRC_IANALYZER_IINDEXCALLBACK_H

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

// Called on the thread of the pass. The records end with the call; nobody acts on the answers.
class IIndexCallBack
{
public:
    virtual ~IIndexCallBack() = default;
    virtual int OnIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) = 0;
    virtual int OnFileInfo(KX_FILE_INFO* fileInfo) = 0;
};

} // namespace Marvane::FrameSift

#endif
