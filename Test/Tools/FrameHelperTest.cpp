#include "Tools/FrameHelper.h"

#include <limits>

#include "Support/Testing.h"

namespace Marvane::FrameSift {

TEST(FrameHelper, OthersTakeFromTheLastIFrame)
{
    CFrameHelper helper;
    FrameInfo key{};
    std::memset(&key, 0x11, sizeof key);
    key.frameType = KX_FRAME_TYPE_VIDEO;
    key.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    key.frameRate = 0;
    helper.fillPFrameByKeyFrameInfo(key);
    EXPECT_EQ(int32_t{key.frameRate}, 25);
    FrameInfo other{};
    other.frameType = KX_FRAME_TYPE_AUDIO; // no matter
    FrameInfo expected = other;
    helper.fillPFrameByKeyFrameInfo(other);
    expected.frameEncodeType = expected.deinterlace = expected.width = expected.height = 0x11111111;
    expected.cropBeforeHeight = expected.cropBeforeWidth = 0x11111111;
    expected.frameRate = 25;
    TakeColour(key, expected);
    EXPECT_EQ(std::memcmp(&other, &expected, sizeof other), 0);
    EXPECT_EQ(uint16_t{other.nWhitePoint[1]}, 0x1111);
    EXPECT_EQ((Fields{helper.genVideoSeq(), helper.genVideoSeq(), helper.genAudioSeq(), helper.genDataSeq()}),
              (Fields{1, 2, 1, 1}));
    helper.Clear();
    helper.fillPFrameByKeyFrameInfo(other);
    EXPECT_EQ((Fields{helper.genVideoSeq(), other.width, other.frameRate}), (Fields{1, 0, 0}));
}

TEST(FrameHelper, CountsOnBehindTheLargestNumber)
{
    int nNumber = std::numeric_limits<int>::max();
    CFrameHelper::CountOn(nNumber);
    EXPECT_EQ(nNumber, std::numeric_limits<int>::min());
    CFrameHelper::CountBack(nNumber);
    EXPECT_EQ(nNumber, std::numeric_limits<int>::max());
}

} // namespace Marvane::FrameSift
