// The byte field and the S-boxes of FIPS 197, worked out by the compiler.
#ifndef FRAMESIFT_SRC_TOOLS_KXAESTABLES_H
#define FRAMESIFT_SRC_TOOLS_KXAESTABLES_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace Marvane::FrameSift {

// Shift, and reduce by 0x11B.
constexpr uint8_t aes_mul_manual(unsigned nLeft, unsigned nRight)
{
    unsigned nProduct = 0;
    for (unsigned nBit = 0x80; nBit != 0; nBit >>= 1) {
        nProduct <<= 1;
        if ((nProduct & 0x100) != 0)
            nProduct ^= 0x11B;
        if ((nRight & nBit) != 0)
            nProduct ^= nLeft;
    }
    return static_cast<uint8_t>(nProduct);
}

inline constexpr std::array<uint8_t, 256> g_aes_sbox = [] {
    std::array<uint8_t, 256> box = {};
    box[0] = 0x63; // 0 has no inverse and counts as its own
    // The powers of 3 are all values but 0; those of 0xF6, the inverse of 3, run beside them as their inverses.
    uint8_t nPower = 1;
    uint8_t nInverse = 1;
    for (int n = 0; n < 255; ++n) {
        box[nPower] = static_cast<uint8_t>(nInverse ^ std::rotl(nInverse, 1) ^ std::rotl(nInverse, 2) ^
                                           std::rotl(nInverse, 3) ^ std::rotl(nInverse, 4) ^ 0x63);
        nPower = aes_mul_manual(nPower, 3);
        nInverse = aes_mul_manual(nInverse, 0xF6);
    }
    return box;
}();

inline constexpr std::array<uint8_t, 256> g_aes_isbox = [] {
    std::array<uint8_t, 256> box = {};
    for (size_t n = 0; n < box.size(); ++n)
        box[g_aes_sbox[n]] = static_cast<uint8_t>(n);
    return box;
}();

} // namespace Marvane::FrameSift

#endif
