// The CRC-32 of IEEE 802.3, reflected, in two forms that give the same number.
#ifndef FRAMESIFT_SRC_TOOLS_KXVERIFYCRC32_H
#define FRAMESIFT_SRC_TOOLS_KXVERIFYCRC32_H

#include <cstdint>
#include <span>

namespace Marvane::FrameSift {

inline constexpr uint32_t gsk_crc32Polynomial = 0xEDB88320;

// The remainder nCrc after bytes have passed. Neither the start with all ones nor the final inversion is done here.
using CRC32_FORM = uint32_t (*)(uint32_t nCrc, std::span<const uint8_t> bytes);

[[nodiscard]] uint32_t Crc32ByTable(uint32_t nCrc, std::span<const uint8_t> bytes);

// Null where this processor cannot multiply without carries.
[[nodiscard]] CRC32_FORM Crc32ByFolding();

} // namespace Marvane::FrameSift

#endif
