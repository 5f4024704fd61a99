#include "Mux/ZoavRecording.h"

#include <algorithm>

#include "FrameWriter/ExtHeads.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_leastAtEnd = 48; // a reader looks at no frame before it has as many bytes

ZOAV_FRAME FrameTypeOf(const MediaUnit& unit, std::string_view codec)
{
    if (codec == "jpeg")
        return ZOAV_FRAME::Jpeg;
    if (unit.bKey)
        return ZOAV_FRAME::I;
    // An I picture that is no entry point must not be marked as one: a player would start there.
    return unit.eKind == UNIT_KIND::B ? ZOAV_FRAME::B : ZOAV_FRAME::P;
}

uint8_t WholeRate(FRAME_RATE rate)
{
    const uint32_t nRounded = (rate.nValue + rate.nDenominator / 2) / rate.nDenominator;
    return static_cast<uint8_t>(std::clamp(nRounded, 1U, 255U)); // 0 would read as "not known"
}

} // namespace

CZoavRecording::CZoavRecording(const MUX_OPTIONS& options, ZOAV_FAMILY eFamily)
    : m_options(options), m_seal(options.seal), m_eFamily(eFamily)
{}

Bytes CZoavRecording::Video(const MediaUnit& unit, const UNIT_PLACE& place)
{
    const VIDEO_CODEC_ROW& codec = *m_options.pVideoCodec;
    const FRAME_RATE rate = m_options.rate;
    ZoavFrame frame = FrameAt(place);
    frame.Type(FrameTypeOf(unit, codec.name));
    frame.ExtHead(ExtHead81(codec.chEncodeType, WholeRate(rate)));
    if (rate.nDenominator != 1)
        frame.ExtHead(ExtHead8A(codec.chEncodeType, static_cast<uint16_t>(rate.nValue),
                                static_cast<uint16_t>(rate.nDenominator)));
    frame.ExtHead(ExtHead82(static_cast<uint16_t>(unit.nWidth), static_cast<uint16_t>(unit.nHeight)));
    return Finish(unit.payload, frame);
}

Bytes CZoavRecording::Audio(const MediaUnit& unit, const UNIT_PLACE& place)
{
    ZoavFrame frame = FrameAt(place);
    frame.Type(ZOAV_FRAME::Audio);
    const auto chChannels = static_cast<uint8_t>(unit.nChannels);
    const uint8_t chEncodeType = m_options.pAudioCodec->chEncodeType;
    const uint8_t chSampleType = SampleTypeOf(unit.nSamplesPerSec).value_or(0);
    // The short form for readers that know no other; the long one wins, and tells the bit rate.
    frame.ExtHead(ExtHead83(chChannels, chEncodeType, chSampleType));
    frame.ExtHead(ExtHead8C(chChannels, chEncodeType, chSampleType, BitRateTypeOf(unit.nBitsPerSec)));
    return Finish(unit.payload, frame);
}

Bytes CZoavRecording::Ivs(const IVS_UNIT& unit, const UNIT_PLACE& place)
{
    ZoavFrame frame = FrameAt(place);
    frame.Type(ZOAV_FRAME::Data, unit.chSubType);
    return Finish(unit.payload, frame);
}

std::vector<std::string> CZoavRecording::Notes() const
{
    if (m_nLastFrameSize >= sc_leastAtEnd)
        return {};
    return {"the last frame is shorter than 48 bytes: readers wait for more bytes and do not see it; let a longer one "
            "follow"};
}

Bytes CZoavRecording::Finish(std::span<const uint8_t> payload, ZoavFrame& frame)
{
    m_seal.Put(payload, frame);
    Bytes bytes = frame.Build();
    m_nLastFrameSize = bytes.size();
    return bytes;
}

ZoavFrame CZoavRecording::FrameAt(const UNIT_PLACE& place) const
{
    const KX_TIME time = TimeAt(m_options.nStart, place.nDueMs);
    ZoavFrame frame;
    frame.Family(m_eFamily).Seq(place.nSeq).Time(time);
    frame.TimeStamp(static_cast<uint16_t>(place.nDueMs & 0xFFFF)); // it wraps every 65.536 s
    frame.ExtHead(ExtHeadA0(static_cast<uint16_t>(time.nMilliSecond)));
    return frame;
}

} // namespace Marvane::FrameSift
