// Finds the keys of a frame whose extension head 0xB5 names them, and runs the decryption of its payload.
#ifndef FRAMESIFT_SRC_TOOLS_KXDECRYPT_H
#define FRAMESIFT_SRC_TOOLS_KXDECRYPT_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "IAnalyzer/FrameInfo.h"
#include "Tools/KXDecryptRecords.h"

namespace Marvane::FrameSift {

inline constexpr int32_t gsk_keySlots = 100;
inline constexpr unsigned int gsk_allGMArgs = 15;

// The store of keys and the ways through it are whole. The ciphers behind them are not part of this library, so that no
// frame is deciphered; KXDecryptCiphers.cpp is where they belong. No parser has an object of this class: frames with
// head 0xB5 leave the library as they came.
//
// Three ways, chosen by what was given: a key only; from the first VEK on, two stages; from the fourth GM part on, GM.
// An object belongs to one thread at a time. Its keys are wiped when it goes.
class CKXDecrypt
{
public:
    CKXDecrypt() = default;
    ~CKXDecrypt();
    CKXDecrypt(const CKXDecrypt&) = delete;
    CKXDecrypt& operator=(const CKXDecrypt&) = delete;

    // A key of the user or the device; of a longer one the first 32 bytes, of its identifier the first 64. It takes the
    // place of the hundredth key before it. False without a key.
    bool SetKey(const KX_DECRYPT_PARAM* pParam);

    // dataType 1: a DECRYPT_PARAM, false if it lacks a part; the slot is not cleared, what is longer than the new part
    // stays behind it. 2: a PBKDF2_PARAM; null leaves what there is. Any other is logged, but true. len is not read.
    bool SetVEKInfo(uint32_t dataType, const void* data, uint32_t len);

    // One part for the GM way. False for a part that cannot be set, and for a length that does not suit it.
    bool SetKey(GMParamType type, const uint8_t* data, uint32_t len);

    // src and srcLen: the enciphered bytes. dst: room for dstLen bytes, of which none is defined after false. Each false
    // is told in the log, but for a cipher that is not there.
    bool Decrypt(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen);
    bool DecryptByVK(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen);
    bool DecryptByUserSetShortKey(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                                  uint32_t& dstLen);
    bool GMDecryptByVKEK(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                         uint32_t& dstLen);

    // Whether there is a 128-bit key for frames of this kind; of video, I and JPEG frames. No operation sets one: false.
    bool IsAes128Key(const FrameInfo& frameInfo) const;
    bool Decrypt128(const FrameInfo& frameInfo, const uint8_t* src, uint32_t srcLen, uint8_t* dst, uint32_t& dstLen);

    // The one door to the ciphers, by KX_ENCRYPT_*. Nothing behind it reads or writes the buffers.
    bool InnerDecrypt(uint32_t encrypt, const uint8_t* key, const uint8_t* iv, const uint8_t* src, uint32_t srcLen,
                      uint8_t* dst, uint32_t& dstLen);

    // Without function: see KXDecryptCiphers.cpp.
    bool SetKey(uint32_t type, const uint8_t* data, uint32_t len);
    bool VerifyFrame(const uint8_t* data, int len, int type);
    bool Verify(const uint8_t* data, uint32_t len);
    bool Verify(int type, const uint8_t* data, uint32_t len);
    bool SignHashFlush();
    static bool allockey(const uint8_t* userKey, int userKeyLen, uint8_t* key, int keyLen);
    static bool AesDecrypt(uint32_t encrypt, const uint8_t* key, const uint8_t* iv, const uint8_t* src, uint32_t srcLen,
                           uint8_t* dst, uint32_t& dstLen);
    static bool AesDecrypt128(const uint8_t* key, const uint8_t* iv, const uint8_t* src, uint32_t srcLen, uint8_t* dst,
                              uint32_t& dstLen);
    static bool SMDecrypt(uint32_t encrypt, const uint8_t* key, const uint8_t* iv, const uint8_t* src, uint32_t srcLen,
                          uint8_t* dst, uint32_t& dstLen);
    static uint16_t getCRC(uint32_t encrypt, const uint8_t* key, const uint8_t* iv);

private:
    bool AddVEK(const DECRYPT_PARAM& param);
    const uint8_t* FindVKEK(const eVEK_decArgs& args) const; // null, and a line in the log, if there is none
    bool UnwrapVEK(const FrameInfo& frameInfo, const eVEK_decArgs& args, DEC_VK& vek);
    bool CheckCRC(const FrameInfo& frameInfo, size_t nSlot, const DEC_VK& key);

    std::array<VK_CACHE, gsk_keySlots> m_VKCache{};
    std::array<VK_CRC16, gsk_keySlots> m_VKCRC16{}; // one for both rings: slot n of either has check value n
    int32_t m_nVKIndex = 0;                         // next slot
    std::array<eVEK_decArgs, gsk_keySlots> m_eVEK_decArgs{};
    int32_t m_nVEKIndex = 0; // next slot
    int32_t m_nUserType = 0; // DECRYPT_PARAM::nUserType of the last VEK
    std::array<uint8_t, 32> m_szUserSetKey{};
    uint8_t m_nUserSetKeyLen = 0;
    std::array<uint8_t, 32> m_szUserVKekKDF{};
    bool m_bHasKDFDone = false; // m_szUserVKekKDF is valid; set by who derives it
    bool m_bHasKey = false;
    bool m_bVKEKDecrypt = false; // two stages
    PBKDF2_PARAM m_PBKDF2;
    GM_decArgs m_KX_GM_decArgs;
    unsigned int m_GMArgsEnable = 0; // which of its parts are there
    uint8_t m_nAudioAes128KeyLen = 0;
    std::array<uint8_t, 16> m_szAudioAes128Key{};
    uint8_t m_nVideoAes128KeyLen = 0;
    std::array<uint8_t, 16> m_szVideoAes128Key{};
};

} // namespace Marvane::FrameSift

#endif
