// Writes the headers of video codecs bit by bit.
#ifndef FRAMESIFT_TEST_SUPPORT_BITWRITER_H
#define FRAMESIFT_TEST_SUPPORT_BITWRITER_H

#include <bit>
#include <cstdint>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Every setter answers the writer, so that a header reads as one expression: CBitWriter().Bits(8, 100).Ue(0).Rbsp().
// Optional parts of a header are writers too, empty if the part is absent.
class CBitWriter
{
public:
    CBitWriter& Bits(uint32_t nCount, uint64_t nValue)
    {
        for (uint32_t n = nCount; n > 0; --n) {
            if (m_nUsed % 8 == 0)
                m_bytes.push_back(0);
            m_bytes.back() = static_cast<uint8_t>(m_bytes.back() | (nValue >> (n - 1) & 1) << (7 - m_nUsed % 8));
            ++m_nUsed;
        }
        return *this;
    }
    CBitWriter& Flag(bool bValue) { return Bits(1, bValue ? 1 : 0); }
    // Exp-Golomb, ITU-T H.264, 9.1.
    CBitWriter& Ue(uint32_t nValue)
    {
        const uint64_t nCode = uint64_t{nValue} + 1;
        const auto nWidth = static_cast<uint32_t>(std::bit_width(nCode));
        return Bits(nWidth - 1, 0).Bits(nWidth, nCode);
    }
    CBitWriter& Ues(const std::vector<uint32_t>& values)
    {
        for (const uint32_t nValue : values)
            Ue(nValue);
        return *this;
    }
    CBitWriter& Se(int64_t nValue) { return Ue(static_cast<uint32_t>(nValue > 0 ? 2 * nValue - 1 : -2 * nValue)); }
    CBitWriter& Ses(const std::vector<int32_t>& values)
    {
        for (const int32_t nValue : values)
            Se(nValue);
        return *this;
    }
    CBitWriter& Add(const CBitWriter& part)
    {
        for (size_t n = 0; n < part.m_nUsed; ++n)
            Bits(1, part.m_bytes[n / 8] >> (7 - n % 8) & 1U);
        return *this;
    }
    // A flag that tells whether the part is there, and the part.
    CBitWriter& Optional(const CBitWriter& part) { return Flag(part.m_nUsed > 0).Add(part); }
    // The bits so far, filled up with zeros to whole bytes.
    const Bytes& Raw() const { return m_bytes; }
    // The bits so far with a stop bit behind them, as a NAL unit ends.
    Bytes Rbsp() const { return CBitWriter(*this).Flag(true).Raw(); }

private:
    Bytes m_bytes;
    size_t m_nUsed = 0;
};

// A NAL unit behind a start code of three or four bytes: its header as it stands, and rbsp with emulation prevention.
inline Bytes NalUnit(const Bytes& header, const Bytes& rbsp, size_t nStartCodeLen = 4)
{
    Bytes unit = Bytes(nStartCodeLen - 1, 0) + Bytes{1} + header;
    size_t nZeros = 0;
    for (const uint8_t nByte : rbsp) {
        if (nZeros >= 2 && nByte <= 3) {
            unit.push_back(3);
            nZeros = 0;
        }
        unit.push_back(nByte);
        nZeros = nByte == 0 ? nZeros + 1 : 0;
    }
    return unit;
}

} // namespace Marvane::FrameSift

#endif
