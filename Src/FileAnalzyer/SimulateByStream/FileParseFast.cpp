// The fast pass: where media begins and ends in time, from the ends of the file; the index stage stands apart.
#include <algorithm>

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "StreamAnalzyer/StreamParseBase.h"
#include "Tools/FileFactory.h"
#include "Tools/KXSystem.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_largeBlock = 1024 * 1024;
constexpr uint32_t sc_smallBlock = 65536;
constexpr int64_t sc_maxBeginBytes = 52428800; // a damaged file costs a bounded amount of reading
constexpr int64_t sc_maxEndWindow = 0xC800000;
constexpr int64_t sc_audioEndWindow = 300;

void* UserData(CALLBACK_USE eUse)
{
    return reinterpret_cast<void*>(eUse);
}

} // namespace

int CFileParseBase::BaseParseFile(IFileManipPtr& file, IIndexCallBack* indexCallBack, bool bParseBaseIndex)
{
    if (IsThroughIndexType()) {
        m_IndexList.SetBaseRead(true);
        if (m_pFrameSift->GetType() == KX_STREAM_TYPE_WAV)
            m_FileInfo.bPureAudio = 1;
        return ParseFile(file, indexCallBack);
    }
    if (file.get() == nullptr)
        return KX_ERROR_PARAMETER;
    m_pIndexCallBack = indexCallBack;
    CReadBlock block;
    if (m_pFrameSift == nullptr)
        m_pFrameSift = CreateStreamObj();
    if (!block.Make(sc_largeBlock) || m_pFrameSift == nullptr || m_pFrameSift->Init() != 0)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_fileForReadData =
        CFileFactory::createFileManipObj(file->GetFileName(), IFileManipulate::READ_ONLY, m_nPathEncodeType);
    if (const int nResult = BaseParseInfo(file, block); nResult != KX_SUCCESS)
        return nResult;
    // From here on the caller may read: the window and the second file are the caller's.
    block.Free();
    if (m_nStartTime == -1 || m_nEndTime == -1 || !bParseBaseIndex)
        return KX_SUCCESS;
    m_FileInfo.duration = 0;
    return BaseParseIndex(*file);
}

int CFileParseBase::BaseParseInfo(IFileManipPtr& file, CReadBlock& block)
{
    m_nFileSize = file->GetSize();
    m_FileInfo.filesize = static_cast<uint32_t>(m_nFileSize);
    m_FileInfo.filesize64 = m_nFileSize;
    if (const int nResult = BaseParseBeginTime(*file, block); nResult != KX_SUCCESS)
        return nResult;
    if (const int nResult = BaseParseEndTime(*file, block); nResult != KX_SUCCESS)
        return nResult;
    if (m_fileForReadData.get() != nullptr)
        m_fileForReadData->SetPos(m_BeginPos, IFileManipulate::KX_FILE_BEGIN);
    m_nSliceStartPos = m_BeginPos;
    if (m_nStartTime != -1 && m_nEndTime != -1)
        CalcDuration(m_FileInfo);
    m_nDuration.store(m_FileInfo.duration, std::memory_order_relaxed);
    TellFileInfo();
    m_bParseFileInfoSucceed.store(true, std::memory_order_release);
    return KX_SUCCESS;
}

int CFileParseBase::BaseParseBeginTime(IFileManipulate& file, CReadBlock& block)
{
    file.SetPos(0, IFileManipulate::KX_FILE_BEGIN);
    m_pFrameSift->SetCallBackUserData(UserData(CALLBACK_USE_BASE_BEGIN_TIME));
    int64_t nTotal = 0;
    while (!IsStopped() && nTotal <= sc_maxBeginBytes) {
        const uint32_t nBlock = nTotal > sc_largeBlock ? sc_largeBlock : sc_smallBlock;
        const int64_t nRead = file.ReadFile(block.Bytes(), nBlock);
        if (nRead <= 0)
            break;
        Feed(m_logicData, *m_pFrameSift, block, nRead);
        GetBeginTimeFromeStore();
        if (m_nStartTime != -1)
            break;
        nTotal += nBlock;
        CKXSystem::KXSleep(0);
    }
    SeekClear();
    if (IsPureAudio()) {
        m_nStartTime = m_nStartAudioTime;
        m_FileInfo.bPureAudio = 1;
    }
    if (m_nStartTime != -1)
        return KX_SUCCESS;
    TellFileInfo(); // with no times in it: the caller learns of the failure
    return -1;
}

int CFileParseBase::GetBeginTimeFromeStore()
{
    for (;;) {
        int64_t nOffset = 0;
        FrameInfo frame{};
        ExtZOAVIFrameInfo ext{};
        if (const int nResult = m_frameStore.GetFileFrame(&nOffset, &frame, &ext); nResult != KX_SUCCESS)
            return nResult;
        if (!IsStopped() && !TakeBeginTime(frame, nOffset))
            continue;
        m_frameStore.Clear();
        return KX_SUCCESS;
    }
}

// True once the start time is known. Media begins at the first key frame; an audio or data frame in front of it counts
// only behind a cipher auxiliary frame, or if there is no video.
bool CFileParseBase::TakeBeginTime(FrameInfo& frameInfo, int64_t nOffset)
{
    m_nStreamType = frameInfo.streamType;
    if (frameInfo.errorFlags != KX_ERROR_FLAGS_NOERROR && frameInfo.errorFlags != KX_ERROR_FLAGS_DECRYPTION_FAILURE)
        return false;
    if (frameInfo.frameType == KX_FRAME_TYPE_AUDIO && !m_bHaveVideo) {
        m_bHaveAudio = true;
        if (m_nStartAudioTime == -1 && !m_bHavaData) {
            m_BeginPos = nOffset;
            m_nStartAudioTime = RecalcTimeStamp(&frameInfo);
            m_FileInfo.fileStartTime = m_nStartAudioTime;
        }
    }
    if (frameInfo.frameType == KX_FRAME_TYPE_DATA) {
        if (frameInfo.frameSubType == KX_FRAME_SUB_TYPE_DATA_CIPHER_AUXILIARY_FRAME)
            m_bHavaData = true;
        if (m_BeginPos == -1)
            m_BeginPos = nOffset;
    }
    if (frameInfo.frameType != KX_FRAME_TYPE_VIDEO)
        return false;
    if (m_bHaveVideo && TakeStartTime(frameInfo))
        return true;
    if (!IsIFrameSubType(frameInfo.frameSubType))
        return false;
    if (!m_bHaveVideo && !m_bHavaData)
        m_BeginPos = nOffset;
    m_bHaveVideo = true;
    // Not rendered: the frame behind it is the first that is seen, and gives the start.
    return frameInfo.frameSubType != KX_FRAME_SUB_TYPE_VIDEO_SMART_I_NORENDER && TakeStartTime(frameInfo);
}

bool CFileParseBase::TakeStartTime(FrameInfo& frameInfo)
{
    m_nStartTime = RecalcTimeStamp(&frameInfo);
    m_FileInfo.fileStartTime = m_nStartTime;
    return m_nStartTime != -1;
}

// A window that grows backward from the end of the file, and is read anew each time. It grows by its first size; where
// that leads nowhere for long, by twice as much each time, or a window of 300 bytes would be read a million times.
int CFileParseBase::BaseParseEndTime(IFileManipulate& file, CReadBlock& block)
{
    constexpr int nEvenRounds = 16;
    m_pFrameSift->SetCallBackUserData(UserData(CALLBACK_USE_BASE_END_TIME));
    int64_t nStep = IsPureAudio() ? sc_audioEndWindow : std::min<int64_t>(m_nFileSize, sc_largeBlock);
    int64_t nWindow = nStep;
    int64_t nPos = m_nFileSize - nWindow;
    for (int nRound = 0; ReadEndWindow(file, block, nPos, nWindow); ++nRound) {
        GetEndTimeFromStore();
        if (m_nEndTime != -1)
            break;
        nStep *= nRound < nEvenRounds ? 1 : 2;
        const int64_t nGrowth = std::min({nStep, nPos, sc_maxEndWindow - nWindow});
        if (nGrowth <= 0) {
            SeekClear();
            return -1;
        }
        nWindow += nGrowth;
        nPos -= nGrowth;
        SeekClear();
        CKXSystem::KXSleep(0);
    }
    SeekClear();
    if (m_nEndTime != -1)
        return KX_SUCCESS;
    TellFileInfo();
    return -1;
}

// False if the file ends in front of the window's end, or the pass was stopped.
bool CFileParseBase::ReadEndWindow(IFileManipulate& file, CReadBlock& block, int64_t nStart, int64_t nWindow)
{
    m_bEndFrameHasTime = false;
    file.SetPos(nStart, IFileManipulate::KX_FILE_BEGIN);
    for (int64_t nLeft = nWindow; nLeft > 0; nLeft -= block.Size()) {
        if (IsStopped())
            return false;
        const int64_t nRead = file.ReadFile(block.Bytes(), std::min<int64_t>(nLeft, block.Size()));
        if (nRead <= 0)
            return false;
        Feed(m_logicData, *m_pFrameSift, block, nRead);
    }
    return nWindow > 0;
}

bool CFileParseBase::IsUsableEnd(const FrameInfo& frameInfo) const
{
    return frameInfo.errorFlags == KX_ERROR_FLAGS_NOERROR &&
           (!m_bHaveVideo || frameInfo.frameType == KX_FRAME_TYPE_VIDEO);
}

// A time of 0 does not end the search, though it is kept.
int CFileParseBase::GetEndTimeFromStore()
{
    FrameInfo frame{};
    while (!IsStopped() && m_frameStore.GetFileEndFrame(&frame) == KX_SUCCESS) {
        if (!IsUsableEnd(frame))
            continue;
        m_nEndTime = RecalcTimeStamp(&frame);
        m_FileInfo.fileEndTime = m_nEndTime;
        if (m_nEndTime != 0)
            break;
    }
    m_frameStore.Clear();
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
