#include "ESParse/ESHead.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "framesift/result.h"

namespace Marvane::FrameSift {

TEST(ESHead, AShorterCopySetsTheLimit)
{
    const uint8_t bytes[] = {1, 2, 3, 4};
    CESHead head;
    EXPECT_EQ(head.SetData(bytes, 4), KX_SUCCESS); // makes its own room
    EXPECT_EQ(head.SetData(bytes, 2), KX_SUCCESS);
    EXPECT_EQ(head.GetLength(), 2U);
    EXPECT_EQ(head.SetData(bytes, 3), KX_ERROR_PARAMETER);
    EXPECT_EQ(head.Init(8), KX_SUCCESS);
    EXPECT_EQ(head.SetData(bytes, 3), KX_SUCCESS);
    EXPECT_EQ(head.GetData()[2], 3);
}

TEST(ESHead, CopiesHaveTheirOwnBytes)
{
    const uint8_t bytes[] = {1, 2, 3, 4};
    CESHead head;
    ASSERT_EQ(head.SetData(bytes, 4), KX_SUCCESS);
    const CESHead copy(head);
    CESHead assigned;
    assigned = head;
    const CESHead& itself = assigned;
    assigned = itself;
    head.GetData()[0] = 9;
    EXPECT_EQ(copy.GetData()[0], 1);
    EXPECT_EQ(assigned.GetData()[0], 1);
    EXPECT_EQ(assigned.GetLength(), 4U);
    assigned = CESHead();
    EXPECT_EQ(assigned.GetData(), nullptr);
    EXPECT_EQ(assigned.GetLength(), 0U);
}

} // namespace Marvane::FrameSift
