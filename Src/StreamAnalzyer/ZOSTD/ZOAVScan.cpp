// How the scan recognises a ZOAV frame, and what it asks of a head.
#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "Memory/WindowRead.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_maxDetectedFrameLen = 0xA00000;
constexpr std::array<uint8_t, 7> sc_detectedTypes = {0x80, 0xF0, 0xF1, 0xFB, 0xFC, 0xFD, 0xFE};

// The head at a place where the scan has just matched nScanID.
std::optional<STD_FRAME_HEAD> HeadAt(CLogicData& logicData, int nPos, int32_t nScanID)
{
    if (!IfZavHeaderBigEndian(static_cast<uint32_t>(nScanID)))
        return std::nullopt;
    return ReadRecordAt<STD_FRAME_HEAD>(logicData, nPos);
}

} // namespace

int CZOAVStream::GetType()
{
    switch (m_HeaderTailerFlag) {
    case FLAG_MYAV:
        return KX_STREAM_TYPE_STD_MY;
    case FLAG_LXAV:
        return KX_STREAM_TYPE_STD_LX;
    case FLAG_WMAV:
        return KX_STREAM_TYPE_STD_WM;
    default:
        return KX_STREAM_TYPE_ZOSTD;
    }
}

bool CZOAVStream::CheckFrameID(int scanID)
{
    const auto nWord = static_cast<uint32_t>(scanID);
    const bool bHead = IfZavHeaderBigEndian(nWord);
    if (!bHead && (IsEndTimeMode() || (!IfZavTailerBigEndian(nWord) && nWord != gsk_zoiiMagic)))
        return false;
    m_nScanID = scanID;
    return true;
}

bool CZOAVStream::CheckFrameTimeID(int scanID)
{
    if (!IfZavHeaderBigEndian(static_cast<uint32_t>(scanID)))
        return false;
    m_nScanID = scanID;
    return true;
}

bool CZOAVStream::IsBorderID(int scanID)
{
    const auto nWord = static_cast<uint32_t>(scanID);
    return IfZavHeaderBigEndian(nWord) || IfZavTailerBigEndian(nWord);
}

void CZOAVStream::DoInit()
{
    m_linkBuffer.Clear();
    m_frameListBuffer.Clear();
    for (auto& [nLevel, kept] : m_prevIFrameInfoMap)
        DropWindowPointers(kept.ext);
}

void CZOAVStream::SetActualFrameLength(int frameStartPos, int nEndID, int nEndIDPos, FrameInfo& frame)
{
    const auto nWord = static_cast<uint32_t>(nEndID);
    if (IfZavHeaderBigEndian(nWord))
        CStreamParseBase::SetActualFrameLength(frameStartPos, nEndID, nEndIDPos, frame);
    else if (IfZavTailerBigEndian(nWord))
        frame.frameLen = nEndIDPos - frameStartPos + 1 + (gsk_stdFrameTailSize - 4); // the tail belongs to the frame
}

// Turns the search for the next border off: a frame of bad length keeps the 4 bytes that it was given, and the scan
// looks at every byte behind them.
bool CZOAVStream::GetActualFrameLength(CLogicData*, int, FrameInfo&)
{
    return true;
}

bool CZOAVStream::GetFrameTime(CLogicData* logicData, int& frameStartPos, int64_t& nTime)
{
    const auto head = HeadAt(*logicData, frameStartPos, m_nScanID);
    if (!head.has_value())
        return false;
    // Milliseconds from the epoch in local time; the running time stamp plays no part.
    nTime = int64_t{CKXConvert::KXTimeToTimeStamp(CKXConvert::DateTimeToKXTime(head->dateTime))} * 1000;
    return true;
}

bool CZOAVStream::GetFrameEndPos(CLogicData* logicData, int frameStartPos, int& nFrameEndPos)
{
    const auto head = HeadAt(*logicData, frameStartPos, m_nScanID);
    if (!head.has_value())
        return false;
    // The length is not tested; a place past what an index can count stays past the window's end.
    const int64_t nEndPos = int64_t{frameStartPos} + head->dwFrameLen - 1;
    nFrameEndPos = static_cast<int>(std::min<int64_t>(nEndPos, std::numeric_limits<int>::max()));
    return true;
}

bool CZOAVStream::GetFrameType(CLogicData* logicData, int frameStartPos, int& nFrameType, int& nFrameSubType)
{
    const auto head = HeadAt(*logicData, frameStartPos, m_nScanID);
    if (!head.has_value())
        return false;
    FrameInfo frame{};
    ParseStdFrameHead(*head, frame);
    nFrameType = frame.frameType;
    nFrameSubType = frame.frameSubType;
    return true;
}

bool CZOAVStream::CheckStdFrameHead(const STD_FRAME_HEAD* pHead)
{
    if (pHead == nullptr)
        return false;
    const uint8_t chType = pHead->chType;
    return std::find(sc_detectedTypes.begin(), sc_detectedTypes.end(), chType) != sc_detectedTypes.end() &&
           pHead->dwFrameLen <= sc_maxDetectedFrameLen && FrameHeadVerify(pHead);
}

} // namespace Marvane::FrameSift
