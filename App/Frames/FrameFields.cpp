#include "Frames/FrameFields.h"

#include "Frames/CodeNames.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

FIELD_VALUE TextOrNothing(std::string text)
{
    return text.empty() ? FIELD_VALUE() : FIELD_VALUE(std::move(text));
}

FIELD_VALUE IfVideo(const LISTED_FRAME& listed, int64_t nValue)
{
    return listed.frame.frameType == KX_FRAME_TYPE_VIDEO ? FIELD_VALUE(nValue) : FIELD_VALUE();
}

FIELD_VALUE IfAudio(const LISTED_FRAME& listed, int64_t nValue)
{
    return listed.frame.frameType == KX_FRAME_TYPE_AUDIO ? FIELD_VALUE(nValue) : FIELD_VALUE();
}

constexpr FRAME_FIELD sc_fields[] = {
    {"offset", [](const LISTED_FRAME& l) -> FIELD_VALUE { return l.nFrameOffset; }},
    {"payload_offset",
     [](const LISTED_FRAME& l) { return l.frame.streamLen > 0 ? FIELD_VALUE(l.nPayloadOffset) : FIELD_VALUE(); }},
    {"kind", [](const LISTED_FRAME& l) { return TextOrNothing(FrameTypeName(l.frame.frameType)); }},
    {"subtype",
     [](const LISTED_FRAME& l) { return TextOrNothing(SubTypeName(l.frame.frameType, l.frame.frameSubType)); }},
    {"codec",
     [](const LISTED_FRAME& l) { return TextOrNothing(CodecName(l.frame.frameType, l.frame.frameEncodeType)); }},
    {"time", [](const LISTED_FRAME& l) { return TextOrNothing(TimeText(KX_TIME(l.frame.frameTime))); }},
    {"time_stamp", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.frame.timeStamp}; }},
    // Unsigned on the wire, signed in the record.
    {"sequence", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{static_cast<uint32_t>(l.frame.frameSeq)}; }},
    {"width", [](const LISTED_FRAME& l) { return IfVideo(l, l.frame.width); }},
    {"height", [](const LISTED_FRAME& l) { return IfVideo(l, l.frame.height); }},
    {"frame_rate", [](const LISTED_FRAME& l) { return IfVideo(l, l.frame.frameRate); }},
    {"sample_rate", [](const LISTED_FRAME& l) { return IfAudio(l, l.frame.samplesPerSec); }},
    {"channels", [](const LISTED_FRAME& l) { return IfAudio(l, l.frame.channels); }},
    {"bits_per_sample", [](const LISTED_FRAME& l) { return IfAudio(l, l.frame.bitsPerSample); }},
    {"frame_length", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.frame.frameLen}; }},
    {"payload_length", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.frame.streamLen}; }},
    {"stream_type", [](const LISTED_FRAME& l) -> FIELD_VALUE { return int64_t{l.nStreamType}; }},
    {"error", [](const LISTED_FRAME& l) { return TextOrNothing(ErrorName(l.frame.errorFlags)); }},
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
