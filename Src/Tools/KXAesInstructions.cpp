// The form that uses a processor's own instructions for AES.
#include "Tools/KXAesBlocks.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace Marvane::FrameSift {

#if defined(__x86_64__)

namespace {

// A round takes some four cycles to come out, and one or two can be started in each: eight blocks keep the unit busy.
constexpr size_t sc_blocksAtOnce = 8;

__m128i Load(const void* pBytes)
{
    return _mm_loadu_si128(static_cast<const __m128i_u*>(pBytes));
}

template <bool bEncipher>
[[gnu::target("aes,sse2")]] inline __m128i Round(__m128i block, __m128i key)
{
    return bEncipher ? _mm_aesenc_si128(block, key) : _mm_aesdec_si128(block, key);
}

template <bool bEncipher>
[[gnu::target("aes,sse2")]] inline __m128i LastRound(__m128i block, __m128i key)
{
    return bEncipher ? _mm_aesenclast_si128(block, key) : _mm_aesdeclast_si128(block, key);
}

template <bool bEncipher, size_t nCount>
[[gnu::target("aes,sse2")]] inline void RunBlocks(const uint32_t* pKeys, uint32_t nRounds, const uint8_t* src,
                                                  uint8_t* dst)
{
    __m128i blocks[nCount];
    __m128i key = Load(pKeys);
    for (size_t n = 0; n < nCount; ++n)
        blocks[n] = _mm_xor_si128(Load(src + n * gsk_aesBlockSize), key);
    for (uint32_t nRound = 1; nRound < nRounds; ++nRound) {
        pKeys += 4;
        key = Load(pKeys);
        for (size_t n = 0; n < nCount; ++n)
            blocks[n] = Round<bEncipher>(blocks[n], key);
    }
    key = Load(pKeys + 4);
    for (size_t n = 0; n < nCount; ++n) {
        void* pPlace = dst + n * gsk_aesBlockSize;
        _mm_storeu_si128(static_cast<__m128i_u*>(pPlace), LastRound<bEncipher>(blocks[n], key));
    }
}

template <bool bEncipher>
[[gnu::target("aes,sse2")]] void RunAll(const aes_ctx_t& ctx, const uint8_t* src, uint8_t* dst, size_t nBlocks)
{
    const uint32_t* pKeys = bEncipher ? ctx.keysched.data() : ctx.invkeysched.data();
    for (; nBlocks >= sc_blocksAtOnce; nBlocks -= sc_blocksAtOnce) {
        RunBlocks<bEncipher, sc_blocksAtOnce>(pKeys, ctx.rounds, src, dst);
        src += sc_blocksAtOnce * gsk_aesBlockSize;
        dst += sc_blocksAtOnce * gsk_aesBlockSize;
    }
    for (size_t nPos = 0; nPos < nBlocks * gsk_aesBlockSize; nPos += gsk_aesBlockSize)
        RunBlocks<bEncipher, 1>(pKeys, ctx.rounds, src + nPos, dst + nPos);
}

constexpr AES_FORM sc_byInstructions = {RunAll<true>, RunAll<false>};

} // namespace

const AES_FORM* AesByInstructions()
{
    return __builtin_cpu_supports("aes") != 0 ? &sc_byInstructions : nullptr;
}

#else

const AES_FORM* AesByInstructions()
{
    return nullptr;
}

#endif

} // namespace Marvane::FrameSift
