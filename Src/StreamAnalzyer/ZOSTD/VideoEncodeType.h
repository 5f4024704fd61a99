// Video codecs by the code that picture heads carry.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_VIDEOENCODETYPE_H
#define FRAMESIFT_SRC_STREAMANALZYER_ZOSTD_VIDEOENCODETYPE_H

#include <array>
#include <cstdint>

#include "framesift/codec_codes.h"

namespace Marvane::FrameSift {

inline constexpr std::array<int32_t, 17> gsk_videoEncodeTypes = {
    KX_ENCODE_VIDEO_UNKNOWN,  //  0
    KX_ENCODE_VIDEO_MPEG4,    //  1
    KX_ENCODE_VIDEO_HI_H264,  //  2
    KX_ENCODE_VIDEO_MPEG4,    //  3
    KX_ENCODE_VIDEO_UNKNOWN,  //  4
    KX_ENCODE_VIDEO_JPEG,     //  5
    KX_ENCODE_VIDEO_UNKNOWN,  //  6
    KX_ENCODE_VIDEO_UNKNOWN,  //  7
    KX_ENCODE_VIDEO_ZO_H264,  //  8
    KX_ENCODE_VIDEO_MPEG2,    //  9
    KX_ENCODE_VIDEO_VNC,      // 10
    KX_ENCODE_VIDEO_SVAC,     // 11
    KX_ENCODE_VIDEO_ZO_H265,  // 12
    KX_ENCODE_VIDEO_H263,     // 13
    KX_ENCODE_VIDEO_HIK_H264, // 14
    KX_ENCODE_VIDEO_SVAC2,    // 15
    KX_ENCODE_VIDEO_AVS3,     // 16
};

constexpr int32_t VideoEncodeType(uint64_t nCode)
{
    return nCode < gsk_videoEncodeTypes.size() ? gsk_videoEncodeTypes[nCode] : int32_t{KX_ENCODE_VIDEO_UNKNOWN};
}

} // namespace Marvane::FrameSift

#endif
