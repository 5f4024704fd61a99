// A block cipher with a key of its own.
#ifndef FRAMESIFT_SRC_TOOLS_IENCRYPT_H
#define FRAMESIFT_SRC_TOOLS_IENCRYPT_H

#include <cstdint>

namespace Marvane::FrameSift {

class IEncrypt
{
public:
    virtual ~IEncrypt() = default;

    [[nodiscard]] virtual bool HaveKey() const = 0;
    [[nodiscard]] virtual bool SetKey(const uint8_t* key, uint32_t keyLen) = 0;

    // Whole blocks only; what is left of src behind the last one is neither read nor written. dst may be src; any other
    // overlap is not allowed. dstLen: the capacity of dst in bytes, afterwards what was written. False: nothing written.
    [[nodiscard]] virtual bool Encrypt(const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen) = 0;
    [[nodiscard]] virtual bool Decrypt(const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen) = 0;
};

} // namespace Marvane::FrameSift

#endif
