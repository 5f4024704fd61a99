// One record of the index, and the classes that callers select records by.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXRECORD_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_INDEXRECORD_H

#include <cstddef>
#include <cstdint>

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

struct FILE_INDEX_INFO
{
    KX_INDEX_INFO indexInfo;
    FrameInfo frameInfo;
};

// What a query selects; bits can be joined.
inline constexpr uint32_t KX_INDEX_BIT_FLAG_VIDEO_I = 1;
inline constexpr uint32_t KX_INDEX_BIT_FLAG_VIDEO_P = 2;
inline constexpr uint32_t KX_INDEX_BIT_FLAG_VIDEO_B = 4;
inline constexpr uint32_t KX_INDEX_BIT_FLAG_AUDIO = 8;
inline constexpr uint32_t KX_INDEX_BIT_FLAG_DATA = 16;
inline constexpr uint32_t KX_INDEX_BIT_FLAG_ALL = 0xFFFFFFFF;

// A record is in just one class. Those with a flag stand in the order of the bits.
enum class INDEX_CLASS : uint8_t
{
    VideoI,
    VideoP,
    VideoB,
    Audio,
    Data,
    Other,
};
inline constexpr size_t gsk_indexClasses = 6;

// Only the plain subtypes have a flag: a JPEG picture or a smart I frame is Other, though a decoder can start there.
inline INDEX_CLASS ClassOf(const FrameInfo& frame)
{
    const int32_t nSubType = frame.frameSubType;
    switch (frame.frameType) {
    case KX_FRAME_TYPE_VIDEO:
        if (nSubType < KX_FRAME_SUB_TYPE_VIDEO_I_FRAME || nSubType > KX_FRAME_SUB_TYPE_VIDEO_B_FRAME)
            return INDEX_CLASS::Other;
        return static_cast<INDEX_CLASS>(nSubType);
    case KX_FRAME_TYPE_AUDIO:
        return INDEX_CLASS::Audio;
    case KX_FRAME_TYPE_DATA:
        return INDEX_CLASS::Data;
    default:
        return INDEX_CLASS::Other;
    }
}

inline constexpr bool IsClassInFlags(INDEX_CLASS eClass, uint32_t nFlags)
{
    if (nFlags == KX_INDEX_BIT_FLAG_ALL)
        return true;
    return eClass != INDEX_CLASS::Other && (nFlags >> static_cast<unsigned>(eClass) & 1) != 0;
}

static_assert(IsClassInFlags(INDEX_CLASS::VideoI, KX_INDEX_BIT_FLAG_VIDEO_I));
static_assert(IsClassInFlags(INDEX_CLASS::VideoB, KX_INDEX_BIT_FLAG_VIDEO_B));
static_assert(IsClassInFlags(INDEX_CLASS::Data, KX_INDEX_BIT_FLAG_DATA));
static_assert(KX_FRAME_SUB_TYPE_VIDEO_I_FRAME == 0 && KX_FRAME_SUB_TYPE_VIDEO_P_FRAME == 1 &&
              KX_FRAME_SUB_TYPE_VIDEO_B_FRAME == 2);

} // namespace Marvane::FrameSift

#endif
