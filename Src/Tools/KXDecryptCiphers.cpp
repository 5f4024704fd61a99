// Where the ciphers of head 0xB5 belong.
//
// The library brings none of them, nor the derivation of a key from a short one, nor the check value of a key: not all
// have a public description. What stands here refuses. Whoever has them fills these functions in, and gives an object of
// CKXDecrypt to the parser; keys, ways and checks around them are ready.
#include "Tools/KXDecrypt.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/Tools/KXDecryptCiphers";

} // namespace

bool CKXDecrypt::InnerDecrypt(uint32_t encrypt, const uint8_t* key, const uint8_t* iv, const uint8_t* src,
                              uint32_t srcLen, uint8_t* dst, uint32_t& dstLen)
{
    switch (encrypt) {
    case KX_ENCRYPT_AES256:
    case KX_ENCRYPT_AES256_GDPR2:
    case KX_ENCRYPT_AES256_CBC:
        return AesDecrypt(encrypt, key, iv, src, srcLen, dst, dstLen);
    case KX_ENCRYPT_SM1_ECB:
    case KX_ENCRYPT_SM1_OFB:
    case KX_ENCRYPT_SM4_ECB:
    case KX_ENCRYPT_SM4_OFB:
        return SMDecrypt(encrypt, key, iv, src, srcLen, dst, dstLen);
    default: // KX_ENCRYPT_ANHENG too, though head 0xB5 may name it
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "Decrypt failed. Invalid encrypt.%d\n",
                     static_cast<int>(encrypt));
        return false;
    }
}

bool CKXDecrypt::AesDecrypt(uint32_t, const uint8_t*, const uint8_t*, const uint8_t*, uint32_t, uint8_t*, uint32_t&)
{
    return false;
}

bool CKXDecrypt::AesDecrypt128(const uint8_t*, const uint8_t*, const uint8_t*, uint32_t, uint8_t*, uint32_t&)
{
    return false;
}

bool CKXDecrypt::SMDecrypt(uint32_t, const uint8_t*, const uint8_t*, const uint8_t*, uint32_t, uint8_t*, uint32_t&)
{
    return false;
}

bool CKXDecrypt::allockey(const uint8_t*, int, uint8_t*, int)
{
    return false;
}

// Every key has the check value 0: a frame with another one is refused before it comes to a cipher.
uint16_t CKXDecrypt::getCRC(uint32_t, const uint8_t*, const uint8_t*)
{
    return 0;
}

// Keys of other kinds, and the signatures that a signed stream carries: not part of this class. The answers are fixed,
// and callers know them: no to the question whether a frame is good, yes to what only prepares it.
bool CKXDecrypt::SetKey(uint32_t, const uint8_t*, uint32_t)
{
    return false;
}

bool CKXDecrypt::VerifyFrame(const uint8_t*, int, int)
{
    return false;
}

bool CKXDecrypt::Verify(const uint8_t*, uint32_t)
{
    return false;
}

bool CKXDecrypt::Verify(int, const uint8_t*, uint32_t)
{
    return true;
}

bool CKXDecrypt::SignHashFlush()
{
    return true;
}

} // namespace Marvane::FrameSift
