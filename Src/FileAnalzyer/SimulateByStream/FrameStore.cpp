#include "FileAnalzyer/SimulateByStream/FrameStore.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "Memory/TryAlloc.h"

namespace Marvane::FrameSift {

namespace {

// The ZOAV family. SVC labels a ZOAV frame with scalable levels; no parser makes the last one.
bool HasExtInfo(int32_t nStreamType)
{
    constexpr std::array<int32_t, 6> types = {KX_STREAM_TYPE_ZOSTD,  KX_STREAM_TYPE_STD_MY, KX_STREAM_TYPE_STD_LX,
                                              KX_STREAM_TYPE_STD_WM, KX_STREAM_TYPE_SVC,    KX_STREAM_TYPE_HBStreamV30};
    return std::find(types.begin(), types.end(), nStreamType) != types.end();
}

bool IsSmartP(int32_t nFrameSubType)
{
    return nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME;
}

} // namespace

int32_t CFrameStore::InputFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    CKXAutoMutexLock lock(m_csAccess);
    if (!TryAlloc([&] { m_lsFrame.push_back(*frame); }))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (ext == nullptr || frame->frameType != KX_FRAME_TYPE_VIDEO || !HasExtInfo(frame->streamType))
        return KX_SUCCESS;
    return KeepExtInfo(*frame, *ext);
}

int32_t CFrameStore::KeepExtInfo(const FrameInfo& frame, const ExtZOAVIFrameInfo& ext)
{
    if (IsIFrameSubType(frame.frameSubType)) {
        m_bIFrameExist = true;
        m_preIExtInfo = ext;
        return StoreExtInfo(frame.frameSeq, ext);
    }
    if (m_mediaExtZOAVIFrameInfoMap.empty() && m_bIFrameExist) {
        DropWindowPointers(m_preIExtInfo);
        if (const int32_t nResult = StoreExtInfo(m_preIExtInfo.frameSeq, m_preIExtInfo); nResult != KX_SUCCESS)
            return nResult;
    }
    return IsSmartP(frame.frameSubType) ? StoreExtInfo(frame.frameSeq, ext) : int32_t{KX_SUCCESS};
}

int32_t CFrameStore::StoreExtInfo(int32_t nFrameSeq, const ExtZOAVIFrameInfo& ext)
{
    const bool bStored = TryAlloc([&] { m_mediaExtZOAVIFrameInfoMap.insert_or_assign(nFrameSeq, ext); });
    return bStored ? KX_SUCCESS : KX_ERROR_SYSTEM_OUT_OF_MEMORY;
}

int32_t CFrameStore::GetFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    CKXAutoMutexLock lock(m_csAccess);
    if (m_lsFrame.empty())
        return KX_ERROR_LIST_EMPTY;
    *frame = m_lsFrame.front();
    m_lsFrame.pop_front();
    if (!HasExtInfo(frame->streamType))
        return KX_SUCCESS;
    ClearFinishedCipher(*frame);
    if (frame->frameType == KX_FRAME_TYPE_VIDEO)
        FindExtInfo(*frame, *ext);
    return KX_SUCCESS;
}

// A key frame has its own entry; any other frame takes the nearest one before it. Sequence numbers compare as they are:
// a wrap of the counter is not seen.
void CFrameStore::FindExtInfo(const FrameInfo& frame, ExtZOAVIFrameInfo& ext)
{
    const int32_t nFrameSeq = frame.frameSeq;
    if (IsIFrameSubType(frame.frameSubType) || IsSmartP(frame.frameSubType)) {
        if (const auto exact = m_mediaExtZOAVIFrameInfoMap.find(nFrameSeq); exact != m_mediaExtZOAVIFrameInfoMap.end())
            ext = exact->second;
        return;
    }
    const auto next = m_mediaExtZOAVIFrameInfoMap.lower_bound(nFrameSeq);
    if (next == m_mediaExtZOAVIFrameInfoMap.begin())
        return;
    ext = std::prev(next)->second;
    if (IsSmartP(ext.frameSubType))
        ext.refIFrameSeq = 0;
}

int32_t CFrameStore::InputFileFrame(KX_INDEX_INFO* index, FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    CKXAutoMutexLock lock(m_csAccess);
    if (index != nullptr && !TryAlloc([&] { m_lsFrameOffset.push_back(index->frameOffset); }))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    const size_t nQueued = m_lsFrame.size();
    const int32_t nResult = InputFrame(frame, ext);
    // The two lists keep step: a frame that could not be queued has no offset either.
    if (index != nullptr && m_lsFrame.size() == nQueued)
        m_lsFrameOffset.pop_back();
    return nResult;
}

int32_t CFrameStore::GetFileFrame(int64_t* pFrameOffset, FrameInfo* frame, ExtZOAVIFrameInfo* ext)
{
    CKXAutoMutexLock lock(m_csAccess);
    if (m_lsFrameOffset.empty())
        return KX_ERROR_LIST_EMPTY;
    *pFrameOffset = m_lsFrameOffset.front();
    m_lsFrameOffset.pop_front();
    return GetFrame(frame, ext);
}

int32_t CFrameStore::GetFileEndFrame(FrameInfo* frame)
{
    CKXAutoMutexLock lock(m_csAccess);
    if (m_lsFrame.empty())
        return KX_ERROR_LIST_EMPTY;
    *frame = m_lsFrame.back();
    m_lsFrame.pop_back();
    return KX_SUCCESS;
}

void CFrameStore::Clear()
{
    CKXAutoMutexLock lock(m_csAccess);
    m_lsFrame.clear();
    m_mediaExtZOAVIFrameInfoMap.clear();
    m_lsFrameOffset.clear();
}

} // namespace Marvane::FrameSift
