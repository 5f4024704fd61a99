#include "Tools/BitsStream.h"

#include <algorithm>

#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_wordLen = 4;
// A step to the next word needs this one, the next and the one behind it.
constexpr uint32_t sc_threeWords = 3 * sc_wordLen;
constexpr uint32_t sc_ones = UINT32_MAX;

} // namespace

void CBitsStream::Init(const uint8_t* stream, uint32_t length, uint32_t readable)
{
    m_pStreamStart = stream;
    m_nTail = 0;
    m_nCurPos = 0;
    m_nLength = stream != nullptr ? readable : 0;
    m_nFirstInt = WordAt(0);
    m_nSecondInt = WordAt(sc_wordLen);
    m_nLength = std::min(m_nLength, length);
}

// Bytes past the end read as 0xFF.
uint32_t CBitsStream::WordAt(uint32_t nPos) const
{
    // Not "nPos + n < m_nLength": that sum wraps for a length near 2^32.
    const uint32_t nThere = nPos < m_nLength ? m_nLength - nPos : 0;
    if (nThere >= sc_wordLen)
        return LoadUint32Msb(m_pStreamStart + nPos);
    uint32_t nWord = 0;
    for (uint32_t n = 0; n < sc_wordLen; ++n)
        nWord = nWord << 8 | (n < nThere ? m_pStreamStart[nPos + n] : 0xFFU);
    return nWord;
}

// Near the end the tail stands still. With one to three bytes behind the second word, each further step delivers these
// same bytes again, filled up with ones, for ever. Kept; all that is read there ends all the same, for each such word
// has a one in it.
void CBitsStream::NextWord()
{
    const uint32_t nRemain = m_nLength - m_nTail;
    m_nFirstInt = nRemain <= sc_wordLen ? sc_ones : m_nSecondInt;
    m_nSecondInt = WordAt(m_nTail + 2 * sc_wordLen);
    if (nRemain >= sc_threeWords)
        m_nTail += sc_wordLen;
    m_nCurPos -= 32;
}

void CBitsStream::ByteAlign()
{
    if (m_nCurPos % 8 != 0)
        Skip(8 - m_nCurPos % 8);
}

int32_t CBitsStream::GetUeGolomb()
{
    uint32_t nZeros = 0;
    while (GetOneBit() == 0)
        ++nZeros;
    if (nZeros == 0)
        return 0;
    return static_cast<int32_t>((1U << (nZeros % 32)) + GetBits(nZeros) - 1);
}

int32_t CBitsStream::GetSeGolomb()
{
    const auto nCode = static_cast<uint32_t>(GetUeGolomb());
    const int32_t nValue = static_cast<int32_t>(nCode + 1) >> 1;
    return nCode % 2 != 0 ? nValue : -nValue;
}

} // namespace Marvane::FrameSift
