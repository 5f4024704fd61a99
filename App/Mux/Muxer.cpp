#include "Mux/Muxer.h"

#include <algorithm>

#include "Io/AppError.h"

namespace Marvane::FrameSift {

namespace {

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

CMuxer::CMuxer(const MUX_OPTIONS& options) : m_options(options), m_writer(options.pFamily->pfnMake(options))
{
    OpenTracks();
    // Units first: a stream of another codec must not cost the user the file that stands there.
    if (m_video) {
        RequireUnit(*m_video, options.pVideoCodec->name);
        m_writer->RequireVideo(*m_video->Front());
    }
    if (m_audio) {
        RequireUnit(*m_audio, options.pAudioCodec->name);
        m_writer->RequireAudio(*m_audio->Front());
    }
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
        m_output->Write(m_writer->End());
        m_output->Close();
    } catch (const CAppError& error) {
        throw CAppError(error.Code(), std::string(error.what()) + "; " + m_output->Name() + " is incomplete: it has " +
                                          std::to_string(m_output->WrittenBytes()) + " bytes");
    }
}

bool CMuxer::WriteNext()
{
    constexpr uint64_t nNever = UINT64_MAX;
    const MediaUnit* pVideo = m_video ? m_video->Front() : nullptr;
    const MediaUnit* pAudio = m_audio ? m_audio->Front() : nullptr;
    const IVS_UNIT* pIvs = m_ivs ? m_ivs->Front() : nullptr;
    const bool bLeads = m_video && m_video->Units() < m_writer->LeadingPictures();
    const uint64_t nVideo = pVideo == nullptr ? nNever : bLeads ? 0 : m_video->DueMs();
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
    m_writer->RequireVideo(unit);
    m_output->Write(m_writer->Video(unit, {m_video->DueMs(), m_video->Units() + 1}));
}

void CMuxer::WriteAudio(const MediaUnit& unit)
{
    m_writer->RequireAudio(unit);
    m_output->Write(m_writer->Audio(unit, {m_audio->DueMs(), m_audio->Units() + 1}));
}

void CMuxer::WriteIvs(const IVS_UNIT& unit)
{
    m_output->Write(m_writer->Ivs(unit, {unit.nDueMs, m_ivs->Units() + 1}));
}

} // namespace Marvane::FrameSift
