// Small sums on numbers from the stream.
#ifndef FRAMESIFT_SRC_TOOLS_KXMATH_H
#define FRAMESIFT_SRC_TOOLS_KXMATH_H

#include <bit>
#include <cstdint>
#include <limits>

namespace Marvane::FrameSift {

class CKXMath
{
public:
    // The number of significant bits, not the logarithm: 8 for 255. 1 for 0.
    static constexpr int32_t Log2(int32_t n)
    {
        return n == 0 ? 1 : static_cast<int32_t>(std::bit_width(static_cast<uint32_t>(n)));
    }

    // Truncated, and one more from a fraction of one half on. What no integer can hold gives the nearest one.
    static constexpr int32_t Round(double rate)
    {
        using limits = std::numeric_limits<int32_t>;
        if (!(rate > limits::min()))
            return rate == rate ? limits::min() : 0;
        if (rate >= limits::max())
            return limits::max();
        const auto nWhole = static_cast<int32_t>(rate);
        return rate - nWhole >= 0.5 ? nWhole + 1 : nWhole;
    }

    // A number of 16.16 fixed point.
    static constexpr double conv_fx(int32_t fx) { return fx / 65536.0; }
};

} // namespace Marvane::FrameSift

#endif
