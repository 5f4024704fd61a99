// The records of the key hierarchy: what a client hands to CKXDecrypt, and what it keeps.
#ifndef FRAMESIFT_SRC_TOOLS_KXDECRYPTRECORDS_H
#define FRAMESIFT_SRC_TOOLS_KXDECRYPTRECORDS_H

#include <array>
#include <cstdint>

namespace Marvane::FrameSift {

// VEK: the key of the payload; it travels enciphered, as eVEK. VKEK: the key that enciphers it, known by a version. VK:
// a key of the user or the device, known by a version or identifier; it serves as either.
// Versions and identifiers are bytes, filled up with zeros, not texts.
struct DEC_IV
{
    std::array<uint8_t, 16> value{};
};
struct DEC_VK
{
    std::array<uint8_t, 32> value{};
};
struct DEC_eVEK
{
    std::array<uint8_t, 32> value{};
};
struct DEC_verVK
{
    std::array<uint8_t, 64> value{};
};
struct DEC_verVKEK
{
    std::array<uint8_t, 64> value{};
};

struct VK_CACHE
{
    DEC_VK vk;
    DEC_verVK vkversion;
};

// Check value of a key; it is worked out when the key is first used.
struct VK_CRC16
{
    uint16_t crc = 0;
    int isValid = 0;
};

struct eVEK_decArgs
{
    DEC_IV iv;
    DEC_eVEK eVEK;
    DEC_verVKEK vkekversion;     // which key unwraps it
    DEC_verVK vkversion;         // its own identifier
    int32_t vkekEncryptType = 0; // KX_ENCRYPT_*
};

struct GM_decArgs
{
    DEC_IV iv;
    DEC_eVEK eVEK;
    DEC_verVKEK vkekversion;
    int32_t vkekEncryptType = 0; // KX_ENCRYPT_*
};

// How a key is derived from the user's (RFC 8018, 5.2).
struct PBKDF2_PARAM
{
    uint8_t KDFType = 0; // 1: it is to be derived
    uint8_t Digest = 0;
    uint32_t iter = 0;
    std::array<uint8_t, 32> salt{};
    uint32_t saltlen = 0; // bytes
};

// A VEK with what unwraps it. The caller owns what the pointers lead to; none of it is needed behind the call.
struct DECRYPT_PARAM
{
    const uint8_t* pVek = nullptr;    // enciphered
    int nVekLen = 0;                  // bytes, at least 1; those from 32 on are left out
    std::array<uint8_t, 16> VekId{};  // as frames name it; not all zero
    uint32_t nDecryptType = 0;        // KX_ENCRYPT_* that unwraps it
    const uint8_t* pVkekId = nullptr; // version of the key that unwraps it; null: none
    int nVkekIdLen = 0;               // bytes; those from 64 on are left out
    std::array<uint8_t, 16> VkekIV{}; // not all zero
    int nUserType = 0; // where that key comes from. 0: from the keys given, by its version; 1: the last key given
};

// Parts of GM_decArgs.
enum GMParamType : int32_t
{
    GMVEK = 0,
    GMVKEK = 1, // cannot be set
    GMVKEKVERSION = 2,
    GMIV = 3,
    GMVKEKENCRYPTTYPE = 4,
    GMVIDEOENCRYPTTYPE = 5 // cannot be set
};

static_assert(sizeof(VK_CACHE) == 96);
static_assert(sizeof(VK_CRC16) == 8);
static_assert(sizeof(eVEK_decArgs) == 180);
static_assert(sizeof(GM_decArgs) == 116);
static_assert(sizeof(PBKDF2_PARAM) == 44);
static_assert(sizeof(DECRYPT_PARAM) == 48 + 2 * sizeof(void*));

} // namespace Marvane::FrameSift

#endif
