/**
 * @file
 * Stream formats and how each can be parsed.
 */
#ifndef FRAMESIFT_STREAM_TYPES_H
#define FRAMESIFT_STREAM_TYPES_H

/**
 * Stream formats. The list is that of a whole family of products; this library detects and parses 8, 194, 195, 196
 * and 197, and parses 1 in a file whose handle is made with that type.
 */
typedef enum KX_STREAM_TYPE
{
    /** Not known yet. */
    KX_STREAM_TYPE_UNKNOWN = 0,
    /**
     * Raw MPEG-4 Visual, ISO/IEC 14496-2, audio of the older formats in between. Never detected: give it to
     * KX_CreateFileHandle. The frames bear KX_STREAM_TYPE_RAW_MPEG4.
     */
    KX_STREAM_TYPE_MPEG4 = 1,
    /** An older format of the ZOAV family; detected as KX_STREAM_TYPE_OLD. */
    KX_STREAM_TYPE_ZOPT = 3,
    /** An older format of the ZOAV family; detected as KX_STREAM_TYPE_OLD. */
    KX_STREAM_TYPE_NEW = 4,
    /** An older format of the ZOAV family; detected as KX_STREAM_TYPE_OLD. */
    KX_STREAM_TYPE_HB = 5,
    /** Pure audio of the older formats; detected as KX_STREAM_TYPE_OLD. */
    KX_STREAM_TYPE_AUDIO = 6,
    /** MPEG program stream, ITU-T H.222.0 | ISO/IEC 13818-1. */
    KX_STREAM_TYPE_PS = 7,
    /** ZOAV frames, magic "ZOAV". Detected and parsed. */
    KX_STREAM_TYPE_ZOSTD = 8,
    /** ASF file. */
    KX_STREAM_TYPE_ASF = 9,
    /** 3GPP file, 3GPP TS 26.244. */
    KX_STREAM_TYPE_3GPP = 10,
    /** Elementary stream of any kind. */
    KX_STREAM_TYPE_RAW = 11,
    /** MPEG transport stream, ITU-T H.222.0 | ISO/IEC 13818-1. */
    KX_STREAM_TYPE_TS = 12,
    /** ZOAV frames with scalable video. */
    KX_STREAM_TYPE_SVC = 13,
    /** AVI file. */
    KX_STREAM_TYPE_AVI = 14,
    /** MP4 file, ISO/IEC 14496-14. */
    KX_STREAM_TYPE_MP4 = 15,
    /** JPEG pictures as multipart HTTP answers. */
    KX_STREAM_TYPE_CGI = 16,
    /** WAVE file. */
    KX_STREAM_TYPE_WAV = 17,
    /** FLV file. */
    KX_STREAM_TYPE_FLV = 18,
    /** Matroska file. */
    KX_STREAM_TYPE_MKV = 19,
    /** RTP packets, RFC 3550. */
    KX_STREAM_TYPE_RTP = 20,
    /** Elementary stream of MPEG-4 Visual, ISO/IEC 14496-2. */
    KX_STREAM_TYPE_RAW_MPEG4 = 21,
    /** Elementary stream of ITU-T H.264 | ISO/IEC 14496-10. */
    KX_STREAM_TYPE_RAW_H264 = 22,
    /** Elementary stream of ITU-T H.265 | ISO/IEC 23008-2. */
    KX_STREAM_TYPE_RAW_H265 = 23,
    /** WMV file. */
    KX_STREAM_TYPE_WMV = 24,
    /** Elementary stream of ITU-T H.262 | ISO/IEC 13818-2. */
    KX_STREAM_TYPE_RAW_MPEG2 = 25,
    /** Elementary stream of SVAC, GB/T 25724. */
    KX_STREAM_TYPE_RAW_SVAC = 26,
    /** MOV file. */
    KX_STREAM_TYPE_MOV = 27,
    /** MPEG program stream of a disc. */
    KX_STREAM_TYPE_VOB = 28,
    /** Elementary stream of ITU-T H.263. */
    KX_STREAM_TYPE_RAW_H263 = 29,
    /** RealMedia file. */
    KX_STREAM_TYPE_RM = 30,
    /** Program stream of the ZOAV family. */
    KX_STREAM_TYPE_ZOPS = 31,
    /** Elementary stream of sound. */
    KX_STREAM_TYPE_RAW_AUDIO = 32,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_HENGYI = 129,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_HUANGHE = 130,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_LANGCHI = 131,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_TDWY = 132,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_DALI = 133,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_LVFF = 134,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_H3C = 135,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_FENGDA = 136,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_MDVRX = 137,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_PU8000 = 138,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_DVR = 139,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_IFV = 140,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_264DV = 141,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_ZWSJ = 142,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_SANLI = 143,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_HIK_PRIVATE = 144,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_HIK_PS = 145,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_STAR = 146,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_LIYUAN = 147,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_KAER = 148,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_SSAV = 149,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_ZLAV = 150,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_ZSLC_PS = 151,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_STAR_EX = 152,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_DONGYANG = 153,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_CREARO = 154,
    /** MPEG audio layer III, ISO/IEC 11172-3 and 13818-3. */
    KX_STREAM_TYPE_MP3 = 155,
    /** AAC with ADTS heads, ISO/IEC 14496-3. */
    KX_STREAM_TYPE_AAC_ADTS = 156,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_XGZT = 157,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_HBStreamV30 = 158,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_LX = 159,
    /** MP4 file, ISO/IEC 14496-14, for playing from a server. */
    KX_STREAM_TYPE_MP4VOD = 160,
    /** JPEG pictures one behind the other, ITU-T T.81 | ISO/IEC 10918-1. */
    KX_STREAM_TYPE_RAW_MJPEG = 161,
    /** A recorder format without public standard. */
    KX_STREAM_TYPE_RUIMING = 162,
    /** An older format of the ZOAV family; detected as KX_STREAM_TYPE_OLD. */
    KX_STREAM_TYPE_NEW_EX = 192,
    /** An older format of the ZOAV family; detected as KX_STREAM_TYPE_OLD. */
    KX_STREAM_TYPE_NEW_EX1 = 193,
    /**
     * One of the older formats of the ZOAV family: New (three forms of heads), HB, ZOPT, or audio alone. Detected and
     * parsed; which of them it is shows with the first video. A recording of HB, or of audio alone with heads of 16 bytes,
     * is not indexed and cannot be read as a file: its pass ends at the first frame, with the end mark. Read such a file
     * as a stream.
     */
    KX_STREAM_TYPE_OLD = 194,
    /** ZOAV frames, magic "MYAV". Detected and parsed. */
    KX_STREAM_TYPE_STD_MY = 195,
    /** ZOAV frames, magic "LXAV". Detected and parsed. */
    KX_STREAM_TYPE_STD_LX = 196,
    /** ZOAV frames, magic "WMAV". Detected and parsed. */
    KX_STREAM_TYPE_STD_WM = 197
} KX_STREAM_TYPE;

/** How a stream format can be parsed, as KX_GetParseType tells. */
typedef enum KX_PARSE_TYPE
{
    /** Not at all, or not in the table. */
    KX_PARSE_TYPE_NOT_SUPPORT = 0,
    /** As a stream only. */
    KX_PARSE_TYPE_ONLY_STREAM = 1,
    /** As a recording only. */
    KX_PARSE_TYPE_ONLY_FILE = 2,
    /** As a stream and as a recording. */
    KX_PARSE_TYPE_SUPPORT_ALL = 3
} KX_PARSE_TYPE;

#endif
