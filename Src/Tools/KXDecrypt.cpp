#include "Tools/KXDecrypt.h"

#include <algorithm>
#include <optional>
#include <span>

#include "Tools/KXDecryptBytes.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/Tools/KXDecrypt";

enum USER_TYPE : int32_t
{
    USER_TYPE_CACHED_KEY = 0,
    USER_TYPE_USER_KEY = 1
};

constexpr uint8_t sc_deriveKey = 1; // PBKDF2_PARAM::KDFType

// The first entry of a ring whose version begins with these bytes. Slots that were never filled have zeros there and
// take part.
template <class Ring, class Version>
std::optional<size_t> FindSlot(const Ring& ring, Version pVersion, std::span<const uint8_t> begin)
{
    const auto found = std::find_if(ring.begin(), ring.end(), [&](const auto& entry) {
        return std::equal(begin.begin(), begin.end(), (entry.*pVersion).value.begin());
    });
    if (found == ring.end())
        return std::nullopt;
    return static_cast<size_t>(found - ring.begin());
}

// By the identifier in the frame. A frame without one means the only key of a client that sets one key: slot 0, even if
// it is empty.
template <class Ring, class Version>
std::optional<size_t> FindSlotOfFrame(const Ring& ring, Version pVersion, const FrameInfo& frameInfo)
{
    const std::span<const uint8_t> id(frameInfo.nB5HeadEncryptVKid, sizeof frameInfo.nB5HeadEncryptVKid);
    return IsAllZero(id) ? 0 : FindSlot(ring, pVersion, id);
}

// Ciphers with keys of 256 bits; the others have 128.
bool IsLongKey(int32_t nEncryptType)
{
    return nEncryptType == KX_ENCRYPT_AES256 || nEncryptType == KX_ENCRYPT_AES256_GDPR2 ||
           nEncryptType == KX_ENCRYPT_AES256_CBC;
}

} // namespace

bool CKXDecrypt::Decrypt(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                         uint32_t& dstLen)
{
    if (m_GMArgsEnable == gsk_allGMArgs)
        return GMDecryptByVKEK(frameInfo, src, srcLen, dst, dstLen);
    if (!m_bVKEKDecrypt)
        return DecryptByVK(frameInfo, src, srcLen, dst, dstLen);
    const auto nSlot = FindSlotOfFrame(m_eVEK_decArgs, &eVEK_decArgs::vkversion, frameInfo);
    if (!nSlot.has_value()) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "find VEK failed.\n");
        return false;
    }
    DEC_VK vek;
    const bool bDone = UnwrapVEK(frameInfo, m_eVEK_decArgs[*nSlot], vek) && CheckCRC(frameInfo, *nSlot, vek) &&
                       InnerDecrypt(static_cast<uint32_t>(frameInfo.nEncryptType), vek.value.data(),
                                    frameInfo.nB5HeadIV, src, srcLen, dst, dstLen);
    Wipe(vek);
    return bDone;
}

const uint8_t* CKXDecrypt::FindVKEK(const eVEK_decArgs& args) const
{
    if (m_nUserType == USER_TYPE_CACHED_KEY) {
        const auto nSlot = FindSlot(m_VKCache, &VK_CACHE::vkversion, args.vkekversion.value);
        if (nSlot.has_value())
            return m_VKCache[*nSlot].vk.value.data();
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "find VKEK failed.\n");
        return nullptr;
    }
    if (m_nUserType != USER_TYPE_USER_KEY) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "unknown userType.\n");
        return nullptr;
    }
    if (m_PBKDF2.KDFType != sc_deriveKey)
        return m_szUserSetKey.data();
    if (m_bHasKDFDone)
        return m_szUserVKekKDF.data();
    KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "allockey userKey failed.\n");
    return nullptr;
}

bool CKXDecrypt::UnwrapVEK(const FrameInfo& frameInfo, const eVEK_decArgs& args, DEC_VK& vek)
{
    constexpr uint32_t nShortKey = 16;
    const uint8_t* pVKEK = FindVKEK(args);
    if (pVKEK == nullptr)
        return false;
    const uint32_t nWrappedLen = IsLongKey(frameInfo.nEncryptType) ? sizeof(DEC_eVEK) : nShortKey;
    uint32_t nVEKLen = sizeof vek;
    if (InnerDecrypt(static_cast<uint32_t>(args.vkekEncryptType), pVKEK, args.iv.value.data(), args.eVEK.value.data(),
                     nWrappedLen, vek.value.data(), nVEKLen))
        return true;
    KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "InnerDecrypt failed.\n");
    return false;
}

// A wrong key is found before it makes noise of a picture.
bool CKXDecrypt::CheckCRC(const FrameInfo& frameInfo, size_t nSlot, const DEC_VK& key)
{
    VK_CRC16& check = m_VKCRC16[nSlot];
    if (check.isValid == 0) {
        check.crc = getCRC(static_cast<uint32_t>(frameInfo.nEncryptType), key.value.data(), frameInfo.nB5HeadIV);
        check.isValid = 1;
    }
    if (frameInfo.nB5HeadEncryptCrc16 == check.crc)
        return true;
    KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "CRC Verify failed.\n");
    return false;
}

bool CKXDecrypt::DecryptByVK(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                             uint32_t& dstLen)
{
    const bool bShortKey = m_nUserSetKeyLen > 0 && m_nUserSetKeyLen < sizeof(DEC_VK);
    if (frameInfo.nEncryptType == KX_ENCRYPT_AES256 && bShortKey)
        return DecryptByUserSetShortKey(frameInfo, src, srcLen, dst, dstLen);
    const auto nSlot = FindSlotOfFrame(m_VKCache, &VK_CACHE::vkversion, frameInfo);
    if (!nSlot.has_value()) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "find VK failed.\n");
        return false;
    }
    const DEC_VK& vk = m_VKCache[*nSlot].vk;
    return CheckCRC(frameInfo, *nSlot, vk) &&
           InnerDecrypt(static_cast<uint32_t>(frameInfo.nEncryptType), vk.value.data(), frameInfo.nB5HeadIV, src,
                        srcLen, dst, dstLen);
}

// The key would have to be derived, by allockey.
bool CKXDecrypt::DecryptByUserSetShortKey(const FrameInfo&, const uint8_t*, uint32_t, uint8_t*, uint32_t&)
{
    KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "allockey userKey failed.\n");
    return false;
}

// Its parts come by SetKey, not from the frame's head 0xB6.
bool CKXDecrypt::GMDecryptByVKEK(const FrameInfo&, const uint8_t*, uint32_t, uint8_t*, uint32_t&)
{
    constexpr size_t nVersionSet = 32;
    constexpr size_t nVersionOnWire = sizeof FrameInfo::nB6HeadVkekVersion; // 20
    const std::span<const uint8_t> version(m_KX_GM_decArgs.vkekversion.value);
    if (!IsAllZero(version.first(nVersionSet)) &&
        !FindSlot(m_VKCache, &VK_CACHE::vkversion, version.first(nVersionOnWire)).has_value()) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "find VKEK failed.\n");
        return false;
    }
    // The key is there, but no cipher that takes it.
    KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "InnerDecrypt failed.\n");
    return false;
}

bool CKXDecrypt::IsAes128Key(const FrameInfo& frameInfo) const
{
    switch (frameInfo.frameType) {
    case KX_FRAME_TYPE_VIDEO:
        return m_nVideoAes128KeyLen != 0 && (frameInfo.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME ||
                                             frameInfo.frameSubType == KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME);
    case KX_FRAME_TYPE_AUDIO:
        return m_nAudioAes128KeyLen != 0;
    default:
        return false;
    }
}

bool CKXDecrypt::Decrypt128(const FrameInfo& frameInfo, const uint8_t*, uint32_t, uint8_t*, uint32_t&)
{
    switch (frameInfo.frameType) {
    case KX_FRAME_TYPE_VIDEO:
        return m_nVideoAes128KeyLen != 0;
    case KX_FRAME_TYPE_AUDIO:
        return m_nAudioAes128KeyLen != 0;
    default:
        return false;
    }
}

} // namespace Marvane::FrameSift
