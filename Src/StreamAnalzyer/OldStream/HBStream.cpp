#include "StreamAnalzyer/OldStream/HBStream.h"

#include <ctime>

#include "Memory/WindowRead.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/OldStream/OldAudio.h"

namespace Marvane::FrameSift {

namespace {

#pragma pack(push, 1)
struct HB_HEADER // little-endian but for the time
{
    uint8_t ID[4]; // 00 00 01 F2
    uint8_t chReserved;
    uint8_t chRate;      // frames per second in the high 5 bits
    uint16_t nSize;      // bits 3 to 8: width / 16, bits 9 to 15: height / 16
    uint8_t dataTime[4]; // seconds since 1970, big-endian
    uint32_t nBlockSeq;
};
#pragma pack(pop)
static_assert(sizeof(HB_HEADER) == 16);
static_assert(offsetof(HB_HEADER, nSize) == 6);
static_assert(offsetof(HB_HEADER, nBlockSeq) == 12);

constexpr int sc_payloadLen = 1024;
constexpr int sc_blockLen = sizeof(HB_HEADER) + sc_payloadLen;
constexpr int sc_nextIdLen = 4;

constexpr OLD_AUDIO_FORM sc_audioForm = {sizeof(ZOOLD_STREAM_AUDIO_HEADER_EX), KX_STREAM_TYPE_HB, BAD_SAMPLES::Mend};

// The calendar is that of UTC, but the time stamp takes its parts for local time. Kept.
void TakeTime(uint32_t nSeconds, FrameInfo& frame)
{
    const time_t nTime = nSeconds;
    tm parts = {};
    if (gmtime_r(&nTime, &parts) == nullptr)
        return;
    KX_TIME time = {};
    time.nYear = parts.tm_year + 1900;
    time.nMonth = parts.tm_mon + 1;
    time.nDay = parts.tm_mday;
    time.nHour = parts.tm_hour;
    time.nMinute = parts.tm_min;
    time.nSecond = parts.tm_sec;
    frame.frameTime = time;
    frame.timeStamp = static_cast<int32_t>(mktime(&parts));
}

bool IsSamePicture(const FrameInfo& one, const FrameInfo& other)
{
    return one.width == other.width && one.height == other.height && one.frameRate == other.frameRate;
}

} // namespace

bool CHBStream::CheckFrameID(int scanID)
{
    const auto nWord = static_cast<uint32_t>(scanID);
    if (nWord != sc_wordAudio && nWord != sc_wordHB)
        return false;
    m_nScanID = scanID;
    return true;
}

bool CHBStream::IsBorderID(int scanID)
{
    const auto nWord = static_cast<uint32_t>(scanID);
    return nWord == sc_wordAudio || nWord == sc_wordHB || nWord == sc_wordOnes;
}

bool CHBStream::BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    switch (static_cast<uint32_t>(m_nScanID)) {
    case sc_wordAudio:
        return BuildAudioFrame(*logicData, frameStartPos, frame);
    case sc_wordHB:
        return BuildVideoFrame(*logicData, frameStartPos, frame);
    default:
        return false;
    }
}

bool CHBStream::BuildVideoFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    uint8_t* pBlock = logicData.GetData(nFramePos, sc_blockLen + sc_nextIdLen);
    if (pBlock == nullptr)
        return false;
    const auto head = ReadRecordAt<HB_HEADER>(logicData, nFramePos);
    if (!head.has_value())
        return false;
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    frame.frameEncodeType = KX_ENCODE_VIDEO_MPEG4;
    frame.streamType = KX_STREAM_TYPE_HB;
    frame.frameLen = sc_blockLen;
    frame.streamLen = sc_payloadLen;
    frame.framePointer = pBlock;
    frame.streamPointer = pBlock + sizeof(HB_HEADER);
    frame.deinterlace = KX_DEINTERLACE_NONE;
    frame.frameRate = head->chRate >> 3;
    frame.width = (head->nSize >> 3 & 0x3F) * 16;
    frame.height = (head->nSize >> 9) * 16;
    TakeTime(LoadUint32Msb(head->dataTime), frame);
    frame.frameSeq = static_cast<int32_t>(head->nBlockSeq);
    if (m_prevIFrameInfo.width != 0 && !IsSamePicture(frame, m_prevIFrameInfo)) {
        m_prevBlockSeq = 0;
        m_clearStep = STEP_NEED_CLEAR;
    }
    m_prevIFrameInfo = frame;
    return true;
}

bool CHBStream::BuildAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    if (!BuildOldAudioFrame(logicData, nFramePos, sc_audioForm, frame))
        return false;
    frame.frameSeq = m_nAudioFramNumber;
    CFrameHelper::CountOn(m_nAudioFramNumber);
    return true;
}

void CHBStream::FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (!IsBorderBehind(*logicData, frameStartPos, frame.frameLen)) {
        frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
        m_prevBlockSeq = 0;
        m_clearStep = STEP_NEED_CLEAR;
        return;
    }
    if (frame.frameType == KX_FRAME_TYPE_AUDIO || LostFrameVerify(frame))
        return;
    frame.errorFlags = KX_ERROR_FLAGS_LOSTFRAME;
    m_clearStep = STEP_NEED_CLEAR;
}

// A block of number 0 leaves the next one to be the first again.
bool CHBStream::LostFrameVerify(const FrameInfo& frame)
{
    if (m_prevBlockSeq == 0) {
        m_prevBlockSeq = frame.frameSeq;
        m_rwExLogicData.ClearBuffer();
        return true;
    }
    const bool bNext = static_cast<uint32_t>(frame.frameSeq) == static_cast<uint32_t>(m_prevBlockSeq) + 1;
    m_prevBlockSeq = bNext ? int32_t{frame.frameSeq} : 0;
    return bNext;
}

bool CHBStream::GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame)
{
    if (CStreamParseBase::GetActualFrameLength(logicData, frameStartPos, frame))
        return true;
    // The frame waits, and an audio frame is numbered when it is built again.
    if (frame.frameType == KX_FRAME_TYPE_AUDIO)
        CFrameHelper::CountBack(m_nAudioFramNumber);
    return false;
}

} // namespace Marvane::FrameSift
