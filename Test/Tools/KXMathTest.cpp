#include "Tools/KXMath.h"

#include <limits>

#include "Support/Testing.h"

namespace Marvane::FrameSift {

TEST(KXMath, SignificantBitsRoundingAndFixedPoint)
{
    for (const auto& [n, nBits] : Rows<int32_t, int32_t>{{0, 1}, {1, 1}, {2, 2}, {255, 8}, {256, 9}, {INT32_MAX, 31}})
        EXPECT_EQ(CKXMath::Log2(n), nBits) << n;
    // Towards zero, and up from one half.
    for (const auto& [dRate, nRounded] : Rows<double, int32_t>{{0, 0},
                                                               {24.4999, 24},
                                                               {24.5, 25},
                                                               {-1.7, -1},
                                                               {-0.5, 0},
                                                               {1e300, INT32_MAX},
                                                               {-1e300, INT32_MIN},
                                                               {INT32_MAX - 0.5, INT32_MAX}})
        EXPECT_EQ(CKXMath::Round(dRate), nRounded) << dRate;
    EXPECT_EQ(CKXMath::Round(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(CKXMath::conv_fx(0x00018000), 1.5);
    EXPECT_EQ(CKXMath::conv_fx(-1), -1.0 / 65536);
}

} // namespace Marvane::FrameSift
