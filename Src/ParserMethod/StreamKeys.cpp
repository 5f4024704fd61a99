// The keys of a stream: they wait here until the next cycle starts, and never take effect within one.
#include <algorithm>
#include <cstring>

#include "IAnalyzer/ParamType.h"
#include "Memory/TryAlloc.h"
#include "ParserMethod/DecryptParam.h"
#include "ParserMethod/StreamAnalyzer.h"

namespace Marvane::FrameSift {

namespace {

// One AES-256 key as it waits among others.
struct AES256_KEY_RECORD
{
    uint8_t nOne;      //  0  always 1
    uint8_t keyId[16]; //  1  zero-filled
    uint8_t key[32];   // 17  zero-filled
};
static_assert(sizeof(AES256_KEY_RECORD) == 49);

// KX_PARAM_DECRYPT_AES256_GDPR2 and behind it, by their place.
constexpr std::array<uint32_t, 5> sc_ringKinds = {KX_ENCRYPT_AES256_GDPR2, KX_ENCRYPT_SM1_ECB, KX_ENCRYPT_SM1_OFB,
                                                  KX_ENCRYPT_SM4_ECB, KX_ENCRYPT_SM4_OFB};

bool HasKey(const KX_DECRYPT_PARAM& param)
{
    return param.pKey != nullptr && param.nKeyLen >= 1;
}

template <size_t N>
void CopyFront(uint8_t (&to)[N], const char* pFrom, int32_t nLen)
{
    std::memcpy(to, pFrom, std::min(N, static_cast<size_t>(nLen)));
}

} // namespace

int CStreamAnalyzer::SetExtInfo(unsigned int type, const unsigned char* key, int keylen)
{
    CKXAutoMutexLock lock(m_csMutex);
    if (key == nullptr || keylen < 1)
        return KX_ERROR_PARAMETER;
    // Before the kind is judged: an unknown kind takes the delivery from a key that is already waiting. Kept.
    m_nEncryptType = type;
    if (type == KX_ENCRYPT_AES) {
        if (m_DecryptKey.Init(static_cast<uint32_t>(keylen)) != KX_SUCCESS)
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
        m_DecryptKey.SetData(key, static_cast<uint32_t>(keylen));
    } else if (type == KX_ENCRYPT_AES256) {
        m_DecryptData.AppendBuffer(key, keylen, false);
    } else {
        return KX_ERROR_PARAMETER;
    }
    return KeyTaken();
}

int CStreamAnalyzer::SetParamEx(unsigned int type, const void* param, int size)
{
    CKXAutoMutexLock lock(m_csMutex);
    if (param == nullptr || size < 1)
        return KX_ERROR_PARAMETER;
    KX_DECRYPT_PARAM key;
    std::memcpy(&key, param, sizeof key);
    // Unlike SetExtInfo, a refusal leaves the kind of the key that waits.
    if (type == KX_PARAM_DECRYPT_AES)
        return WaitWithKey(key);
    if (type < KX_PARAM_DECRYPT_AES256 || type > KX_PARAM_DECRYPT_GM_SM4_OFB || !HasKey(key))
        return KX_ERROR_PARAMETER;
    if (type == KX_PARAM_DECRYPT_AES256)
        return WaitWithKeyRecord(key);
    m_nEncryptType = sc_ringKinds[type - KX_PARAM_DECRYPT_AES256_GDPR2];
    if (!m_bChoosedClass.load(std::memory_order_acquire))
        return WaitInKeyRing(key);
    m_pStreamAnalzyer->SetExtInfo(m_nEncryptType, static_cast<const unsigned char*>(param), gsk_decryptParamSize);
    return KeyTaken();
}

int CStreamAnalyzer::KeyTaken()
{
    m_bKeySet.store(true, std::memory_order_relaxed);
    return KX_SUCCESS;
}

// An empty key is taken as any other, and deciphers nothing.
int CStreamAnalyzer::WaitWithKey(const KX_DECRYPT_PARAM& param)
{
    if (param.nKeyLen < 0 || (param.pKey == nullptr && param.nKeyLen > 0))
        return KX_ERROR_PARAMETER;
    const auto nKeyLen = static_cast<uint32_t>(param.nKeyLen);
    if (m_DecryptKey.Init(nKeyLen) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    m_DecryptKey.SetData(reinterpret_cast<const uint8_t*>(param.pKey), nKeyLen);
    m_nEncryptType = KX_ENCRYPT_AES;
    return KeyTaken();
}

int CStreamAnalyzer::WaitWithKeyRecord(const KX_DECRYPT_PARAM& param)
{
    if (param.pKeyId == nullptr || param.nKeyIdLen < 1)
        return KX_ERROR_PARAMETER;
    AES256_KEY_RECORD record = {1, {}, {}};
    CopyFront(record.keyId, param.pKeyId, param.nKeyIdLen);
    CopyFront(record.key, param.pKey, param.nKeyLen);
    m_DecryptData.AppendBuffer(reinterpret_cast<const uint8_t*>(&record), sizeof record, false);
    m_nEncryptType = KX_ENCRYPT_AES256;
    return KeyTaken();
}

// Without memory the entry is left half-filled, and the next key takes the same one.
int CStreamAnalyzer::WaitInKeyRing(const KX_DECRYPT_PARAM& param)
{
    KX_DECRYPT_PARAM& entry = m_DecryptParam[static_cast<size_t>(m_nVkekNum)];
    if (!ReplaceBlock(entry.pKey, entry.nKeyLen, param.pKey, param.nKeyLen))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (!ReplaceBlock(entry.pKeyId, entry.nKeyIdLen, param.pKeyId, param.nKeyIdLen))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (param.pPublicKey != nullptr && param.bSetPublicKey) {
        delete entry.pPublicKey;
        entry.pPublicKey = new (std::nothrow) KX_PUBLICKEY_PARAM(*param.pPublicKey);
        entry.bSetPublicKey = entry.pPublicKey != nullptr;
        if (entry.pPublicKey == nullptr)
            return -1;
    }
    m_nVkekNum = (m_nVkekNum + 1) % static_cast<int32_t>(m_DecryptParam.size());
    return KeyTaken();
}

void CStreamAnalyzer::HandOverKeys()
{
    if (!m_bKeySet.load(std::memory_order_relaxed))
        return;
    CKXAutoMutexLock lock(m_csMutex);
    if (!m_bKeySet.load(std::memory_order_relaxed))
        return;
    if (m_nEncryptType == KX_ENCRYPT_AES && m_DecryptKey.GetData() != nullptr) {
        m_pStreamAnalzyer->SetExtInfo(KX_ENCRYPT_AES, m_DecryptKey.GetData(),
                                      static_cast<int>(m_DecryptKey.GetLength()));
    } else if (m_nEncryptType == KX_ENCRYPT_AES256) {
        m_pStreamAnalzyer->SetExtInfo(KX_ENCRYPT_AES256, m_DecryptData.GetPointer(), m_DecryptData.GetDataLen());
        m_DecryptData.Clear();
    } else if (IsKeyRingKind(m_nEncryptType)) {
        HandOverKeyRing();
    }
    m_bKeySet.store(false, std::memory_order_relaxed);
}

// All entries go down, filled or not.
void CStreamAnalyzer::HandOverKeyRing()
{
    for (KX_DECRYPT_PARAM& param : m_DecryptParam) {
        m_pStreamAnalzyer->SetExtInfo(m_nEncryptType, reinterpret_cast<const unsigned char*>(&param),
                                      gsk_decryptParamSize);
        FreeDecryptParam(param);
    }
    m_nVkekNum = 0;
}

int CStreamAnalyzer::Uninit()
{
    ClearBuffer();
    m_DecryptData.Clear();
    m_pStreamAnalzyer.reset();
    for (KX_DECRYPT_PARAM& param : m_DecryptParam)
        FreeDecryptParam(param);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
