#include "Mux/OldRecording.h"

#include <fmt/format.h>

#include <algorithm>

#include "Io/AppError.h"
#include "Mux/FamilyTable.h"
#include "Tools/AudioSampleMap.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxAudio = 65535;     // two bytes on the wire
constexpr size_t sc_leastRawPicture = 96; // a reader looks at 100 bytes of a picture, and at the end adds 4 itself

// Not 0, though that has a rate too: readers take it for a code without one.
uint8_t SampleCode(uint32_t nSamplesPerSec)
{
    const auto* pFound =
        std::find(gsk_AudioSampleMap.begin() + 1, gsk_AudioSampleMap.end(), static_cast<int32_t>(nSamplesPerSec));
    return static_cast<uint8_t>(pFound - gsk_AudioSampleMap.begin());
}

} // namespace

void COldRecording::RequireAudio(const MediaUnit& unit) const
{
    if (unit.payload.size() > sc_maxAudio)
        throw CAppError(EXIT_CODE::Usage, fmt::format("an audio frame of {} bytes does not fit: the family {} carries "
                                                      "up to {}",
                                                      unit.payload.size(), Family(), sc_maxAudio));
}

Bytes COldRecording::Audio(const MediaUnit& unit, const UNIT_PLACE&)
{
    ++m_nFrames;
    m_nChannels = std::max(m_nChannels, unit.nChannels);
    const auto build = m_eHead == OLD_AUDIO_HEAD::Short ? &OldAudioFrame : &OldAudioFrameEx;
    return build(m_options.pAudioCodec->chEncodeType, SampleCode(unit.nSamplesPerSec), unit.payload);
}

std::vector<std::string> COldRecording::Notes() const
{
    std::vector<std::string> notes;
    if (m_nChannels > 1)
        notes.push_back(fmt::format("the audio has {} channels, and the heads of the family {} tell of one only: its "
                                    "payload alone says so",
                                    m_nChannels, Family()));
    if (m_options.bStartGiven && !m_options.pFamily->bHasClock)
        notes.push_back(fmt::format("the family {} carries no time of a clock: --start has no effect", Family()));
    const bool bAudioAlone = m_options.pFamily->videoCodecs == "none";
    if (bAudioAlone && m_eHead == OLD_AUDIO_HEAD::Short && m_nFrames == 1)
        notes.emplace_back("one audio frame alone is not seen, with --type 194 neither: only a second one right behind "
                           "it shows the format");
    return notes;
}

Bytes CZoptRecording::Video(const MediaUnit& unit, const UNIT_PLACE&)
{
    ++m_nPictures;
    return ZoptFrame(unit.payload);
}

std::vector<std::string> CZoptRecording::Notes() const
{
    auto notes = COldRecording::Notes();
    if (m_nPictures < LeadingPictures())
        notes.push_back("one picture alone is not recognised: only a second one right behind it shows the format");
    return notes;
}

Bytes CMpeg4Recording::Video(const MediaUnit& unit, const UNIT_PLACE&)
{
    m_lastPictures.push_back(m_nSize);
    Grow(unit.payload.size());
    return unit.payload;
}

Bytes CMpeg4Recording::Audio(const MediaUnit& unit, const UNIT_PLACE& place)
{
    Bytes frame = COldRecording::Audio(unit, place);
    Grow(frame.size());
    return frame;
}

void CMpeg4Recording::Grow(size_t nBytes)
{
    m_nSize += nBytes;
    while (!m_lastPictures.empty() && m_nSize - m_lastPictures.front() >= sc_leastRawPicture)
        m_lastPictures.pop_front();
}

std::vector<std::string> CMpeg4Recording::Notes() const
{
    auto notes = COldRecording::Notes();
    notes.emplace_back("an elementary stream is not recognised by itself: name the type to readers, --type 1");
    const size_t nUnread = m_lastPictures.size();
    if (nUnread > 0)
        notes.push_back(fmt::format("the last {} within {} bytes of the end: readers wait for more bytes and do not "
                                    "see {}; let more follow",
                                    nUnread == 1 ? "picture begins" : fmt::format("{} pictures begin", nUnread),
                                    sc_leastRawPicture, nUnread == 1 ? "it" : "them"));
    return notes;
}

} // namespace Marvane::FrameSift
