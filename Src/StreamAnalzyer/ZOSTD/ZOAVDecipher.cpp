// Keys, and the deciphering of a payload where it stands.
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

// Heads are counted from the first one; a record counts from the frame's first byte.
uint32_t PlaceInFrame(int nExtStartOffset)
{
    return static_cast<uint32_t>(nExtStartOffset + gsk_stdFrameHeadSize);
}

// The type byte of the head. With it the same bytes, read again from the caller's memory, count as clear, and are not
// deciphered twice.
void MarkDeciphered(FrameInfo& frame)
{
    constexpr uint8_t nNoType = 0xFF;
    const int64_t nTypePos = int64_t{frame.nCommonEncryptHeadoffset} + 1;
    frame.bHasDecrypt = 1;
    if (nTypePos < frame.frameLen)
        frame.framePointer[nTypePos] = nNoType;
}

} // namespace

int CZOAVStream::SetExtInfo(unsigned int type, const unsigned char* data, int len)
{
    if (type != KX_ENCRYPT_AES || len < 1 || !m_Aes.SetKey(data, static_cast<uint32_t>(len)))
        return KX_ERROR_PARAMETER;
    return KX_SUCCESS;
}

bool CZOAVStream::ParseEncryptData(const FrameInfo& frameInfo)
{
    constexpr int32_t nBlockLen = gsk_aesBlockSize;
    if (frameInfo.nEncryptLen < 0) { // a length that no memory could hold
        KX_WRITE_LOG(KX_LOG_LevelWarn, "Src/StreamAnalzyer/ZOSTD/ZOAVDecipher", "not enough memory!\n");
        return false;
    }
    if (frameInfo.nEncryptType != KX_ENCRYPT_AES || !m_Aes.HaveKey())
        return false;
    const int64_t nOffset = frameInfo.encryptOffset;
    const int32_t nBlocksLen = frameInfo.nEncryptLen / nBlockLen * nBlockLen;
    if (nBlocksLen == 0) // less than a block stays as it is
        return true;
    // What reaches out of the payload is no part of it.
    if (nOffset + nBlocksLen > frameInfo.streamLen)
        return false;
    uint8_t* pCipher = frameInfo.streamPointer + nOffset;
    auto nPlainLen = static_cast<uint32_t>(nBlocksLen);
    return m_Aes.Decrypt(pCipher, nPlainLen, pCipher, nPlainLen);
}

// Frames of heads 0xB5 and 0xB6 are not deciphered here: they go out with all that their heads say, for whoever holds
// the keys.
void CZOAVStream::Decipher(FrameInfo& frame)
{
    const int32_t nPartLen = frame.nEncryptLen; // of head 0x95
    if (m_extFrameHead.pHead89 != nullptr) {
        frame.nEncryptLen = frame.streamLen;
        DecipherPart(frame);
    }
    // With both heads the part is enciphered twice.
    if (m_extFrameHead.pHead95 != nullptr) {
        frame.nEncryptLen = nPartLen;
        DecipherPart(frame);
    }
    if (m_extFrameHead.pHeadB5 != nullptr)
        frame.nB5Headoffset = PlaceInFrame(m_B5ExtStartOffset);
    if (m_extFrameHead.pHeadB6 != nullptr)
        frame.nB6Headoffset = PlaceInFrame(m_B6ExtStartOffset);
}

// Without a key the frame goes on as it is, and nEncryptType tells so.
void CZOAVStream::DecipherPart(FrameInfo& frame)
{
    frame.nCommonEncryptHeadoffset = PlaceInFrame(m_nCommonEncryptHeadoffset);
    if (frame.nEncryptType != KX_ENCRYPT_AES || frame.nEncryptLen == 0 || !m_Aes.HaveKey())
        return;
    if (ParseEncryptData(frame))
        MarkDeciphered(frame);
    else
        frame.errorFlags = KX_ERROR_FLAGS_DECRYPTION_FAILURE;
}

} // namespace Marvane::FrameSift
