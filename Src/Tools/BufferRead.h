// A bounded little-endian reader over a caller's bytes.
#ifndef FRAMESIFT_SRC_TOOLS_BUFFERREAD_H
#define FRAMESIFT_SRC_TOOLS_BUFFERREAD_H

#include <cstddef>
#include <cstdint>

namespace Marvane::FrameSift {

// A read that the remaining bytes do not cover does nothing: it answers false, null or 0, and its target keeps its
// value.
class CBufferRead
{
public:
    CBufferRead(const uint8_t* pBuffer, uint32_t nBufferLen) : m_pBuffer(pBuffer), m_nBufferLen(nBufferLen) {}

    // The next nLen bytes; null and no move if fewer remain. Here and not in the source file: records of many small fields
    // are read by it, and a call for each takes longer than the reading.
    [[nodiscard]] const uint8_t* ReadBuffer(uint32_t nLen)
    {
        // Not "m_nCurPos + nLen > m_nBufferLen": that sum wraps for a length near 2^32.
        if (nLen > m_nBufferLen - m_nCurPos)
            return nullptr;
        const uint8_t* pBytes = m_pBuffer + m_nCurPos;
        m_nCurPos += nLen;
        return pBytes;
    }
    [[nodiscard]] bool ReadUint8(uint8_t& value);
    [[nodiscard]] bool ReadUint16Lsb(uint16_t& value);
    [[nodiscard]] bool ReadInt16Lsb(int16_t& value);
    [[nodiscard]] bool ReadUint32Lsb(uint32_t& value);

    // One, two or three bytes; 0 at the end.
    [[nodiscard]] uint8_t ReadInt8();
    [[nodiscard]] uint16_t ReadInt16();
    [[nodiscard]] uint32_t ReadInt24();

    // False and no move if it would pass the end.
    bool Skip(uint32_t nLen) { return ReadBuffer(nLen) != nullptr; }

    // Back by nLen, but not before the first byte.
    void Backforword(uint32_t nLen);

private:
    const uint8_t* m_pBuffer;
    uint32_t m_nBufferLen;
    uint32_t m_nCurPos = 0; // never above m_nBufferLen
};

// nBytes (at most 8) from pBytes as a little-endian number.
[[nodiscard]] inline uint64_t LoadLsb(const uint8_t* pBytes, size_t nBytes)
{
    uint64_t nValue = 0;
    for (size_t n = 0; n < nBytes; ++n)
        nValue |= uint64_t{pBytes[n]} << (8 * n);
    return nValue;
}

[[nodiscard]] inline uint32_t LoadUint32Lsb(const uint8_t* pBytes)
{
    return static_cast<uint32_t>(LoadLsb(pBytes, sizeof(uint32_t)));
}

[[nodiscard]] inline uint32_t LoadUint32Msb(const uint8_t* pBytes)
{
    return uint32_t{pBytes[0]} << 24 | uint32_t{pBytes[1]} << 16 | uint32_t{pBytes[2]} << 8 | pBytes[3];
}

} // namespace Marvane::FrameSift

#endif
