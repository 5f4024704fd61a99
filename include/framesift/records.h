/**
 * @file
 * The small records that cross the boundary. The large one, a frame, is in frame_info.h.
 *
 * Order, type and place of every field are part of the boundary: callers built against another version rely on them.
 * Fields that are said to be not used are neither read nor written.
 */
#ifndef FRAMESIFT_RECORDS_H
#define FRAMESIFT_RECORDS_H

#include <stdbool.h>
#include <stdint.h>

/** Signed 64-bit integer. */
typedef int64_t KXint64;

/**
 * Calendar time as the recorder's clock showed it. It carries no zone: the recorder's local time, or whatever its clock
 * was set to. All fields 0: no time. Damaged frames may carry values out of range.
 */
typedef struct KX_TIME
{
    /** full year, as 2031; a ZOAV frame can say 2000 to 2063 */
    int32_t nYear;
    /** 1 to 12 */
    int32_t nMonth;
    /** 1 to 31 */
    int32_t nDay;
    /** 0 to 23 */
    int32_t nHour;
    /** 0 to 59 */
    int32_t nMinute;
    /** 0 to 59 */
    int32_t nSecond;
    /** 0 to 999; 0 also where the stream tells no milliseconds */
    int32_t nMilliSecond;
} KX_TIME;

/** Settings of a camera's optical defogging. The numbers are the maker's own. */
typedef struct KX_FOG_THROUGH
{
    /** 1: the stream carries the settings; 0: all else here means nothing */
    int32_t bIsExist;
    /** mode of the maker, 0 to 255 */
    int32_t nMode;
    /** strength, 0 to 255 */
    int32_t nIntension;
    /** mode of the air light estimate, 0 to 255 */
    int32_t nAirLightMode;
    /** strength of the air light, 0 to 255 */
    int32_t nAirLightIntesion;
} KX_FOG_THROUGH;

/** A change that the recorder announces in a code of its own. */
typedef struct KX_DATA_CUSTOM_CHANGE
{
    /** kind of the change; 0: none announced */
    uint8_t chType;
    /** length that the recorder states, in bytes */
    uint8_t chLength;
    /** new value */
    uint8_t chValue;
    /** not used */
    uint8_t nReserved;
} KX_DATA_CUSTOM_CHANGE;

/** One on-screen text of an SVAC stream (GB/T 25724-2017), field by field as its extension unit carries it. */
typedef struct KX_SVAC2_OSD_INFO
{
    /** id of the extension */
    uint8_t chExternsion_id;
    /** its length in bytes */
    uint8_t chExtension_length;
    /** kind of the text */
    uint8_t chSub_type;
    /** character code */
    uint8_t chCode_type;
    /** alignment */
    uint8_t chAlign_type;
    /** character size */
    uint8_t chChar_size;
    /** font */
    uint8_t chChar_type;
    /** top edge, low byte */
    uint8_t chTop_low8;
    /** top edge, high byte */
    uint8_t chTop_high8;
    /** left edge, low byte */
    uint8_t chLeft_low8;
    /** left edge, high byte */
    uint8_t chLeft_high8;
    /** bytes used in chOsd_data, 0 to 243 */
    uint8_t chLen;
    /** not used */
    uint8_t chRes[3];
    /** the text, in the character code above; not zero-terminated */
    uint8_t chOsd_data[243];
} KX_SVAC2_OSD_INFO;

/**
 * Position of one indexed frame of a recording, as fFileIndex gets it. It ends with the callback.
 */
typedef struct KX_INDEX_INFO
{
    /** byte offset of the payload in the file, from 0 */
    KXint64 streamOffset;
    /** byte offset of the frame in the file, from 0 */
    KXint64 frameOffset;
    /** number of the frame in the index, from 0 */
    KXint64 index;
    /** not used */
    uint8_t reserved[56];
} KX_INDEX_INFO;

/**
 * Summary of a recording, as fFileInfo gets it. It ends with the callback.
 *
 * The counts are those of the bytes that the pass has read, frames with KX_FRAME_INFO::errorFlags left out: of the
 * whole recording, unless the handle was destroyed or KX_FileParser called again meanwhile.
 */
typedef struct KX_FILE_INFO
{
    /** size in bytes, modulo 2^32; the whole number is filesize64 */
    uint32_t filesize;
    /** time at which the recording was made, in seconds; always 0: no parser of this version knows it */
    uint32_t createtime;
    /** seconds: the sum of 1000 / rate milliseconds, each cut to a whole one, over the video frames, by the frame rate
       that the key frame in front of them states. Frames in front of the first rate do not count, and a gap in the
       recording adds nothing. 0: less than one, or no rate told */
    uint32_t duration;
    /** frames of all kinds */
    uint32_t framenum;
    /** video frames among them */
    uint32_t videonum;
    /** audio frames among them */
    uint32_t audionum;
    /** key frames among the video frames */
    uint32_t keyframenum;
    /** size of the largest frame in bytes, damaged ones too, as far as they have a length */
    uint32_t maxframesize;
    /** size in bytes, as it was when the pass began */
    KXint64 filesize64;
    /** time of the first frame; always 0: the pass of KX_FileParser does not look for it. KX_FRAME_INFO::frameTime of
       the first frame tells it */
    KXint64 fileStartTime;
    /** time of the last frame; always 0, as fileStartTime */
    KXint64 fileEndTime;
    /** always 0: the pass of KX_FileParser does not find out. No video: videonum is 0 */
    uint8_t bPureAudio;
    /** not used */
    uint8_t reserved[71];
} KX_FILE_INFO;

/**
 * Settings of the library, for KX_LoadLibrary. The caller owns the record and what its pointers lead to; none of it is
 * needed behind the call.
 */
typedef struct KX_INIT_INFO
{
    /** not read */
    uint8_t* modulePath;
    /** kept as it stands, never followed and not owned; null is fine */
    void* moduleHandle;
    /** not used */
    uint8_t reserved[56];
} KX_INIT_INFO;

/**
 * A public key: a point of an elliptic curve over a field of 256 bits, as SM2 has it (GB/T 32918). Both numbers fill
 * their arrays, with zeros in front.
 */
typedef struct KX_PUBLICKEY_PARAM
{
    /** abscissa, big-endian */
    uint8_t x[32];
    /** ordinate, big-endian */
    uint8_t y[32];
} KX_PUBLICKEY_PARAM;

/** One key with its identifier. The caller owns what the pointers lead to. No call of this version takes it. */
typedef struct KX_DECRYPT_PARAM
{
    /** the key; not zero-terminated */
    char* pKey;
    /** its length in bytes, at least 1 */
    int32_t nKeyLen;
    /** identifier of the key, as the frames name it; not zero-terminated; null: none */
    char* pKeyId;
    /** its length in bytes; 0: none */
    int32_t nKeyIdLen;
    /** true: pPublicKey is set */
    bool bSetPublicKey;
    /** public key; null: none */
    KX_PUBLICKEY_PARAM* pPublicKey;
    /** not used */
    char nReserved[19];
} KX_DECRYPT_PARAM;

/**
 * What of a stream handle is to be captured to a file, for KX_CreatePrintLog. Each of the two captures of a handle can
 * be switched on once and runs as long as the handle's memory lives, past its KX_Destroy. The file is
 * "CDbgStreamSave_0_..." or "CDbgStreamSave_1_..." with two addresses in its name and ".dat" at its end.
 */
typedef struct KX_WRITE_FILE_INFO
{
    /** directory of the capture, zero-terminated; borrowed for the length of the call; must not be null */
    char* pWritePath;
    /** the stream handle, from KX_CreateFrameSift */
    void* handle;
    /** 0: the chunks that go in; 1: the payloads that come out; any other: both. Only the low 32 bits are read */
    int64_t nWriteType;
    /** bytes; once a file holds more than this, the next write starts it anew. Only the low 32 bits are read */
    int64_t nWriteSize;
    /** not used */
    int64_t nReserved[146];
} KX_WRITE_FILE_INFO;

#endif
