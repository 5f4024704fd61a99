// The keys of a recording: they wait here until its parser is made.
#include <cstring>
#include <new>

#include "ParserMethod/DecryptParam.h"
#include "ParserMethod/FileAnalyzer.h"

namespace Marvane::FrameSift {

int CFileAnalyzer::SetExtInfo(uint32_t type, unsigned char* key, int keylen)
{
    m_nExtInfoType = static_cast<int32_t>(type); // of a kind that is refused too
    if (IsKeyRingKind(type)) {
        if (key == nullptr)
            return KX_ERROR_PARAMETER;
        KX_DECRYPT_PARAM param;
        std::memcpy(&param, key, sizeof param); // the record alone: its length is fixed, keylen is not read
        return StoreInKeyRing(param);
    }
    if ((type != KX_ENCRYPT_AES && type != KX_ENCRYPT_AES256) || keylen < 0 || (key == nullptr && keylen > 0))
        return KX_ERROR_PARAMETER;
    if (m_aesKey.Init(static_cast<uint32_t>(keylen)) != KX_SUCCESS)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    return m_aesKey.SetData(key, static_cast<uint32_t>(keylen));
}

// The eleventh key takes the place of the first. Without memory the slot is left half filled, and the next key takes
// it.
int CFileAnalyzer::StoreInKeyRing(const KX_DECRYPT_PARAM& param)
{
    KX_DECRYPT_PARAM& slot = m_DecryptParam[static_cast<size_t>(m_nVkekNum)];
    if (!ReplaceBlock(slot.pKey, slot.nKeyLen, param.pKey, param.nKeyLen) ||
        !ReplaceBlock(slot.pKeyId, slot.nKeyIdLen, param.pKeyId, param.nKeyIdLen))
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    if (param.pPublicKey != nullptr && param.bSetPublicKey) {
        delete slot.pPublicKey;
        slot.pPublicKey = new (std::nothrow) KX_PUBLICKEY_PARAM(*param.pPublicKey);
        slot.bSetPublicKey = slot.pPublicKey != nullptr;
        if (slot.pPublicKey == nullptr)
            return KX_ERROR_PARAMETER; // not 13; kept
    }
    m_nVkekNum = (m_nVkekNum + 1) % static_cast<int32_t>(m_DecryptParam.size());
    return KX_SUCCESS;
}

void CFileAnalyzer::HandOverKey()
{
    m_pFileAnalzyer->SetExtInfo(static_cast<uint32_t>(m_nExtInfoType), m_aesKey.GetData(),
                                static_cast<int>(m_aesKey.GetLength()));
}

// All slots go down, filled or not.
void CFileAnalyzer::HandOverKeyRing()
{
    for (KX_DECRYPT_PARAM& param : m_DecryptParam) {
        m_pFileAnalzyer->SetExtInfo(static_cast<uint32_t>(m_nExtInfoType), reinterpret_cast<unsigned char*>(&param),
                                    gsk_decryptParamSize);
        FreeDecryptParam(param);
    }
    m_nVkekNum = 0;
}

} // namespace Marvane::FrameSift
