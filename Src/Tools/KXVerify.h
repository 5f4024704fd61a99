// The sums of the stream formats.
#ifndef FRAMESIFT_SRC_TOOLS_KXVERIFY_H
#define FRAMESIFT_SRC_TOOLS_KXVERIFY_H

#include <cstddef>
#include <cstdint>

namespace Marvane::FrameSift {

// The four below that take an int answer 0 for data null and for a len of 0 or less. Nothing behind data + len is read.
class CKXVerify
{
public:
    // Of the bytes, modulo 256.
    [[nodiscard]] static uint8_t GetSum8(const uint8_t* data, int len);

    // Of little-endian words, modulo 2^32. A last word that is cut short counts with zeros for its upper bytes.
    [[nodiscard]] static uint32_t GetSum32(const uint8_t* data, int len);
    [[nodiscard]] static uint32_t GetXor32(const uint8_t* data, int len);

    // The CRC-32 of IEEE 802.3.
    [[nodiscard]] static uint32_t GetCRC32(const uint8_t* data, int len);

    // CRC-16/ARC, without a final inversion. crc: what came out for the bytes before these, or the initial value; it
    // comes back as it is for data null.
    [[nodiscard]] static uint16_t crc16(uint16_t crc, const uint8_t* data, size_t len);
    [[nodiscard]] static uint16_t crc16_byte(uint16_t crc, uint8_t value);
};

} // namespace Marvane::FrameSift

#endif
