// Seeking by offset, and the searches for a key frame.
#include <algorithm>
#include <limits>

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "FileAnalzyer/SimulateByStream/SeekSizes.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/FileAnalzyer/SimulateByStream/FileSeek";
constexpr int64_t sc_backBlock = int64_t{1024} * 1024;
constexpr int64_t sc_leastBackBlock = 65536;
constexpr int64_t sc_maxBackWindow = 0xC800000;
constexpr int sc_evenRounds = 16;
constexpr int64_t sc_forwardBlock = 0xA0000;
constexpr int64_t sc_maxForwardBytes = 0xA00000;

} // namespace

void CFileParseBase::SeekClear()
{
    if (m_pFrameSift == nullptr)
        return;
    m_frameStore.Clear();
    m_logicData.ClearBuffer();
    m_pFrameSift->SeekClear();
    m_pFrameSift->SetVideoNumber(m_nCurrentVideoFrameID);
    m_pFrameSift->ClearKeyFrameInfo();
}

// A jump that an earlier seek has left behind is not this one's.
void CFileParseBase::DropJump()
{
    m_nSmartPPos = -1;
    m_nNextSmartPPos = -1;
}

void CFileParseBase::StartAt(int64_t nPos)
{
    m_fileForReadData->SetPos(nPos, IFileManipulate::KX_FILE_BEGIN);
    m_nSliceStartPos = nPos;
}

int CFileParseBase::SeekByFileOffset(int64_t fileOffset, int seekType)
{
    if (!CanRead())
        return -1;
    if (m_bThroughIndex)
        return m_IndexList.SeekByFileOffset(fileOffset, seekType);
    if (fileOffset < 0 || fileOffset > m_FileInfo.filesize64 || !HasFileForReading())
        return -1;
    if (seekType == KX_SEEK_PRECISE_OFFSET) {
        DropJump();
        SeekClear();
        StartAt(fileOffset);
        return KX_SUCCESS;
    }
    if (!m_readBlock.Make(sc_seekBuffer))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (m_pFrameSift == nullptr)
        return -1;
    DropJump();
    m_pFrameSift->SeekClear();
    int nResult = KX_SUCCESS;
    if (m_FileInfo.bPureAudio != 0)
        StartAt(fileOffset); // audio can be started from anywhere
    else
        nResult = SearchKeyFrame(static_cast<uint64_t>(fileOffset));
    SeekClear();
    return nResult;
}

int CFileParseBase::SearchKeyFrame(uint64_t nOffset)
{
    const int nResult = BackSearchIFrame(m_fileForReadData, nOffset);
    if (nResult >= 0)
        return nResult;
    m_nSmartPPos = -1; // it belongs to a key frame that was not found
    return ForwardSearchIFrame(m_fileForReadData, nOffset);
}

// The last key frame in front of fileCurOffset, in a window that ends there and grows backward. It grows by its first
// size; where that leads nowhere for long, by twice as much each time, as it is read anew from its start.
int CFileParseBase::BackSearchIFrame(IFileManipPtr& file, uint64_t fileCurOffset)
{
    SeekClear();
    if (m_readBlock.Size() < sc_seekBuffer || fileCurOffset > std::numeric_limits<int64_t>::max())
        return -1;
    const auto nEnd = static_cast<int64_t>(fileCurOffset);
    int64_t nStart = std::max<int64_t>(nEnd - sc_backBlock, 0);
    int64_t nBlock = nEnd - nStart;
    int64_t nGrowth = nBlock;
    for (int nRound = 0;; ++nRound) {
        if (const int nScanned = ScanKeyFrames(*file, nStart, nEnd - nStart, nBlock); nScanned != KX_SUCCESS)
            return nScanned;
        int nResult = -1;
        if (TakeLastKeyFrame(nStart, nResult))
            return nResult;
        nGrowth *= nRound < sc_evenRounds ? 1 : 2;
        const int64_t nRoom = sc_maxBackWindow - (nEnd - nStart);
        if (nStart == 0 || nRoom < nBlock)
            return -1;
        if (nStart < nBlock)
            nBlock = nStart;
        nStart -= std::min({nGrowth, nStart, nRoom});
        SeekClear();
        KX_WRITE_LOG(KX_LOG_LevelTrace, sc_sourcePath, "no got seek.\n");
    }
}

int CFileParseBase::ScanKeyFrames(IFileManipulate& file, int64_t nStart, int64_t nWindow, int64_t nBlock)
{
    // A file's first bytes may be a block of a few, and a window that is read so takes hours.
    const int64_t nRead = std::max(nBlock, sc_leastBackBlock);
    file.SetPos(nStart, IFileManipulate::KX_FILE_BEGIN);
    int64_t nLeft = nWindow;
    do {
        if (IsStopped())
            return -1;
        const int64_t nGot = file.ReadFile(m_readBlock.Bytes(), std::min(nRead, nLeft));
        if (nGot <= 0)
            return -1;
        if (m_logicData.JoinData(m_readBlock.Bytes(), static_cast<int>(nGot)) != KX_SUCCESS)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        m_readBlock.DropFormer();
        m_pFrameSift->ParseKeyFrame(&m_logicData, false);
        nLeft -= nRead;
    } while (nLeft > 0);
    return KX_SUCCESS;
}

// True: the search is over, and nResult tells how. A position counts from the bytes that the window held when the frame
// was found, so in a window of several blocks only those in the first block are exact; the others lie too early, and the
// next read finds the next frame head from there. Kept.
bool CFileParseBase::TakeLastKeyFrame(int64_t nStart, int& nResult)
{
    VIDEO_KEY_FRAME_INFO info{};
    while (!IsStopped() && m_pFrameSift->GetVideoKeyFrameInfo(info)) {
        const int64_t nPos = nStart + info.nVideoFramePos;
        if (IsIFrameSubType(info.nFrameSubType)) {
            KX_WRITE_LOG(KX_LOG_LevelTrace, sc_sourcePath, "seek succeed, pos %lld.\n", static_cast<long long>(nPos));
            StartAt(nPos);
            nResult = KX_SUCCESS;
            return true;
        }
        if (info.nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME && m_nSmartPPos == -1)
            m_nSmartPPos = nPos; // the latest one
    }
    nResult = -1;
    return IsStopped();
}

// A fallback that settles for where it started: a block without a key frame reads as one at its first byte, since the
// record says so as long as nobody has filled it. Kept; so it fails only when stopped and at the end of the file.
int CFileParseBase::ForwardSearchIFrame(IFileManipPtr& file, uint64_t fileCurOffset)
{
    SeekClear();
    const auto nStart = static_cast<int64_t>(fileCurOffset);
    file->SetPos(nStart, IFileManipulate::KX_FILE_BEGIN);
    for (int64_t nTotal = 0; nTotal <= sc_maxForwardBytes;) {
        if (IsStopped())
            return -1;
        const int64_t nRead = file->ReadFile(m_readBlock.Bytes(), sc_forwardBlock);
        if (nRead <= 0)
            return -1;
        if (m_logicData.JoinData(m_readBlock.Bytes(), static_cast<int>(nRead)) != KX_SUCCESS)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        m_readBlock.DropFormer();
        VIDEO_KEY_FRAME_INFO info{};
        m_pFrameSift->ParseKeyFrame(&m_logicData, true);
        m_pFrameSift->GetVideoKeyFrameInfo(info);
        if (IsIFrameSubType(info.nFrameSubType)) {
            StartAt(nStart + info.nVideoFramePos);
            return KX_SUCCESS;
        }
        nTotal += nRead;
    }
    return -1;
}

} // namespace Marvane::FrameSift
