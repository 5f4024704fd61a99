// Frame starts of the legacy streams, as a big-endian scan word. On the wire, never renumber.
#ifndef FRAMESIFT_SRC_PARSERMETHOD_LEGACYWORDS_H
#define FRAMESIFT_SRC_PARSERMETHOD_LEGACYWORDS_H

#include <cstdint>

namespace Marvane::FrameSift {

inline constexpr uint32_t sc_wordAudio = 0x1F0;
inline constexpr uint32_t sc_wordHB = 0x1F2;
inline constexpr uint32_t sc_wordFA = 0x1FA;
inline constexpr uint32_t sc_wordFB = 0x1FB;
inline constexpr uint32_t sc_wordFC = 0x1FC;
inline constexpr uint32_t sc_wordFD = 0x1FD;

// The words that may stand right behind a legacy frame. The HB word is none of them.
constexpr bool IsLegacyStart(uint32_t nWord)
{
    return nWord == sc_wordAudio || (nWord >= sc_wordFA && nWord <= sc_wordFD);
}

} // namespace Marvane::FrameSift

#endif
