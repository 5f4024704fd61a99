#include "Mux/FamilyTable.h"

#include <fmt/format.h>

#include <algorithm>

#include "Io/AppError.h"
#include "Mux/OldRecording.h"
#include "Mux/ZoavRecording.h"

namespace Marvane::FrameSift {

namespace {

using Writer = std::unique_ptr<CRecordingWriter>;

template <ZOAV_FAMILY FAMILY>
Writer MakeZoav(const MUX_OPTIONS& options)
{
    return std::make_unique<CZoavRecording>(options, FAMILY);
}

template <NEW_HEADS HEADS>
Writer MakeNew(const MUX_OPTIONS& options)
{
    return std::make_unique<CNewRecording>(options, HEADS);
}

template <OLD_AUDIO_HEAD HEAD>
Writer MakeAudio(const MUX_OPTIONS& options)
{
    return std::make_unique<COldRecording>(options, HEAD);
}

template <class WRITER>
Writer Make(const MUX_OPTIONS& options)
{
    return std::make_unique<WRITER>(options);
}

constexpr FAMILY_ROW sc_families[] = {
    {"zoav", "all", false, true, &MakeZoav<ZOAV_FAMILY::ZOAV>},
    {"myav", "all", false, true, &MakeZoav<ZOAV_FAMILY::MYAV>},
    {"lxav", "all", false, true, &MakeZoav<ZOAV_FAMILY::LXAV>},
    {"wmav", "all", false, true, &MakeZoav<ZOAV_FAMILY::WMAV>},
    {"new", "h264, mpeg4", true, true, &MakeNew<NEW_HEADS::New>},
    {"new-ex", "h264, mpeg4", true, true, &MakeNew<NEW_HEADS::Ex>},
    {"new-ex1", "h264, mpeg4", true, true, &MakeNew<NEW_HEADS::Ex1>},
    {"hb", "mpeg4", true, true, &Make<CHbRecording>},
    {"zopt", "mpeg4", true, false, &Make<CZoptRecording>},
    {"audio", "none", true, false, &MakeAudio<OLD_AUDIO_HEAD::Short>},
    {"audio-ex", "none", true, false, &MakeAudio<OLD_AUDIO_HEAD::Long>},
    {"mpeg4", "mpeg4", true, false, &Make<CMpeg4Recording>},
};

// No name is a part of another one.
bool Carries(const FAMILY_ROW& family, std::string_view codec)
{
    return family.videoCodecs == "all" || family.videoCodecs.find(codec) != std::string_view::npos;
}

void Refuse(const FAMILY_ROW& family, std::string_view what)
{
    throw CAppError(EXIT_CODE::Usage, fmt::format("the family {} {}", family.name, what));
}

void RequireVideoFits(const MUX_OPTIONS& options, const FAMILY_ROW& family)
{
    const bool bAudioAlone = family.videoCodecs == "none";
    if (options.videoPath.empty()) {
        if (!bAudioAlone)
            Refuse(family, "needs --video; audio alone goes into audio, audio-ex or the ZOAV family");
        return;
    }
    if (bAudioAlone)
        Refuse(family, "carries audio alone, no --video");
    if (!Carries(family, options.pVideoCodec->name))
        Refuse(family, fmt::format("carries video of {}, not {}", family.videoCodecs, options.pVideoCodec->name));
}

} // namespace

const FAMILY_ROW* FindFamily(std::string_view name)
{
    const auto* pRow =
        std::find_if(std::begin(sc_families), std::end(sc_families), [=](const auto& row) { return row.name == name; });
    return pRow == std::end(sc_families) ? nullptr : pRow;
}

std::string FamilyNames()
{
    std::string names;
    for (const auto& row : sc_families)
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    return names;
}

void RequireFamilyCarries(const MUX_OPTIONS& options)
{
    const FAMILY_ROW& family = *options.pFamily;
    if (!family.bIsOld)
        return;
    if (!options.ivsPath.empty())
        Refuse(family, "carries no metadata: --ivs needs the ZOAV family");
    if (!options.seal.key.empty())
        Refuse(family, "has no ciphers: --key and --cipher-head need the ZOAV family");
    if (options.seal.checksum)
        Refuse(family, "has no payload sums: --checksum needs the ZOAV family");
    RequireVideoFits(options, family);
    // Audio with heads of its own tells the channels itself, so that a note will do.
    const bool bTellsItself = options.pAudioCodec == nullptr || options.pAudioCodec->nBitsPerSample == 0;
    if (!bTellsItself && options.rawAudio.nChannels > 1)
        Refuse(family, fmt::format("tells of one channel only, and {} says nothing of it itself: --audio-channels {} "
                                   "needs the ZOAV family",
                                   options.pAudioCodec->name, options.rawAudio.nChannels));
}

} // namespace Marvane::FrameSift
