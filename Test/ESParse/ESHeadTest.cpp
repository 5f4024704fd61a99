#include "ESParse/ESHead.h"

#include "Support/Testing.h"
#include "framesift/result.h"

namespace Marvane::FrameSift {

TEST(ESHead, AShorterCopySetsTheLimit)
{
    const uint8_t bytes[] = {1, 2, 3, 4};
    CESHead head;
    EXPECT_EQ((Fields{head.SetData(bytes, 4), head.SetData(bytes, 2), head.GetLength()}), (Fields{0, 0, 2}));
    EXPECT_EQ(head.SetData(bytes, 3), KX_ERROR_PARAMETER);
    EXPECT_EQ((Fields{head.Init(8), head.SetData(bytes, 3), head.GetData()[2]}), (Fields{0, 0, 3}));
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
    EXPECT_TRUE(copy.GetData()[0] == 1 && assigned.GetData()[0] == 1 && assigned.GetLength() == 4);
    assigned = CESHead();
    EXPECT_TRUE(assigned.GetData() == nullptr && assigned.GetLength() == 0);
}

} // namespace Marvane::FrameSift
