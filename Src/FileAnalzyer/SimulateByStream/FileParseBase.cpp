#include "FileAnalzyer/SimulateByStream/FileParseBase.h"

#include "IAnalyzer/ParamType.h"

namespace Marvane::FrameSift {

int CFileParseBase::GetProcess(int* process)
{
    if (process == nullptr)
        return KX_ERROR_PARAMETER;
    *process = m_nProcess.load(std::memory_order_relaxed);
    return KX_SUCCESS;
}

int CFileParseBase::GetOneIndex(int index, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo,
                                ExtZOAVIFrameInfo* frameInfoEx)
{
    const int nResult = m_IndexList.GetOneIndex(index, indexInfo, frameInfo, frameInfoEx);
    return nResult == KX_SUCCESS ? GetFrameByIndex(indexInfo, frameInfo, frameInfoEx) : nResult;
}

int CFileParseBase::GetIndexCount(int flags, int* indexCount)
{
    return m_IndexList.GetIndexCount(flags, indexCount);
}

int CFileParseBase::GetAllIndex(int flags, KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, int structCount,
                                int* indexCount)
{
    return m_IndexList.GetAllIndex(flags, indexInfo, frameInfo, structCount, indexCount);
}

int CFileParseBase::SetExtCommonInfo(uint32_t type, unsigned char* info, int)
{
    // The only parameter with an effect on recordings.
    if (type == KX_PARAM_PATH_ENCODE_TYPE && info != nullptr)
        m_nPathEncodeType = info[0];
    return KX_SUCCESS;
}

// For formats whose times are stream time stamps, which have 32 bits.
void CFileParseBase::CalcDuration(KX_FILE_INFO& stFileInfo)
{
    stFileInfo.duration =
        (static_cast<uint32_t>(stFileInfo.fileEndTime) - static_cast<uint32_t>(stFileInfo.fileStartTime)) / 1000;
}

int64_t CFileParseBase::RecalcTimeStamp(FrameInfo* frameInfo)
{
    // 2^33 / 90: where a time stamp of 33 bits at 90 kHz wraps, in milliseconds. A time that lies more than a second in
    // front of the file's start has wrapped.
    constexpr uint32_t nWrap = 95443717;
    const int32_t nTime = frameInfo->timeStamp;
    const auto nTimeAndSecond = static_cast<int32_t>(static_cast<uint32_t>(nTime) + 1000);
    if (nTime >= m_FileInfo.fileStartTime || m_FileInfo.fileStartTime < nTimeAndSecond)
        return nTime;
    return static_cast<int32_t>(static_cast<uint32_t>(nTime) + nWrap);
}

// Containers without frame heads of their own.
bool CFileParseBase::IsThroughIndexType() const
{
    if (m_pFrameSift == nullptr)
        return false;
    const int nType = m_pFrameSift->GetType();
    return nType == KX_STREAM_TYPE_AVI || nType == KX_STREAM_TYPE_WAV;
}

// A copy: seeks go by this record, whatever a callback does to its own.
void CFileParseBase::TellFileInfo()
{
    KX_FILE_INFO info = m_FileInfo;
    if (m_pIndexCallBack != nullptr)
        m_pIndexCallBack->OnFileInfo(&info);
}

// Counts from where the stage began, but divides by all there is: a stage that does not begin at the first byte jumps to
// 100 at its end. Kept.
void CFileParseBase::CountProgress(int64_t nRead, int64_t nWhole)
{
    m_nCurPos += nRead;
    if (nWhole == 0 || m_nCurPos < 1)
        return;
    const double fPercent = static_cast<double>(m_nCurPos - 1) * 100.0 / static_cast<double>(nWhole);
    m_nProcess.store(fPercent < 100 ? static_cast<int32_t>(fPercent) : 100, std::memory_order_relaxed);
}

int CFileParseBase::Feed(CLogicData& window, IStreamAnalzyer& parser, CReadBlock& block, int64_t nRead)
{
    if (window.JoinData(block.Bytes(), static_cast<int>(nRead)) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    block.DropFormer();
    return parser.ParseData(&window, this);
}

} // namespace Marvane::FrameSift
