// AES as in FIPS 197 over whole blocks, in two forms that give the same bytes.
#ifndef FRAMESIFT_SRC_TOOLS_KXAESBLOCKS_H
#define FRAMESIFT_SRC_TOOLS_KXAESBLOCKS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace Marvane::FrameSift {

inline constexpr uint32_t gsk_aesBlockSize = 16;
inline constexpr size_t gsk_aesMostKeyWords =
    size_t{4} * (14 + 1); // a block for each round of the longest key, and one before

// The expanded key. Words hold their bytes little-endian, so that in memory they stand in the order of the standard.
struct aes_ctx_t
{
    uint32_t rounds = 0; // 10, 12 or 14; 0: no key
    std::array<uint32_t, gsk_aesMostKeyWords> keysched = {};
    // For deciphering: the same round keys from the last to the first, those between the ends passed through
    // InvMixColumns, by which a round of deciphering has the shape of one of enciphering.
    std::array<uint32_t, gsk_aesMostKeyWords> invkeysched = {};
};

// False for a key of other than 16, 24 or 32 bytes; ctx then keeps what it held.
[[nodiscard]] bool aes_keyexpansion(std::span<const uint8_t> key, aes_ctx_t& ctx);

// Wipes the key.
void aes_free_ctx(aes_ctx_t& ctx);

struct AES_FORM
{
    // nBlocks blocks from src to dst, which may be the same place but not overlap in another way. ctx must hold a key.
    using BLOCKS = void (*)(const aes_ctx_t& ctx, const uint8_t* src, uint8_t* dst, size_t nBlocks);
    BLOCKS pfnEncrypt;
    BLOCKS pfnDecrypt;
};

extern const AES_FORM g_aesByTable;

// Null where this processor has no instructions for AES.
[[nodiscard]] const AES_FORM* AesByInstructions();

} // namespace Marvane::FrameSift

#endif
