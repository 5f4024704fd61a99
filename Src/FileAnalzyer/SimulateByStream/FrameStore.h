// The queue of finished frames, with the extension data of their key frames.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_FRAMESTORE_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_FRAMESTORE_H

#include <cstdint>
#include <list>
#include <map>

#include "IAnalyzer/FrameInfo.h"
#include "Tools/AutoLock.h"

namespace Marvane::FrameSift {

// Records only: no payload is copied, and what the records point to lives as long as the window keeps it. One thread
// may put frames in while another takes them out.
class CFrameStore
{
public:
    // 0, or 13 without memory. ext may be null: the frame then brings no extension data.
    int32_t InputFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext);

    // Takes the oldest frame. 14 for an empty queue; the arguments are untouched then.
    int32_t GetFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext);

    // The same for recordings, where the frame's offset goes along.
    int32_t InputFileFrame(KX_INDEX_INFO* index, FrameInfo* frame, ExtZOAVIFrameInfo* ext);
    int32_t GetFileFrame(int64_t* pFrameOffset, FrameInfo* frame, ExtZOAVIFrameInfo* ext);

    // Takes the newest frame, without extension data. 14 for an empty queue.
    int32_t GetFileEndFrame(FrameInfo* frame);

    // Drops the frames, their extension data and offsets. The last I frame's extension data stay: the P frames of the
    // next cycle need them.
    void Clear();

private:
    int32_t KeepExtInfo(const FrameInfo& frame, const ExtZOAVIFrameInfo& ext);
    void FindExtInfo(const FrameInfo& frame, ExtZOAVIFrameInfo& ext);
    int32_t StoreExtInfo(int32_t nFrameSeq, const ExtZOAVIFrameInfo& ext);

    std::list<FrameInfo> m_lsFrame;
    std::map<int32_t, ExtZOAVIFrameInfo> m_mediaExtZOAVIFrameInfoMap; // by frame sequence
    ExtZOAVIFrameInfo m_preIExtInfo{};
    bool m_bIFrameExist = false; // m_preIExtInfo is set; never cleared
    std::list<int64_t> m_lsFrameOffset;
    CKXMutex m_csAccess;
};

} // namespace Marvane::FrameSift

#endif
