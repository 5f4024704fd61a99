/**
 * @file
 * Codec codes of a frame record.
 */
#ifndef FRAMESIFT_CODEC_CODES_H
#define FRAMESIFT_CODEC_CODES_H

/**
 * Video codecs, the values of KX_FRAME_INFO::frameEncodeType in a video frame. A frame of a ZOAV stream can carry
 * KX_ENCODE_VIDEO_UNKNOWN, _MPEG4, _HI_H264, _JPEG, _ZO_H264, _MPEG2, _VNC, _SVAC, _ZO_H265, _SVAC2, _H263, _AVS3 and
 * _HIK_H264; the other codes belong to other formats.
 */
typedef enum KX_ENCODE_VIDEO_TYPE
{
    /** Not told by the stream, or a code that the library does not know. */
    KX_ENCODE_VIDEO_UNKNOWN = 0,
    /** MPEG-4 Visual, ISO/IEC 14496-2. */
    KX_ENCODE_VIDEO_MPEG4 = 1,
    /** ITU-T H.264 | ISO/IEC 14496-10, byte stream (Annex B), under the first of its two recorder codes. */
    KX_ENCODE_VIDEO_HI_H264 = 2,
    /** JPEG, ITU-T T.81 | ISO/IEC 10918-1; each frame is one picture. */
    KX_ENCODE_VIDEO_JPEG = 3,
    /** ITU-T H.264 | ISO/IEC 14496-10, byte stream (Annex B), under the second of its two recorder codes. The usual
       one. */
    KX_ENCODE_VIDEO_ZO_H264 = 4,
    /** JPEG 2000, ITU-T T.800 | ISO/IEC 15444-1. */
    KX_ENCODE_VIDEO_JPEG2000 = 6,
    /** AVS, GB/T 20090.2. */
    KX_ENCODE_VIDEO_AVS = 7,
    /** ITU-T H.264 | ISO/IEC 14496-10, byte stream (Annex B), out of a standard container. */
    KX_ENCODE_VIDEO_STD_H264 = 8,
    /** MPEG-2 video, ITU-T H.262 | ISO/IEC 13818-2. */
    KX_ENCODE_VIDEO_MPEG2 = 9,
    /** Screen content of the remote framebuffer protocol, RFC 6143. */
    KX_ENCODE_VIDEO_VNC = 10,
    /** SVAC, GB/T 25724-2010. */
    KX_ENCODE_VIDEO_SVAC = 11,
    /** ITU-T H.265 | ISO/IEC 23008-2, byte stream (Annex B). */
    KX_ENCODE_VIDEO_ZO_H265 = 12,
    /** SVAC, second edition, GB/T 25724-2017. */
    KX_ENCODE_VIDEO_SVAC2 = 13,
    /** ITU-T H.263. */
    KX_ENCODE_VIDEO_H263 = 35,
    /** Packets of a container that is passed on whole; the packets say what is in them. */
    KX_ENCODE_VIDEO_PACKET = 36,
    /** MS MPEG-4 version 1 of AVI files; no public standard, and not ISO/IEC 14496-2. */
    KX_ENCODE_VIDEO_MSMPEG4V1 = 37,
    /** MS MPEG-4 version 2; no public standard, and not ISO/IEC 14496-2. */
    KX_ENCODE_VIDEO_MSMPEG4V2 = 38,
    /** MS MPEG-4 version 3; no public standard, and not ISO/IEC 14496-2. */
    KX_ENCODE_VIDEO_MSMPEG4V3 = 39,
    /** WMV 7; no public standard. */
    KX_ENCODE_VIDEO_WMV1 = 40,
    /** WMV 8; no public standard. */
    KX_ENCODE_VIDEO_WMV2 = 41,
    /** RealVideo 1.0; no public standard. */
    KX_ENCODE_VIDEO_RV10 = 42,
    /** RealVideo 2.0; no public standard. */
    KX_ENCODE_VIDEO_RV20 = 43,
    /** RealVideo 3.0; no public standard. */
    KX_ENCODE_VIDEO_RV30 = 44,
    /** RealVideo 4.0; no public standard. */
    KX_ENCODE_VIDEO_RV40 = 45,
    /** The H.263 variant of FLV files. */
    KX_ENCODE_VIDEO_FLV1 = 46,
    /** Screen video of FLV files. */
    KX_ENCODE_VIDEO_FLASHSV = 47,
    /** Screen video of FLV files, version 2. */
    KX_ENCODE_VIDEO_FLASHSV2 = 48,
    /** VP6; no public standard. */
    KX_ENCODE_VIDEO_VP6 = 49,
    /** VP6 with an alpha channel, as in FLV files. */
    KX_ENCODE_VIDEO_VP6A = 50,
    /** VP6 as in FLV files, upside down. */
    KX_ENCODE_VIDEO_VP6F = 51,
    /** Pictures without compression; the container tells their layout. */
    KX_ENCODE_VIDEO_RAW_VIDEO = 52,
    /** ITU-T H.261. */
    KX_ENCODE_VIDEO_H261 = 53,
    /** AV1, bitstream of the Alliance for Open Media. */
    KX_ENCODE_VIDEO_AV1 = 54,
    /** AVS3, IEEE 1857.10. */
    KX_ENCODE_VIDEO_AVS3 = 55,
    /** ITU-T H.264 | ISO/IEC 14496-10 with additions of the recorder; may need a decoder of its own. */
    KX_ENCODE_VIDEO_HIK_H264 = 129,
    /** A variant of H.264 in packing of its own; needs a decoder of its own. */
    KX_ENCODE_VIDEO_HIK_HKH4 = 130,
    /** A variant of H.264 in packing of its own; needs a decoder of its own. */
    KX_ENCODE_VIDEO_LY_N264 = 131
} KX_ENCODE_VIDEO_TYPE;

/**
 * Audio codecs, the values of KX_FRAME_INFO::frameEncodeType in an audio frame. They are the numbers of the wire, so
 * that a frame may carry one that is not named here: such a codec is not known, and the frame is sound nevertheless.
 */
typedef enum KX_ENCODE_AUDIO_TYPE
{
    /** Not told by the stream. */
    KX_ENCODE_AUDIO_UNKNOWN = 0,
    /** Linear PCM, 8 bits. */
    KX_ENCODE_AUDIO_PCM = 7,
    /** ITU-T G.729. */
    KX_ENCODE_AUDIO_G729 = 8,
    /** IMA ADPCM, 4 bits a sample. */
    KX_ENCODE_AUDIO_IMA = 9,
    /** ITU-T G.711, mu-law. ZOAV frames with this code are reported as KX_ENCODE_AUDIO_G711U. */
    KX_ENCODE_PCM_MULAW = 10,
    /** ITU-T G.721, 32 kbit/s; now part of G.726. */
    KX_ENCODE_AUDIO_G721 = 11,
    /** Linear PCM, 8 bits, in packing of the recorder. */
    KX_ENCODE_PCM8_VWIS = 12,
    /** MS ADPCM of WAVE files, format tag 2. */
    KX_ENCODE_MS_ADPCM = 13,
    /** ITU-T G.711, A-law. */
    KX_ENCODE_AUDIO_G711A = 14,
    /** AMR narrow band, 3GPP TS 26.071. */
    KX_ENCODE_AUDIO_AMR = 15,
    /** Linear PCM, 16 bits, signed, little-endian. */
    KX_ENCODE_AUDIO_PCM16 = 16,
    /** ITU-T G.711, mu-law. */
    KX_ENCODE_AUDIO_G711U = 22,
    /** ITU-T G.723.1, 5.3 or 6.3 kbit/s. */
    KX_ENCODE_AUDIO_G723 = 25,
    /** AAC, ISO/IEC 14496-3, as a rule with ADTS heads. */
    KX_ENCODE_AUDIO_AAC = 26,
    /** ITU-T G.726, 40 kbit/s. */
    KX_ENCODE_AUDIO_G726_40 = 27,
    /** ITU-T G.726, 32 kbit/s. */
    KX_ENCODE_AUDIO_G726_32 = 28,
    /** ITU-T G.726, 24 kbit/s. */
    KX_ENCODE_AUDIO_G726_24 = 29,
    /** ITU-T G.726, 16 kbit/s. */
    KX_ENCODE_AUDIO_G726_16 = 30,
    /** MPEG audio layer II, ISO/IEC 11172-3 and 13818-3. */
    KX_ENCODE_AUDIO_MP2 = 31,
    /** Vorbis, as in Ogg (RFC 3533). */
    KX_ENCODE_AUDIO_OGG = 32,
    /** MPEG audio layer III, ISO/IEC 11172-3 and 13818-3. */
    KX_ENCODE_AUDIO_MP3 = 33,
    /** ITU-T G.722.1, 32 kbit/s. */
    KX_ENCODE_AUDIO_G722_1 = 34,
    /** ITU-T G.722. */
    KX_ENCODE_AUDIO_G722 = 35,
    /** ITU-T G.722.1 Annex C, 48 kbit/s. */
    KX_ENCODE_AUDIO_G722_1C_48 = 36,
    /** AAC low delay, ISO/IEC 14496-3. */
    KX_ENCODE_AUDIO_AAC_LD = 37,
    /** Opus, RFC 6716; each frame is one packet. */
    KX_ENCODE_AUDIO_OPUS = 38,
    /** ITU-T G.719. */
    KX_ENCODE_AUDIO_G719 = 39,
    /** ITU-T G.728. */
    KX_ENCODE_AUDIO_G728 = 40,
    /** ITU-T G.722.1, 16 kbit/s. */
    KX_ENCODE_AUDIO_G722_1_16 = 41,
    /** ITU-T G.722.1, 24 kbit/s. */
    KX_ENCODE_AUDIO_G722_1_24 = 42,
    /** ITU-T G.722.1 Annex C, 24 kbit/s. */
    KX_ENCODE_AUDIO_G722_1C_24 = 43,
    /** ITU-T G.722.1 Annex C, 32 kbit/s. */
    KX_ENCODE_AUDIO_G722_1C_32 = 44,
    /** Voice of an intercom, 8 bits a sample, in a form of the recorder. */
    KX_ENCODE_AUDIO_TALK = 48,
    /** AC-3, ATSC A/52 | ETSI TS 102 366. */
    KX_ENCODE_AUDIO_AC3 = 49,
    /** MPEG audio, ISO/IEC 11172-3, layer not told. */
    KX_ENCODE_AUDIO_MPEGA = 129
} KX_ENCODE_AUDIO_TYPE;

#endif
