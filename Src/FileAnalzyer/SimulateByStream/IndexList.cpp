#include "FileAnalzyer/SimulateByStream/IndexList.h"

namespace Marvane::FrameSift {

namespace {

// Numbers and counts leave as signed 32 bits. Far beyond any recording.
constexpr int64_t sc_maxFrames = int64_t{1} << 30;

// Sound frames, and those whose damage does not touch where they begin and end.
bool IsIndexed(int32_t nErrorFlags)
{
    return nErrorFlags == KX_ERROR_FLAGS_NOERROR || nErrorFlags == KX_ERROR_FLAGS_DATA_VERIFY ||
           nErrorFlags == KX_ERROR_FLAGS_WATERMARK || nErrorFlags == KX_ERROR_FLAGS_DECRYPTION_FAILURE;
}

// Without the recorder type that the frame store counts in.
bool IsZoavFamily(int32_t nStreamType)
{
    return nStreamType == KX_STREAM_TYPE_ZOSTD || nStreamType == KX_STREAM_TYPE_SVC ||
           nStreamType == KX_STREAM_TYPE_STD_MY || nStreamType == KX_STREAM_TYPE_STD_LX ||
           nStreamType == KX_STREAM_TYPE_STD_WM;
}

bool IsSmartP(int32_t nFrameSubType)
{
    return nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME;
}

// A smart P frame has extension data of its own, though no decoder can start there.
bool IsKeySubType(int32_t nFrameSubType)
{
    return IsIFrameSubType(nFrameSubType) || IsSmartP(nFrameSubType);
}

bool IsVideoOfFamily(const FrameInfo& frame)
{
    return frame.frameType == KX_FRAME_TYPE_VIDEO && IsZoavFamily(frame.streamType);
}

} // namespace

int32_t CIndexList::InputFrame(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (indexInfo == nullptr || frameInfo == nullptr || !IsIndexed(frameInfo->errorFlags))
        return KX_ERROR_PARAMETER;
    CKXAutoMutexLock lock(m_csFrameInfo);
    const bool bKeyFrame =
        frameInfoEx != nullptr && IsVideoOfFamily(*frameInfo) && IsKeySubType(frameInfo->frameSubType);
    if (!Reserve(bKeyFrame))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    // All room is there: from here on nothing fails half-way.
    indexInfo->index = m_nFrameCount;
    m_records.Append({*indexInfo, *frameInfo});
    PushBack(indexInfo->frameOffset, static_cast<int>(m_nFrameCount), frameInfo->frameType);
    if (bKeyFrame)
        m_keyFrames.Append(m_nFrameCount, *frameInfoEx);
    ++m_nFrameCount;
    return KX_SUCCESS;
}

bool CIndexList::Reserve(bool bKeyFrame)
{
    if (m_nFrameCount >= sc_maxFrames)
        return false;
    // A record's place is its number, so frames that were counted without one get an empty one now.
    for (; m_records.Count() < m_nFrameCount; m_records.Append({})) {
        if (!m_records.Reserve())
            return false;
    }
    return m_records.Reserve() && (!bKeyFrame || m_keyFrames.Reserve()) &&
           (!m_bBaseRead || m_vecIndexOffset.ReserveNext());
}

void CIndexList::PushBack(int64_t frameOffset, int index, int nFrameType)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    const bool bVideo = nFrameType == KX_FRAME_TYPE_VIDEO;
    // A recording with video is sought by its video frames alone; one without, by all. In the second line: the bisection
    // counts in 32 bits, and adds two places.
    if (!m_bBaseRead || (!bVideo && m_bHaveVideo) || m_vecIndexOffset.Size() >= sc_maxFrames ||
        !m_vecIndexOffset.ReserveNext())
        return;
    if (bVideo && !m_bHaveVideo)
        m_vecIndexOffset.Clear();
    m_bHaveVideo = m_bHaveVideo || bVideo;
    m_vecIndexOffset.Append({frameOffset, index});
}

void CIndexList::PushBackIncrease(int64_t frameOffset, int index, int nFrameType)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    if (!m_bBaseRead)
        return;
    ++m_nFrameCount;
    PushBack(frameOffset, index, nFrameType);
}

int32_t CIndexList::ReadRecord(int64_t nIndex, FILE_INDEX_INFO& record)
{
    if (m_records.Count() == 0)
        return KX_ERROR_LIST_EMPTY;
    if (nIndex < 0 || nIndex >= m_nFrameCount)
        return KX_ERROR_INVALID_INDEX;
    record = {};
    record.indexInfo.index = nIndex; // all there is of a frame counted without a record
    if (nIndex < m_records.Count()) {
        m_records.MoveTo(nIndex);
        record = m_records.Current();
    }
    return KX_SUCCESS;
}

// bOwn: the frame has an entry of its own or none. Otherwise it takes that of the key frame before it.
void CIndexList::ReadExtInfo(const FILE_INDEX_INFO& record, bool bOwn, ExtZOAVIFrameInfo* pExt) const
{
    if (pExt == nullptr || !IsVideoOfFamily(record.frameInfo))
        return;
    const int64_t nIndex = record.indexInfo.index;
    const ExtZOAVIFrameInfo* pFound = bOwn ? m_keyFrames.Find(nIndex) : m_keyFrames.FindBefore(nIndex);
    if (pFound == nullptr)
        return;
    *pExt = *pFound;
    // What a smart P frame refers to is no reference of the frames behind it.
    if (!bOwn && IsSmartP(pExt->frameSubType))
        pExt->refIFrameSeq = 0;
}

int32_t CIndexList::GetOneIndex(int64_t index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo,
                                ExtZOAVIFrameInfo* frameInfoEx)
{
    if (indexInfo == nullptr || frameInfo == nullptr)
        return KX_ERROR_PARAMETER;
    CKXAutoMutexLock lock(m_csFrameInfo);
    FILE_INDEX_INFO record;
    if (const int32_t nResult = ReadRecord(index, record); nResult != KX_SUCCESS)
        return nResult;
    *frameInfo = record.frameInfo;
    *indexInfo = record.indexInfo;
    ReadExtInfo(record, IsKeySubType(record.frameInfo.frameSubType), frameInfoEx);
    return KX_SUCCESS;
}

int32_t CIndexList::GetFrameByOffset(int64_t offset, FILE_INDEX_INFO* fileindex, ZOAV_FILE_EXT_INFO* zoavFileExtInfo)
{
    if (fileindex == nullptr)
        return KX_ERROR_PARAMETER;
    CKXAutoMutexLock lock(m_csFrameInfo);
    if (m_records.Count() == 0)
        return KX_ERROR_LIST_EMPTY;
    const auto found = m_mapOffsetToIndex.find(offset);
    if (found == m_mapOffsetToIndex.end())
        return KX_ERROR_INVALID_INDEX;
    if (const int32_t nResult = ReadRecord(found->second, *fileindex); nResult != KX_SUCCESS)
        return nResult;
    // Unlike GetOneIndex, a JPEG picture takes the extension data of the key frame before it. Deliberate.
    const int32_t nSubType = fileindex->frameInfo.frameSubType;
    ReadExtInfo(*fileindex, IsKeySubType(nSubType) && nSubType != KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME, zoavFileExtInfo);
    return KX_SUCCESS;
}

int32_t CIndexList::GetIndexInfo(KX_INDEX_INFO& stIndexInfo)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    if (m_nReadIndex >= m_nFrameCount)
        return m_bIndexComplete ? int32_t{KX_ERROR_READ_FILE_END} : -1;
    FILE_INDEX_INFO record;
    if (ReadRecord(m_nReadIndex, record) == KX_SUCCESS) {
        stIndexInfo = record.indexInfo;
    } else { // no frame of the list has a record
        stIndexInfo.index = m_nReadIndex;
        stIndexInfo.frameOffset = 0;
        stIndexInfo.streamOffset = 0;
    }
    ++m_nReadIndex;
    return KX_SUCCESS;
}

int32_t CIndexList::GetPureIndexSeqByOffset(uint64_t frameOffset, uint32_t& nPureIndexSeq)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    uint32_t nLow = 0;
    auto nHigh = static_cast<uint32_t>(m_vecIndexOffset.Size());
    if (nHigh == 0)
        return -1;
    // nLow <= nMid < nHigh, and each step but the last narrows them, whatever the order of the offsets.
    for (uint32_t nMid = nHigh / 2;;) {
        const BASE_INDEX_INFO& entry = m_vecIndexOffset[nMid];
        nPureIndexSeq = static_cast<uint32_t>(entry.index);
        const auto nOffset = static_cast<uint64_t>(entry.frameOffset);
        if (nOffset == frameOffset)
            return KX_SUCCESS;
        const bool bBehind = nOffset > frameOffset;
        const uint32_t nNext = (nMid + (bBehind ? nLow : nHigh)) / 2;
        if (nNext == nMid)
            return -1;
        (bBehind ? nHigh : nLow) = nMid;
        nMid = nNext;
    }
}

int CIndexList::SeekByFileOffset(int64_t fileOffset, int /*seekType*/)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    uint32_t nIndex = 0;
    if (GetPureIndexSeqByOffset(static_cast<uint64_t>(fileOffset), nIndex) != KX_SUCCESS)
        return -1;
    m_nReadIndex = nIndex;
    return KX_SUCCESS;
}

void CIndexList::SetIndex(int nIndex)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    m_nReadIndex = static_cast<uint32_t>(nIndex);
}

void CIndexList::SetIndexComplete(bool bIndexComplete)
{
    CKXAutoMutexLock lock(m_csFrameInfo);
    m_bIndexComplete = bIndexComplete;
}

} // namespace Marvane::FrameSift
