#include "FileAnalzyer/SimulateByStream/ZOAVFile.h"

#include <algorithm>

#include "Memory/TryAlloc.h"
#include "StreamAnalzyer/ZOSTD/ZOAVFrame.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/KXConvert.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/FileAnalzyer/SimulateByStream/ZOAVFile";
constexpr int32_t sc_extLenPos = 22; // of a frame head, where the length of all extension heads stands

bool IsAes256(int32_t nEncryptType)
{
    return nEncryptType == KX_ENCRYPT_AES256 || nEncryptType == KX_ENCRYPT_AES256_GDPR2;
}

// Bytes from the payload's first one to the frame's last one.
int64_t PayloadRoom(const FrameInfo& frame)
{
    return frame.framePointer + frame.frameLen - frame.streamPointer;
}

// The frame now says of itself that it is clear.
void MarkClear(FrameInfo& frame, int64_t nMarkPos, uint8_t nMark)
{
    if (nMarkPos >= 0 && nMarkPos < frame.frameLen)
        frame.framePointer[nMarkPos] = nMark;
    frame.nEncryptType = KX_ENCRYPT_UNKOWN;
    frame.nEncryptLen = 0;
}

// The head that some data payloads have in front of the data, by subtype.
int64_t SubHeadLen(const FrameInfo& frame)
{
    const uint8_t* pPayload = frame.streamPointer;
    const int64_t nRoom = PayloadRoom(frame);
    switch (frame.frameSubType) {
    case KX_FRAME_SUB_TYPE_POPULATION_PIC_OVERLAY:
        return nRoom >= 1 ? pPayload[0] : 0;
    case KX_FRAME_SUB_TYPE_DATA_OSD:
        return nRoom >= 2 ? pPayload[0] | pPayload[1] << 8 : 0;
    case KX_FRAME_SUB_TYPE_WATERMARK_TEXT:
    case KX_FRAME_SUB_TYPE_WATERMARK_JPEG:
    case KX_FRAME_SUB_TYPE_WATERMARK_BMP:
        return 12; // the one kind whose head does not tell its length
    default:
        return 0;
    }
}

} // namespace

CZOAVFile::CZOAVFile() : CFileParseBase(TryMake<CZOAVStream>()) {}

std::unique_ptr<IStreamAnalzyer> CZOAVFile::CreateStreamObj()
{
    return TryMake<CZOAVStream>();
}

int CZOAVFile::SetExtInfo(uint32_t type, unsigned char* key, int keylen)
{
    return m_pFrameSift != nullptr ? m_pFrameSift->SetExtInfo(type, key, keylen) : int{KX_ERROR_SYSTEM_OUT_OF_MEMORY};
}

void CZOAVFile::CalcDuration(KX_FILE_INFO& stFileInfo)
{
    stFileInfo.duration = static_cast<uint32_t>((stFileInfo.fileEndTime - stFileInfo.fileStartTime) / 1000);
}

int64_t CZOAVFile::RecalcTimeStamp(FrameInfo* frameInfo)
{
    return int64_t{CKXConvert::KXTimeToTimeStamp(frameInfo->frameTime)} * 1000;
}

int CZOAVFile::GetFrameByIndex(KX_INDEX_INFO* indexInfo, FrameInfo* frameInfo, ExtZOAVIFrameInfo* frameInfoEx)
{
    if (const int nFound = FindInIndex(indexInfo, frameInfo, frameInfoEx); nFound != KX_SUCCESS)
        return nFound;
    const int32_t nFrameLen = frameInfo->frameLen;
    std::unique_ptr<uint8_t[]> pBytes;
    int64_t nRead = 0;
    if (const int nResult = TakeFrameBytes(*indexInfo, nFrameLen, pBytes, nRead); nResult != KX_SUCCESS)
        return nResult;
    if (nRead < nFrameLen) {
        // "% i" is a conversion with a blank for a sign: the first length stands there. The text is kept as log readers
        // know it.
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "read size % is small than frame len %d", static_cast<int>(nRead),
                     nFrameLen);
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    uint8_t* pFrame = m_fixBuffer.InsertBuffer(pBytes.get(), static_cast<uint32_t>(nFrameLen));
    if (pFrame == nullptr)
        return KX_SUCCESS; // what is known of the frame is told all the same, with null pointers
    PointInto(pFrame, *indexInfo, *frameInfo);
    DecipherFrame(*frameInfo, pFrame);
    return KX_SUCCESS;
}

bool CZOAVFile::Decipher(const FrameInfo& frameInfo)
{
    // The record may claim more payload than the frame holds.
    if (frameInfo.streamLen > PayloadRoom(frameInfo) || m_pFrameSift == nullptr)
        return false;
    return static_cast<CZOAVStream&>(*m_pFrameSift).ParseEncryptData(frameInfo);
}

// Each step looks at the kind anew. A frame that cannot be deciphered goes out as it stands, and says so.
void CZOAVFile::DecipherFrame(FrameInfo& frameInfo, uint8_t* pFrame)
{
    if (frameInfo.nEncryptType == KX_ENCRYPT_AES && frameInfo.nEncryptLen != 0 && Decipher(frameInfo))
        MarkClear(frameInfo, int64_t{frameInfo.nCommonEncryptHeadoffset} + 1, 0xFF);
    if (IsAes256(frameInfo.nEncryptType) && frameInfo.nEncryptLen != 0)
        DecipherAes256(frameInfo, pFrame);
    if (frameInfo.nEncryptType == KX_ENCRYPT_ANHENG && frameInfo.nEncryptLen != 0 && Decipher(frameInfo))
        MarkClear(frameInfo, int64_t{frameInfo.nB5Headoffset} + 2, 0);
}

// A data frame is enciphered from behind its extension heads on, sub-head included.
void CZOAVFile::DecipherAes256(FrameInfo& frameInfo, uint8_t* pFrame)
{
    const bool bData = frameInfo.frameType == KX_FRAME_TYPE_DATA;
    if (bData && frameInfo.frameLen > sc_extLenPos) {
        const int32_t nHeadsLen = gsk_stdFrameHeadSize + pFrame[sc_extLenPos];
        frameInfo.streamPointer = pFrame + std::min(nHeadsLen, int32_t{frameInfo.frameLen});
    }
    if (!Decipher(frameInfo))
        return;
    MarkClear(frameInfo, int64_t{frameInfo.nB5Headoffset} + 2, 0);
    if (bData)
        frameInfo.streamPointer += std::min(SubHeadLen(frameInfo), PayloadRoom(frameInfo));
}

} // namespace Marvane::FrameSift
