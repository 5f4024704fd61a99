// The keys of a stream: they wait here until the next cycle starts, and never take effect within one.
#include "ParserMethod/StreamAnalyzer.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_decryptParamSize = 64;
static_assert(sizeof(KX_DECRYPT_PARAM) == sc_decryptParamSize);

void FreeDecryptParam(KX_DECRYPT_PARAM& param)
{
    delete[] param.pKey;
    delete[] param.pKeyId;
    delete param.pPublicKey;
    param.pKey = nullptr;
    param.pKeyId = nullptr;
    param.pPublicKey = nullptr;
    param.nKeyLen = 0;
    param.nKeyIdLen = 0;
    param.bSetPublicKey = false;
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
    m_bKeySet.store(true, std::memory_order_relaxed);
    return KX_SUCCESS;
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
    } else if (m_nEncryptType >= KX_ENCRYPT_AES256_GDPR2 && m_nEncryptType <= KX_ENCRYPT_SM4_OFB) {
        HandOverKeyRing();
    }
    m_bKeySet.store(false, std::memory_order_relaxed);
}

// All entries go down, filled or not.
void CStreamAnalyzer::HandOverKeyRing()
{
    for (KX_DECRYPT_PARAM& param : m_DecryptParam) {
        m_pStreamAnalzyer->SetExtInfo(m_nEncryptType, reinterpret_cast<const unsigned char*>(&param),
                                      sc_decryptParamSize);
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
