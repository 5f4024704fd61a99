// The bit reader of the elementary stream parsers: big-endian, and it never fails.
#ifndef FRAMESIFT_SRC_TOOLS_BITSSTREAM_H
#define FRAMESIFT_SRC_TOOLS_BITSSTREAM_H

#include <cstdint>

namespace Marvane::FrameSift {

// Reads a caller's bytes, which it neither owns nor copies. Past the end it delivers ones, so that a header is read
// straight down, and every Golomb code ends.
class CBitsStream
{
public:
    // readable: bytes from stream on that may be looked at, length or more. The two words that reading starts with are
    // filled from them, though the stream ends in these words; all that is read later ends with length.
    void Init(const uint8_t* stream, uint32_t length, uint32_t readable);
    void Init(const uint8_t* stream, uint32_t length) { Init(stream, length, length); }

    // The next 1 to 32 bits without moving. All shift counts are taken modulo 32, which gives the lengths and positions
    // outside that range a value too: ShowBits(0) at position 0 is the whole word.
    uint32_t ShowBits(uint32_t bits) const;

    // Consumes one word at most, however large bits is: behind a skip of more than 32 bits the position may lie beyond
    // the word, until the next skip brings it back. The fixed skips of 8, 32, 48 and 8 bits of a profile, tier and
    // level rely on it.
    void Skip(uint32_t bits);

    uint32_t GetBits(uint32_t n);
    uint32_t GetOneBit() { return GetBits(1); }
    void ByteAlign();

    // Exp-Golomb codes. One of 32 zeros or more gives a meaningless value, no failure: who reads it bounds it.
    int32_t GetUeGolomb();
    int32_t GetSeGolomb();

    // Counts a consumed word as 8 bits, not 32, and stands still near the end. Kept: the header scans that compare it
    // with Length are ended by their own count of steps.
    uint32_t Pos() const { return m_nCurPos + 2 * m_nTail; }
    uint32_t Length() const { return m_nLength; }

private:
    void NextWord();
    uint32_t WordAt(uint32_t nPos) const;

    uint32_t m_nFirstInt = 0;  // the word under the position
    uint32_t m_nSecondInt = 0; // the one behind it
    uint32_t m_nCurPos = 0;    // in bits from the top of m_nFirstInt
    uint32_t m_nTail = 0;      // where m_nFirstInt was read, in bytes from the start
    const uint8_t* m_pStreamStart = nullptr;
    uint32_t m_nLength = 0;
};

// In the header: they run once per bit field.
inline uint32_t CBitsStream::ShowBits(uint32_t bits) const
{
    const uint32_t nEnd = m_nCurPos + bits;
    const uint32_t nFirst = m_nFirstInt & (UINT32_MAX >> (m_nCurPos % 32));
    if (nEnd <= 32)
        return nFirst >> ((32 - nEnd) % 32);
    return nFirst << ((nEnd - 32) % 32) | m_nSecondInt >> ((64 - nEnd) % 32);
}

inline void CBitsStream::Skip(uint32_t bits)
{
    m_nCurPos += bits;
    if (m_nCurPos >= 32)
        NextWord();
}

inline uint32_t CBitsStream::GetBits(uint32_t n)
{
    const uint32_t nValue = ShowBits(n);
    Skip(n);
    return nValue;
}

} // namespace Marvane::FrameSift

#endif
