#include "Check/KeyTrial.h"

#include <algorithm>
#include <array>
#include <new>

#include "Memory/LogicData.h"
#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_magicSize = 4;
constexpr size_t sc_leastWindow = 48; // the parser asks for twice a head before it looks at one
constexpr int32_t sc_cipherBlock = 16;

bool BeginsWith(std::span<const uint8_t> bytes, std::initializer_list<uint8_t> start)
{
    return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

void LookAtPicture(const FrameInfo& frame, KEY_RESULT& result)
{
    const bool bKey = frame.frameType == KX_FRAME_TYPE_VIDEO && IsIFrameSubType(frame.frameSubType);
    if (!bKey || frame.encryptOffset != 0 || frame.nEncryptLen < sc_cipherBlock || frame.streamLen < sc_cipherBlock)
        return;
    const std::span<const uint8_t> payload(frame.streamPointer, static_cast<size_t>(frame.streamLen));
    switch (frame.frameEncodeType) {
    case KX_ENCODE_VIDEO_ZO_H264:
    case KX_ENCODE_VIDEO_HI_H264:
    case KX_ENCODE_VIDEO_STD_H264:
    case KX_ENCODE_VIDEO_ZO_H265:
        result.bTellsOfKey = true;
        result.bLikePicture = BeginsWith(payload, {0, 0, 1}) || BeginsWith(payload, {0, 0, 0, 1});
        break;
    case KX_ENCODE_VIDEO_JPEG:
        result.bTellsOfKey = true;
        result.bLikePicture = BeginsWith(payload, {0xFF, 0xD8});
        break;
    default:
        break;
    }
}

} // namespace

CKeyTrial::CKeyTrial(std::span<const uint8_t> key) : m_bHasKey(!key.empty())
{
    m_parser.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_FRAME})); // numbers are not judged
    if (m_bHasKey)
        m_parser.SetExtInfo(KX_ENCRYPT_AES, key.data(), static_cast<int>(key.size()));
}

KEY_RESULT CKeyTrial::Try(const FrameInfo& frame)
{
    KEY_RESULT result;
    if (!m_bHasKey || frame.nEncryptType != KX_ENCRYPT_AES || frame.framePointer == nullptr)
        return result;
    const auto nLength = static_cast<size_t>(frame.frameLen);
    m_copy.assign(frame.framePointer, frame.framePointer + nLength);
    m_copy.resize(std::max(nLength, sc_leastWindow));
    CLogicData window;
    if (window.JoinData(m_copy.data(), static_cast<int>(m_copy.size())) != KX_SUCCESS)
        throw std::bad_alloc();
    FrameInfo tried = {};
    ExtZOAVIFrameInfo ext = {};
    m_parser.DoInit(); // drops what it has copied of the frame before
    const uint32_t nMagic = __builtin_bswap32(LoadUint32Lsb(m_copy.data()));
    if (nLength < sc_magicSize || !m_parser.CheckFrameID(static_cast<int>(nMagic)) ||
        !m_parser.BuildFrame(&window, 0, tried, ext))
        return result;
    if (tried.errorFlags == KX_ERROR_FLAGS_NOERROR)
        m_parser.FrameVerify(&window, 0, tried, ext);
    result.bDeciphered = tried.bHasDecrypt != 0;
    result.nErrorFlags = tried.errorFlags;
    if (result.bDeciphered && tried.errorFlags == KX_ERROR_FLAGS_NOERROR)
        LookAtPicture(tried, result);
    return result;
}

} // namespace Marvane::FrameSift
