// A parser of recordings of one format.
#ifndef FRAMESIFT_SRC_IANALYZER_IFILEANALZYER_H
#define FRAMESIFT_SRC_IANALYZER_IFILEANALZYER_H

#include <cstdint>

#include "IAnalyzer/IIndexCallBack.h"
#include "Tools/IFileManipulate.h"

namespace Marvane::FrameSift {

// The passes run on a thread of their own, StopParse and GetProcess on any; all else is for the caller's thread. Results
// are a KX_RESULT, or -1 where an operation is not possible in the present state. A format overrides what it has.
class IFileAnalzyer
{
public:
    virtual ~IFileAnalzyer() = default;
    virtual int ParseFile(IFileManipPtr& file, IIndexCallBack* indexCallBack) = 0;
    virtual int ParseSlice(IFileManipPtr& file, IIndexCallBack* indexCallBack, int64_t offset, int64_t size) = 0;
    virtual int GetProcess(int* process) = 0;
    virtual int GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx) = 0;
    virtual void StopParse() = 0;
    virtual int GetOneIndex(int index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo,
                            ExtZOAVIFrameInfo* frameInfoEx) = 0;
    virtual int GetIndexCount(int flags, int* indexCount) = 0;
    virtual int GetAllIndex(int flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int structCount,
                            int* indexCount) = 0;
    virtual int SetExtInfo(uint32_t, unsigned char*, int) { return 0; }
    virtual int SetExtCommonInfo(uint32_t, unsigned char*, int) { return 0; }
    virtual int BaseParseFile(IFileManipPtr&, IIndexCallBack*, bool) { return 0; }
    virtual int ReadOneFrame(int64_t*, FrameInfo*, ExtZOAVIFrameInfo*) { return 0; }
    virtual int SeekByTime(uint32_t) { return 0; }
    virtual int SeekByFileOffset(int64_t, int) { return 0; }
    // The format that the parser has found inside: KX_STREAM_TYPE_*, 0 while it has found none.
    virtual int GetInnerType() { return 0; }
};

} // namespace Marvane::FrameSift

#endif
