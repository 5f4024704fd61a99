// The store of CKXDecrypt: keys come in and are wiped.
#include <algorithm>
#include <cstring>

#include "Tools/KXDecrypt.h"
#include "Tools/KXDecryptBytes.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/Tools/KXDecryptKeys";

enum VEK_INFO : uint32_t
{
    VEK_INFO_VEK = 1,
    VEK_INFO_PBKDF2 = 2
};

// Bits of m_GMArgsEnable.
enum GM_ARG : unsigned int
{
    GM_ARG_VEK = 1,
    GM_ARG_VKEKVERSION = 2,
    GM_ARG_IV = 4,
    GM_ARG_VKEKENCRYPTTYPE = 8
};
static_assert((GM_ARG_VEK | GM_ARG_VKEKVERSION | GM_ARG_IV | GM_ARG_VKEKENCRYPTTYPE) == gsk_allGMArgs);

int32_t NextSlot(int32_t nSlot)
{
    return (nSlot + 1) % gsk_keySlots;
}

// As much as there is room for; nothing for null or a length below 1.
template <size_t N>
void CopyUpTo(std::array<uint8_t, N>& to, const void* pFrom, int nLen)
{
    if (pFrom != nullptr && nLen > 0)
        std::memcpy(to.data(), pFrom, std::min(N, static_cast<size_t>(nLen)));
}

// False if data is null or longer than nMost.
template <size_t N>
bool ReplaceWhole(std::array<uint8_t, N>& to, const uint8_t* data, uint32_t len, uint32_t nMost)
{
    if (data == nullptr || len > nMost)
        return false;
    to = {};
    std::memcpy(to.data(), data, len);
    return true;
}

// The 32 bits as the caller's machine has them.
bool ReplaceNumber(int32_t& nTo, const uint8_t* data, uint32_t len)
{
    if (data == nullptr || len != sizeof nTo)
        return false;
    std::memcpy(&nTo, data, sizeof nTo);
    return true;
}

} // namespace

CKXDecrypt::~CKXDecrypt()
{
    Wipe(m_VKCache);
    Wipe(m_eVEK_decArgs);
    Wipe(m_szUserSetKey);
    Wipe(m_szUserVKekKDF);
    Wipe(m_PBKDF2);
    Wipe(m_KX_GM_decArgs);
    Wipe(m_szAudioAes128Key);
    Wipe(m_szVideoAes128Key);
}

bool CKXDecrypt::SetKey(const KX_DECRYPT_PARAM* pParam)
{
    if (pParam == nullptr || pParam->nKeyLen < 1 || pParam->pKey == nullptr)
        return false;
    const auto nSlot = static_cast<size_t>(m_nVKIndex);
    m_VKCache[nSlot] = {};
    CopyUpTo(m_VKCache[nSlot].vk.value, pParam->pKey, pParam->nKeyLen);
    CopyUpTo(m_VKCache[nSlot].vkversion.value, pParam->pKeyId, pParam->nKeyIdLen);
    m_VKCRC16[nSlot].isValid = 0;
    m_nVKIndex = NextSlot(m_nVKIndex);

    m_szUserSetKey = m_VKCache[nSlot].vk.value;
    m_nUserSetKeyLen = static_cast<uint8_t>(std::min(static_cast<size_t>(pParam->nKeyLen), m_szUserSetKey.size()));
    m_bHasKey = true;
    return true;
}

bool CKXDecrypt::SetVEKInfo(uint32_t dataType, const void* data, uint32_t)
{
    switch (dataType) {
    case VEK_INFO_VEK:
        return data != nullptr && AddVEK(*static_cast<const DECRYPT_PARAM*>(data));
    case VEK_INFO_PBKDF2:
        if (data != nullptr)
            m_PBKDF2 = *static_cast<const PBKDF2_PARAM*>(data);
        return true;
    default:
        KX_WRITE_LOG(KX_LOG_LevelInfo, sc_sourcePath, "unknown dataType.\n");
        return true; // no error: a client may send what a later version knows
    }
}

bool CKXDecrypt::AddVEK(const DECRYPT_PARAM& param)
{
    if (param.pVek == nullptr || param.nVekLen < 1 || IsAllZero(param.VekId) || IsAllZero(param.VkekIV))
        return false;
    const auto nSlot = static_cast<size_t>(m_nVEKIndex);
    eVEK_decArgs& args = m_eVEK_decArgs[nSlot];
    CopyUpTo(args.eVEK.value, param.pVek, param.nVekLen);
    std::copy(param.VekId.begin(), param.VekId.end(), args.vkversion.value.begin());
    args.iv.value = param.VkekIV;
    CopyUpTo(args.vkekversion.value, param.pVkekId, param.nVkekIdLen);
    args.vkekEncryptType = static_cast<int32_t>(param.nDecryptType);
    m_VKCRC16[nSlot].isValid = 0;
    m_nVEKIndex = NextSlot(m_nVEKIndex);
    m_nUserType = param.nUserType;
    m_bVKEKDecrypt = true;
    return true;
}

bool CKXDecrypt::SetKey(GMParamType type, const uint8_t* data, uint32_t len)
{
    constexpr uint32_t nMostVEK = 16;
    constexpr uint32_t nMostVersion = 32;
    bool bSet = false;
    unsigned int nArg = 0;
    switch (type) {
    case GMVEK:
        bSet = ReplaceWhole(m_KX_GM_decArgs.eVEK.value, data, len, nMostVEK);
        nArg = GM_ARG_VEK;
        break;
    case GMVKEKVERSION:
        bSet = ReplaceWhole(m_KX_GM_decArgs.vkekversion.value, data, len, nMostVersion);
        nArg = GM_ARG_VKEKVERSION;
        break;
    case GMIV:
        bSet = ReplaceWhole(m_KX_GM_decArgs.iv.value, data, len, sizeof(DEC_IV));
        nArg = GM_ARG_IV;
        break;
    case GMVKEKENCRYPTTYPE:
        bSet = ReplaceNumber(m_KX_GM_decArgs.vkekEncryptType, data, len);
        nArg = GM_ARG_VKEKENCRYPTTYPE;
        break;
    case GMVKEK:
    case GMVIDEOENCRYPTTYPE:
    default:
        break;
    }
    if (bSet)
        m_GMArgsEnable |= nArg;
    return bSet;
}

} // namespace Marvane::FrameSift
