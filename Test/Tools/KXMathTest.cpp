#include "Tools/KXMath.h"

#include <gtest/gtest.h>

namespace Marvane::FrameSift {

TEST(KXMath, Log2CountsSignificantBits)
{
    const struct
    {
        int32_t n;
        int32_t nBits;
    } rows[] = {{0, 1}, {1, 1}, {2, 2}, {255, 8}, {256, 9}, {INT32_MAX, 31}};
    for (const auto& row : rows)
        EXPECT_EQ(CKXMath::Log2(row.n), row.nBits) << row.n;
}

TEST(KXMath, RoundTowardsZeroAndUpFromOneHalf)
{
    const struct
    {
        double rate;
        int32_t nRounded;
    } rows[] = {{0, 0},
                {24.4999, 24},
                {24.5, 25},
                {29.97, 30},
                {-1.7, -1},
                {-0.5, 0},
                {1e300, INT32_MAX},
                {-1e300, INT32_MIN},
                {INT32_MAX - 0.5, INT32_MAX}};
    for (const auto& row : rows)
        EXPECT_EQ(CKXMath::Round(row.rate), row.nRounded) << row.rate;
    EXPECT_EQ(CKXMath::Round(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(KXMath, FixedPoint)
{
    EXPECT_EQ(CKXMath::conv_fx(0x00018000), 1.5);
    EXPECT_EQ(CKXMath::conv_fx(-1), -1.0 / 65536);
}

} // namespace Marvane::FrameSift
