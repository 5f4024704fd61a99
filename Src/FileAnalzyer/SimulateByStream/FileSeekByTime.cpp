// Seeking by time without an index: a place is estimated from the average byte rate, refined by the times found there,
// and then the key frame in front of it is searched.
#include "FileAnalzyer/SimulateByStream/FileParseBase.h"
#include "FileAnalzyer/SimulateByStream/SeekSizes.h"

namespace Marvane::FrameSift {

// Seconds are unsigned 32-bit numbers that wrap: a frame in front of the file's start counts as very late.
struct TIME_SEARCH
{
    TIME_SEARCH(int64_t nFileSize, int64_t nBeginPos, uint32_t nTargetSec, uint32_t nDuration);

    // The next place to look at, with a frame of second nSec at nPos.
    void TooLate(uint32_t nSec);
    void TooEarly(uint32_t nSec);
    bool IsFound(uint32_t nSec) const { return nSec <= nTarget + nTolerance && nSec + nTolerance >= nTarget; }

    uint32_t nTarget;
    int64_t nPos;
    int64_t nLowPos = 0;
    int64_t nHighPos;
    uint32_t nLowSec = 0;
    uint32_t nHighSec;
    uint32_t nLastSec;
    uint32_t nTolerance = 0;
    int nRepeats = 0;
    bool bBisect = false; // for good, once set

private:
    void CountRepeat(uint32_t nSec, uint32_t nDistance);
};

namespace {

constexpr uint32_t sc_timeBlock = 65536;
constexpr int sc_maxTries = 100;

// a * b / c in full width: a sparse file can be of any size.
int64_t MulDiv(int64_t a, int64_t b, int64_t c)
{
    __extension__ using int128 = __int128;
    return static_cast<int64_t>(static_cast<int128>(a) * b / c);
}

int64_t SignedDistance(uint32_t nFrom, uint32_t nTo)
{
    return int64_t{static_cast<int32_t>(nTo)} - static_cast<int32_t>(nFrom);
}

bool IsAboveSigned(uint32_t nLeft, uint32_t nRight)
{
    return static_cast<int32_t>(nLeft) > static_cast<int32_t>(nRight);
}

} // namespace

// The last second starts out as a number of milliseconds, so that the first look hardly ever counts as a repeat. Kept.
TIME_SEARCH::TIME_SEARCH(int64_t nFileSize, int64_t nBeginPos, uint32_t nTargetSec, uint32_t nDuration)
    : nTarget(nTargetSec),
      nPos(MulDiv(nFileSize - nBeginPos, nTargetSec, nDuration) + nBeginPos),
      nHighPos(nFileSize),
      nHighSec(nDuration),
      nLastSec(nTargetSec * 1000)
{}

// Five looks in a row at the same second: the file cannot get closer, so that second is accepted.
void TIME_SEARCH::CountRepeat(uint32_t nSec, uint32_t nDistance)
{
    nRepeats = nSec == nLastSec ? nRepeats + 1 : 0;
    if (nRepeats >= 5)
        nTolerance = nDistance;
}

void TIME_SEARCH::TooLate(uint32_t nSec)
{
    CountRepeat(nSec, nSec - nTarget);
    const int64_t nFormerPos = nPos;
    bBisect = bBisect || nSec > nTarget + nTarget / 4;
    if (bBisect)
        nPos = nLowPos + (nPos - nLowPos) / 2;
    else if (IsAboveSigned(nSec, nLowSec))
        nPos = nLowPos + MulDiv(nPos - nLowPos, SignedDistance(nLowSec, nTarget), SignedDistance(nLowSec, nSec));
    nHighPos = nFormerPos;
    nHighSec = nSec;
}

void TIME_SEARCH::TooEarly(uint32_t nSec)
{
    CountRepeat(nSec, nTarget - nSec);
    const int64_t nFormerPos = nPos;
    bBisect = bBisect || nSec < nTarget - nTarget / 4;
    if (bBisect)
        nPos += (nHighPos - nPos) / 2;
    else if (IsAboveSigned(nHighSec, nSec))
        nPos += MulDiv(nHighPos - nPos, SignedDistance(nSec, nTarget), SignedDistance(nSec, nHighSec));
    nLowPos = nFormerPos;
    nLowSec = nSec;
}

int CFileParseBase::SeekByTime(uint32_t nTime)
{
    if (!CanRead())
        return -1;
    if (m_bThroughIndex) {
        m_IndexList.SetIndex(0); // to the start, whatever the time
        return KX_SUCCESS;
    }
    if (!HasFileForReading())
        return -1;
    if (!m_readBlock.Make(sc_seekBuffer))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (m_pFrameSift == nullptr)
        return -1;
    if (nTime == 0) {
        // Behind a full pass, which leaves m_BeginPos at -1, the file stays where it is and offsets count from -1. Kept.
        if (m_BeginPos < 0)
            SmartPFrameSeekReposition(m_fileForReadData);
        else
            DropJump();
        StartAt(m_BeginPos);
        SeekClear();
        return KX_SUCCESS;
    }
    const uint32_t nDuration = m_nDuration.load(std::memory_order_relaxed);
    if (nDuration == 0) // as the full pass leaves it
        return -1;
    const int nType = m_pFrameSift->GetType();
    if (nType == KX_STREAM_TYPE_OLD || nType == KX_STREAM_TYPE_FLV || nType == KX_STREAM_TYPE_HIK_PRIVATE)
        return -1;
    DropJump();
    uint32_t nTarget = nTime / 1000;
    if (nTarget >= nDuration && nDuration >= 2)
        nTarget = nDuration - 1;
    TIME_SEARCH search(m_FileInfo.filesize64, m_BeginPos, nTarget, nDuration);
    return SearchTime(search);
}

int CFileParseBase::SearchTime(TIME_SEARCH& search)
{
    m_fileForReadData->SetPos(search.nPos, IFileManipulate::KX_FILE_BEGIN);
    SeekClear();
    for (int nTries = 0; nTries <= sc_maxTries;) {
        if (IsStopped())
            return -1;
        const int64_t nRead = m_fileForReadData->ReadFile(m_readBlock.Bytes(), sc_timeBlock);
        if (nRead <= 0)
            return StartAtTime(search.nPos);
        if (m_logicData.JoinData(m_readBlock.Bytes(), static_cast<int>(nRead)) != KX_SUCCESS)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        m_readBlock.DropFormer();
        int64_t nTime = 0;
        if (!m_pFrameSift->ParseFrameTime(&m_logicData, nTime))
            continue;
        const auto nSec = static_cast<uint32_t>((nTime - m_nStartTime) / 1000);
        if (search.IsFound(nSec))
            return StartAtTime(search.nPos);
        if (nSec > search.nTarget)
            search.TooLate(nSec);
        else
            search.TooEarly(nSec);
        search.nLastSec = nSec;
        StartAt(search.nPos);
        SeekClear();
        ++nTries;
    }
    return -1;
}

int CFileParseBase::StartAtTime(int64_t nPos)
{
    if (m_FileInfo.bPureAudio != 0) {
        StartAt(nPos);
        SeekClear();
        return KX_SUCCESS;
    }
    // At the end of the file this is the place of the last frame head seen.
    int64_t nStreamPos = 0;
    int64_t nFramePos = 0;
    m_logicData.GetKeyPos(nStreamPos, nFramePos);
    const int nResult = SearchKeyFrame(static_cast<uint64_t>(nPos + nStreamPos));
    SeekClear();
    return nResult;
}

} // namespace Marvane::FrameSift
