#include "Memory/DynamicBuffer.h"

#include "Support/Testing.h"
#include "framesift/result.h"

namespace Marvane::FrameSift {

TEST(DynamicBuffer, GrowsByDoublingAndThenBySteps)
{
    CDynamicBuffer buffer;
    std::vector<int32_t> sizes;
    for (int n = 0; n < 6; ++n) {
        ASSERT_EQ(buffer.ReAlloc(false), KX_SUCCESS);
        sizes.push_back(buffer.MaxSize());
    }
    EXPECT_EQ(sizes, (std::vector<int32_t>{16384, 32768, 65536, 131072, 262144, 327680}));
}

TEST(DynamicBuffer, RefusesWhatItCannotTake)
{
    CDynamicBuffer buffer;
    const uint8_t byte = 1;
    EXPECT_EQ(buffer.StaticAppendBuffer(nullptr, 1), KX_ERROR_PARAMETER);
    EXPECT_EQ(buffer.StaticAppendBuffer(&byte, 1), KX_ERROR_BUFFER_OVERFLOW);
    EXPECT_EQ(buffer.AppendBuffer(nullptr, 1, false), KX_ERROR_PARAMETER);
    EXPECT_EQ(buffer.AppendBuffer(&byte, -1, false), KX_SUCCESS);
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(buffer.MaxSize(), 0);
}

TEST(DynamicBuffer, PointersStayReadableOverManyGrowths)
{
    CDynamicBuffer buffer;
    ASSERT_EQ(buffer.Init(16384), KX_SUCCESS);
    const std::vector<uint8_t> first(100, 0xAB);
    ASSERT_EQ(buffer.AppendBuffer(first.data(), 100, true), KX_SUCCESS);
    const std::vector<uint8_t> more(50000, 0xCD);
    std::vector<const uint8_t*> blocks;
    for (int n = 0; n < 20; ++n) {
        blocks.push_back(buffer.GetPointer());
        ASSERT_EQ(buffer.AppendBuffer(more.data(), 50000, true), KX_SUCCESS);
    }
    for (const uint8_t* pBlock : blocks)
        EXPECT_EQ(std::accumulate(pBlock, pBlock + 100, 0), 100 * 0xAB);
    EXPECT_EQ(buffer.GetDataLen(), 100 + 20 * 50000);
}

} // namespace Marvane::FrameSift
