#include "Tools/BitsOperate.h"

#include <gtest/gtest.h>

namespace Marvane::FrameSift {

TEST(BitsOperate, FieldsByTheDiagram)
{
    EXPECT_EQ(CBitsOperate::GetBitsFromByte(0b1011'0110, 1, 4), 0b011);
    EXPECT_EQ(CBitsOperate::GetBitsFromByte(0b1011'0110, 0, 8), 0b1011'0110);
    // The bytes A5 3C as a little-endian machine loads them.
    EXPECT_EQ(CBitsOperate::GetBitsFromShort(0x3CA5, 4, 12), 0x53);
    EXPECT_EQ(CBitsOperate::GetBitsFromInt(0x78563412, 0, 32), 0x12345678U);
    EXPECT_EQ(CBitsOperate::GetBitsFromInt(0x78563412, 12, 28), 0x4567U);
    // Numbers outside the value.
    EXPECT_EQ(CBitsOperate::GetBitsFromInt(UINT32_MAX, 5, 5) + CBitsOperate::GetBitsFromInt(UINT32_MAX, 20, 4), 0U);
    EXPECT_EQ(CBitsOperate::GetBitsFromByte(0xFF, -3, 99), 0xFF);
}

} // namespace Marvane::FrameSift
