#include "Tools/KXAes.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_longestKeyAsked = 63;

} // namespace

CKXAes::~CKXAes()
{
    aes_free_ctx(m_ctx);
}

bool CKXAes::SetKey(const uint8_t* key, uint32_t keyLen)
{
    const bool bOdd = keyLen % 2 != 0 && keyLen != 1;
    if (key == nullptr || keyLen == 0 || keyLen > sc_longestKeyAsked || bOdd)
        return false;
    // Before the length is known to be good, and only for lengths that get here. Kept: which keys a stream still has
    // after a wrong one shows in its frames.
    aes_free_ctx(m_ctx);
    return aes_keyexpansion({key, keyLen}, m_ctx);
}

bool CKXAes::Encrypt(const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen)
{
    return srcLen >= gsk_aesBlockSize && Run(&AES_FORM::pfnEncrypt, src, srcLen, dst, dstLen);
}

// No test for a whole block: an enciphered part that is shorter is delivered as it is.
bool CKXAes::Decrypt(const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen)
{
    return Run(&AES_FORM::pfnDecrypt, src, srcLen, dst, dstLen);
}

bool CKXAes::Run(AES_FORM::BLOCKS AES_FORM::*pfnBlocks, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                 uint32_t& dstLen) const
{
    const uint32_t nBlocks = srcLen / gsk_aesBlockSize;
    if (src == nullptr || dst == nullptr || dstLen < nBlocks * gsk_aesBlockSize)
        return false;
    if (nBlocks == 0) {
        dstLen = 0;
        return true;
    }
    if (!HaveKey())
        return false;
    const AES_FORM* pForm = AesByInstructions();
    ((pForm != nullptr ? *pForm : g_aesByTable).*pfnBlocks)(m_ctx, src, dst, nBlocks);
    dstLen = nBlocks * gsk_aesBlockSize;
    return true;
}

} // namespace Marvane::FrameSift
