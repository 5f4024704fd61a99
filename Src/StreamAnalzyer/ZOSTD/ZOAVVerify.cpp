// The sums, tails and sequence numbers that prove a ZOAV frame.
#include <array>
#include <cstring>

#include "Memory/WindowRead.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/BufferRead.h"
#include "Tools/KXVerify.h"

namespace Marvane::FrameSift {

namespace {

// chType of head 0x88. Any other kind has the value 0.
uint32_t SumOf(uint8_t chType, const uint8_t* pData, int32_t nLen)
{
    switch (chType) {
    case 0:
        return CKXVerify::GetSum32(pData, nLen);
    case 1:
        return CKXVerify::GetXor32(pData, nLen);
    case 2:
        return CKXVerify::GetCRC32(pData, nLen);
    default:
        return 0;
    }
}

enum class SUM_OVER : uint8_t
{
    Wire,    // the bytes as they stand in the stream
    Payload, // the deciphered payload
    Nothing, // neither can be had: no check
};

// The sum was made before the bytes were enciphered with AES-256, and after with AES: what AES was deciphered from is
// gone.
SUM_OVER WhatTheSumCovers(const FrameInfo& frame)
{
    switch (frame.nEncryptType) {
    case KX_ENCRYPT_UNKOWN:
        return SUM_OVER::Wire;
    case KX_ENCRYPT_AES:
        return frame.bHasDecrypt != 0 ? SUM_OVER::Nothing : SUM_OVER::Wire;
    case KX_ENCRYPT_AES256:
        return frame.bHasDecrypt == 1 ? SUM_OVER::Payload : SUM_OVER::Nothing;
    default:
        return SUM_OVER::Nothing;
    }
}

} // namespace

bool CZOAVStream::FrameHeadVerify(const STD_FRAME_HEAD* lpStdFrameHead)
{
    std::array<uint8_t, sizeof(STD_FRAME_HEAD)> bytes;
    std::memcpy(bytes.data(), lpStdFrameHead, sizeof(STD_FRAME_HEAD));
    return CKXVerify::GetSum8(bytes.data(), sizeof(STD_FRAME_HEAD) - 1) == bytes.back();
}

bool CZOAVStream::FrameLengthVerify(CLogicData& logicData, int64_t frameStartPos, int32_t frameLen)
{
    const auto tail = ReadRecordAt<STD_FRAME_TAIL>(logicData, frameStartPos + frameLen - gsk_stdFrameTailSize);
    return tail.has_value() && IfZavTailerSmallEndian(tail->dwFlag);
}

bool CZOAVStream::FrameTailVerify(CLogicData& logicData, int64_t tailStartPos, uint32_t frameLen)
{
    const auto tail = ReadRecordAt<STD_FRAME_TAIL>(logicData, tailStartPos);
    return tail.has_value() && IsTailOf(*tail, frameLen);
}

bool CZOAVStream::FrameDataVerify(CLogicData& logicData, int64_t dataStartPos, int32_t datalen,
                                  const FrameInfo& frameInfo)
{
    if (datalen < 1)
        return false;
    const uint8_t* pData = nullptr;
    switch (WhatTheSumCovers(frameInfo)) {
    case SUM_OVER::Wire:
        pData = GetDataAt(logicData, dataStartPos, datalen);
        break;
    case SUM_OVER::Payload:
        pData = frameInfo.streamLen >= datalen ? frameInfo.streamPointer : nullptr;
        break;
    case SUM_OVER::Nothing:
        return true;
    }
    const EXT_FRAME_HEAD_88 head88 = m_extFrameHead.head88;
    return pData != nullptr && SumOf(head88.chType, pData, datalen) == LoadUint32Lsb(head88.vfVal);
}

// A step backwards counts as a loss too; a repeat does not. All ones look like "none so far": the frame behind that
// number is taken as if it were the first.
bool CZOAVStream::LostFrameVerify(const FrameInfo& frameInfo)
{
    if (UseOfCallBack() != CALLBACK_USE_COMMON || frameInfo.frameType != KX_FRAME_TYPE_VIDEO ||
        frameInfo.totalChannels != 0)
        return true;
    const int32_t nPrevSeq = m_nPrevVideoFrameSeq;
    m_nPrevVideoFrameSeq = frameInfo.frameSeq;
    const uint32_t nStep = static_cast<uint32_t>(frameInfo.frameSeq) - static_cast<uint32_t>(nPrevSeq);
    return nPrevSeq == -1 || nStep <= 1;
}

// A record that stands for the lost frames, in front of the one behind them. It has no bytes.
void CZOAVStream::DeliverLostFrame(const FrameInfo& frame)
{
    FrameInfo lost{};
    lost.frameType = frame.frameType;
    lost.frameSeq = static_cast<int32_t>(static_cast<uint32_t>(frame.frameSeq) - 1);
    lost.timeStamp = frame.timeStamp;
    lost.frameTime = frame.frameTime;
    lost.errorFlags = KX_ERROR_FLAGS_LOSTFRAME;
    if (m_pFrameCallBack != nullptr)
        m_pFrameCallBack->OnFrame(&lost, nullptr, nullptr);
}

int32_t CZOAVStream::JudgeFrame(CLogicData& logicData, int64_t nPos, const STD_FRAME_HEAD& head, const FrameInfo& frame)
{
    const int32_t nFrameLen = frame.frameLen;
    if (!FrameLengthVerify(logicData, nPos, nFrameLen))
        return KX_ERROR_FLAGS_LENGTH;
    if (!FrameHeadVerify(&head))
        return KX_ERROR_FLAGS_HEAD_VERIFY;
    if (!FrameTailVerify(logicData, nPos + nFrameLen - gsk_stdFrameTailSize, static_cast<uint32_t>(nFrameLen)))
        return KX_ERROR_FLAGS_FRAME_HALF_BAKED;
    const int64_t nDataPos = nPos + gsk_stdFrameHeadSize + head.nExtFrameLen;
    const int32_t nDataLen = nFrameLen - gsk_stdFrameHeadSize - gsk_stdFrameTailSize - head.nExtFrameLen;
    if (m_extFrameHead.pHead88 != nullptr && !FrameDataVerify(logicData, nDataPos, nDataLen, frame))
        return KX_ERROR_FLAGS_DATA_VERIFY;
    return KX_ERROR_FLAGS_NOERROR;
}

void CZOAVStream::FrameVerify(CLogicData* logicData, int frameStartPos, FrameInfo& frame, ExtZOAVIFrameInfo&)
{
    if (!LostFrameVerify(frame))
        DeliverLostFrame(frame);
    const auto head = ReadRecordAt<STD_FRAME_HEAD>(*logicData, frameStartPos);
    if (!head.has_value())
        return;
    frame.errorFlags = JudgeFrame(*logicData, frameStartPos, *head, frame);
    if (frame.errorFlags == KX_ERROR_FLAGS_NOERROR && head->chSubType == gsk_waterMarkSubType)
        TakeWaterMark(frame);
}

} // namespace Marvane::FrameSift
