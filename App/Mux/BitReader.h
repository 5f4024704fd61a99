// Big-endian bits, as the headers of the video codecs are written.
#ifndef FRAMESIFT_APP_MUX_BITREADER_H
#define FRAMESIFT_APP_MUX_BITREADER_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Marvane::FrameSift {

// Delivers zeros past the end, so that a header is read straight down and judged once, by Overrun.
class CBitReader
{
public:
    explicit CBitReader(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

    bool Flag() { return Bits(1) != 0; }
    uint32_t Bits(uint32_t nCount); // at most 32
    void Skip(size_t nCount) { m_nPos += nCount; }
    uint32_t Ue(); // Exp-Golomb; a code longer than 32 bits counts as an overrun
    int32_t Se();
    bool Overrun() const { return m_nPos > m_bytes.size() * 8; }

private:
    std::span<const uint8_t> m_bytes;
    size_t m_nPos = 0;
};

// A NAL unit without its emulation prevention bytes. Stops after nLimit bytes: a slice head needs no more.
std::vector<uint8_t> UnescapeNal(std::span<const uint8_t> nal, size_t nLimit);

} // namespace Marvane::FrameSift

#endif
