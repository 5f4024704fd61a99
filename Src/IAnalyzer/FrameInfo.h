// The internal frame records: what a parser fills, what the frame store queues.
#ifndef FRAMESIFT_SRC_IANALYZER_FRAMEINFO_H
#define FRAMESIFT_SRC_IANALYZER_FRAMEINFO_H

#include <cstdint>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// Both records are packed, so a member may lie at any address: copy members by value, never take a reference or a
// pointer to one. Both own nothing; their pointers lead into the byte window or into a CLinkedBuffer.
#pragma pack(push, 1)

// One frame. Cleared to zero before a parser fills it.
struct FrameInfo
{
    int32_t frameType;             // KX_FRAME_TYPE_*
    int32_t frameSubType;          // KX_FRAME_SUB_TYPE_*
    int32_t frameEncodeType;       // KX_ENCODE_VIDEO_* for a video frame, KX_ENCODE_AUDIO_* for an audio frame
    int32_t streamType;            // KX_STREAM_TYPE_* of the stream that carried the frame
    uint8_t* streamPointer;        // first byte of the elementary payload inside the frame
    int32_t streamLen;             // length of that payload in bytes
    uint8_t* framePointer;         // first byte of the whole frame as it stands in the stream, heads and tail included
    int32_t frameLen;              // length of the whole frame in bytes; the scan steps by it
    KX_TIME frameTime;             // wall-clock time of the frame
    int32_t timeStamp;             // stream time stamp of the frame
    int32_t frameSeq;              // frame sequence number; the key of the frame store's map
    int32_t errorFlags;            // KX_ERROR_FLAGS_*; the scan looks at it
    uint8_t totalChannels;         // channels in the stream
    uint8_t curChannel;            // channel of this frame
    uint8_t* extDataPtr;           // extension bytes of the frame, inside the byte window
    uint32_t extDataLen;           // their length
    int32_t nEncryptType;          // KX_ENCRYPT_*
    int32_t nEncryptLen;           // enciphered bytes in the frame
    uint16_t encryptOffset;        // where the enciphered part begins
    uint8_t incompleteFrameFlag;   // nonzero for a frame that was cut short
    uint16_t programCount;         // programs in the stream
    uint16_t programNum;           // program of this frame
    int32_t frameRate;             // video frames per second
    int32_t width;                 // picture width in pixels
    int32_t height;                // picture height in pixels
    int32_t deinterlace;           // KX_DEINTERLACE_*
    int32_t pictrueStructure;      // picture structure code
    uint8_t rotationAngle;         // rotation code
    uint8_t bFrameNum;             // number of B frames
    uint16_t rateValue;            // frame rate as a fraction, numerator
    uint16_t rateDenominator;      // denominator
    int32_t samplesPerSec;         // audio sample rate
    int32_t bitsPerSample;         // audio sample width
    int32_t channels;              // audio channels
    uint32_t audioBitrate;         // audio bit rate
    uint8_t nOverLayPicPurpose;    // overlay picture: purpose code
    uint8_t nOverLayPicAction;     // overlay picture: action code
    uint8_t nOverLayPicCodeFormat; // overlay picture: coding format
    uint16_t nOsdTopLeftCornercoordinateX; // OSD left edge
    uint16_t nOsdTopLeftCornercoordinateY; // OSD top edge
    uint32_t nOsdRgbaValue;                // OSD colour
    uint8_t nOsdWordSize;                  // OSD character size
    uint8_t nOsdWordAlignment;             // OSD alignment
    uint16_t companyType;                  // maker code carried by the stream
    uint16_t tpStreamHeaderLen;            // length of the transport head in front of the payload
    uint8_t nB5HeadEncryptVKid[16];        // key identifier from the extension head 0xB5
    uint32_t nB5HeadEncryptCrc16;          // its CRC-16 field
    uint8_t nB5HeadIV[16];                 // its initialisation vector
    uint32_t nB5Headoffset;                // where head 0xB5 lies in the frame
    uint8_t nB5Random[32];                 // its random bytes
    uint8_t nB6HeadGmIv[16];               // initialisation vector of head 0xB6
    uint32_t nB6HeadVekEncryptType;        // its key-encryption type
    uint8_t nB6HeadVkekVersion[20];        // its key-encryption-key version
    uint8_t nB6HeadVek[16];                // its wrapped key
    uint32_t nB6Headoffset;                // where head 0xB6 lies in the frame
    uint32_t nCommonEncryptHeadoffset;     // where the common encryption head lies in the frame
    uint8_t bHasDecrypt;                   // nonzero once the frame has been deciphered
    uint8_t allLevels;                     // count of scalable layers
    uint8_t levelOrder;                    // layer of this frame
    int32_t nVideoBitDepth;                // luma bit depth
    uint32_t nYuvTimeStamp;                // time stamp of the picture
    KX_SVAC2_OSD_INFO* pSvacOsdInfo;       // SVAC2 OSD records of this frame
    int32_t nSvacOsdNum;                   // their count
    int32_t cropBeforeWidth;               // width before cropping
    int32_t cropBeforeHeight;              // height before cropping
    uint32_t nSampleCount;                 // samples in the frame
    uint32_t nSampleSeq;                   // sequence of the first sample
    uint8_t bPrivacyEnable;                // privacy masking flag
    uint8_t nColorPrimaries;               // colour primaries code
    uint8_t nColorTransfer;                // transfer characteristics code
    uint8_t nColorSpace;                   // matrix coefficients code
    uint16_t nDisplayPrimaries[6];         // mastering display primaries
    uint16_t nWhitePoint[2];               // mastering display white point
    uint32_t nMaxLuminance;                // mastering display maximum luminance
    uint32_t nMinLuminance;                // minimum luminance
    uint16_t nMaxContentLightLevel;        // content light level
    uint16_t nMaxFrameAverageLightLevel;   // frame-average light level
    uint64_t utcTime;                      // UTC time of the frame
};

// What an I frame of the ZOAV family announces for the P frames behind it.
struct ExtZOAVIFrameInfo
{
    int32_t frameSeq;                       // frame sequence number; the key of the frame store's map
    int32_t mediaFlag;                      // media flag of the frame
    KX_FOG_THROUGH fogThrough;              // defog settings
    KX_DATA_CUSTOM_CHANGE customChangeInfo; // custom change record
    uint16_t n_slice;                       // slice grid: rows
    uint16_t m_slice;                       // slice grid: columns
    uint16_t srcPicWidth;                   // source picture width
    uint16_t srcPicHeight;                  // source picture height
    uint16_t sliceInfoOffset;               // where the slice table lies
    uint16_t sliceInfoLength;               // its length
    uint8_t fishEyeGain;                    // fisheye gain
    uint8_t fishEyeDenoiseLevel;            // fisheye denoise level
    uint8_t fishInstallStyle;               // fisheye mounting
    uint8_t fishEyeCorrectMode;             // fisheye correction mode
    uint16_t fishEyeCircleX;                // fisheye circle centre X
    uint16_t fishEyeCircleY;                // fisheye circle centre Y
    uint16_t fishEyeRadius;                 // fisheye radius
    uint8_t ratioWidth;                     // display ratio width
    uint8_t ratioHeigth;                    // display ratio height
    uint8_t ratioEncodeWidth;               // encoded ratio width
    uint8_t ratioEncodeHeight;              // encoded ratio height
    uint32_t digtalSignatureSamplenlen;     // signature: sampled length
    uint16_t digtalSignatureEncdeclen;      // signature: length of the enciphered digest
    uint8_t digtalSignatureDigestType;      // KX_DIGEST_ALGORITHM_*
    uint8_t digtalSignatureEncryptType;     // KX_DIGTAL_SIGNATURE_ENCRYPT_*
    uint8_t* digtalSignatureEncdecDataPtr;  // signature bytes
    uint8_t svacEncryptKeyLen;              // SVAC key length
    uint16_t svacEncryptDataLen;            // SVAC enciphered length
    uint8_t* svacEncryptKeyData;            // SVAC key bytes
    uint8_t osdExtDataLen;                  // length of the OSD extension
    uint8_t* osdExtDataPtr;                 // OSD extension bytes
    uint32_t refIFrameSeq;                  // sequence number of the reference I frame
    uint32_t encryptCheckSum;               // check sum over the enciphered part
    uint8_t encryptNonse[2];                // nonce bytes
    uint8_t nSliceSensor;                   // sensor slice rows
    uint8_t mSliceSensor;                   // sensor slice columns
    uint16_t slicePosOffset;                // where the slice position table lies
    uint16_t slicePosLength;                // its length
    int32_t frameSubType;                   // KX_FRAME_SUB_TYPE_*
};

#pragma pack(pop)

// The name of the same record where recordings are handled.
using ZOAV_FILE_EXT_INFO = ExtZOAVIFrameInfo;

static_assert(sizeof(FrameInfo) == 383);
static_assert(alignof(FrameInfo) == 1);
static_assert(sizeof(ExtZOAVIFrameInfo) == 114);
static_assert(alignof(ExtZOAVIFrameInfo) == 1);

// I, JPEG, smart I and smart I not to be rendered: the subtypes that a decoder can start from.
inline constexpr bool IsIFrameSubType(int32_t nFrameSubType)
{
    return nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_I_FRAME || nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME ||
           nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_I_FRAME ||
           nFrameSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_I_NORENDER;
}

// A frame that was deciphered reads as clear. Kinds that nothing here deciphers keep what they say.
inline void ClearFinishedCipher(FrameInfo& frame)
{
    const int32_t nEncryptType = frame.nEncryptType;
    const bool bDecipherable =
        nEncryptType == KX_ENCRYPT_AES || nEncryptType == KX_ENCRYPT_AES256 || nEncryptType == KX_ENCRYPT_AES256_GDPR2;
    if (bDecipherable && frame.bHasDecrypt != 0) {
        frame.nEncryptType = KX_ENCRYPT_UNKOWN;
        frame.nEncryptLen = 0;
    }
}

// A key frame serves on after its cycle, without what led into that cycle's window or spoke of that frame alone.
inline void DropWindowPointers(ExtZOAVIFrameInfo& ext)
{
    ext.osdExtDataPtr = nullptr;
    ext.svacEncryptKeyData = nullptr;
    ext.digtalSignatureEncdecDataPtr = nullptr;
    ext.digtalSignatureSamplenlen = 0;
    ext.osdExtDataLen = 0;
    ext.svacEncryptDataLen = 0;
    ext.svacEncryptKeyLen = 0;
}

} // namespace Marvane::FrameSift

#endif
