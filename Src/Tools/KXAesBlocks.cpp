// The expanded key, and the form that every processor runs.
#include "Tools/KXAesBlocks.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "Tools/BufferRead.h"
#include "Tools/KXAesTables.h"

namespace Marvane::FrameSift {

namespace {

static_assert(std::endian::native == std::endian::little); // blocks and round keys are moved as words

using WORD_TABLE = std::array<uint32_t, 256>;

constexpr uint8_t ByteOf(uint32_t nWord, unsigned nIndex)
{
    return static_cast<uint8_t>(nWord >> (8 * nIndex));
}

// An S-box and the column product behind it in one look-up: what the first byte of a column adds to the product. The
// bytes below it add the same, turned on by one byte each, so that one table of 1 KiB does for all four. It stays in the
// first cache beside the frame, and does without a multiplication for each byte.
constexpr WORD_TABLE ColumnTable(const std::array<uint8_t, 256>& box, const std::array<uint8_t, 4>& factors)
{
    WORD_TABLE table = {};
    for (size_t n = 0; n < table.size(); ++n) {
        for (unsigned nRow = 0; nRow < 4; ++nRow)
            table[n] |= uint32_t{aes_mul_manual(box[n], factors[nRow])} << (8 * nRow);
    }
    return table;
}

struct AES_DIRECTION
{
    WORD_TABLE table;
    std::array<uint8_t, 256> box;
    // ShiftRows: row r of a column comes from r * nTurn columns further on, modulo 4.
    unsigned nTurn;
};

constexpr AES_DIRECTION sc_enciphering = {ColumnTable(g_aes_sbox, {2, 1, 1, 3}), g_aes_sbox, 1};
constexpr AES_DIRECTION sc_deciphering = {ColumnTable(g_aes_isbox, {14, 9, 13, 11}), g_aes_isbox, 3};

using AES_STATE = std::array<uint32_t, 4>; // a word for each column

template <const AES_DIRECTION& way>
uint32_t RoundColumn(const AES_STATE& state, unsigned nColumn)
{
    uint32_t nWord = 0;
    for (unsigned nRow = 0; nRow < 4; ++nRow) {
        const uint32_t nSource = state[(nColumn + nRow * way.nTurn) % 4];
        nWord ^= std::rotl(way.table[ByteOf(nSource, nRow)], static_cast<int>(8 * nRow));
    }
    return nWord;
}

template <const AES_DIRECTION& way>
uint32_t LastColumn(const AES_STATE& state, unsigned nColumn)
{
    uint32_t nWord = 0;
    for (unsigned nRow = 0; nRow < 4; ++nRow) {
        const uint32_t nSource = state[(nColumn + nRow * way.nTurn) % 4];
        nWord |= uint32_t{way.box[ByteOf(nSource, nRow)]} << (8 * nRow);
    }
    return nWord;
}

template <const AES_DIRECTION& way>
void RunBlock(const uint32_t* pKeys, uint32_t nRounds, const uint8_t* src, uint8_t* dst)
{
    AES_STATE state;
    AES_STATE next;
    std::memcpy(state.data(), src, sizeof state);
    for (unsigned n = 0; n < 4; ++n)
        state[n] ^= pKeys[n];
    for (uint32_t nRound = 1; nRound < nRounds; ++nRound) {
        pKeys += 4;
        for (unsigned n = 0; n < 4; ++n)
            next[n] = RoundColumn<way>(state, n) ^ pKeys[n];
        state = next;
    }
    pKeys += 4;
    for (unsigned n = 0; n < 4; ++n)
        next[n] = LastColumn<way>(state, n) ^ pKeys[n];
    std::memcpy(dst, next.data(), sizeof next);
}

void EncryptByTable(const aes_ctx_t& ctx, const uint8_t* src, uint8_t* dst, size_t nBlocks)
{
    for (size_t nPos = 0; nPos < nBlocks * gsk_aesBlockSize; nPos += gsk_aesBlockSize)
        RunBlock<sc_enciphering>(ctx.keysched.data(), ctx.rounds, src + nPos, dst + nPos);
}

void DecryptByTable(const aes_ctx_t& ctx, const uint8_t* src, uint8_t* dst, size_t nBlocks)
{
    for (size_t nPos = 0; nPos < nBlocks * gsk_aesBlockSize; nPos += gsk_aesBlockSize)
        RunBlock<sc_deciphering>(ctx.invkeysched.data(), ctx.rounds, src + nPos, dst + nPos);
}

uint32_t aes_subword(uint32_t nWord)
{
    uint32_t nResult = 0;
    for (unsigned n = 0; n < 4; ++n)
        nResult |= uint32_t{g_aes_sbox[ByteOf(nWord, n)]} << (8 * n);
    return nResult;
}

// The first byte moves to the end; in a little-endian word that is the lowest one.
uint32_t aes_rotword(uint32_t nWord)
{
    return std::rotr(nWord, 8);
}

// The table holds the product behind the inverse S-box, which the S-box in front of it takes back.
uint32_t aes_invmixcolumn(uint32_t nWord)
{
    uint32_t nResult = 0;
    for (unsigned n = 0; n < 4; ++n)
        nResult ^= std::rotl(sc_deciphering.table[g_aes_sbox[ByteOf(nWord, n)]], static_cast<int>(8 * n));
    return nResult;
}

void FillInvKeySched(aes_ctx_t& ctx)
{
    for (uint32_t nRound = 0; nRound <= ctx.rounds; ++nRound) {
        const bool bEnd = nRound == 0 || nRound == ctx.rounds;
        for (uint32_t n = 0; n < 4; ++n) {
            const uint32_t nWord = ctx.keysched[4 * (ctx.rounds - nRound) + n];
            ctx.invkeysched[4 * nRound + n] = bEnd ? nWord : aes_invmixcolumn(nWord);
        }
    }
}

} // namespace

const AES_FORM g_aesByTable = {EncryptByTable, DecryptByTable};

bool aes_keyexpansion(std::span<const uint8_t> key, aes_ctx_t& ctx)
{
    const auto kcol = static_cast<uint32_t>(key.size() / 4);
    if (key.size() % 4 != 0 || (kcol != 4 && kcol != 6 && kcol != 8))
        return false;
    ctx.rounds = kcol + 6;
    for (uint32_t n = 0; n < kcol; ++n)
        ctx.keysched[n] = LoadUint32Lsb(key.data() + size_t{4} * n);
    uint8_t nRoundConstant = 1;
    for (uint32_t n = kcol; n < 4 * (ctx.rounds + 1); ++n) {
        uint32_t nWord = ctx.keysched[n - 1];
        if (n % kcol == 0) {
            nWord = aes_subword(aes_rotword(nWord)) ^ nRoundConstant;
            nRoundConstant = aes_mul_manual(nRoundConstant, 2);
        } else if (kcol > 6 && n % kcol == 4) {
            nWord = aes_subword(nWord);
        }
        ctx.keysched[n] = ctx.keysched[n - kcol] ^ nWord;
    }
    FillInvKeySched(ctx);
    return true;
}

void aes_free_ctx(aes_ctx_t& ctx)
{
    // A plain fill of memory that nobody reads afterwards is left out by the compiler.
    auto* pBytes = reinterpret_cast<volatile uint8_t*>(&ctx);
    for (size_t n = 0; n < sizeof ctx; ++n)
        pBytes[n] = 0;
}

} // namespace Marvane::FrameSift
