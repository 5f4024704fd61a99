/**
 * @file
 * Codes found in a frame record. A record holds them as int32_t and not as the enumerations, because a stream may carry
 * numbers that have no name here.
 */
#ifndef FRAMESIFT_FRAME_CODES_H
#define FRAMESIFT_FRAME_CODES_H

/**
 * What a frame carries: the values of KX_FRAME_INFO::frameType. It decides how the codec and the subtype are read, and
 * which of the other fields apply.
 */
typedef enum KX_FRAME_TYPE
{
    /** Not known; with errorFlags set, bytes that are no sound frame. Skip it. */
    KX_FRAME_TYPE_UNKNOWN = 0,
    /** A picture. frameEncodeType is a KX_ENCODE_VIDEO_*. */
    KX_FRAME_TYPE_VIDEO = 1,
    /** Sound. frameEncodeType is a KX_ENCODE_AUDIO_*; frameSubType means nothing. */
    KX_FRAME_TYPE_AUDIO = 2,
    /** Neither: overlays, metadata, events. frameSubType tells which. */
    KX_FRAME_TYPE_DATA = 3
} KX_FRAME_TYPE;

/**
 * What a frame is in particular: the values of KX_FRAME_INFO::frameSubType. The subtypes that a decoder can start from
 * are 0, 8, 18 and 20. A data frame may carry a number that is not named here; it is the recorder's own.
 */
typedef enum KX_FRAME_SUB_TYPE
{
    /** Not found out. */
    KX_FRAME_SUB_TYPE_DATA_INVALID = -1,
    /** I frame: decoding can start here. Also the 0 of frames whose subtype is not told. */
    KX_FRAME_SUB_TYPE_VIDEO_I_FRAME = 0,
    /** P frame: refers to frames before it. */
    KX_FRAME_SUB_TYPE_VIDEO_P_FRAME = 1,
    /** B frame: refers to frames before and behind it. */
    KX_FRAME_SUB_TYPE_VIDEO_B_FRAME = 2,
    /** S frame: global motion compensation, ISO/IEC 14496-2. */
    KX_FRAME_SUB_TYPE_VIDEO_S_FRAME = 3,
    /** Watermark: text. */
    KX_FRAME_SUB_TYPE_WATERMARK_TEXT = 4,
    /** Watermark: JPEG picture. */
    KX_FRAME_SUB_TYPE_WATERMARK_JPEG = 5,
    /** Watermark: bitmap. */
    KX_FRAME_SUB_TYPE_WATERMARK_BMP = 6,
    /** Intelligent video metadata. */
    KX_FRAME_SUB_TYPE_DATA_INTL = 7,
    /** JPEG picture: decoding can start here. */
    KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME = 8,
    /** Traffic data. */
    KX_FRAME_SUB_TYPE_DATA_ITS = 9,
    /** Position. */
    KX_FRAME_SUB_TYPE_DATA_GPS = 10,
    /** Intelligent video metadata, extended form. */
    KX_FRAME_SUB_TYPE_DATA_INTLEX = 11,
    /** Motion over the whole picture. */
    KX_FRAME_SUB_TYPE_DATA_MOTION_FULL = 12,
    /** Motion, as a capture card reports it. */
    KX_FRAME_SUB_TYPE_DATA_MOTION_CARD = 13,
    /** State of a traffic light. */
    KX_FRAME_SUB_TYPE_DATA_LIGHT = 14,
    /** Data of no particular kind. */
    KX_FRAME_SUB_TYPE_DATA_RAW = 15,
    /** Video synopsis. */
    KX_FRAME_SUB_TYPE_DATA_VIDEO_SYNOPSIS = 16,
    /** Session description, RFC 8866. */
    KX_FRAME_SUB_TYPE_DATA_SDP = 17,
    /** Smart I frame: decoding can start here. A stream handle reports it as a plain I frame. */
    KX_FRAME_SUB_TYPE_VIDEO_SMART_I_FRAME = 18,
    /** Smart P frame: refers to the last smart I frame alone. A stream handle reports it as a plain P frame. */
    KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME = 19,
    /** Smart I frame that is decoded as a reference, but not shown. A stream handle reports it as a plain I frame. */
    KX_FRAME_SUB_TYPE_VIDEO_SMART_I_NORENDER = 20,
    /** Picture to be laid over the video. */
    KX_FRAME_SUB_TYPE_POPULATION_PIC_OVERLAY = 21,
    /** Text to be laid over the video. */
    KX_FRAME_SUB_TYPE_DATA_OSD = 22,
    /** Tags of the scene. */
    KX_FRAME_SUB_TYPE_SCENE_INFORMATION_TAGGING = 23,
    /** Data in large amounts. */
    KX_FRAME_SUB_TYPE_DATA_WITH_LARGE_AMOUNT = 24,
    /** Auxiliary data of the encryption. */
    KX_FRAME_SUB_TYPE_DATA_CIPHER_AUXILIARY_FRAME = 25,
    /** Water level. */
    KX_FRAME_SUB_TYPE_DATA_WITH_WATER_LEVEL_MONITOR = 26,
    /** Sound level. */
    KX_FRAME_SUB_TYPE_DATA_WITH_SOUND_DECIBEL = 27,
    /** Motion of classified objects. */
    KX_FRAME_SUB_TYPE_DATA_WITH_SMART_MOTION = 28,
    /** Overlay drawings. */
    KX_FRAME_SUB_TYPE_ZOOP_WITH_SMART = 29,
    /** Index of I frames. */
    KX_FRAME_SUB_TYPE_DATA_I_INDEX = 128,
    /** Motion. */
    KX_FRAME_SUB_TYPE_DATA_MOTION = 129,
    /** Label. */
    KX_FRAME_SUB_TYPE_DATA_LABEL = 130,
    /** Caption. */
    KX_FRAME_SUB_TYPE_DATA_SCREEN_CAPTION = 131,
    /** Event. */
    KX_FRAME_SUB_TYPE_DATA_EVENT = 132,
    /** Head of a file, as some recorders put it in front of the stream. */
    KX_FRAME_SUB_TYPE_DATA_FILEHEAD = 255,
    /** Data of a kind that the recorder does not name. */
    KX_FRAME_SUB_TYPE_DATA_UNKOWN = 256
} KX_FRAME_SUB_TYPE;

/**
 * Damage found in a frame: the values of KX_FRAME_INFO::errorFlags. One value and no set of bits, whatever the name
 * says. Parsing goes on behind a damaged frame by itself; the codes say what to do with the record. A ZOAV
 * stream can give 0, 2, 3, 4, 5, 7, 8, 11 and 13; the others belong to formats that this version does not have.
 */
typedef enum KX_ERROR_FLAGS
{
    /** Sound. Use it. */
    KX_ERROR_FLAGS_NOERROR = 0,
    /** Time stamp in doubt. Use the payload, not the time. */
    KX_ERROR_FLAGS_TIMESTAND = 1,
    /** A frame was announced, but its sum, type, length or tail is wrong. Only its four letters are stepped over: skip
       it. */
    KX_ERROR_FLAGS_LENGTH = 2,
    /** The head does not match its sum. Do not trust the other fields. */
    KX_ERROR_FLAGS_HEAD_VERIFY = 3,
    /** The payload does not match the sum that the frame carries, or there is no payload to match it. It may show
       damage when decoded. Checked are clear frames, and enciphered ones of KX_ENCRYPT_AES as long as they are: the sum
       is over the enciphered bytes. */
    KX_ERROR_FLAGS_DATA_VERIFY = 4,
    /** The end of a frame whose head is lost, or a block stepped over unread. No pointers: skip it. */
    KX_ERROR_FLAGS_LOST_HEADER = 5,
    /** Damaged in a way that has no code. Skip it. */
    KX_ERROR_FLAGS_UNKNOWN = 6,
    /** Stands for frames missing in front of the next one: the numbers of the video frames have a gap, or go back.
       No bytes, no pointers; frameSeq is the number before the next frame, time and time stamp are that frame's. A
       decoder should wait for an I frame. Not given for a stream whose frames tell a number of channels. */
    KX_ERROR_FLAGS_LOSTFRAME = 7,
    /** The watermark does not match its record: the stream may have been altered. Report it. streamLen is what the
       record claims, which may reach past the frame: bound it by framePointer and frameLen. */
    KX_ERROR_FLAGS_WATERMARK = 8,
    /** Does not fit what stands around it. Skip it. */
    KX_ERROR_FLAGS_CONTEXT = 9,
    /** Sound, but of a kind that is not parsed. Skip it. */
    KX_ERROR_FLAGS_NOSUPPORT = 10,
    /** The tail is missing or does not match: the payload may be cut short. */
    KX_ERROR_FLAGS_FRAME_HALF_BAKED = 11,
    /** Sound, but of an unknown subtype. Use it if frameType is enough. */
    KX_ERROR_FLAGS_SUBTYPE_UNKNOWN = 12,
    /** The frame says that blocks are enciphered which do not lie in its payload; they were not deciphered. Skip it. A
       wrong key is not noticed: the payload comes out as noise, without an error. */
    KX_ERROR_FLAGS_DECRYPTION_FAILURE = 13
} KX_ERROR_FLAGS;

/** Encryption kinds: of a frame, and the kind of a key for KX_StreamEncryptKey, which takes two of them. */
typedef enum KX_ENCRYPT_TYPE
{
    /** Clear, or a cipher that is not known. */
    KX_ENCRYPT_UNKOWN = 0,
    /** AES in ECB mode, FIPS 197; whole blocks of 16 bytes, the rest of a payload stays clear. The one cipher that
       this library deciphers. */
    KX_ENCRYPT_AES = 1,
    /** DES, FIPS 46-3. */
    KX_ENCRYPT_DES = 2,
    /** Triple DES, FIPS 46-3. */
    KX_ENCRYPT_3DES = 3,
    /** A scheme of the recorder, without public standard. */
    KX_ENCRYPT_KTJM = 4,
    /** A scheme of the recorder, without public standard. */
    KX_ENCRYPT_SYJM = 5,
    /** A scheme of the recorder, without public standard. */
    KX_ENCRYPT_HZSD = 6,
    /** A scheme of the recorder, without public standard. */
    KX_ENCRYPT_ZBQL = 7,
    /** AES with 256 bits, FIPS 197, keys told apart by an identifier. */
    KX_ENCRYPT_AES256 = 8,
    /** AES with 256 bits, FIPS 197, second key scheme. */
    KX_ENCRYPT_AES256_GDPR2 = 9,
    /** SM1 in ECB mode; no public standard. */
    KX_ENCRYPT_SM1_ECB = 10,
    /** SM1 in OFB mode; no public standard. */
    KX_ENCRYPT_SM1_OFB = 11,
    /** SM4 in ECB mode, GB/T 32907 | ISO/IEC 18033-3. */
    KX_ENCRYPT_SM4_ECB = 12,
    /** SM4 in OFB mode, GB/T 32907 | ISO/IEC 18033-3. */
    KX_ENCRYPT_SM4_OFB = 13,
    /** A scheme of the recorder, without public standard. */
    KX_ENCRYPT_ANHENG = 14,
    /** AES with 256 bits in CBC mode, FIPS 197. */
    KX_ENCRYPT_AES256_CBC = 15
} KX_ENCRYPT_TYPE;

/**
 * Field structure of a picture, as the recorder states it: the values of KX_FRAME_INFO::deinterlace, which the callbacks
 * of a recording fill.
 */
typedef enum KX_DEINTERLACE
{
    /** Interlaced: both fields in one frame. */
    KX_DEINTERLACE_PAIR = 0,
    /** Interlaced: one field in each frame. */
    KX_DEINTERLACE_SINGLE = 1,
    /** Progressive, or not told. */
    KX_DEINTERLACE_NONE = 2
} KX_DEINTERLACE;

/**
 * Digest of a signature: the values of KX_FRAME_INFO::digtalSignatureDigestType. The misspelt names are part of the
 * boundary.
 */
typedef enum KX_DIGEST_ALGORITHM
{
    /** No signature, or a digest that is not known. */
    KX_DIGEST_ALGORITHM_UNKOWN = 0,
    /** SHA-1, FIPS 180-4. */
    KX_DIGEST_ALGORITHM_SHA1 = 1
} KX_DIGEST_ALGORITHM;

/**
 * Cipher of a signature: the values of KX_FRAME_INFO::digtalSignatureEncryptType.
 */
typedef enum KX_DIGTAL_SIGNATURE_ENCRYPT
{
    /** No signature, or a cipher that is not known. */
    KX_DIGTAL_SIGNATURE_ENCRYPT_UNKOWN = 0,
    /** RSA, RFC 8017. */
    KX_DIGTAL_SIGNATURE_ENCRYPT_RSA = 1
} KX_DIGTAL_SIGNATURE_ENCRYPT;

#endif
