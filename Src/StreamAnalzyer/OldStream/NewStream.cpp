#include "StreamAnalzyer/OldStream/NewStream.h"

#include <algorithm>
#include <array>

#include "Memory/WindowRead.h"
#include "StreamAnalzyer/OldStream/LegacyWords.h"
#include "StreamAnalzyer/OldStream/OldAudio.h"
#include "StreamAnalzyer/WordSlider.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_nextIdLen = 4;
constexpr uint8_t sc_interlacedMark = 2;
constexpr OLD_AUDIO_FORM sc_audioForm = {sizeof(ZOOLD_STREAM_AUDIO_HEADER), KX_STREAM_TYPE_NEW, BAD_SAMPLES::Mend};

// Of a data frame, by its byte 4.
constexpr int sc_dataHeadSeen = 17;
constexpr std::array<int, 8> sc_headerLen = {0, 12, 12, 0, 17, 16, 17, 12};

bool IsFrameID(uint32_t nWord)
{
    return nWord == sc_wordAudio || nWord == sc_wordData || (nWord >= sc_wordFA && nWord <= sc_wordFD);
}

struct PICTURE_SIZE_ROW
{
    int32_t nWidth;
    int32_t nHeight;
};

// The sizes that recorders capture field by field.
constexpr std::array<PICTURE_SIZE_ROW, 4> sc_fieldSizes = {{{704, 480}, {704, 576}, {352, 480}, {352, 576}}};

int32_t Deinterlace(const NEW_STREAM_I_FRAME_HEADER& head, bool bH264, int32_t nWidth, int32_t nHeight)
{
    if (bH264 && (head.reserved & 15) == sc_interlacedMark)
        return KX_DEINTERLACE_SINGLE;
    const int32_t nTold = head.chRate >> 5;
    const bool bFieldSize = std::any_of(sc_fieldSizes.begin(), sc_fieldSizes.end(), [&](const PICTURE_SIZE_ROW& row) {
        return row.nWidth == nWidth && row.nHeight == nHeight;
    });
    return nTold == 0 && !bFieldSize ? int32_t{KX_DEINTERLACE_NONE} : nTold;
}

// Recorders with heads of 16 bytes count years in two odd ways. Taken back in this order, whatever the first step left
// for the second. Kept.
void CorrectYear(FrameInfo& frame)
{
    KX_TIME time = frame.frameTime;
    if (time.nYear > 2049)
        time.nYear -= 42;
    if (time.nYear > 2019)
        time.nYear -= 16;
    frame.frameTime = time;
}

} // namespace

bool CNewStream::CheckFrameID(int scanID)
{
    if (!IsFrameID(static_cast<uint32_t>(scanID)))
        return false;
    m_nScanID = scanID;
    return true;
}

bool CNewStream::IsBorderID(int scanID)
{
    const auto nWord = static_cast<uint32_t>(scanID);
    return IsFrameID(nWord) || nWord == sc_wordOnes;
}

bool CNewStream::IsVideoID() const
{
    const auto nWord = static_cast<uint32_t>(m_nScanID);
    return nWord >= sc_wordFA && nWord <= sc_wordFD;
}

// The second variant has the key frame IDs of the other two swapped.
bool CNewStream::IsKeyFrameID() const
{
    const auto nWord = static_cast<uint32_t>(m_nScanID);
    const bool bFull = nWord == sc_wordFB || nWord == sc_wordFD;
    return bFull != (m_nType == KX_STREAM_TYPE_NEW_EX);
}

bool CNewStream::BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    constexpr int nIHeadLen = sizeof(NEW_STREAM_I_FRAME_HEADER);
    constexpr int nPHeadLen = sizeof(NEW_STREAM_P_FRAME_HEADER);
    if (IsVideoID() && IsKeyFrameID())
        return BuildIFrame(*logicData, frameStartPos, IsEx1() ? int{sizeof(NEWEX1_STREAM_I_FRAME_HEADER)} : nIHeadLen,
                           frame);
    if (IsVideoID())
        return BuildPFrame(*logicData, frameStartPos, IsEx1() ? int{sizeof(NEWEX1_STREAM_P_FRAME_HEADER)} : nPHeadLen,
                           frame);
    if (static_cast<uint32_t>(m_nScanID) == sc_wordAudio)
        return BuildAudioFrame(*logicData, frameStartPos, frame);
    return BuildDataFrame(*logicData, frameStartPos, frame);
}

// Reads the length, and points the frame at its bytes.
CNewStream::BODY CNewStream::TakeBody(CLogicData& logicData, int nFramePos, int nHeadLen, int nLengthPos,
                                      FrameInfo& frame)
{
    // All that is read of a head stands in its first bytes; the longest ends with what nobody reads.
    uint8_t* pHead = logicData.GetData(nFramePos, std::min(nHeadLen, int{sizeof(NEW_STREAM_I_FRAME_HEADER)}));
    if (pHead == nullptr)
        return BODY::Awaited;
    // The top byte of the length is no part of it, and is taken out of the stream itself.
    pHead[nLengthPos + 3] = 0;
    const uint32_t nBodyLen = LoadUint32Lsb(pHead + nLengthPos);
    if (nBodyLen > logicData.MaxSize())
        return BODY::TooLong;
    const int64_t nFrameLen = int64_t{nHeadLen} + nBodyLen;
    if (nFramePos + nFrameLen + sc_nextIdLen > logicData.Size())
        return BODY::Awaited;
    uint8_t* pFrame = GetDataAt(logicData, nFramePos, nFrameLen);
    if (pFrame == nullptr)
        return BODY::Awaited;
    frame.streamLen = static_cast<int32_t>(nBodyLen);
    frame.frameLen = static_cast<int32_t>(nFrameLen);
    frame.framePointer = pFrame;
    frame.streamPointer = pFrame + nHeadLen;
    return BODY::Here;
}

bool CNewStream::BuildIFrame(CLogicData& logicData, int nFramePos, int nHeadLen, FrameInfo& frame)
{
    if (int64_t{nFramePos} + nHeadLen + sc_nextIdLen > logicData.Size())
        return false;
    const BODY eBody =
        TakeBody(logicData, nFramePos, nHeadLen, offsetof(NEW_STREAM_I_FRAME_HEADER, nFrameBodyLen), frame);
    if (eBody == BODY::TooLong)
        frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
    if (eBody != BODY::Here)
        return eBody == BODY::TooLong;
    const auto head = ReadRecordAt<NEW_STREAM_I_FRAME_HEADER>(logicData, nFramePos);
    if (!head.has_value())
        return false;
    const auto nWord = static_cast<uint32_t>(m_nScanID);
    const bool bH264 = nWord == sc_wordFC || nWord == sc_wordFD;
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    frame.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    frame.streamType = KX_STREAM_TYPE_NEW;
    frame.width = head->chWidth * 8;
    frame.height = head->chHeight * 8;
    frame.frameRate = head->chRate & 31;
    frame.deinterlace = Deinterlace(*head, bH264, frame.width, frame.height);
    frame.frameEncodeType = bH264 ? KX_ENCODE_VIDEO_ZO_H264 : KX_ENCODE_VIDEO_MPEG4;
    frame.frameTime = CKXConvert::DateTimeToKXTime(head->time);
    if (!IsEx1())
        CorrectYear(frame);
    fillPFrameByKeyFrameInfo(frame);
    return true;
}

bool CNewStream::BuildPFrame(CLogicData& logicData, int nFramePos, int nHeadLen, FrameInfo& frame)
{
    frame.streamType = KX_STREAM_TYPE_NEW;
    frame.frameType = KX_FRAME_TYPE_VIDEO;
    frame.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
    const BODY eBody =
        TakeBody(logicData, nFramePos, nHeadLen, offsetof(NEW_STREAM_P_FRAME_HEADER, nFrameBodyLen), frame);
    if (eBody == BODY::TooLong)
        frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
    if (eBody != BODY::Here)
        return eBody == BODY::TooLong;
    frame.frameTime = m_prevIframeInfo.frameTime;
    fillPFrameByKeyFrameInfo(frame);
    return true;
}

bool CNewStream::BuildAudioFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    if (!BuildOldAudioFrame(logicData, nFramePos, sc_audioForm, frame))
        return false;
    frame.frameTime = m_prevIframeInfo.frameTime;
    return true;
}

// Without a length field: the frame ends where the next one begins. It may be shorter than its head.
bool CNewStream::BuildDataFrame(CLogicData& logicData, int nFramePos, FrameInfo& frame)
{
    const uint8_t* pHead = logicData.GetData(nFramePos, sc_dataHeadSeen);
    if (pHead == nullptr)
        return false;
    const uint8_t chKind = pHead[sizeof(uint32_t)];
    const int nHeadLen = chKind < sc_headerLen.size() ? sc_headerLen[chKind] : 0;
    CWordSlider slider(logicData, logicData.Size());
    slider.Restart(int64_t{nFramePos} + 3, sc_wordData);
    if (!SlideToBorder(logicData, nFramePos, slider))
        return false;
    frame.frameType = KX_FRAME_TYPE_DATA;
    frame.streamType = KX_STREAM_TYPE_NEW;
    frame.frameLen = slider.WordPos() - nFramePos;
    frame.streamLen = frame.frameLen - nHeadLen;
    frame.framePointer = logicData.GetData(nFramePos, frame.frameLen);
    frame.streamPointer = frame.framePointer != nullptr ? frame.framePointer + nHeadLen : nullptr;
    return frame.framePointer != nullptr;
}

void CNewStream::FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (!IsBorderBehind(*logicData, frameStartPos, frame.frameLen))
        frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
}

void CNewStream::DoCallBack(FrameInfo* frame, ExtZOAVIFrameInfo*)
{
    if (m_pFrameCallBack == nullptr)
        return;
    if (frame->frameType == KX_FRAME_TYPE_VIDEO) {
        // Without a width, which a P frame in front of all I frames lacks, a frame has no number; with a width but no
        // height it is no frame. Kept.
        if (frame->width != 0 && frame->height == 0)
            return;
        if (frame->width != 0)
            frame->frameSeq = genVideoSeq();
    } else if (frame->frameType == KX_FRAME_TYPE_AUDIO) {
        frame->frameSeq = genAudioSeq();
    } else if (frame->frameType == KX_FRAME_TYPE_DATA) {
        frame->frameSeq = genDataSeq();
    }
    m_pFrameCallBack->OnFrame(frame, nullptr, m_pCallBackUserData);
}

} // namespace Marvane::FrameSift
