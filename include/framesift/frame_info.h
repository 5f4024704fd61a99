/**
 * @file
 * The record of one frame.
 */
#ifndef FRAMESIFT_FRAME_INFO_H
#define FRAMESIFT_FRAME_INFO_H

#include <stdint.h>

#include "framesift/records.h"

#pragma pack(push, 4)
/**
 * One frame. There are two kinds of record, by where it comes from:
 *  - The caller allocates it, and KX_GetOneFrame or KX_FileReadOneFrame fills it: exactly the 18 fields marked "Filled"
 *    are written, at every call. The library never reads or writes any other, so a caller who wants those to be 0
 *    clears the record first.
 *  - A callback of KX_FileParser gets it, and it ends with the callback: the fields marked "Filled" and those marked
 *    "Callback" are set, all others are 0.
 *
 * Where a field does not apply to the kind of frame, or the stream does not tell, it is 0. Fields marked "Not filled"
 * are set by no call of this version.
 *
 * The record owns nothing. Its pointers lead into the chunk given to KX_ParseData or into memory of the handle, and end
 * where the call that filled it says so.
 *
 * It is packed to 4 bytes: on a 64-bit machine pointers and 64-bit numbers in it may stand on a multiple of 4 only.
 * Read them by name; keep no pointer to such a field.
 */
typedef struct KX_FRAME_INFO
{
    /** Filled. KX_FRAME_TYPE_*; 0: a damaged or unknown frame */
    int32_t frameType;
    /** Filled. KX_FRAME_SUB_TYPE_*; 0 is the I frame, and stands at audio and damaged frames without meaning */
    int32_t frameSubType;
    /** Filled. KX_ENCODE_VIDEO_* for a video frame, KX_ENCODE_AUDIO_* for an audio frame; 0: not told */
    int32_t frameEncodeType;
    /** Filled. KX_STREAM_TYPE_* in a frame of a recording; always 0 in a frame of a stream handle: ask KX_GetStreamType
       */
    int32_t streamType;
    /** Filled. first byte of the payload (picture, sound or data) inside the frame; null where there is none */
    uint8_t* streamPointer;
    /** Filled. bytes of the payload; 0: none; below 0: the frame claims more heads than it holds, and has no payload.
       With KX_ERROR_FLAGS_WATERMARK only a claim of the stream */
    int32_t streamLen;
    /** Filled. first byte of the whole frame as it stands in the stream, heads and tail included; null for a tail alone
     */
    uint8_t* framePointer;
    /** Filled. bytes of the whole frame; 4 for a damaged one, of which only the four letters are stepped over; 0 for a
       record that stands for lost frames */
    int32_t frameLen;
    /** Filled. time of the frame by the recorder's clock, which carries no zone; in doubt for a damaged frame */
    KX_TIME frameTime;
    /** Filled. running time stamp, as a rule in milliseconds; in a ZOAV stream 0 to 65535, and then from 0 again */
    int32_t timeStamp;
    /** Filled. number of the frame as the recorder counted it, 32 bits; above INT32_MAX it reads negative */
    int32_t frameSeq;
    /** Filled. video frames per second as the last key frame states it, or this frame for itself; 0: not told */
    int32_t frameRate;
    /** Filled. picture width in pixels, cropped: what the payload of the last key frame says (H.264, H.265), or that of
       the frame itself (JPEG), else what the recorder states; 0: not told, or no video */
    int32_t width;
    /** Filled. picture height in pixels, as width */
    int32_t height;
    /** Callback. KX_DEINTERLACE_* */
    int32_t deinterlace;
    /** Not filled. flag of the maker */
    int32_t mediaFlag;
    /** Filled. sample rate in Hz, 4000 to 192000; 0: not known, or no audio */
    int32_t samplesPerSec;
    /** Filled. bits of one sample, 8 or 16; 0: not told, or no audio */
    int32_t bitsPerSample;
    /** Filled. audio channels, 1 for mono; 0: not told, or no audio */
    int32_t channels;
    /** Filled. KX_ERROR_FLAGS_*, a value and no set of bits; 0: sound */
    int32_t errorFlags;
    /** Callback. settings of the defogging */
    KX_FOG_THROUGH fogThrough;
    /** Callback. number of scalable layers; 0: the stream is not scalable */
    uint8_t allLevels;
    /** Callback. layer of this frame, from 0 */
    uint8_t levelOrder;
    /** Callback. number of the maker; 0: not told */
    uint16_t companyType;
    /** Callback. bytes of a transport head in front of the payload; 0: none */
    uint16_t tpStreamHeaderLen;
    /** Callback. channels that share the stream; 0: one, not numbered */
    uint8_t totalChannels;
    /** Callback. channel of this frame */
    uint8_t curChannel;
    /** Callback. KX_ENCRYPT_*; 0: clear */
    int32_t nEncryptType;
    /** Callback. enciphered bytes of the payload; 0: none */
    int32_t nEncryptLen;
    /** Callback. a change that the recorder announces */
    KX_DATA_CUSTOM_CHANGE customChangeInfo;
    /** Callback. frames per second as a fraction: numerator; 0: not told */
    uint16_t rateValue;
    /** Callback. its denominator; 0: not told */
    uint16_t rateDenominator;
    /** Callback. rows of the grid of slices; 0: no grid */
    uint16_t n_slice;
    /** Callback. columns of the grid of slices; 0: no grid */
    uint16_t m_slice;
    /** Callback. the same as srcPicHeight: the width of the source picture is not handed out */
    uint16_t srcPicWidth;
    /** Callback. height of the source picture in pixels; 0: not told */
    uint16_t srcPicHeight;
    /** Callback. where the table of slices lies, in bytes from the start of the frame */
    uint16_t sliceInfoOffset;
    /** Callback. bytes of that table, 16 for each slice; 0: none */
    uint16_t sliceInfoLength;
    /** Callback. fisheye lens: gain */
    uint8_t fishEyeGain;
    /** Callback. fisheye lens: level of noise reduction */
    uint8_t fishEyeDenoiseLevel;
    /** Callback. fisheye lens: code of the mounting */
    uint8_t fishInstallStyle;
    /** Callback. fisheye lens: code of the correction */
    uint8_t fishEyeCorrectMode;
    /** Callback. fisheye lens: centre of the circle, from the left, in the maker's units */
    uint16_t fishEyeCircleX;
    /** Callback. fisheye lens: centre of the circle, from the top, in the same units */
    uint16_t fishEyeCircleY;
    /** Callback. fisheye lens: radius of the circle, in the same units */
    uint16_t fishEyeRadius;
    /** Callback. where the enciphered part begins, in bytes from the start of the payload */
    uint16_t encryptOffset;
    /** Callback. 1: top field, 2: bottom field, 3: frame, 0: not known. The misspelt name is part of the boundary */
    int32_t pictrueStructure;
    /** Callback. display ratio: width part; 0: not told */
    uint8_t ratioWidth;
    /** Callback. display ratio: height part; 0: not told */
    uint8_t ratioHeigth;
    /** Callback. ratio of the coded picture: width part; 0: not told */
    uint8_t ratioEncodeWidth;
    /** Callback. ratio of the coded picture: height part; 0: not told */
    uint8_t ratioEncodeHeight;
    /** Callback. signature: bytes that it covers */
    uint32_t digtalSignatureSamplenlen;
    /** Callback. signature: bytes of the enciphered digest; 0: no signature */
    uint16_t digtalSignatureEncdeclen;
    /** Callback. signature: KX_DIGEST_ALGORITHM_* */
    uint8_t digtalSignatureDigestType;
    /** Callback. signature: KX_DIGTAL_SIGNATURE_ENCRYPT_* */
    uint8_t digtalSignatureEncryptType;
    /** Callback. signature: the enciphered digest; null: none */
    uint8_t* digtalSignatureEncdecDataPtr;
    /** Callback. code of the rotation of the picture; 0: none */
    uint8_t rotationAngle;
    /** Callback. SVAC (GB/T 25724): bytes of the key; 0: none */
    uint8_t svacEncryptKeyLen;
    /** Callback. SVAC: enciphered bytes; 0: none */
    uint16_t svacEncryptDataLen;
    /** Callback. SVAC: the key; null: none */
    uint8_t* svacEncryptKeyData;
    /** Callback. audio bits per second; 0: not told */
    uint32_t audioBitrate;
    /** Callback. extension bytes of the frame; null: none */
    uint8_t* extDataPtr;
    /** Callback. how many; 0: none */
    uint32_t extDataLen;
    /** Callback. B frames between two P frames; 0: none */
    uint8_t bFrameNum;
    /** Callback. bytes of the on-screen text extension; 0: none */
    uint8_t osdExtDataLen;
    /** Callback. nonzero: the recorder cut this frame short */
    uint8_t incompleteFrameFlag;
    /** Not filled. not used */
    uint8_t resv[1];
    /** Callback. the on-screen text extension; null: none */
    uint8_t* osdExtDataPtr;
    /** Callback. number of the I frame that this frame refers to */
    uint32_t refIFrameSeq;
    /** Callback. check sum over the enciphered part */
    uint32_t encryptCheckSum;
    /** Callback. nonce of that part */
    uint8_t encryptNonse[2];
    /** Callback. programs that share the stream; 0: not told */
    uint16_t programCount;
    /** Callback. program of this frame */
    uint16_t programNum;
    /** Callback. sensors side by side: rows; 0: one sensor */
    uint8_t nSliceSensor;
    /** Callback. sensors side by side: columns; 0: one sensor */
    uint8_t mSliceSensor;
    /** Callback. where the table of their positions lies, in bytes from the start of the frame */
    uint16_t slicePosOffset;
    /** Callback. bytes of that table, 8 for each sensor; 0: none */
    uint16_t slicePosLength;
    /** Callback. overlay picture: code of its purpose */
    uint8_t nOverLayPicPurpose;
    /** Callback. overlay picture: code of what to do with it */
    uint8_t nOverLayPicAction;
    /** Callback. overlay picture: code of its picture format */
    uint8_t nOverLayPicCodeFormat;
    /** Not filled. not used */
    uint8_t nReserved2[1];
    /** Callback. on-screen text: left edge in pixels */
    uint16_t nOsdTopLeftCornercoordinateX;
    /** Callback. on-screen text: top edge in pixels */
    uint16_t nOsdTopLeftCornercoordinateY;
    /** Callback. on-screen text: size of the characters */
    uint8_t nOsdWordSize;
    /** Callback. on-screen text: code of the alignment */
    uint8_t nOsdWordAlignment;
    /** Callback. key of its own for this frame: CRC-16 that the frame states */
    uint16_t nB5HeadEncryptCrc16;
    /** Callback. key of its own for this frame: initialisation vector */
    uint8_t nB5HeadIV[16];
    /** Callback. key of its own for this frame: identifier of the key */
    uint8_t nB5HeadEncryptVKid[16];
    /** Callback. on-screen text: colour with opacity, as the recorder packs it */
    uint32_t nOsdRgbaValue;
    /** Not filled. key wrapped in the frame: initialisation vector */
    uint8_t nB6HeadGmIv[16];
    /** Not filled. key wrapped in the frame: KX_ENCRYPT_* that wraps it */
    uint32_t nB6HeadVekEncryptType;
    /** Callback. key wrapped in the frame: version of the wrapping key */
    uint8_t nB6HeadVkekVersion[20];
    /** Not filled. key wrapped in the frame: the wrapped key */
    uint8_t nB6HeadVek[16];
    /** Callback. bits of a luma sample; 0: not known */
    int32_t nVideoBitDepth;
    /** Not filled. time stamp that the source put on the picture; 0: none */
    uint32_t nYuvTimeStamp;
    /** Callback. on-screen texts of an SVAC stream; null: none */
    KX_SVAC2_OSD_INFO* pSvacOsdInfo;
    /** Callback. how many; 0: none */
    int32_t nSvacOsdNum;
    /** Callback. coded width in pixels, before cropping; 0: not known */
    int32_t cropBeforeWidth;
    /** Callback. coded height in pixels, before cropping; 0: not known */
    int32_t cropBeforeHeight;
    /** Callback. nonzero: parts of the picture are masked for privacy */
    uint8_t bPrivacyEnable;
    /** Callback. code of the library's own for ColourPrimaries of ITU-T H.273 | ISO/IEC 23091-2; 0: not known */
    uint8_t nColorPrimaries;
    /** Callback. the same for TransferCharacteristics of H.273; 0: not known */
    uint8_t nColorTransfer;
    /** Callback. the same for MatrixCoefficients of H.273; 0: not known */
    uint8_t nColorSpace;
    /** Callback. mastering display (SMPTE ST 2086): x and y of three primaries as coded, in units of 0.00002 */
    uint16_t nDisplayPrimaries[6];
    /** Callback. mastering display: x and y of the white point, in units of 0.00002 */
    uint16_t nWhitePoint[2];
    /** Callback. mastering display: largest luminance in units of 0.0001 cd/m2; 0: not told */
    uint32_t nMaxLuminance;
    /** Callback. mastering display: smallest luminance in units of 0.0001 cd/m2 */
    uint32_t nMinLuminance;
    /** Callback. largest light level of the content (CTA-861) in cd/m2; 0: not told */
    uint16_t nMaxContentLightLevel;
    /** Callback. largest light level of a frame's average in cd/m2; 0: not told */
    uint16_t nMaxFrameAverageLightLevel;
    /** Not filled. nonzero: the payload has been deciphered */
    uint8_t bHasDecrypt;
    /** Not filled. not used */
    uint8_t nResv[3];
    /** Callback. UTC time as the recorder states it; 0: not told */
    KXint64 utcTime;
    /** Not filled. not used */
    uint8_t nReserved[96];
} KX_FRAME_INFO;
#pragma pack(pop)

#endif
