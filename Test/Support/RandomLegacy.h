// Random streams of the older formats from a seed.
#ifndef FRAMESIFT_TEST_SUPPORT_RANDOMLEGACY_H
#define FRAMESIFT_TEST_SUPPORT_RANDOMLEGACY_H

#include <memory>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "IAnalyzer/IStreamAnalzyer.h"

namespace Marvane::FrameSift {

enum class LEGACY_FORMAT : uint8_t
{
    New,
    NewEx,
    NewEx1,
    Zopt,
    Hb,
    RawMpeg4,
    Audio,
    AudioEx
};

inline constexpr LEGACY_FORMAT gsk_legacyFormats[] = {
    LEGACY_FORMAT::New, LEGACY_FORMAT::NewEx,    LEGACY_FORMAT::NewEx1, LEGACY_FORMAT::Zopt,
    LEGACY_FORMAT::Hb,  LEGACY_FORMAT::RawMpeg4, LEGACY_FORMAT::Audio,  LEGACY_FORMAT::AudioEx};

// Sound frames, of HB sound blocks: the first is a key frame, later ones are pictures, audio and, in the New formats,
// data. No payload holds what could end a frame. An ID that ends the last one stands behind them.
std::vector<Bytes> RandomLegacyFrames(LEGACY_FORMAT eFormat, uint32_t nSeed, size_t nCount, size_t nMaxPayload);

// The parser of the format itself; of audio alone, that of all older formats.
std::unique_ptr<IStreamAnalzyer> MakeLegacyParser(LEGACY_FORMAT eFormat);

} // namespace Marvane::FrameSift

#endif
