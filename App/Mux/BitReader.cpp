#include "Mux/BitReader.h"

namespace Marvane::FrameSift {

uint32_t CBitReader::Bits(uint32_t nCount)
{
    uint32_t nValue = 0;
    for (uint32_t n = 0; n < nCount; ++n, ++m_nPos) {
        const size_t nByte = m_nPos / 8;
        const uint32_t nBit = nByte < m_bytes.size() ? (m_bytes[nByte] >> (7 - m_nPos % 8)) & 1U : 0U;
        nValue = nValue << 1 | nBit;
    }
    return nValue;
}

uint32_t CBitReader::Ue()
{
    uint32_t nZeros = 0;
    while (nZeros < 32 && !Overrun() && !Flag())
        ++nZeros;
    if (nZeros == 32)
        m_nPos = m_bytes.size() * 8 + 1;
    if (Overrun())
        return 0;
    return (uint32_t{1} << nZeros) - 1 + Bits(nZeros);
}

int32_t CBitReader::Se()
{
    const uint32_t nCode = Ue();
    const auto nHalf = static_cast<int32_t>(nCode / 2 + nCode % 2);
    return nCode % 2 == 0 ? -nHalf : nHalf;
}

std::vector<uint8_t> UnescapeNal(std::span<const uint8_t> nal, size_t nLimit)
{
    std::vector<uint8_t> bytes;
    size_t nZeros = 0;
    for (const uint8_t chByte : nal) {
        if (bytes.size() == nLimit)
            break;
        if (nZeros >= 2 && chByte == 3) {
            nZeros = 0;
            continue;
        }
        bytes.push_back(chByte);
        nZeros = chByte == 0 ? nZeros + 1 : 0;
    }
    return bytes;
}

} // namespace Marvane::FrameSift
