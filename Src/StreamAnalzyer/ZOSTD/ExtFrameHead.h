// The extension heads of a ZOAV frame on the wire. Each begins with its tag byte; numbers are little-endian.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_EXTFRAMEHEAD_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_EXTFRAMEHEAD_H

#include <cstddef>
#include <cstdint>

namespace Marvane::FrameSift {

// Three bytes.
using UINT24 = uint8_t[3];

#pragma pack(push, 1)
struct EXT_FRAME_HEAD_80 // picture size in units of 8 pixels
{
    uint8_t chFlag;
    uint8_t chInterlaceType;
    uint8_t chWidth;
    uint8_t chHeight;
};

struct EXT_FRAME_HEAD_81 // codec and frame rate
{
    uint8_t chFlag;
    uint8_t chIFrameSpace; // unread
    uint8_t chEncodeType;
    uint8_t chFrameRate;
};

struct EXT_FRAME_HEAD_82 // exact picture size
{
    uint8_t chFlag;
    uint8_t chInterlaceType;
    uint16_t reserved;
    uint16_t nWidth;
    uint16_t nHeight;
};

struct EXT_FRAME_HEAD_83 // audio
{
    uint8_t chFlag;
    uint8_t chChannels;
    uint8_t chEncodeType;
    uint8_t chSampleType;
};

struct EXT_FRAME_HEAD_84
{
    uint8_t chFlag;
    uint8_t chSubType;
    uint16_t nDataLen;
};

struct EXT_FRAME_HEAD_85 // custom change
{
    uint8_t chFlag;
    uint8_t chType;
    uint8_t chLength;
    uint8_t chValue;
};

struct EXT_FRAME_HEAD_88 // check of the payload
{
    uint8_t chFlag;
    uint8_t vfVal[4];
    uint16_t wReserved;
    uint8_t chType;
};

struct EXT_FRAME_HEAD_89 // the whole payload is enciphered
{
    uint8_t chFlag;
    uint8_t nType;
    uint8_t reserved[2];
};

struct EXT_FRAME_HEAD_8A // codec and fractional rate
{
    uint8_t chFlag;
    uint8_t chIFrameSpace; // unread
    uint8_t chEncodeType;
    uint8_t reserved;
    uint16_t rateValue;
    uint16_t rateDenominator;
};

struct EXT_FRAME_HEAD_8B // rotation
{
    uint8_t chFlag;
    uint8_t nRotationAngle;
    uint8_t reserved[2];
};

struct EXT_FRAME_HEAD_8C // audio with bit rate
{
    uint8_t chFlag;
    uint8_t nSize; // unread
    uint8_t chChannels;
    uint8_t chEncodeType;
    uint8_t chSampleType;
    uint8_t chBitRateType;
    uint8_t reserved[2];
};

struct EXT_FRAME_HEAD_91 // fisheye
{
    uint8_t chFlag;
    uint8_t fishEyeGain;
    uint8_t fishEyeDenoiseLevel;
    uint8_t fishInstallStyle;
    uint32_t reserved;
};

struct EXT_FRAME_HEAD_92 // maker
{
    uint8_t chFlag;
    uint8_t reserved1;
    uint16_t companyType;
    uint16_t tpStreamHeaderLen;
    uint16_t reseved2;
};

struct EXT_FRAME_HEAD_93 // defogging
{
    uint8_t chFlag;
    uint8_t chMode;
    uint8_t chIntension;
    uint8_t chAirLightMode;
    uint8_t chAirLightIntesion;
    uint8_t reserved[3];
};

struct EXT_FRAME_HEAD_94 // scalable levels
{
    uint8_t chFlag;
    uint8_t nAllLevels;
    uint8_t nLevelOrder;
    uint8_t reserved;
};

struct EXT_FRAME_HEAD_95 // part of the payload is enciphered
{
    uint8_t chFlag;
    uint8_t chType;
    uint16_t noffset;
    uint32_t nActualDataLen;
};

struct EXT_FRAME_HEAD_96 // channels
{
    uint8_t chFlag;
    uint8_t totalChannels;
    uint8_t curChannel;
    uint8_t reserved;
};

struct EXT_FRAME_HEAD_99 // slice table; the table follows
{
    uint8_t chFlag;
    uint8_t n_slice;
    uint8_t m_slice;
    uint16_t srcPicWidth;
    uint16_t srcPicHeight;
    uint8_t reserved;
};

struct EXT_FRAME_HEAD_9A // fisheye circle
{
    uint8_t chFlag;
    uint8_t fishEyeCorrectMode;
    uint16_t fishEyeCircleX;
    uint16_t fishEyeCircleY;
    uint16_t fishEyeRadius;
};

struct EXT_FRAME_HEAD_9B // display ratio
{
    uint8_t chFlag;
    uint8_t ratioWidth;
    uint8_t ratioHeigth;
    uint8_t ratioEncodeWidth;
    uint8_t ratioEncodeHeight;
    uint8_t reserved[3];
};

struct EXT_FRAME_HEAD_9CEX // signature; the bytes follow
{
    uint8_t chFlag;
    UINT24 digtalSignatureSamplenlen;
    uint16_t digtalSignatureEncdeclen;
    uint8_t digtalSignatureDigestAlgorithm;
    uint8_t digtalSignatureEncryptAlogrithm;
};

struct EXT_FRAME_HEAD_A0 // milliseconds
{
    uint8_t chFlag;
    uint8_t reserved;
    uint16_t nMilliSecond;
};

struct EXT_FRAME_HEAD_A1 // completeness
{
    uint8_t chFlag;
    uint8_t nIsCompleteFrameFlag;
    uint8_t nReseved[2];
};

struct EXT_FRAME_HEAD_B0EX // key block; the key follows
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint16_t encryptDataSize;
    uint8_t reserved[3];
    uint8_t encryptKeySize;
};

struct EXT_FRAME_HEAD_B1EX // OSD; the bytes follow
{
    uint8_t chFlag;
    uint8_t extFrameSize;
};

struct EXT_FRAME_HEAD_B2 // reference key frame
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint16_t refFrameOffset;
};

struct EXT_FRAME_HEAD_B3 // sum of the enciphered part
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint16_t checkSumLow;
    uint8_t nonse[2];
    uint16_t checkSumHigh;
};

struct EXT_FRAME_HEAD_B4 // sensor slices; their positions follow
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint8_t mSiceSensor;
    uint8_t nSiceSensor;
};

struct EXT_FRAME_HEAD_B5 // encryption under a key with an identifier
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint8_t nEncryptType;
    UINT24 nEncryptOffset;
    UINT24 nEncryptLen;
    uint8_t nVkIDArray[16];
    uint16_t nDataCRC16;
    uint8_t nVkIV[16];
    uint8_t nRandNum[32];
    uint8_t nReseverd;
};

struct EXT_FRAME_HEAD_B6 // encryption under a wrapped key
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint8_t nEncryptType;
    UINT24 nEncryptOffset;
    UINT24 nEncryptLen;
    uint8_t nReseverd[18];
    uint8_t nIvArray[16];
    uint8_t nVekEncryptType;
    uint8_t nVekVersion[20];
    uint8_t nVekArray[16];
};

struct EXT_FRAME_HEAD_B8 // time stamp of the picture
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint8_t nReseverd[2];
    uint8_t timeStamp[4];
};

struct EXT_FRAME_HEAD_B9 // privacy
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint8_t privacyVersion;
    uint8_t nReseverd;
    uint32_t privacyObjType; // unread
};

struct EXT_FRAME_HEAD_BD // UTC time
{
    uint8_t chFlag;
    uint8_t extFrameSize;
    uint8_t nReseverd[2];
    uint64_t utcTime;
};
#pragma pack(pop)

static_assert(sizeof(EXT_FRAME_HEAD_80) == 4 && sizeof(EXT_FRAME_HEAD_81) == 4 && sizeof(EXT_FRAME_HEAD_82) == 8);
static_assert(sizeof(EXT_FRAME_HEAD_83) == 4 && sizeof(EXT_FRAME_HEAD_84) == 4 && sizeof(EXT_FRAME_HEAD_85) == 4);
static_assert(sizeof(EXT_FRAME_HEAD_88) == 8 && sizeof(EXT_FRAME_HEAD_89) == 4 && sizeof(EXT_FRAME_HEAD_8A) == 8);
static_assert(sizeof(EXT_FRAME_HEAD_8B) == 4 && sizeof(EXT_FRAME_HEAD_8C) == 8 && sizeof(EXT_FRAME_HEAD_91) == 8);
static_assert(sizeof(EXT_FRAME_HEAD_92) == 8 && sizeof(EXT_FRAME_HEAD_93) == 8 && sizeof(EXT_FRAME_HEAD_94) == 4);
static_assert(sizeof(EXT_FRAME_HEAD_95) == 8 && sizeof(EXT_FRAME_HEAD_96) == 4 && sizeof(EXT_FRAME_HEAD_99) == 8);
static_assert(sizeof(EXT_FRAME_HEAD_9A) == 8 && sizeof(EXT_FRAME_HEAD_9B) == 8 && sizeof(EXT_FRAME_HEAD_9CEX) == 8);
static_assert(sizeof(EXT_FRAME_HEAD_A0) == 4 && sizeof(EXT_FRAME_HEAD_A1) == 4 && sizeof(EXT_FRAME_HEAD_B0EX) == 8);
static_assert(sizeof(EXT_FRAME_HEAD_B2) == 4 && sizeof(EXT_FRAME_HEAD_B3) == 8 && sizeof(EXT_FRAME_HEAD_B4) == 4);
static_assert(sizeof(EXT_FRAME_HEAD_B5) == 76 && offsetof(EXT_FRAME_HEAD_B5, nVkIV) == 27);
static_assert(sizeof(EXT_FRAME_HEAD_B6) == 80 && offsetof(EXT_FRAME_HEAD_B6, nVekArray) == 64);
static_assert(sizeof(EXT_FRAME_HEAD_B8) == 8 && sizeof(EXT_FRAME_HEAD_B9) == 8 && sizeof(EXT_FRAME_HEAD_BD) == 12);

// Heads with a variable part that is copied: their fixed bytes, and a pointer that stays null, as the copy belongs to
// the stream's buffer and is told in the frame's extension record.
struct EXT_FRAME_HEAD_9C
{
    EXT_FRAME_HEAD_9CEX header;
    const uint8_t* pData;
};

struct EXT_FRAME_HEAD_B0
{
    EXT_FRAME_HEAD_B0EX header;
    const uint8_t* pData;
};

struct EXT_FRAME_HEAD_B1
{
    EXT_FRAME_HEAD_B1EX header;
    const uint8_t* pData;
};

// What the last walk saw: pointers into the frame, null for a head that the frame does not have. Owns nothing. pHead8B,
// 91, 9A, 9B, A0 and A1 are never set.
struct EXT_FRAME_HEAD
{
    const uint8_t* pHead80;
    const uint8_t* pHead81;
    const uint8_t* pHead82;
    const uint8_t* pHead83;
    const uint8_t* pHead84;
    const uint8_t* pHead88;
    EXT_FRAME_HEAD_88 head88;
    const uint8_t* pHead89;
    const uint8_t* pHead8B;
    const uint8_t* pHead8C;
    const uint8_t* pHead91;
    const uint8_t* pHead92;
    const uint8_t* pHead94;
    const uint8_t* pHead95;
    const uint8_t* pHead96;
    const uint8_t* pHead9A;
    const uint8_t* pHead9B;
    EXT_FRAME_HEAD_9C head9C;
    EXT_FRAME_HEAD_B0 headB0;
    EXT_FRAME_HEAD_B1 headB1;
    const uint8_t* pHeadB2;
    const uint8_t* pHeadB3;
    const uint8_t* pHeadB4;
    const uint8_t* pHeadA0;
    const uint8_t* pHeadA1;
    const uint8_t* pHeadB5;
    const uint8_t* pHeadB6;
    const uint8_t* pHeadB8;
    const uint8_t* pHeadB9;
    const uint8_t* pHeadBD;
};

} // namespace Marvane::FrameSift

#endif
