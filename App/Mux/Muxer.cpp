#include "Mux/Muxer.h"

#include <algorithm>

#include "FrameWriter/ExtHeads.h"
#include "Io/AppError.h"

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

// When the last frame can stand that has a time on the wire, since the start.
uint64_t LastDueMs(CLOCK_MS nStart)
{
    KX_TIME last = {};
    last.nYear = gsk_lastYear;
    last.nMonth = 12;
    last.nDay = 31;
    last.nHour = 23;
    last.nMinute = 59;
    last.nSecond = 59;
    last.nMilliSecond = 999;
    return static_cast<uint64_t>(std::max<CLOCK_MS>(TimeToClock(last) - nStart, 0));
}

void RequireUnit(CTrack& track, std::string_view codec)
{
    if (track.Front() != nullptr)
        return;
    const std::string hint = track.LeftOut() > 0 ? " with a picture size; --size gives one" : "";
    throw CAppError(EXIT_CODE::Format, track.Source().File().Name() + " holds no unit of " + std::string(codec) + hint);
}

} // namespace

CMuxer::CMuxer(const MUX_OPTIONS& options) : m_options(options), m_seal(options.seal)
{
    OpenTracks();
    // Units first: a stream of another codec must not cost the user the file that stands there.
    if (m_video)
        RequireUnit(*m_video, options.pVideoCodec->name);
    if (m_audio)
        RequireUnit(*m_audio, options.pAudioCodec->name);
    RefuseToOverwriteInputs();
    m_output.emplace(options.outputPath);
}

void CMuxer::OpenTracks()
{
    if (!m_options.videoPath.empty()) {
        m_videoSource.emplace(m_options.videoPath, m_options.pVideoCodec->pfnMakeCutter());
        m_video.emplace(*m_videoSource, m_options.rate, m_options.size);
    }
    if (!m_options.audioPath.empty()) {
        RAW_AUDIO format = m_options.rawAudio;
        format.nBitsPerSample = m_options.pAudioCodec->nBitsPerSample;
        m_audioSource.emplace(m_options.audioPath, m_options.pAudioCodec->pfnMakeCutter(format));
        m_audio.emplace(*m_audioSource);
    }
    if (!m_options.ivsPath.empty())
        m_ivs.emplace(m_options.ivsPath, LastDueMs(m_options.nStart));
}

void CMuxer::RefuseToOverwriteInputs() const
{
    const auto refuse = [this](const CInputFile& input) {
        if (input.IsSameFile(m_options.outputPath))
            throw CAppError(EXIT_CODE::Usage, input.Name() + " is an input and the output too");
    };
    for (const auto* pSource : {&m_videoSource, &m_audioSource}) {
        if (*pSource)
            refuse((*pSource)->File());
    }
    if (m_ivs)
        refuse(m_ivs->File());
}

void CMuxer::Run()
{
    try {
        while (WriteNext()) {
        }
        m_output->Close();
    } catch (const CAppError& error) {
        throw CAppError(error.Code(), std::string(error.what()) + "; " + m_output->Name() + " is incomplete: it has " +
                                          std::to_string(m_output->WrittenBytes()) + " bytes");
    }
}

bool CMuxer::EndsTooShort() const
{
    return m_nLastFrameSize < sc_leastAtEnd;
}

bool CMuxer::WriteNext()
{
    constexpr uint64_t nNever = UINT64_MAX;
    const MediaUnit* pVideo = m_video ? m_video->Front() : nullptr;
    const MediaUnit* pAudio = m_audio ? m_audio->Front() : nullptr;
    const IVS_UNIT* pIvs = m_ivs ? m_ivs->Front() : nullptr;
    const uint64_t nVideo = pVideo == nullptr ? nNever : m_video->DueMs();
    const uint64_t nAudio = pAudio == nullptr ? nNever : m_audio->DueMs();
    const uint64_t nIvs = pIvs == nullptr ? nNever : pIvs->nDueMs;
    if (pVideo != nullptr && nVideo <= std::min(nAudio, nIvs)) {
        WriteVideo(*pVideo);
        m_video->Pop();
    } else if (pAudio != nullptr && nAudio <= nIvs) {
        WriteAudio(*pAudio);
        m_audio->Pop();
    } else if (pIvs != nullptr) {
        WriteIvs(*pIvs);
        m_ivs->Pop();
    } else {
        return false;
    }
    return true;
}

void CMuxer::WriteVideo(const MediaUnit& unit)
{
    const VIDEO_CODEC_ROW& codec = *m_options.pVideoCodec;
    const FRAME_RATE rate = m_options.rate;
    ZoavFrame frame = FrameAt(m_video->DueMs(), m_video->Units() + 1);
    frame.Type(FrameTypeOf(unit, codec.name));
    frame.ExtHead(ExtHead81(codec.chEncodeType, WholeRate(rate)));
    if (rate.nDenominator != 1)
        frame.ExtHead(ExtHead8A(codec.chEncodeType, static_cast<uint16_t>(rate.nValue),
                                static_cast<uint16_t>(rate.nDenominator)));
    frame.ExtHead(ExtHead82(static_cast<uint16_t>(unit.nWidth), static_cast<uint16_t>(unit.nHeight)));
    WritePayload(unit.payload, frame);
}

void CMuxer::WriteAudio(const MediaUnit& unit)
{
    ZoavFrame frame = FrameAt(m_audio->DueMs(), m_audio->Units() + 1);
    frame.Type(ZOAV_FRAME::Audio);
    const auto chChannels = static_cast<uint8_t>(unit.nChannels);
    const uint8_t chEncodeType = m_options.pAudioCodec->chEncodeType;
    const uint8_t chSampleType = SampleTypeOf(unit.nSamplesPerSec).value_or(0);
    // The short form for readers that know no other; the long one wins, and tells the bit rate.
    frame.ExtHead(ExtHead83(chChannels, chEncodeType, chSampleType));
    frame.ExtHead(ExtHead8C(chChannels, chEncodeType, chSampleType, BitRateTypeOf(unit.nBitsPerSec)));
    WritePayload(unit.payload, frame);
}

void CMuxer::WriteIvs(const IVS_UNIT& unit)
{
    ZoavFrame frame = FrameAt(unit.nDueMs, m_ivs->Units() + 1);
    frame.Type(ZOAV_FRAME::Data, unit.chSubType);
    WritePayload(unit.payload, frame);
}

void CMuxer::WritePayload(std::span<const uint8_t> payload, ZoavFrame& frame)
{
    m_seal.Put(payload, frame);
    const Bytes bytes = frame.Build();
    m_output->Write(bytes);
    m_nLastFrameSize = bytes.size();
}

ZoavFrame CMuxer::FrameAt(uint64_t nDueMs, uint32_t nSeq) const
{
    const auto time = ClockToTime(m_options.nStart + static_cast<CLOCK_MS>(nDueMs));
    if (!time)
        throw CAppError(EXIT_CODE::Usage, "the recording would run past the year " + std::to_string(gsk_lastYear));
    ZoavFrame frame;
    frame.Family(m_options.eFamily).Seq(nSeq).Time(*time);
    frame.TimeStamp(static_cast<uint16_t>(nDueMs & 0xFFFF)); // it wraps every 65.536 s
    frame.ExtHead(ExtHeadA0(static_cast<uint16_t>(time->nMilliSecond)));
    return frame;
}

} // namespace Marvane::FrameSift
