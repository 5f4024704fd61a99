#include "Frames/CodeNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "Tools/HxxxCodes.h"
#include "framesift/framesift.h"

namespace Marvane::FrameSift {

namespace {

struct CODE_NAME
{
    int32_t nCode;
    const char* pName;
};

constexpr CODE_NAME sc_frameTypes[] = {
    {KX_FRAME_TYPE_UNKNOWN, "unknown"},
    {KX_FRAME_TYPE_VIDEO, "video"},
    {KX_FRAME_TYPE_AUDIO, "audio"},
    {KX_FRAME_TYPE_DATA, "data"},
};

constexpr CODE_NAME sc_subTypes[] = {
    {KX_FRAME_SUB_TYPE_DATA_INVALID, "invalid"},
    {KX_FRAME_SUB_TYPE_VIDEO_I_FRAME, "I"},
    {KX_FRAME_SUB_TYPE_VIDEO_P_FRAME, "P"},
    {KX_FRAME_SUB_TYPE_VIDEO_B_FRAME, "B"},
    {KX_FRAME_SUB_TYPE_VIDEO_S_FRAME, "S"},
    {KX_FRAME_SUB_TYPE_WATERMARK_TEXT, "watermark-text"},
    {KX_FRAME_SUB_TYPE_WATERMARK_JPEG, "watermark-jpeg"},
    {KX_FRAME_SUB_TYPE_WATERMARK_BMP, "watermark-bmp"},
    {KX_FRAME_SUB_TYPE_DATA_INTL, "intl"},
    {KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME, "jpeg"},
    {KX_FRAME_SUB_TYPE_DATA_ITS, "its"},
    {KX_FRAME_SUB_TYPE_DATA_GPS, "gps"},
    {KX_FRAME_SUB_TYPE_DATA_INTLEX, "intl-ex"},
    {KX_FRAME_SUB_TYPE_DATA_MOTION_FULL, "motion-full"},
    {KX_FRAME_SUB_TYPE_DATA_MOTION_CARD, "motion-card"},
    {KX_FRAME_SUB_TYPE_DATA_LIGHT, "light"},
    {KX_FRAME_SUB_TYPE_DATA_RAW, "raw"},
    {KX_FRAME_SUB_TYPE_DATA_VIDEO_SYNOPSIS, "synopsis"},
    {KX_FRAME_SUB_TYPE_DATA_SDP, "sdp"},
    {KX_FRAME_SUB_TYPE_VIDEO_SMART_I_FRAME, "smart-I"},
    {KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME, "smart-P"},
    {KX_FRAME_SUB_TYPE_VIDEO_SMART_I_NORENDER, "smart-I-hidden"},
    {KX_FRAME_SUB_TYPE_POPULATION_PIC_OVERLAY, "overlay"},
    {KX_FRAME_SUB_TYPE_DATA_OSD, "osd"},
    {KX_FRAME_SUB_TYPE_SCENE_INFORMATION_TAGGING, "scene-tag"},
    {KX_FRAME_SUB_TYPE_DATA_WITH_LARGE_AMOUNT, "large"},
    {KX_FRAME_SUB_TYPE_DATA_CIPHER_AUXILIARY_FRAME, "cipher"},
    {KX_FRAME_SUB_TYPE_DATA_WITH_WATER_LEVEL_MONITOR, "water-level"},
    {KX_FRAME_SUB_TYPE_DATA_WITH_SOUND_DECIBEL, "sound-level"},
    {KX_FRAME_SUB_TYPE_DATA_WITH_SMART_MOTION, "smart-motion"},
    {KX_FRAME_SUB_TYPE_ZOOP_WITH_SMART, "zoop"},
    {KX_FRAME_SUB_TYPE_DATA_I_INDEX, "I-index"},
    {KX_FRAME_SUB_TYPE_DATA_MOTION, "motion"},
    {KX_FRAME_SUB_TYPE_DATA_LABEL, "label"},
    {KX_FRAME_SUB_TYPE_DATA_SCREEN_CAPTION, "caption"},
    {KX_FRAME_SUB_TYPE_DATA_EVENT, "event"},
    {KX_FRAME_SUB_TYPE_DATA_FILEHEAD, "file-head"},
    {KX_FRAME_SUB_TYPE_DATA_UNKOWN, "unknown"},
};

constexpr CODE_NAME sc_videoCodecs[] = {
    {KX_ENCODE_VIDEO_UNKNOWN, "unknown"},   {KX_ENCODE_VIDEO_MPEG4, "mpeg4"},
    {KX_ENCODE_VIDEO_HI_H264, "hi-h264"},   {KX_ENCODE_VIDEO_JPEG, "jpeg"},
    {KX_ENCODE_VIDEO_ZO_H264, "h264"},      {KX_ENCODE_VIDEO_JPEG2000, "jpeg2000"},
    {KX_ENCODE_VIDEO_AVS, "avs"},           {KX_ENCODE_VIDEO_STD_H264, "std-h264"},
    {KX_ENCODE_VIDEO_MPEG2, "mpeg2"},       {KX_ENCODE_VIDEO_VNC, "vnc"},
    {KX_ENCODE_VIDEO_SVAC, "svac"},         {KX_ENCODE_VIDEO_ZO_H265, "h265"},
    {KX_ENCODE_VIDEO_SVAC2, "svac2"},       {KX_ENCODE_VIDEO_H263, "h263"},
    {KX_ENCODE_VIDEO_AV1, "av1"},           {KX_ENCODE_VIDEO_AVS3, "avs3"},
    {KX_ENCODE_VIDEO_HIK_H264, "hik-h264"},
};

constexpr CODE_NAME sc_audioCodecs[] = {
    {KX_ENCODE_AUDIO_UNKNOWN, "unknown"},
    {KX_ENCODE_AUDIO_PCM, "pcm8"},
    {KX_ENCODE_AUDIO_G729, "g729"},
    {KX_ENCODE_AUDIO_IMA, "ima"},
    {KX_ENCODE_PCM_MULAW, "mulaw"},
    {KX_ENCODE_AUDIO_G721, "g721"},
    {KX_ENCODE_PCM8_VWIS, "pcm8-vwis"},
    {KX_ENCODE_MS_ADPCM, "ms-adpcm"},
    {KX_ENCODE_AUDIO_G711A, "g711a"},
    {KX_ENCODE_AUDIO_AMR, "amr"},
    {KX_ENCODE_AUDIO_PCM16, "pcm16"},
    {KX_ENCODE_AUDIO_G711U, "g711u"},
    {KX_ENCODE_AUDIO_G723, "g723"},
    {KX_ENCODE_AUDIO_AAC, "aac"},
    {KX_ENCODE_AUDIO_G726_40, "g726-40"},
    {KX_ENCODE_AUDIO_G726_32, "g726-32"},
    {KX_ENCODE_AUDIO_G726_24, "g726-24"},
    {KX_ENCODE_AUDIO_G726_16, "g726-16"},
    {KX_ENCODE_AUDIO_MP2, "mp2"},
    {KX_ENCODE_AUDIO_OGG, "ogg"},
    {KX_ENCODE_AUDIO_MP3, "mp3"},
    {KX_ENCODE_AUDIO_G722_1, "g722.1"},
    {KX_ENCODE_AUDIO_G722, "g722"},
    {KX_ENCODE_AUDIO_G722_1C_48, "g722.1c-48"},
    {KX_ENCODE_AUDIO_AAC_LD, "aac-ld"},
    {KX_ENCODE_AUDIO_OPUS, "opus"},
    {KX_ENCODE_AUDIO_G719, "g719"},
    {KX_ENCODE_AUDIO_G728, "g728"},
    {KX_ENCODE_AUDIO_G722_1_16, "g722.1-16"},
    {KX_ENCODE_AUDIO_G722_1_24, "g722.1-24"},
    {KX_ENCODE_AUDIO_G722_1C_24, "g722.1c-24"},
    {KX_ENCODE_AUDIO_G722_1C_32, "g722.1c-32"},
    {KX_ENCODE_AUDIO_TALK, "talk"},
    {KX_ENCODE_AUDIO_AC3, "ac3"},
    {KX_ENCODE_AUDIO_MPEGA, "mpeg-audio"},
};

constexpr CODE_NAME sc_errors[] = {
    {KX_ERROR_FLAGS_NOERROR, ""},
    {KX_ERROR_FLAGS_TIMESTAND, "time-stamp"},
    {KX_ERROR_FLAGS_LENGTH, "length"},
    {KX_ERROR_FLAGS_HEAD_VERIFY, "head-sum"},
    {KX_ERROR_FLAGS_DATA_VERIFY, "payload-sum"},
    {KX_ERROR_FLAGS_LOST_HEADER, "lost-head"},
    {KX_ERROR_FLAGS_UNKNOWN, "unknown"},
    {KX_ERROR_FLAGS_LOSTFRAME, "lost-frame"},
    {KX_ERROR_FLAGS_WATERMARK, "watermark"},
    {KX_ERROR_FLAGS_CONTEXT, "context"},
    {KX_ERROR_FLAGS_NOSUPPORT, "not-supported"},
    {KX_ERROR_FLAGS_FRAME_HALF_BAKED, "half-baked"},
    {KX_ERROR_FLAGS_SUBTYPE_UNKNOWN, "subtype-unknown"},
    {KX_ERROR_FLAGS_DECRYPTION_FAILURE, "decryption"},
};

constexpr CODE_NAME sc_ciphers[] = {
    {KX_ENCRYPT_UNKOWN, ""},         {KX_ENCRYPT_AES, "aes"},
    {KX_ENCRYPT_DES, "des"},         {KX_ENCRYPT_3DES, "3des"},
    {KX_ENCRYPT_KTJM, "ktjm"},       {KX_ENCRYPT_SYJM, "syjm"},
    {KX_ENCRYPT_HZSD, "hzsd"},       {KX_ENCRYPT_ZBQL, "zbql"},
    {KX_ENCRYPT_AES256, "aes256"},   {KX_ENCRYPT_AES256_GDPR2, "aes256-2"},
    {KX_ENCRYPT_SM1_ECB, "sm1-ecb"}, {KX_ENCRYPT_SM1_OFB, "sm1-ofb"},
    {KX_ENCRYPT_SM4_ECB, "sm4-ecb"}, {KX_ENCRYPT_SM4_OFB, "sm4-ofb"},
    {KX_ENCRYPT_ANHENG, "anheng"},   {KX_ENCRYPT_AES256_CBC, "aes256-cbc"},
};

constexpr CODE_NAME sc_interlaces[] = {
    {KX_DEINTERLACE_PAIR, "two-fields"},
    {KX_DEINTERLACE_SINGLE, "one-field"},
    {KX_DEINTERLACE_NONE, "none"},
};

constexpr CODE_NAME sc_primaries[] = {
    {KX_COLOR_PRIMARIES_UNDEF, ""},
    {KX_COLOR_PRIMARIES_BT601_625, "bt601"},
    {KX_COLOR_PRIMARIES_BT709, "bt709"},
    {KX_COLOR_PRIMARIES_BT2020, "bt2020"},
};

constexpr CODE_NAME sc_transfers[] = {
    {KX_TRANSFER_FUNC_UNDEF, ""},      {KX_TRANSFER_FUNC_LINEAR, "linear"},   {KX_TRANSFER_FUNC_SRGB, "srgb"},
    {KX_TRANSFER_FUNC_BT709, "bt709"}, {KX_TRANSFER_FUNC_SMPTE_ST2084, "pq"}, {KX_TRANSFER_FUNC_HLG, "hlg"},
};

constexpr CODE_NAME sc_matrices[] = {
    {KX_COLOR_SPACE_UNDEF, ""},
    {KX_COLOR_SPACE_BT601, "bt601"},
    {KX_COLOR_SPACE_BT709, "bt709"},
    {KX_COLOR_SPACE_BT2020, "bt2020"},
};

constexpr CODE_NAME sc_streamTypes[] = {
    {KX_STREAM_TYPE_UNKNOWN, "unknown"},
    {KX_STREAM_TYPE_MPEG4, "mpeg4"},
    {KX_STREAM_TYPE_ZOPT, "zopt"},
    {KX_STREAM_TYPE_NEW, "new"},
    {KX_STREAM_TYPE_HB, "hb"},
    {KX_STREAM_TYPE_AUDIO, "audio"},
    {KX_STREAM_TYPE_ZOSTD, "zoav"},
    {KX_STREAM_TYPE_SVC, "svc"},
    {KX_STREAM_TYPE_OLD, "old"},
    {KX_STREAM_TYPE_STD_MY, "myav"},
    {KX_STREAM_TYPE_STD_LX, "lxav"},
    {KX_STREAM_TYPE_STD_WM, "wmav"},
    {KX_STREAM_TYPE_RAW_MPEG4, "raw-mpeg4"},
};

std::string NameOf(std::span<const CODE_NAME> names, int32_t nCode)
{
    const auto found =
        std::find_if(names.begin(), names.end(), [=](const CODE_NAME& row) { return row.nCode == nCode; });
    return found == names.end() ? std::to_string(nCode) : found->pName;
}

} // namespace

std::string FrameTypeName(int32_t nFrameType)
{
    return NameOf(sc_frameTypes, nFrameType);
}

std::string StreamTypeName(int32_t nStreamType)
{
    return NameOf(sc_streamTypes, nStreamType);
}

std::string InnerFormatName(int32_t nStreamType, int32_t nInnerType)
{
    if (nStreamType == KX_STREAM_TYPE_OLD)
        return StreamTypeName(nInnerType == KX_STREAM_TYPE_UNKNOWN ? int32_t{KX_STREAM_TYPE_AUDIO} : nInnerType);
    return nStreamType == KX_STREAM_TYPE_MPEG4 ? StreamTypeName(KX_STREAM_TYPE_RAW_MPEG4) : std::string();
}

std::string StreamFormatText(int32_t nStreamType, int32_t nInnerType)
{
    const std::string inner = InnerFormatName(nStreamType, nInnerType);
    return fmt::format("{} ({}){}{}", StreamTypeName(nStreamType), nStreamType, inner.empty() ? "" : ": ", inner);
}

std::string ErrorName(int32_t nErrorFlags)
{
    return NameOf(sc_errors, nErrorFlags);
}

std::string CipherName(int32_t nEncryptType)
{
    return NameOf(sc_ciphers, nEncryptType);
}

std::string InterlaceName(int32_t nDeinterlace)
{
    return NameOf(sc_interlaces, nDeinterlace);
}

std::string ColourPrimariesName(int32_t nColorPrimaries)
{
    return NameOf(sc_primaries, nColorPrimaries);
}

std::string ColourTransferName(int32_t nColorTransfer)
{
    return NameOf(sc_transfers, nColorTransfer);
}

std::string ColourMatrixName(int32_t nColorSpace)
{
    return NameOf(sc_matrices, nColorSpace);
}

std::string SubTypeName(int32_t nFrameType, int32_t nFrameSubType)
{
    // 0 is the I frame's number. Everywhere but in video it only means that nobody has set the field.
    const bool bUnset = nFrameSubType == 0 && nFrameType != KX_FRAME_TYPE_VIDEO;
    return bUnset ? std::string() : NameOf(sc_subTypes, nFrameSubType);
}

std::string CodecName(int32_t nFrameType, int32_t nFrameEncodeType)
{
    if (nFrameType == KX_FRAME_TYPE_VIDEO)
        return NameOf(sc_videoCodecs, nFrameEncodeType);
    return nFrameType == KX_FRAME_TYPE_AUDIO ? NameOf(sc_audioCodecs, nFrameEncodeType) : std::string();
}

} // namespace Marvane::FrameSift
