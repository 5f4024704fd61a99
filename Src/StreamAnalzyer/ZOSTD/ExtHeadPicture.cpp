// Extension heads that describe the picture.
#include <array>

#include "StreamAnalzyer/ZOSTD/ExtHead.h"
#include "StreamAnalzyer/ZOSTD/VideoEncodeType.h"

namespace Marvane::FrameSift {

namespace {

// The wire numbers and the public codes differ; 1 and 2 are not mistaken for each other.
void TakeInterlaceType(uint64_t nType, EXT_HEAD_TARGET& target)
{
    target.frame.deinterlace = nType == 1   ? KX_DEINTERLACE_SINGLE
                               : nType == 2 ? KX_DEINTERLACE_PAIR
                                            : KX_DEINTERLACE_NONE;
}

void TakeWidthIn8(uint64_t nUnits, EXT_HEAD_TARGET& target)
{
    target.frame.width = static_cast<int32_t>(nUnits * 8);
}

void TakeHeightIn8(uint64_t nUnits, EXT_HEAD_TARGET& target)
{
    target.frame.height = static_cast<int32_t>(nUnits * 8);
}

void SetFrameEncodeType(uint64_t nCode, EXT_HEAD_TARGET& target)
{
    target.frame.frameEncodeType = VideoEncodeType(nCode);
}

// A non-key frame inherits its rate from the key frame later on; the rate that it announces itself is kept for that.
void TakeFrameRate(uint64_t nRate, EXT_HEAD_TARGET& target)
{
    target.frame.frameRate = static_cast<int32_t>(nRate);
    const int32_t nSubType = target.frame.frameSubType;
    if (nSubType == KX_FRAME_SUB_TYPE_VIDEO_P_FRAME || nSubType == KX_FRAME_SUB_TYPE_VIDEO_B_FRAME ||
        nSubType == KX_FRAME_SUB_TYPE_VIDEO_SMART_P_FRAME)
        target.nPRate = static_cast<int>(nRate);
}

int TakeDefogging(const EXT_HEAD_PLACE&, EXT_HEAD_TARGET& target, int nStep)
{
    target.ext.fogThrough.bIsExist = 1;
    return nStep;
}

// The table of slices stays where it lies; told is its place in the frame. All of it in 16 bits, as it is stored: a
// grid of slices that overflows them is stepped over by the truncated length.
int TakeSliceTable(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int)
{
    const auto nRows = EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_99, n_slice);
    const auto nColumns = EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_99, m_slice);
    const auto nTableLen = static_cast<uint16_t>(nRows * nColumns * 16);
    const int nTableOffset = place.nIndex + 32; // behind the frame head's 24 bytes and the 8 of this one
    target.ext.sliceInfoOffset = static_cast<uint16_t>(nTableOffset);
    target.ext.sliceInfoLength = nTableLen;
    return static_cast<int>(sizeof(EXT_FRAME_HEAD_99)) + nTableLen;
}

int TakeSensorSlices(const EXT_HEAD_PLACE& place, EXT_HEAD_TARGET& target, int nStep)
{
    const auto nColumns = EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_B4, mSiceSensor);
    const auto nRows = EXT_HEAD_NUMBER(place.bytes, EXT_FRAME_HEAD_B4, nSiceSensor);
    const int nTableOffset = place.nIndex + 28; // behind the frame head's 24 bytes and the 4 of this one
    target.ext.slicePosOffset = static_cast<uint16_t>(nTableOffset);
    target.ext.slicePosLength = static_cast<uint16_t>(nColumns * nRows * 8);
    return nStep;
}

constexpr std::array sc_fields80 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_80, chInterlaceType, TakeInterlaceType),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_80, chWidth, TakeWidthIn8),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_80, chHeight, TakeHeightIn8),
};
constexpr std::array sc_fields81 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_81, chEncodeType, SetFrameEncodeType),
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_81, chFrameRate, TakeFrameRate),
};
constexpr std::array sc_fields82 = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_82, chInterlaceType, TakeInterlaceType),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_82, nWidth, frame.width),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_82, nHeight, frame.height),
};
constexpr std::array sc_fields8A = {
    EXT_HEAD_TAKES(EXT_FRAME_HEAD_8A, chEncodeType, SetFrameEncodeType),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_8A, rateValue, frame.rateValue),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_8A, rateDenominator, frame.rateDenominator),
};
constexpr std::array sc_fields8B = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_8B, nRotationAngle, frame.rotationAngle),
};
constexpr std::array sc_fields91 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_91, fishEyeGain, ext.fishEyeGain),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_91, fishEyeDenoiseLevel, ext.fishEyeDenoiseLevel),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_91, fishInstallStyle, ext.fishInstallStyle),
};
constexpr std::array sc_fields93 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_93, chMode, ext.fogThrough.nMode),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_93, chIntension, ext.fogThrough.nIntension),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_93, chAirLightMode, ext.fogThrough.nAirLightMode),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_93, chAirLightIntesion, ext.fogThrough.nAirLightIntesion),
};
constexpr std::array sc_fields99 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_99, n_slice, ext.n_slice),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_99, m_slice, ext.m_slice),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_99, srcPicWidth, ext.srcPicWidth),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_99, srcPicHeight, ext.srcPicHeight),
};
constexpr std::array sc_fields9A = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9A, fishEyeCorrectMode, ext.fishEyeCorrectMode),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9A, fishEyeCircleX, ext.fishEyeCircleX),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9A, fishEyeCircleY, ext.fishEyeCircleY),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9A, fishEyeRadius, ext.fishEyeRadius),
};
constexpr std::array sc_fields9B = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9B, ratioWidth, ext.ratioWidth),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9B, ratioHeigth, ext.ratioHeigth),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9B, ratioEncodeWidth, ext.ratioEncodeWidth),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_9B, ratioEncodeHeight, ext.ratioEncodeHeight),
};
constexpr std::array sc_fieldsB4 = {
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B4, mSiceSensor, ext.mSliceSensor),
    EXT_HEAD_FILLS(EXT_FRAME_HEAD_B4, nSiceSensor, ext.nSliceSensor),
};

constexpr EXT_HEAD_ROW sc_rows[] = {
    {0x80, EXT_HEAD_STEP::Fixed4, sc_fields80, &EXT_FRAME_HEAD::pHead80},
    {0x81, EXT_HEAD_STEP::Fixed4, sc_fields81, &EXT_FRAME_HEAD::pHead81},
    {0x82, EXT_HEAD_STEP::Fixed8, sc_fields82, &EXT_FRAME_HEAD::pHead82},
    {0x8A, EXT_HEAD_STEP::Fixed8, sc_fields8A},
    {0x8B, EXT_HEAD_STEP::Fixed4, sc_fields8B},
    {0x91, EXT_HEAD_STEP::Fixed8, sc_fields91},
    {0x93, EXT_HEAD_STEP::Fixed8, sc_fields93, nullptr, &TakeDefogging},
    {0x99, EXT_HEAD_STEP::Fixed8, sc_fields99, nullptr, &TakeSliceTable},
    {0x9A, EXT_HEAD_STEP::Fixed8, sc_fields9A},
    {0x9B, EXT_HEAD_STEP::Fixed8, sc_fields9B},
    {0xB4, EXT_HEAD_STEP::Guarded, sc_fieldsB4, &EXT_FRAME_HEAD::pHeadB4, &TakeSensorSlices},
};

} // namespace

std::span<const EXT_HEAD_ROW> ExtHeadsOfPicture()
{
    return sc_rows;
}

} // namespace Marvane::FrameSift
