// The index of one recording, in memory.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXLIST_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXLIST_H

#include <cstdint>
#include <map>

#include "FileAnalzyer/SimulateByStream/IndexKeyFrames.h"
#include "FileAnalzyer/SimulateByStream/IndexRecord.h"
#include "FileAnalzyer/SimulateByStream/IndexRecords.h"
#include "IAnalyzer/FrameInfo.h"
#include "Tools/AutoLock.h"

namespace Marvane::FrameSift {

struct BASE_INDEX_INFO
{
    KXint64 frameOffset;
    KXint64 index;
};

// The parse thread puts frames in while the caller's thread asks. The list only grows. Records are copied out under the
// lock; their pointers come back null (see IndexCoder.h), and whoever reads the frame sets them.
class CIndexList
{
public:
    CIndexList() = default;
    virtual ~CIndexList() = default;
    CIndexList(const CIndexList&) = delete;
    CIndexList& operator=(const CIndexList&) = delete;

    // Writes the frame's number to indexInfo. frameInfoEx may be null. 6 for a frame too damaged to be found again; 13
    // without memory. Neither leaves a trace.
    int32_t InputFrame(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    // 14 for an empty list, 17 for a number out of range. frameInfoEx may be null; it is written only if there is a key
    // frame whose extension data hold for the frame.
    int32_t GetOneIndex(int64_t index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx);
    // The same from m_mapOffsetToIndex: 17 for every offset of a list that has frames.
    int32_t GetFrameByOffset(int64_t offset, FILE_INDEX_INFO* fileindex, ZOAV_FILE_EXT_INFO* zoavFileExtInfo);
    // flags: KX_INDEX_BIT_FLAG_*.
    int32_t GetIndexCount(int32_t flags, int* indexCount);
    // The first structCount records that match. Either array may be null.
    int32_t GetAllIndex(int32_t flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int32_t structCount,
                        int32_t* indexCount);
    // Record after record. At the end -1, "call again", or 19 once the pass is over.
    int32_t GetIndexInfo(KX_INDEX_INFO& stIndexInfo);
    // Lets GetIndexInfo go on at a frame that begins just there; -1, and nothing changes, if none does. seekType is not
    // looked at.
    int SeekByFileOffset(int64_t fileOffset, int seekType);
    void SetIndex(int nIndex);
    void SetIndexComplete(bool bIndexComplete);
    // Keep offsets for SeekByFileOffset. Not locked: to be called before the pass.
    void SetBaseRead(bool bBaseRead) { m_bBaseRead = bBaseRead; }
    void PushBack(int64_t frameOffset, int index, int nFrameType);
    // Counts a frame without a record.
    void PushBackIncrease(int64_t frameOffset, int index, int nFrameType);
    // Not locked; it looks at its arguments only.
    bool IsAccordWithFlags(FILE_INDEX_INFO* fileIndex, int32_t flags);
    // 0 for a frame that begins just there; else -1, and the number of the last one looked at.
    int32_t GetPureIndexSeqByOffset(uint64_t frameOffset, uint32_t& nPureIndexSeq);

protected:
    // Frame offset to number. Nothing in here fills it: seeking goes by m_vecIndexOffset.
    std::map<int64_t, uint32_t> m_mapOffsetToIndex;

private:
    bool Reserve(bool bKeyFrame);
    int32_t ReadRecord(int64_t nIndex, FILE_INDEX_INFO& record);
    void ReadExtInfo(const FILE_INDEX_INFO& record, bool bOwn, ExtZOAVIFrameInfo* pExt) const;

    CIndexRecords m_records;
    CIndexKeyFrames m_keyFrames;                          // those that came with extension data
    CIndexChunks<BASE_INDEX_INFO, 1024> m_vecIndexOffset; // in file order
    int64_t m_nFrameCount = 0;                            // with those that PushBackIncrease counted behind the records
    uint32_t m_nReadIndex = 0;                            // the next record for GetIndexInfo
    bool m_bHaveVideo = false;                            // a video frame has entered m_vecIndexOffset
    bool m_bBaseRead = false;
    bool m_bIndexComplete = false;
    CKXMutex m_csFrameInfo; // over all of this; operations call each other under it
};

} // namespace Marvane::FrameSift

#endif
