// The type codes of the frame head.
#include <array>

#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"

namespace Marvane::FrameSift {

namespace {

// By chSubType of a data frame. The zeros are kept as they stand, though 0 is the number of the I frame too.
constexpr std::array<int32_t, 26> sc_frameSubtypeMap = {
    KX_FRAME_SUB_TYPE_DATA_RAW,                      //  0
    0,                                               //  1
    0,                                               //  2
    0,                                               //  3
    0,                                               //  4
    KX_FRAME_SUB_TYPE_DATA_INTL,                     //  5
    0,                                               //  6
    0,                                               //  7
    KX_FRAME_SUB_TYPE_DATA_MOTION_CARD,              //  8
    KX_FRAME_SUB_TYPE_DATA_MOTION_FULL,              //  9
    KX_FRAME_SUB_TYPE_DATA_GPS,                      // 10
    KX_FRAME_SUB_TYPE_DATA_ITS,                      // 11
    KX_FRAME_SUB_TYPE_DATA_SDP,                      // 12
    KX_FRAME_SUB_TYPE_DATA_LIGHT,                    // 13
    KX_FRAME_SUB_TYPE_DATA_INTLEX,                   // 14
    0,                                               // 15
    0,                                               // 16
    KX_FRAME_SUB_TYPE_DATA_OSD,                      // 17
    KX_FRAME_SUB_TYPE_POPULATION_PIC_OVERLAY,        // 18
    KX_FRAME_SUB_TYPE_SCENE_INFORMATION_TAGGING,     // 19
    KX_FRAME_SUB_TYPE_ZOOP_WITH_SMART,               // 20
    KX_FRAME_SUB_TYPE_DATA_WITH_LARGE_AMOUNT,        // 21
    KX_FRAME_SUB_TYPE_DATA_CIPHER_AUXILIARY_FRAME,   // 22
    KX_FRAME_SUB_TYPE_DATA_WITH_WATER_LEVEL_MONITOR, // 23
    KX_FRAME_SUB_TYPE_DATA_WITH_SOUND_DECIBEL,       // 24
    KX_FRAME_SUB_TYPE_DATA_WITH_SMART_MOTION,        // 25
};

using TAKE_SUB_TYPE = void (*)(uint8_t chSubType, FrameInfo& frameInfo);

void TakeISubType(uint8_t chSubType, FrameInfo& frameInfo)
{
    frameInfo.frameSubType = chSubType == 1   ? KX_FRAME_SUB_TYPE_VIDEO_SMART_I_FRAME
                             : chSubType == 2 ? KX_FRAME_SUB_TYPE_VIDEO_SMART_I_NORENDER
                                              : KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
}

void TakePSubType(uint8_t chSubType, FrameInfo& frameInfo)
{
    frameInfo.frameSubType = chSubType == 1 ? KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME : KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
}

void TakeBSubType(uint8_t, FrameInfo& frameInfo)
{
    frameInfo.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
}

void TakeJpegSubType(uint8_t, FrameInfo& frameInfo)
{
    frameInfo.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_JPEG_FRAME;
}

void TakeMappedSubType(uint8_t chSubType, FrameInfo& frameInfo)
{
    if (chSubType < sc_frameSubtypeMap.size())
        frameInfo.frameSubType = sc_frameSubtypeMap[chSubType];
}

void TakePlainSubType(uint8_t chSubType, FrameInfo& frameInfo)
{
    frameInfo.frameSubType = chSubType != 0 ? int32_t{chSubType} : int32_t{KX_FRAME_SUB_TYPE_DATA_UNKOWN};
}

struct FRAME_TYPE_ROW
{
    uint8_t chType;
    int32_t frameType;
    TAKE_SUB_TYPE pfnTakeSubType;
};

constexpr FRAME_TYPE_ROW sc_frameTypes[] = {
    {0xFD, KX_FRAME_TYPE_VIDEO, &TakeISubType},     {0xFC, KX_FRAME_TYPE_VIDEO, &TakePSubType},
    {0xFE, KX_FRAME_TYPE_VIDEO, &TakeBSubType},     {0xFB, KX_FRAME_TYPE_VIDEO, &TakeJpegSubType},
    {0xF0, KX_FRAME_TYPE_AUDIO, nullptr},           {0xF1, KX_FRAME_TYPE_DATA, &TakeMappedSubType},
    {0xF2, KX_FRAME_TYPE_DATA, &TakeMappedSubType}, {0x55, KX_FRAME_TYPE_DATA, &TakePlainSubType},
};

} // namespace

void ParseStdFrameHead(const STD_FRAME_HEAD& frameHead, FrameInfo& frameInfo)
{
    frameInfo.frameType = KX_FRAME_TYPE_UNKNOWN;
    for (const FRAME_TYPE_ROW& row : sc_frameTypes) {
        if (row.chType != frameHead.chType)
            continue;
        frameInfo.frameType = row.frameType;
        if (row.pfnTakeSubType != nullptr)
            row.pfnTakeSubType(frameHead.chSubType, frameInfo);
    }
}

} // namespace Marvane::FrameSift
