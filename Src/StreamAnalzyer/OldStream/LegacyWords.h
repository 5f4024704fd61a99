// Frame starts of the legacy streams, as a big-endian scan word. On the wire, never renumber.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_LEGACYWORDS_H
#define FRAMESIFT_SRC_STREAMANALZYER_OLDSTREAM_LEGACYWORDS_H

#include <cstdint>

#include "ESParse/MPEG4ESParser.h"
#include "Tools/FourCC.h"

namespace Marvane::FrameSift {

inline constexpr uint32_t sc_wordAudio = 0x1F0;
inline constexpr uint32_t sc_wordData = 0x1F1;
inline constexpr uint32_t sc_wordHB = 0x1F2;
inline constexpr uint32_t sc_wordFA = 0x1FA;
inline constexpr uint32_t sc_wordFB = 0x1FB;
inline constexpr uint32_t sc_wordFC = 0x1FC;
inline constexpr uint32_t sc_wordFD = 0x1FD;
inline constexpr uint32_t sc_wordZOPT = FourCC("ZOPT");

// Stands for a border too. A scan word starts with it, so a search meets it at once where a byte of ones follows. Kept.
inline constexpr uint32_t sc_wordOnes = 0xFFFFFFFF;

// The words that the detector takes for the start of a next frame. The HB word is none of them, nor is that of data.
constexpr bool IsLegacyStart(uint32_t nWord)
{
    return nWord == sc_wordAudio || (nWord >= sc_wordFA && nWord <= sc_wordFD);
}

// What the audio of a legacy stream is searched for: its frames, and signs of video. Heads of MPEG-4 are such a sign, but
// tell nothing of the format. Kept.
constexpr bool IsLegacyAudioOrVideo(uint32_t nWord)
{
    return IsLegacyStart(nWord) || nWord == sc_wordHB || nWord == sc_wordZOPT || nWord == MPEG4_VOP ||
           nWord == MPEG4_SEQUENCE;
}

} // namespace Marvane::FrameSift

#endif
