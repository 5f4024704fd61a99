// What the user of mux has asked for.
#ifndef FRAMESIFT_APP_MUX_MUXOPTIONS_H
#define FRAMESIFT_APP_MUX_MUXOPTIONS_H

#include <optional>
#include <string>

#include "FrameWriter/RecordingClock.h"
#include "Mux/CodecTable.h"
#include "Mux/FamilyTable.h"
#include "Mux/PayloadSeal.h"
#include "Mux/Track.h"

namespace Marvane::FrameSift {

// A fixed start, so that the same command writes the same bytes: 2026-01-31T10:00:00.
inline constexpr CLOCK_MS gsk_defaultStart = 1769853600000;

struct MUX_OPTIONS
{
    std::string videoPath; // empty: no video
    const VIDEO_CODEC_ROW* pVideoCodec = nullptr;
    FRAME_RATE rate;
    std::optional<PICTURE_SIZE> size; // else as the stream says

    std::string audioPath; // empty: no audio
    const AUDIO_CODEC_ROW* pAudioCodec = nullptr;
    RAW_AUDIO rawAudio;

    std::string ivsPath; // empty: no intelligent video metadata

    CLOCK_MS nStart = gsk_defaultStart;
    bool bStartGiven = false;
    const FAMILY_ROW* pFamily = FindFamily("zoav");
    SEAL_OPTIONS seal;
    std::string outputPath;
};

} // namespace Marvane::FrameSift

#endif
