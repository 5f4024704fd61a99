#include "StreamAnalzyer/OldStream/ZOPTStream.h"

#include <algorithm>

#include "ESParse/StartCode.h"
#include "Memory/WindowRead.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/OldStream/OldAudio.h"
#include "StreamAnalzyer/RawStream/MPEG4Fields.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_nextIdLen = 4;
constexpr size_t sc_sizeLook = 100; // the heads that tell a picture's size stand in front
constexpr int32_t sc_assumedWidth = 352;
constexpr int32_t sc_assumedHeight = 288;

// A rate code that stands for none reads as the first, and stays in the stream as it is.
constexpr OLD_AUDIO_FORM sc_audioForm = {sizeof(ZOOLD_STREAM_AUDIO_HEADER), KX_STREAM_TYPE_AUDIO,
                                         BAD_SAMPLES::ReadAsFirst};

bool IsFrameID(uint32_t nWord)
{
    return nWord == sc_wordZOPT || nWord == sc_wordAudio;
}

} // namespace

bool CZOPTStream::CheckFrameID(int scanID)
{
    if (!IsFrameID(static_cast<uint32_t>(scanID)))
        return false;
    m_nScanID = scanID;
    return true;
}

bool CZOPTStream::IsBorderID(int scanID)
{
    const auto nWord = static_cast<uint32_t>(scanID);
    return IsFrameID(nWord) || nWord == sc_wordOnes;
}

bool CZOPTStream::BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (IsEndStillAwaited(*logicData, frameStartPos))
        return false;
    return static_cast<uint32_t>(m_nScanID) == sc_wordZOPT ? BuildVideoFrame(*logicData, frameStartPos, frame)
                                                           : BuildAudioFrame(*logicData, frameStartPos, frame);
}

bool CZOPTStream::BuildVideoFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    const auto head = ReadRecordAt<ZOPT_HEADER>(logicData, nFramePos);
    if (!head.has_value())
        return false;
    const int64_t nFrameLen = int64_t{sizeof(ZOPT_HEADER)} + head->nFrameBodyLen;
    if (nFramePos + nFrameLen + sc_nextIdLen > logicData.Size())
        return false;
    uint8_t* pFrame = GetDataAt(logicData, nFramePos, nFrameLen);
    if (pFrame == nullptr)
        return false;
    frame.streamType = KX_STREAM_TYPE_ZOPT;
    frame.deinterlace = KX_DEINTERLACE_NONE;
    frame.frameEncodeType = KX_ENCODE_VIDEO_MPEG4;
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    frame.streamLen = static_cast<int32_t>(head->nFrameBodyLen);
    frame.frameLen = static_cast<int32_t>(nFrameLen);
    frame.framePointer = pFrame;
    frame.streamPointer = pFrame + sizeof(ZOPT_HEADER);
    m_formerESParser = m_mpeg4ESParser;
    ParseMPEG4Block({pFrame + sizeof(ZOPT_HEADER), head->nFrameBodyLen}, frame);
    frame.frameSeq = genVideoSeq();
    return true;
}

// A B VOP, and a body without a VOP, count as P.
void CZOPTStream::ParseMPEG4Block(std::span<const uint8_t> body, FrameInfo& frame)
{
    const auto nBodyLen = static_cast<uint32_t>(body.size());
    if (m_mpeg4ESParser.GetFrameSubType(body.data(), nBodyLen) != KX_FRAME_SUB_TYPE_VIDEO_I_FRAME) {
        frame.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    } else {
        const auto nLook = static_cast<uint32_t>(std::min(body.size(), sc_sizeLook));
        if (m_mpeg4ESParser.Parse(body.data(), nLook, frame) < 0) {
            frame.width = sc_assumedWidth;
            frame.height = sc_assumedHeight;
        }
        TakeHeadFacts(body, frame);
    }
    fillPFrameByKeyFrameInfo(frame);
}

// What the heads in front of the picture say of rate and time; the whole body is looked through.
void CZOPTStream::TakeHeadFacts(std::span<const uint8_t> body, FrameInfo& frame)
{
    bool bRateFound = false;
    for (size_t nPos = FindStartCode(body, 0, 1); nPos < body.size(); nPos = FindStartCode(body, nPos, 1)) {
        const uint32_t nCode = 0x100U | body[nPos + gsk_startCodeLen];
        nPos += gsk_startCodeLen; // the next code may begin with this one's last byte
        const auto behind = body.subspan(nPos + 1);
        if (nCode == MPEG4_FIRST_VOL) {
            CMPEG4ESParser::ParseBlock20(behind.data(), static_cast<uint32_t>(behind.size()), frame, bRateFound);
        } else if (nCode == MPEG4_USER_DATA && !bRateFound && behind.size() >= gsk_userDataLen) {
            frame.frameRate = UserDataRate(behind[gsk_userDataRatePos]);
            nPos += 1 + gsk_userDataLen;
        } else if (nCode == MPEG4_GROUP_OF_VOP && behind.size() >= gsk_groupTimeLen) {
            TakeGroupTime(behind.data(), frame);
            nPos += 1 + gsk_groupTimeLen;
        }
    }
}

bool CZOPTStream::BuildAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    if (!BuildOldAudioFrame(logicData, nFramePos, sc_audioForm, frame))
        return false;
    frame.frameSeq = genAudioSeq();
    return true;
}

void CZOPTStream::FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (!IsBorderBehind(*logicData, frameStartPos, frame.frameLen))
        frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
}

bool CZOPTStream::GetActualFrameLength(CLogicData* logicData, int frameStartPos, FrameInfo& frame)
{
    if (CStreamParseBase::GetActualFrameLength(logicData, frameStartPos, frame))
        return true;
    // The frame waits, and is built again: it must be neither numbered nor learnt from twice.
    if (frame.frameType == KX_FRAME_TYPE_VIDEO) {
        m_mpeg4ESParser = m_formerESParser;
        CountBack(m_nVideoFrameNumber);
    } else {
        CountBack(m_nAudioFrameNumber);
    }
    return false;
}

} // namespace Marvane::FrameSift
