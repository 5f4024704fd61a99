// The form that every processor runs.
#include "Tools/KXVerifyCrc32.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace Marvane::FrameSift {

namespace {

static_assert(std::endian::native == std::endian::little);

constexpr size_t sc_slices = 16; // bytes of one step

// Row 0 is the usual table of a remainder of 8 bits. Row n tells the same after n further zero bytes: so the sixteen
// bytes of a step are looked up without waiting for each other.
constexpr auto s_crc32Table = [] {
    std::array<std::array<uint32_t, 256>, sc_slices> table = {};
    for (uint32_t n = 0; n < 256; ++n) {
        uint32_t nCrc = n;
        for (int nBit = 0; nBit < 8; ++nBit)
            nCrc = nCrc >> 1 ^ ((nCrc & 1) != 0 ? gsk_crc32Polynomial : 0U);
        table[0][n] = nCrc;
    }
    for (size_t nSlice = 1; nSlice < sc_slices; ++nSlice) {
        for (size_t n = 0; n < 256; ++n) {
            const uint32_t nCrc = table[nSlice - 1][n];
            table[nSlice][n] = table[0][nCrc & 0xFF] ^ nCrc >> 8;
        }
    }
    return table;
}();

uint32_t Load(const uint8_t* pBytes)
{
    uint32_t nWord;
    std::memcpy(&nWord, pBytes, sizeof nWord);
    return nWord;
}

// The four bytes of nWord, of which the last has nSlice bytes behind it in the step.
uint32_t LookUp(uint32_t nWord, size_t nSlice)
{
    return s_crc32Table[nSlice + 3][nWord & 0xFF] ^ s_crc32Table[nSlice + 2][nWord >> 8 & 0xFF] ^
           s_crc32Table[nSlice + 1][nWord >> 16 & 0xFF] ^ s_crc32Table[nSlice][nWord >> 24];
}

} // namespace

uint32_t Crc32ByTable(uint32_t nCrc, std::span<const uint8_t> bytes)
{
    for (; bytes.size() >= sc_slices; bytes = bytes.subspan(sc_slices)) {
        const uint8_t* pStep = bytes.data();
        // Only the first word waits for the step before.
        const uint32_t nRest = LookUp(Load(pStep + 4), 8) ^ LookUp(Load(pStep + 8), 4) ^ LookUp(Load(pStep + 12), 0);
        nCrc = LookUp(Load(pStep) ^ nCrc, 12) ^ nRest;
    }
    for (const uint8_t nByte : bytes)
        nCrc = s_crc32Table[0][(nCrc ^ nByte) & 0xFF] ^ nCrc >> 8;
    return nCrc;
}

} // namespace Marvane::FrameSift
