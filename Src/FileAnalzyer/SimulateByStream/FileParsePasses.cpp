// The full pass and the slice pass: a file, or a part of it, fed to the stream parser as it comes.
#include <algorithm>
#include <limits>
#include <utility>

#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "Tools/FileFactory.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_fullPassBlock = 65536;
constexpr uint32_t sc_sliceBlock = 1024 * 1024;

} // namespace

int CFileParseBase::PrepareFeeding(IFileManipulate& file, uint32_t nBlockSize)
{
    if (m_pFrameSift == nullptr || !m_passBlock.Make(nBlockSize) || m_pFrameSift->Init() != 0)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_bThroughIndex = IsThroughIndexType();
    m_nProcess.store(0, std::memory_order_relaxed);
    m_fileForReadData =
        CFileFactory::createFileManipObj(file.GetFileName(), IFileManipulate::READ_ONLY, m_nPathEncodeType);
    return KX_SUCCESS;
}

int CFileParseBase::ParseFile(IFileManipPtr& file, IIndexCallBack* indexCallBack)
{
    if (file.get() == nullptr)
        return KX_ERROR_PARAMETER;
    if (const int nResult = PrepareFeeding(*file, sc_fullPassBlock); nResult != KX_SUCCESS)
        return nResult;
    m_pIndexCallBack = indexCallBack;
    m_nFileSize = file->GetSize();
    m_FileInfo.filesize = static_cast<uint32_t>(m_nFileSize);
    m_FileInfo.filesize64 = m_nFileSize;
    m_bPassFeeds.store(true, std::memory_order_relaxed);
    m_bParseFileInfoSucceed.store(true, std::memory_order_release);

    const int nResult = FeedFile(*file, std::numeric_limits<int64_t>::max(), m_nFileSize);
    m_pFrameSift->FlushBuffer(&m_logicData, this);
    if (indexCallBack != nullptr)
        m_FileInfo.duration /= 1000;
    // The window keeps the tail of the file and the count of what it dropped: reading on from here without a seek starts
    // with that tail. m_nDuration and m_BeginPos stay as they were, so that no time can be sought but 0. Both kept.
    m_bPassFeeds.store(false, std::memory_order_release);
    TellFileInfo();
    m_nCurPos = m_nFileSize;
    m_IndexList.SetIndexComplete(true);
    m_nProcess.store(100, std::memory_order_relaxed);
    return nResult;
}

int CFileParseBase::ParseSlice(IFileManipPtr& file, IIndexCallBack* indexCallBack, int64_t offset, int64_t size)
{
    if (file.get() == nullptr)
        return KX_ERROR_PARAMETER;
    if (const int nResult = PrepareFeeding(*file, sc_sliceBlock); nResult != KX_SUCCESS)
        return nResult;
    m_pIndexCallBack = indexCallBack;
    m_nSliceStartPos = offset;
    m_nFileSize = std::min(file->GetSize(), size);
    file->SetPos(offset, IFileManipulate::KX_FILE_BEGIN);

    const int nResult = FeedFile(*file, size, size);
    m_pFrameSift->FlushBuffer(&m_logicData, this);
    m_nCurPos = m_nFileSize;
    m_nProcess.store(100, std::memory_order_relaxed);
    return nResult;
}

// The parser's last result; but what was lost for want of memory is told, whatever came behind it. The parser does not
// look at what became of a frame that it has delivered.
int CFileParseBase::FeedFile(IFileManipulate& file, int64_t nLeft, int64_t nWhole)
{
    int nResult = KX_SUCCESS;
    while (!IsStopped() && nLeft > 0) {
        const int64_t nRead = file.ReadFile(m_passBlock.Bytes(), std::min<int64_t>(nLeft, m_passBlock.Size()));
        if (nRead <= 0)
            break;
        const int nFed = Feed(m_logicData, *m_pFrameSift, m_passBlock, nRead);
        if (nResult != KX_ERROR_SYSTEM_OUT_OF_MEMORY)
            nResult = nFed;
        nLeft -= nRead;
        CountProgress(nRead, nWhole);
    }
    return std::exchange(m_bFrameLost, false) ? int{KX_ERROR_SYSTEM_OUT_OF_MEMORY} : nResult;
}

} // namespace Marvane::FrameSift
