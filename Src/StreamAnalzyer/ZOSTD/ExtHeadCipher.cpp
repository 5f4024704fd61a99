// Extension heads that tell how a payload is enciphered.
#include <algorithm>
#include <array>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/StreamAnalzyer/ZOSTD/ExtHeadCipher";

// Heads 0x89 and 0x95 count their kinds from 0 in the order of KX_ENCRYPT_*. A byte of 0xFF marks a frame that was
// deciphered in place; it falls out here, as the addition does not wrap.
int32_t EncryptTypeUpTo(uint64_t nWireType, int32_t nLastType)
{
    const uint64_t nType = nWireType + 1;
    return nType <= static_cast<uint64_t>(nLastType) ? static_cast<int32_t>(nType) : int32_t{KX_ENCRYPT_UNKOWN};
}

void TakeWholeCipher(uint64_t nType, EXT_HEAD_TARGET& target)
{
    target.frame.nEncryptType = EncryptTypeUpTo(nType, KX_ENCRYPT_3DES);
}

void TakePartCipher(uint64_t nType, EXT_HEAD_TARGET& target)
{
    target.frame.nEncryptType = EncryptTypeUpTo(nType, KX_ENCRYPT_ZBQL);
}

// Heads 0xB5 and 0xB6 give the same wire numbers different meanings: two tables, on purpose.
constexpr std::array<int32_t, 7> sc_typesB5 = {KX_ENCRYPT_UNKOWN,  KX_ENCRYPT_AES256,  KX_ENCRYPT_SM4_OFB,
                                               KX_ENCRYPT_SM4_ECB, KX_ENCRYPT_SM1_OFB, KX_ENCRYPT_SM1_ECB,
                                               KX_ENCRYPT_ANHENG};
constexpr std::array<int32_t, 5> sc_typesB6 = {KX_ENCRYPT_UNKOWN, KX_ENCRYPT_SM1_ECB, KX_ENCRYPT_SM4_ECB,
                                               KX_ENCRYPT_SM1_OFB, KX_ENCRYPT_SM4_OFB};

void TakeTypeB5(uint64_t nType, EXT_HEAD_TARGET& target)
{
    const int32_t nKind = nType < sc_typesB5.size() ? sc_typesB5[nType] : int32_t{KX_ENCRYPT_UNKOWN};
    target.frame.nEncryptType = nKind == KX_ENCRYPT_AES256 && target.bGMSet ? int32_t{KX_ENCRYPT_AES256_GDPR2} : nKind;
}

int32_t TypeB6(uint64_t nType)
{
    return nType < sc_typesB6.size() ? sc_typesB6[nType] : int32_t{KX_ENCRYPT_UNKOWN};
}

void TakeTypeB6(uint64_t nType, EXT_HEAD_TARGET& target)
{
    target.frame.nEncryptType = TypeB6(nType);
}

void TakeVekTypeB6(uint64_t nType, EXT_HEAD_TARGET& target)
{
    target.frame.nB6HeadVekEncryptType = static_cast<uint32_t>(TypeB6(nType));
}

void NoteCommonPlace(int nIndex, EXT_HEAD_TARGET& target)
{
    target.nCommonEncryptHeadoffset = nIndex;
}

void NotePlaceB5(int nIndex, EXT_HEAD_TARGET& target)
{
    target.nB5ExtStartOffset = nIndex;
}

void NotePlaceB6(int nIndex, EXT_HEAD_TARGET& target)
{
    target.nB6ExtStartOffset = nIndex;
}

constexpr std::array sc_fields89 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_89, nType, TakeWholeCipher),
};
constexpr std::array sc_fields95 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_95, chType, TakePartCipher),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_95, noffset, frame.encryptOffset),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_95, nActualDataLen, frame.nEncryptLen),
};
constexpr std::array sc_fieldsB3 = {
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B3, nonse, ext.encryptNonse),
};
constexpr std::array sc_fieldsB5 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_B5, nEncryptType, TakeTypeB5),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B5, nEncryptOffset, frame.encryptOffset), // 16 of the 24 bits
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B5, nEncryptLen, frame.nEncryptLen),
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B5, nVkIDArray, frame.nB5HeadEncryptVKid),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B5, nDataCRC16, frame.nB5HeadEncryptCrc16),
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B5, nVkIV, frame.nB5HeadIV),
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B5, nRandNum, frame.nB5Random),
};
constexpr std::array sc_fieldsB6 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_B6, nEncryptType, TakeTypeB6),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B6, nEncryptOffset, frame.encryptOffset), // 16 of the 24 bits
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B6, nEncryptLen, frame.nEncryptLen),
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B6, nIvArray, frame.nB6HeadGmIv),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_B6, nVekEncryptType, TakeVekTypeB6),
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B6, nVekVersion, frame.nB6HeadVkekVersion),
    EXT_HEAD_COPIES(EXT_FRAME_HEAD_B6, nVekArray, frame.nB6HeadVek),
};

int TakeCheckSumB3(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep)
{
    // The two halves stand apart; a head that is cut between them has no sum.
    if (place.bytes.size() >= sizeof(EXT_FRAME_HEAD_B3)) {
        const auto nLow = static_cast<uint32_t>(EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_B3, checkSumLow));
        const auto nHigh = static_cast<uint32_t>(EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_B3, checkSumHigh));
        target.ext.encryptCheckSum = nLow | nHigh << 16;
    }
    return nStep;
}

// The only head whose fields end with its own size. A larger one than is known is not believed, nor is its size: the
// walk steps by 4.
int TakeKeyedCipher(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep)
{
    if (static_cast<size_t>(nStep) > sizeof(EXT_FRAME_HEAD_B5)) {
        KX_WRITE_LOG(KX_LOG_LevelInfo, sc_sourcePath, "Maybe some wrong in 0xb5 extFrame!\n");
        return 4;
    }
    TakeExtHeadFields(sc_fieldsB5, place.bytes.first(std::min(place.bytes.size(), static_cast<size_t>(nStep))), target);
    return nStep;
}

int TakeKeyBlock(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep)
{
    constexpr int nFixedLen = sizeof(EXT_FRAME_HEAD_B0EX);
    CopyExtHead(place, target.heads.headB0.header);
    const EXT_FRAME_HEAD_B0EX header = target.heads.headB0.header;
    if (place.nIndex + nFixedLen + header.encryptKeySize > place.nExtFrameLen) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath,
                     "m_extFrameHead.headB0.header.encryptKeySize %d, nIndex %d, nExtFrameLen %d\n",
                     header.encryptKeySize, place.nIndex, place.nExtFrameLen);
        return EXT_HEAD_STOP;
    }
    // A block without a key stores nothing: what an earlier one brought stays, pointer and lengths together.
    uint8_t* pKey = CopyExtHeadPart(place, nFixedLen, header.encryptKeySize, target);
    if (pKey != nullptr) {
        target.ext.svacEncryptKeyData = pKey;
        target.ext.svacEncryptKeyLen = header.encryptKeySize;
        target.ext.svacEncryptDataLen = header.encryptDataSize;
    }
    return nStep;
}

constexpr EXT_HEAD_ROW sc_rows[] = {
    {0x89, EXT_HEAD_STEP::Fixed4, sc_fields89, &EXT_FRAME_HEAD::pHead89, nullptr, &NoteCommonPlace},
    {0x95, EXT_HEAD_STEP::Fixed8, sc_fields95, &EXT_FRAME_HEAD::pHead95, nullptr, &NoteCommonPlace},
    {0xB0, EXT_HEAD_STEP::Guarded, {}, nullptr, &TakeKeyBlock},
    {0xB3, EXT_HEAD_STEP::Guarded, sc_fieldsB3, &EXT_FRAME_HEAD::pHeadB3, &TakeCheckSumB3},
    {0xB5, EXT_HEAD_STEP::Guarded, {}, &EXT_FRAME_HEAD::pHeadB5, &TakeKeyedCipher, &NotePlaceB5},
    {0xB6, EXT_HEAD_STEP::Guarded, sc_fieldsB6, &EXT_FRAME_HEAD::pHeadB6, nullptr, &NotePlaceB6},
};

} // namespace

std::span<const EXT_HEAD_ROW> ExtHeadsOfCipher()
{
    return sc_rows;
}

} // namespace Marvane::FrameSift
