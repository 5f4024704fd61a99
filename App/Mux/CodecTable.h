// The codecs that mux takes: their names, their codes on the wire, and who cuts them.
#ifndef FRAMESIFT_APP_MUX_CODECTABLE_H
#define FRAMESIFT_APP_MUX_CODECTABLE_H

#include <memory>
#include <string>
#include <string_view>

#include "Mux/FixedSizeCutter.h"
#include "Mux/UnitCutter.h"

namespace Marvane::FrameSift {

struct VIDEO_CODEC_ROW
{
    std::string_view name;
    uint8_t chEncodeType; // on the wire, in heads 0x81 and 0x8A
    std::unique_ptr<CUnitCutter> (*pfnMakeCutter)();
};

struct AUDIO_CODEC_ROW
{
    std::string_view name;
    uint8_t chEncodeType;    // on the wire, in heads 0x83 and 0x8C: KX_ENCODE_AUDIO_*
    uint32_t nBitsPerSample; // of audio without heads of its own; else 0
    std::unique_ptr<CUnitCutter> (*pfnMakeCutter)(const RAW_AUDIO& format);
};

// Null for a name that is not in the table.
const VIDEO_CODEC_ROW* FindVideoCodec(std::string_view name);
const AUDIO_CODEC_ROW* FindAudioCodec(std::string_view name);

// The names, separated by commas, for the help.
std::string VideoCodecNames();
std::string AudioCodecNames();
std::string SampleRates(); // in Hz, those that have a code on the wire

} // namespace Marvane::FrameSift

#endif
