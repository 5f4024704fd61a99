// Bit fields by the numbers of a printed diagram.
#ifndef FRAMESIFT_SRC_TOOLS_BITSOPERATE_H
#define FRAMESIFT_SRC_TOOLS_BITSOPERATE_H

#include <algorithm>
#include <cstdint>

#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

// Bits of an N-bit value, counted from the most significant one; the start belongs to the field, the end does not.
template <int N, class T>
struct CBitsValue
{
    static_assert(N == 8 * sizeof(T) && N <= 32);

    static constexpr T getBitsValue(T nValue, int nStartBit, int nEndBit)
    {
        const int nStart = std::clamp(nStartBit, 0, N);
        const int nEnd = std::clamp(nEndBit, nStart, N);
        const uint64_t nMask = (uint64_t{1} << (nEnd - nStart)) - 1;
        return static_cast<T>(uint64_t{nValue} >> (N - nEnd) & nMask);
    }
};

// The value comes as it was loaded from network order on a little-endian machine.
class CBitsOperate
{
public:
    static constexpr uint8_t GetBitsFromByte(uint8_t n, int nStartBit, int nEndBit)
    {
        return CBitsValue<8, uint8_t>::getBitsValue(n, nStartBit, nEndBit);
    }
    static constexpr uint16_t GetBitsFromShort(uint16_t n, int nStartBit, int nEndBit)
    {
        return CBitsValue<16, uint16_t>::getBitsValue(CKXConvert::ShortSwapBytes(n), nStartBit, nEndBit);
    }
    static constexpr uint32_t GetBitsFromInt(uint32_t n, int nStartBit, int nEndBit)
    {
        return CBitsValue<32, uint32_t>::getBitsValue(CKXConvert::IntSwapBytes(n), nStartBit, nEndBit);
    }
};

} // namespace Marvane::FrameSift

#endif
