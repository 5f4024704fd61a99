#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

#include <algorithm>
#include <cstring>

#include "Memory/WindowRead.h"
#include "StreamAnalzyer/ZOSTD/ExtHead.h"
#include "Tools/BufferRead.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_idLen = 4;
constexpr int sc_blockHeadLen = 8;
// Twice a head. A shorter frame waits for more bytes even if it is whole; deliberate.
constexpr int sc_minBytesAtHead = 48;
// Not the detector's limit: the two differ on purpose.
constexpr uint32_t sc_maxFrameLen = 0x13FFFFF;

struct FAMILY_LABEL
{
    int32_t nStreamType;
    ZOAV_FLAG eFlag;
};

FAMILY_LABEL LabelOf(uint32_t dwFlag)
{
    switch (__builtin_bswap32(dwFlag)) {
    case FourCC("MYAV"):
        return {KX_STREAM_TYPE_STD_MY, FLAG_MYAV};
    case FourCC("LXAV"):
        return {KX_STREAM_TYPE_STD_LX, FLAG_LXAV};
    case FourCC("WMAV"):
        return {KX_STREAM_TYPE_STD_WM, FLAG_WMAV};
    default:
        return {KX_STREAM_TYPE_ZOSTD, FLAG_ZOAV};
    }
}

void TakeTime(const STD_FRAME_HEAD& head, FrameInfo& frame)
{
    frame.timeStamp = head.nTimeStamp;
    frame.frameTime = CKXConvert::DateTimeToKXTime(head.dateTime);
}

// A head that is not believed. Its length least of all: the scan goes on right behind the magic.
void BreakOut(const STD_FRAME_HEAD& head, FrameInfo& frame)
{
    TakeTime(head, frame);
    frame.frameLen = sc_idLen;
    frame.errorFlags = KX_ERROR_FLAGS_LENGTH;
}

} // namespace

bool CZOAVStream::BuildFrame(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo& ext)
{
    m_nNeedReadDataLen = 0;
    const auto nScanID = static_cast<uint32_t>(m_nScanID);
    if (nScanID == gsk_zoiiMagic)
        return StepOverBlock(*logicData, frameStartPos, frame);
    if (IfZavTailerBigEndian(nScanID)) {
        // A tail without its head: the scan was started inside a frame.
        frame.errorFlags = KX_ERROR_FLAGS_LOST_HEADER;
        frame.frameLen = sc_idLen;
        return true;
    }
    const int64_t nRemain = int64_t{logicData->Size()} - frameStartPos;
    if (!IfZavHeaderBigEndian(nScanID) || nRemain < sc_minBytesAtHead)
        return false;
    const auto head = ReadRecordAt<STD_FRAME_HEAD>(*logicData, frameStartPos);
    if (!head.has_value())
        return false;
    if (IsEndTimeMode()) {
        ParseStdFrameHead(*head, frame);
        TakeTime(*head, frame);
        return true;
    }
    if (!IsHeadBelievable(*head, frame, ext)) {
        BreakOut(*head, frame);
        return true;
    }
    if (head->dwFrameLen > nRemain) {
        m_nNeedReadDataLen = static_cast<int32_t>(head->dwFrameLen - nRemain + sc_minBytesAtHead);
        return false;
    }
    return TakeWholeFrame(*logicData, frameStartPos, *head, frame, ext);
}

// Its length is judged against the whole window, not against what remains behind it; a longer block waits. One that is
// longer than any frame is not waited for, as it might never come: its ID is stepped over, as that of a block of length
// 0, which would be found again for ever.
bool CZOAVStream::StepOverBlock(CLogicData& logicData, int64_t nPos, FrameInfo& frame)
{
    const uint8_t* pBlock = GetDataAt(logicData, nPos, sc_blockHeadLen);
    if (pBlock == nullptr)
        return false;
    const uint32_t nBlockLen = LoadUint32Lsb(pBlock + sc_idLen);
    const bool bInWindow = nBlockLen <= logicData.Size();
    if (!bInWindow && nBlockLen <= sc_maxFrameLen)
        return false;
    frame.frameLen = bInWindow && nBlockLen != 0 ? static_cast<int32_t>(nBlockLen) : sc_idLen;
    frame.errorFlags = KX_ERROR_FLAGS_LOST_HEADER;
    return true;
}

bool CZOAVStream::IsHeadBelievable(const STD_FRAME_HEAD& head, FrameInfo& frame, ExtZOAVIFrameInfo& ext) const
{
    if (!FrameHeadVerify(&head))
        return false;
    ParseStdFrameHead(head, frame);
    if (frame.frameType == KX_FRAME_TYPE_UNKNOWN)
        return false;
    if (frame.frameType == KX_FRAME_TYPE_VIDEO)
        ext.frameSubType = frame.frameSubType;
    // A frame shorter than its tail cannot end with one. From there up to the head's own length it can, if the head's
    // bytes are chosen for it: such a frame passes.
    return head.dwFrameLen >= gsk_stdFrameTailSize && head.dwFrameLen <= sc_maxFrameLen;
}

bool CZOAVStream::TakeWholeFrame(CLogicData& logicData, int64_t nPos, const STD_FRAME_HEAD& head, FrameInfo& frame,
                                 ExtZOAVIFrameInfo& ext)
{
    const auto nFrameLen = static_cast<int32_t>(head.dwFrameLen);
    // The bytes are in the window: what cannot be had here lacks memory, and the frame is tried again.
    const int64_t nTailPos = nPos + nFrameLen - gsk_stdFrameTailSize;
    const auto tail = ReadRecordAt<STD_FRAME_TAIL>(logicData, nTailPos);
    if (!tail.has_value())
        return false;
    if (!IsTailOf(*tail, head.dwFrameLen) ||
        GetDataAt(logicData, nPos + gsk_stdFrameHeadSize, head.nExtFrameLen) == nullptr) {
        BreakOut(head, frame);
        return true;
    }
    // One piece, from which all the frame's pointers are taken.
    uint8_t* pFrame = GetDataAt(logicData, nPos, nFrameLen);
    if (pFrame == nullptr)
        return false;
    frame.frameSeq = static_cast<int32_t>(head.dwSeq);
    ext.frameSeq = frame.frameSeq;
    TakeTime(head, frame);
    const size_t nHeadLen = std::min<size_t>(gsk_stdFrameHeadSize, head.dwFrameLen);
    ParseExtHead({pFrame + nHeadLen, head.dwFrameLen - nHeadLen}, head.nExtFrameLen, frame, ext);
    LabelStream(head, frame);
    frame.framePointer = pFrame;
    frame.frameLen = nFrameLen;
    frame.streamLen = nFrameLen - gsk_stdFrameHeadSize - gsk_stdFrameTailSize - head.nExtFrameLen;
    // A frame shorter than its own heads goes out with a negative payload length, and with no payload to point at.
    if (frame.streamLen >= 0)
        frame.streamPointer = pFrame + gsk_stdFrameHeadSize + head.nExtFrameLen;
    Decipher(frame);
    FrameVideoInfoVerify(frame, ext);
    FillPFrameByKeyFrameInfo(frame, ext); // without memory the key frame is not kept; the frame itself is sound
    StripPayloadPrefix(frame);
    return true;
}

void CZOAVStream::LabelStream(const STD_FRAME_HEAD& head, FrameInfo& frame)
{
    const FAMILY_LABEL label = LabelOf(head.dwFlag);
    m_HeaderTailerFlag = label.eFlag;
    frame.streamType = m_extFrameHead.pHead94 != nullptr ? int32_t{KX_STREAM_TYPE_SVC} : label.nStreamType;
}

void CZOAVStream::ParseExtHead(std::span<const uint8_t> bytes, int nExtFrameLen, FrameInfo& frame,
                               ExtZOAVIFrameInfo& ext)
{
    m_extFrameHead = {};
    m_B5ExtStartOffset = 0;
    m_B6ExtStartOffset = 0;
    m_nCommonEncryptHeadoffset = 0;
    EXT_HEAD_TARGET target{frame,
                           ext,
                           m_extFrameHead,
                           m_linkBuffer,
                           m_nPRate,
                           m_bGMSet,
                           m_B5ExtStartOffset,
                           m_B6ExtStartOffset,
                           m_nCommonEncryptHeadoffset};
    WalkExtHeads(bytes, nExtFrameLen, target);
}

int CZOAVStream::ParseData(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo)
{
    if (indexInfo == nullptr || frameInfo == nullptr)
        return KX_ERROR_PARAMETER;
    const int32_t nFrameLen = frameInfo->frameLen;
    uint8_t* pFrame = frameInfo->framePointer;
    if (pFrame == nullptr || nFrameLen < gsk_stdFrameHeadSize)
        return KX_ERROR_PARAMETER;
    STD_FRAME_HEAD head;
    std::memcpy(&head, pFrame, sizeof head);
    // The other magics of the family are not taken here.
    if (__builtin_bswap32(head.dwFlag) != FourCC("ZOAV"))
        return KX_ERROR_PARAMETER;
    ParseStdFrameHead(head, *frameInfo);
    const int32_t nBehindHead = nFrameLen - gsk_stdFrameHeadSize;
    if (nBehindHead < head.nExtFrameLen)
        return KX_ERROR_PARAMETER;
    ExtZOAVIFrameInfo ext{};
    ParseExtHead({pFrame + gsk_stdFrameHeadSize, static_cast<size_t>(nBehindHead)}, head.nExtFrameLen, *frameInfo, ext);
    // A short read yields what is there, a read beyond the frame ends before the tail.
    const int64_t nThere = nBehindHead - head.nExtFrameLen;
    const int64_t nTold = int64_t{head.dwFrameLen} - gsk_stdFrameHeadSize - gsk_stdFrameTailSize - head.nExtFrameLen;
    const bool bWhole = head.dwFrameLen == static_cast<uint32_t>(nFrameLen);
    const int64_t nStreamLen = bWhole ? nThere - gsk_stdFrameTailSize : std::min(nThere, nTold);
    frameInfo->streamLen = static_cast<int32_t>(nStreamLen);
    frameInfo->streamPointer = nStreamLen >= 0 ? pFrame + gsk_stdFrameHeadSize + head.nExtFrameLen : nullptr;
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
