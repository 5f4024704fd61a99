// The cipher of in-stream encryption: AES in ECB mode, so without chaining and without an initialisation vector.
#ifndef FRAMESIFT_SRC_TOOLS_KXAES_H
#define FRAMESIFT_SRC_TOOLS_KXAES_H

#include "Tools/IEncrypt.h"
#include "Tools/KXAesBlocks.h"

namespace Marvane::FrameSift {

// No key outlives its use: it is wiped from memory when another takes its place and when the object goes.
class CKXAes : public IEncrypt
{
public:
    CKXAes() = default;
    ~CKXAes() override;
    CKXAes(const CKXAes&) = delete;
    CKXAes& operator=(const CKXAes&) = delete;

    [[nodiscard]] bool HaveKey() const override { return m_ctx.rounds != 0; }

    // True for a key of 16, 24 or 32 bytes. Two kinds of refusal:
    // - key null, or keyLen 0, above 63, or odd and not 1: the object keeps the key that it has;
    // - any other keyLen: that key is gone, HaveKey answers false.
    [[nodiscard]] bool SetKey(const uint8_t* key, uint32_t keyLen) override;

    // False for src or dst null, dstLen below the whole blocks of src, blocks but no key. The two differ, deliberately:
    // less than a block is an error to Encrypt, and nothing to do for Decrypt, which answers true and dstLen 0.
    [[nodiscard]] bool Encrypt(const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen) override;
    [[nodiscard]] bool Decrypt(const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen) override;

private:
    [[nodiscard]] bool Run(AES_FORM::BLOCKS AES_FORM::*pfnBlocks, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                           uint32_t& dstLen) const;

    aes_ctx_t m_ctx;
};

} // namespace Marvane::FrameSift

#endif
