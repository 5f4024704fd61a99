// The form for processors that multiply without carries: 64 bytes at a time are multiplied down into the 64 behind them,
// which leaves their remainder as it is.
#include "Tools/KXVerifyCrc32.h"

#include <array>
#include <cstddef>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace Marvane::FrameSift {

#if defined(__x86_64__)

namespace {

constexpr size_t sc_laneSize = sizeof(__m128i);
constexpr size_t sc_lanes = 4;
constexpr size_t sc_stepSize = sc_lanes * sc_laneSize;

// x to the power nExponent modulo the polynomial, bits reflected. The shift makes up for the product of two reflected
// numbers, which comes out one bit too low.
constexpr uint64_t Power(unsigned nExponent)
{
    uint64_t nPower = 0x80000000; // 1
    for (unsigned n = 0; n < nExponent; ++n)
        nPower = nPower >> 1 ^ ((nPower & 1) != 0 ? gsk_crc32Polynomial : 0U);
    return nPower << 1;
}

// Factors that carry the two halves of a lane nBytes further on.
struct FACTORS
{
    uint64_t nHigh;
    uint64_t nLow;
};
constexpr FACTORS FactorsOver(unsigned nBytes)
{
    return {Power(8 * nBytes - 32), Power(8 * nBytes + 32)};
}
constexpr FACTORS sc_overStep = FactorsOver(sc_stepSize);
constexpr FACTORS sc_overLane = FactorsOver(sc_laneSize);

__m128i Load(const uint8_t* pBytes)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(pBytes));
}

__m128i Load(const FACTORS& factors)
{
    return _mm_set_epi64x(static_cast<long long>(factors.nHigh), static_cast<long long>(factors.nLow));
}

[[gnu::target("pclmul,sse2")]] inline __m128i Fold(__m128i lane, __m128i factors, __m128i next)
{
    const __m128i low = _mm_clmulepi64_si128(lane, factors, 0x00);
    const __m128i high = _mm_clmulepi64_si128(lane, factors, 0x11);
    return _mm_xor_si128(next, _mm_xor_si128(low, high));
}

[[gnu::target("pclmul,sse2")]] uint32_t ByFolding(uint32_t nCrc, std::span<const uint8_t> bytes)
{
    if (bytes.size() < sc_stepSize)
        return Crc32ByTable(nCrc, bytes);
    __m128i lanes[sc_lanes];
    for (size_t n = 0; n < sc_lanes; ++n)
        lanes[n] = Load(bytes.data() + n * sc_laneSize);
    lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(nCrc)));
    bytes = bytes.subspan(sc_stepSize);
    const __m128i overStep = Load(sc_overStep);
    for (; bytes.size() >= sc_stepSize; bytes = bytes.subspan(sc_stepSize)) {
        for (size_t n = 0; n < sc_lanes; ++n)
            lanes[n] = Fold(lanes[n], overStep, Load(bytes.data() + n * sc_laneSize));
    }
    const __m128i overLane = Load(sc_overLane);
    __m128i lane = lanes[0];
    for (size_t n = 1; n < sc_lanes; ++n)
        lane = Fold(lane, overLane, lanes[n]);
    for (; bytes.size() >= sc_laneSize; bytes = bytes.subspan(sc_laneSize))
        lane = Fold(lane, overLane, Load(bytes.data()));
    // What is left has the remainder of all that went into it; the table takes it like any other bytes.
    std::array<uint8_t, sc_laneSize> last;
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(last.data()), lane);
    return Crc32ByTable(Crc32ByTable(0, last), bytes);
}

} // namespace

CRC32_FORM Crc32ByFolding()
{
    return __builtin_cpu_supports("pclmul") != 0 ? ByFolding : nullptr;
}

#else

CRC32_FORM Crc32ByFolding()
{
    return nullptr;
}

#endif

} // namespace Marvane::FrameSift
