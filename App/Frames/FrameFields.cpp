#include "Frames/FrameFields.h"

#include <fmt/format.h>

#include <array>

#include "Frames/CodeNames.h"
#include "Frames/FrameState.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

FIELD_VALUE TextOrNothing(std::string text)
{
    return text.empty() ? FIELD_VALUE() : FIELD_VALUE(std::move(text));
}

FIELD_VALUE IfVideo(const LISTED_FRAME& listed, int64_t nValue)
{
    const bool bPicture = listed.frame.frameType == KX_FRAME_TYPE_VIDEO && !IsLostFrame(listed.frame);
    return bPicture ? FIELD_VALUE(nValue) : FIELD_VALUE();
}

FIELD_VALUE IfAudio(const LISTED_FRAME& listed, int64_t nValue)
{
    return listed.frame.frameType == KX_FRAME_TYPE_AUDIO ? FIELD_VALUE(nValue) : FIELD_VALUE();
}

FIELD_VALUE IfTold(int64_t nValue)
{
    return nValue > 0 ? FIELD_VALUE(nValue) : FIELD_VALUE();
}

FIELD_VALUE InterlaceOf(const LISTED_FRAME& listed)
{
    const FrameInfo& frame = listed.parsed;
    const bool bPicture = frame.frameType == KX_FRAME_TYPE_VIDEO && !IsLostFrame(frame);
    return bPicture && IsInterlaceTold(listed) ? FIELD_VALUE(InterlaceName(frame.deinterlace)) : FIELD_VALUE();
}

// Of a mastering display, if there is one: 0 is then a value too.
FIELD_VALUE IfMastered(const LISTED_FRAME& listed, int64_t nValue)
{
    return listed.parsed.nMaxLuminance != 0 ? FIELD_VALUE(nValue) : FIELD_VALUE();
}

// Spaces between the numbers, since a comma ends a cell.
template <size_t COUNT>
FIELD_VALUE NumbersIfMastered(const LISTED_FRAME& listed, uint16_t (FrameInfo::*pNumbers)[COUNT])
{
    if (listed.parsed.nMaxLuminance == 0)
        return {};
    std::array<uint16_t, COUNT> numbers; // copied, as the record is packed
    for (size_t n = 0; n < COUNT; ++n)
        numbers[n] = (listed.parsed.*pNumbers)[n];
    return fmt::format("{}", fmt::join(numbers, " "));
}

constexpr FRAME_FIELD sc_fields[] = {
    {"offset", [](const LISTED_FRAME& l) -> FIELD_VALUE { return l.nFrameOffset; }},
    {"payload_offset",
     [](const LISTED_FRAME& l) {
         const bool bHasPlace = l.frame.streamLen > 0 && !IsPutTogether(l) && !IsPayloadLost(l);
         return bHasPlace ? FIELD_VALUE(l.nPayloadOffset) : FIELD_VALUE();
     }},
    {"kind", [](const LISTED_FRAME& l) { return TextOrNothing(FrameTypeName(l.frame.frameType)); }},
    {"subtype", [](const LISTED_FRAME& l) { return TextOrNothing(SubTypeText(l.frame)); }},
    {"codec", [](const LISTED_FRAME& l) { return TextOrNothing(CodecText(l.frame)); }},
    {"time", [](const LISTED_FRAME& l) { return TextOrNothing(TimeText(KX_TIME(l.frame.frameTime))); }},
    {"time_stamp", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.frame.timeStamp}; }},
    // Unsigned on the wire, signed in the record.
    {"sequence",
     [](const LISTED_FRAME& l) {
         return l.bNumbered ? FIELD_VALUE(int64_t{static_cast<uint32_t>(l.frame.frameSeq)}) : FIELD_VALUE();
     }},
    {"width", [](const LISTED_FRAME& l) { return IfVideo(l, l.frame.width); }},
    {"height", [](const LISTED_FRAME& l) { return IfVideo(l, l.frame.height); }},
    {"frame_rate", [](const LISTED_FRAME& l) { return IfVideo(l, l.frame.frameRate); }},
    {"sample_rate", [](const LISTED_FRAME& l) { return IfAudio(l, l.frame.samplesPerSec); }},
    {"channels", [](const LISTED_FRAME& l) { return IfAudio(l, l.frame.channels); }},
    {"bits_per_sample", [](const LISTED_FRAME& l) { return IfAudio(l, l.frame.bitsPerSample); }},
    {"frame_length", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.frame.frameLen}; }},
    {"payload_length",
     [](const LISTED_FRAME& l) { return IsPayloadLost(l) ? FIELD_VALUE() : FIELD_VALUE(int64_t{l.frame.streamLen}); }},
    {"stream_type", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.nStreamType}; }},
    {"error", [](const LISTED_FRAME& l) { return TextOrNothing(ErrorName(l.frame.errorFlags)); }},
    {"cipher", [](const LISTED_FRAME& l) { return TextOrNothing(CipherName(l.parsed.nEncryptType)); }},
    {"cipher_state", [](const LISTED_FRAME& l) { return TextOrNothing(CipherStateText(l.parsed)); }},
    {"announced_width", [](const LISTED_FRAME& l) { return IfTold(l.nAnnouncedWidth); }},
    {"announced_height", [](const LISTED_FRAME& l) { return IfTold(l.nAnnouncedHeight); }},
    {"coded_width", [](const LISTED_FRAME& l) { return IfTold(l.parsed.cropBeforeWidth); }},
    {"coded_height", [](const LISTED_FRAME& l) { return IfTold(l.parsed.cropBeforeHeight); }},
    {"interlace", &InterlaceOf},
    {"bit_depth", [](const LISTED_FRAME& l) { return IfTold(l.parsed.nVideoBitDepth); }},
    {"colour_primaries",
     [](const LISTED_FRAME& l) { return TextOrNothing(ColourPrimariesName(l.parsed.nColorPrimaries)); }},
    {"colour_transfer",
     [](const LISTED_FRAME& l) { return TextOrNothing(ColourTransferName(l.parsed.nColorTransfer)); }},
    {"colour_matrix", [](const LISTED_FRAME& l) { return TextOrNothing(ColourMatrixName(l.parsed.nColorSpace)); }},
    {"max_luminance", [](const LISTED_FRAME& l) { return IfMastered(l, l.parsed.nMaxLuminance); }},
    {"min_luminance", [](const LISTED_FRAME& l) { return IfMastered(l, l.parsed.nMinLuminance); }},
    {"max_content_light", [](const LISTED_FRAME& l) { return IfTold(l.parsed.nMaxContentLightLevel); }},
    {"max_average_light", [](const LISTED_FRAME& l) { return IfTold(l.parsed.nMaxFrameAverageLightLevel); }},
    {"display_primaries", [](const LISTED_FRAME& l) { return NumbersIfMastered<6>(l, &FrameInfo::nDisplayPrimaries); }},
    {"white_point", [](const LISTED_FRAME& l) { return NumbersIfMastered<2>(l, &FrameInfo::nWhitePoint); }},
    {"inner_format", [](const LISTED_FRAME& l) { return TextOrNothing(InnerFormatName(l.nStreamType, l.nInnerType)); }},
};

#define RAW_FIELD(member)                                                                                              \
    FRAME_FIELD                                                                                                        \
    {                                                                                                                  \
#member, [](const LISTED_FRAME& l) -> FIELD_VALUE { return static_cast<int64_t>(l.frame.member); }             \
    }

constexpr FRAME_FIELD sc_rawFields[] = {
    RAW_FIELD(frameType),
    RAW_FIELD(frameSubType),
    RAW_FIELD(frameEncodeType),
    RAW_FIELD(streamType),
    RAW_FIELD(streamLen),
    RAW_FIELD(frameLen),
    RAW_FIELD(frameTime.nYear),
    RAW_FIELD(frameTime.nMonth),
    RAW_FIELD(frameTime.nDay),
    RAW_FIELD(frameTime.nHour),
    RAW_FIELD(frameTime.nMinute),
    RAW_FIELD(frameTime.nSecond),
    RAW_FIELD(frameTime.nMilliSecond),
    RAW_FIELD(timeStamp),
    RAW_FIELD(frameSeq),
    RAW_FIELD(errorFlags),
    RAW_FIELD(frameRate),
    RAW_FIELD(width),
    RAW_FIELD(height),
    RAW_FIELD(samplesPerSec),
    RAW_FIELD(bitsPerSample),
    RAW_FIELD(channels),
};

#undef RAW_FIELD

} // namespace

std::span<const FRAME_FIELD> FrameFields()
{
    return sc_fields;
}

std::span<const FRAME_FIELD> RawFrameFields()
{
    return sc_rawFields;
}

} // namespace Marvane::FrameSift
