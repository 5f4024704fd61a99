// What the H.264 and H.265 parsers find out about one picture.
#ifndef FRAMESIFT_SRC_ESPARSE_ESPARSERINFO_H
#define FRAMESIFT_SRC_ESPARSE_ESPARSERINFO_H

#include <array>
#include <cstdint>

namespace Marvane::FrameSift {

// Values of picStruct and of pictrueStructure.
enum PICTURE_STRUCTURE : int32_t
{
    PICTURE_STRUCTURE_UNKNOWN = 0,
    PICTURE_STRUCTURE_TOP_FIELD = 1,
    PICTURE_STRUCTURE_BOTTOM_FIELD = 2,
    PICTURE_STRUCTURE_FRAME = 3
};

struct ES_PARSER_INFO
{
    int32_t frameSubType = 0; // KX_FRAME_SUB_TYPE_VIDEO_*, or KX_FRAME_SUB_TYPE_DATA_INVALID
    int32_t frameRate = 0;    // frames per second
    int32_t frameWidth = 0;   // in pixels, after cropping
    int32_t frameHeight = 0;
    int32_t picStruct = PICTURE_STRUCTURE_UNKNOWN;
    int32_t frameCropBeforeWidth = 0; // in pixels, as coded
    int32_t frameCropBeforeHeight = 0;
    int32_t bitDepth = 0; // of luma
    // Mastering display and content light level, in the units of the SEI messages (ITU-T H.265, annex D).
    std::array<uint16_t, 6> nDisplayPrimaries{};
    std::array<uint16_t, 2> nWhitePoint{};
    uint32_t nMaxLuminance = 0;
    uint32_t nMinLuminance = 0;
    uint16_t nMaxContentLightLevel = 0;
    uint16_t nMaxFrameAverageLightLevel = 0;
    uint8_t nColorPrimaries = 0; // KX_COLOR_PRIMARIES
    uint8_t nColorTransfer = 0;  // KX_TRANSFER_FUNC
    uint8_t nColorSpace = 0;     // KX_COLOR_SPACE
};

} // namespace Marvane::FrameSift

#endif
