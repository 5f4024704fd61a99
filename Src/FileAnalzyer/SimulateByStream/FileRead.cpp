// Frames of a recording, one at a time: in file order, or by their number in the index.
#include <algorithm>
#include <utility>

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "Memory/TryAlloc.h"
#include "StreamAnalzyer/StreamParseBase.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_readBuffer = 1024 * 1024;
constexpr uint32_t sc_usualBlock = 65536;

} // namespace

// A full pass feeds the very window that reads go through.
bool CFileParseBase::CanRead() const
{
    return m_bParseFileInfoSucceed.load(std::memory_order_acquire) &&
           (m_bThroughIndex || !m_bPassFeeds.load(std::memory_order_acquire));
}

int CFileParseBase::ReadOneFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (pFrameOffset == nullptr || frameInfo == nullptr || frameInfoEx == nullptr)
        return KX_ERROR_PARAMETER;
    if (!CanRead() || m_pFrameSift == nullptr)
        return -1;
    if (m_bThroughIndex)
        return ReadThroughIndex(pFrameOffset, frameInfo, frameInfoEx);
    SmartPFrameSeekReposition(m_fileForReadData);
    if (GetOneFrame(pFrameOffset, frameInfo, frameInfoEx) == KX_SUCCESS)
        return KX_SUCCESS;
    if (!HasFileForReading())
        return -1;
    if (std::exchange(m_bFrameLost, false))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (!m_readBlock.Make(sc_readBuffer))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    return ReadThroughWindow(pFrameOffset, frameInfo, frameInfoEx);
}

// That the frame's bytes cannot be read is no reason to stop: its place is told.
int CFileParseBase::ReadThroughIndex(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    KX_INDEX_INFO index{};
    if (const int nResult = m_IndexList.GetIndexInfo(index); nResult != KX_SUCCESS)
        return nResult;
    GetFrameByIndex(&index, frameInfo, frameInfoEx);
    *pFrameOffset = index.frameOffset;
    return KX_SUCCESS;
}

// The window moves only when no frame is queued: the pointers of queued frames lead into it.
int CFileParseBase::ReadThroughWindow(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    m_pFrameSift->SetCallBackUserData(reinterpret_cast<void*>(CALLBACK_USE_BASE_FRAME));
    for (;;) {
        // Just what the frame still needs, so that one read completes it.
        const uint32_t nBlock = m_readBlock.SizeFor(m_pFrameSift->GetNeedReadDataLen(), sc_usualBlock, m_nFileSize);
        if (nBlock == 0)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        if (IsStopped())
            return KX_ERROR_PARAMETER;
        const int64_t nRead = m_fileForReadData->ReadFile(m_readBlock.Bytes(), nBlock);
        if (nRead <= 0)
            return FlushLastFrame(pFrameOffset, frameInfo, frameInfoEx);
        const int nFed = Feed(m_logicData, *m_pFrameSift, m_readBlock, nRead);
        m_bFlushed = false;
        if (m_bGotFrame)
            return HandOutNewFrame(pFrameOffset, frameInfo, frameInfoEx);
        if (nFed == KX_ERROR_SYSTEM_OUT_OF_MEMORY)
            return nFed;
    }
}

int CFileParseBase::FlushLastFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (m_bFlushed)
        return KX_ERROR_READ_FILE_END;
    m_bFlushed = true;
    m_pFrameSift->FlushBuffer(&m_logicData, this);
    return m_bGotFrame ? HandOutNewFrame(pFrameOffset, frameInfo, frameInfoEx) : int{KX_ERROR_READ_FILE_END};
}

int CFileParseBase::HandOutNewFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    m_bGotFrame = false;
    // The jump waits for the next read: it empties the window, which this frame lies in.
    m_nNextSmartPPos = m_nSmartPPos;
    m_nSmartPPos = -1;
    const int nResult = GetOneFrame(pFrameOffset, frameInfo, frameInfoEx);
    if (nResult != KX_ERROR_LIST_EMPTY)
        return nResult;
    m_bFrameLost = false; // a frame has come, but there was no memory to keep it
    return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
}

int CFileParseBase::GetOneFrame(int64_t* pFrameOffset, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    const int nResult = m_frameStore.GetFileFrame(pFrameOffset, frameInfo, frameInfoEx);
    if (frameInfo->frameType == KX_FRAME_TYPE_VIDEO)
        m_nCurrentVideoFrameID = frameInfo->frameSeq;
    return nResult;
}

// Owed by a seek that passed a smart P frame on its way to the key frame, once that key frame is out: a smart P frame
// decodes from the key frame alone, so the stretch between the two is skipped, queued frames and all.
int CFileParseBase::SmartPFrameSeekReposition(IFileManipPtr& file)
{
    if (m_pFrameSift == nullptr)
        return -1;
    if (m_nNextSmartPPos == -1 || file.get() == nullptr)
        return KX_SUCCESS;
    file->SetPos(m_nNextSmartPPos, IFileManipulate::KX_FILE_BEGIN);
    m_logicData.ClearBuffer();
    m_frameStore.Clear();
    m_pFrameSift->SeekClear();
    m_nSliceStartPos = m_nNextSmartPPos;
    m_nNextSmartPPos = -1;
    return KX_SUCCESS;
}

// The bytes of an indexed frame; zeros where a read ends early. None at all if the file has become shorter than the
// frame is long; nRead is what a read would bring.
int CFileParseBase::TakeFrameBytes(const KX_INDEX_INFO& indexInfo, int32_t nFrameLen,
                                   std::unique_ptr<uint8_t[]>& pBytes, int64_t& nRead)
{
    nRead = 0;
    if (nFrameLen < 1)
        return KX_ERROR_PARAMETER;
    const int64_t nFileSize = m_fileForReadData.get() != nullptr ? m_fileForReadData->GetSize() : 0;
    if (nFrameLen > nFileSize) {
        nRead = std::max<int64_t>(nFileSize - indexInfo.frameOffset, 0);
        return KX_SUCCESS;
    }
    pBytes = TRY_ALLOC_ARRAY<uint8_t>(static_cast<size_t>(nFrameLen));
    if (pBytes == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_fileForReadData->SetPos(indexInfo.frameOffset, IFileManipulate::KX_FILE_BEGIN);
    nRead = m_fileForReadData->ReadFile(pBytes.get(), nFrameLen);
    std::fill(pBytes.get() + nRead, pBytes.get() + nFrameLen, uint8_t{0});
    return KX_SUCCESS;
}

void CFileParseBase::PointInto(uint8_t* pFrame, const KX_INDEX_INFO& indexInfo, FrameInfo& frameInfo) const
{
    const int64_t nHeadLen = indexInfo.streamOffset - indexInfo.frameOffset;
    frameInfo.framePointer = pFrame;
    frameInfo.streamPointer = nHeadLen >= 0 && nHeadLen <= frameInfo.frameLen ? pFrame + nHeadLen : pFrame;
}

int CFileParseBase::FindInIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    m_fixBuffer.Clear(); // the frame of the call before ends here
    if (indexInfo == nullptr || frameInfo == nullptr)
        return KX_ERROR_PARAMETER;
    return m_IndexList.GetOneIndex(indexInfo->index, indexInfo, frameInfo, frameInfoEx);
}

int CFileParseBase::GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (const int nFound = FindInIndex(indexInfo, frameInfo, frameInfoEx); nFound != KX_SUCCESS)
        return nFound;
    std::unique_ptr<uint8_t[]> pBytes;
    int64_t nRead = 0; // a short read is not looked at
    if (const int nResult = TakeFrameBytes(*indexInfo, frameInfo->frameLen, pBytes, nRead); nResult != KX_SUCCESS)
        return nResult;
    uint8_t* pFrame = m_fixBuffer.InsertBuffer(pBytes.get(), static_cast<uint32_t>(frameInfo->frameLen));
    if (pFrame == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    PointInto(pFrame, *indexInfo, *frameInfo);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
