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
    m_nSinceLastPicture = unit.payload.size();
    return unit.payload;
}

Bytes CMpeg4Recording::Audio(const MediaUnit& unit, const UNIT_PLACE& place)
{
    Bytes frame = COldRecording::Audio(unit, place);
    if (m_nSinceLastPicture)
        *m_nSinceLastPicture += frame.size();
    return frame;
}

std::vector<std::string> CMpeg4Recording::Notes() const
{
    auto notes = COldRecording::Notes();
    notes.emplace_back("an elementary stream is not recognised by itself: name the type to readers, --type 1");
    if (m_nSinceLastPicture.value_or(sc_leastRawPicture) < sc_leastRawPicture)
        notes.push_back(fmt::format("the last picture is shorter than {} bytes: readers wait for more bytes and do not "
                                    "see it; let more follow",
                                    sc_leastRawPicture));
    return notes;
}

} // namespace Marvane::FrameSift
