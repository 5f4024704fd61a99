#include "ESParse/H265Nal.h"

#include <algorithm>

#include "ESParse/H265ESParser.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_wordBits = 32;

// True once every bit to come repeats the one a word before it: the place in the word is then all that the reader still
// knows. A position beyond the word, or a word that is still to be fetched, moves under a trial skip.
bool IsPastEnd(const CBitsStream& bits)
{
    CBitsStream ahead = bits;
    for (const uint32_t nSkip : {0U, sc_wordBits, sc_wordBits}) {
        ahead.Skip(nSkip);
        if (ahead.Pos() != bits.Pos() || ahead.ShowBits(sc_wordBits) != bits.ShowBits(sc_wordBits))
            return false;
    }
    return true;
}

} // namespace

CH265NalHead::CH265NalHead(const uint8_t* pBody, int32_t nBodyLen, uint32_t nMaxLen)
{
    if (nBodyLen > 0)
        m_nSize = CH265ESParser::DiscardEmulationByte(pBody, static_cast<uint32_t>(nBodyLen), m_bytes.data(),
                                                      std::min(nMaxLen, sc_maxLen));
}

CBitsStream CH265NalHead::Bits() const
{
    CBitsStream bits;
    bits.Init(m_bytes.data(), m_nSize);
    return bits;
}

uint32_t RepeatRead(CBitsStream& bits, uint64_t nCount, uint32_t (*pfnStep)(CBitsStream&))
{
    uint32_t nSum = 0;
    for (; nCount > 0 && !IsPastEnd(bits); --nCount)
        nSum += pfnStep(bits);
    if (nCount > sc_wordBits) {
        // One of 32 places leads to the next. After as many steps at most, the reader goes round in a circle of them,
        // of which only the last, unfinished round has to be walked.
        for (uint32_t n = 0; n < sc_wordBits; ++n)
            nSum += pfnStep(bits);
        nCount -= sc_wordBits;
        CBitsStream round = bits;
        uint64_t nRoundSteps = 0;
        uint32_t nRoundSum = 0;
        do {
            nRoundSum += pfnStep(round);
            ++nRoundSteps;
        } while (round.Pos() != bits.Pos());
        nSum += static_cast<uint32_t>(nCount / nRoundSteps) * nRoundSum;
        nCount %= nRoundSteps;
    }
    for (; nCount > 0; --nCount)
        nSum += pfnStep(bits);
    return nSum;
}

uint32_t CH265ESParser::DiscardEmulationByte(const uint8_t* pESBuffer, uint32_t nESBufferLen, uint8_t* pSODB,
                                             uint32_t nSODBSize)
{
    if (pESBuffer == nullptr || pSODB == nullptr)
        return 0;
    uint32_t nFrom = 0;
    uint32_t nTo = 0;
    while (nESBufferLen - nFrom > 2 && nSODBSize - nTo > 2) {
        if (pESBuffer[nFrom] == 0 && pESBuffer[nFrom + 1] == 0 && pESBuffer[nFrom + 2] == 3) {
            pSODB[nTo++] = 0;
            pSODB[nTo++] = 0;
            nFrom += 3;
        } else {
            pSODB[nTo++] = pESBuffer[nFrom++];
        }
    }
    while (nFrom < nESBufferLen && nTo < nSODBSize)
        pSODB[nTo++] = pESBuffer[nFrom++];
    return nTo;
}

} // namespace Marvane::FrameSift
