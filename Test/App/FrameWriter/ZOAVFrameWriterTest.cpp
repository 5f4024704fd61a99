#include "FrameWriter/ExtHeads.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

// Written by hand: if writer and reader were wrong in the same way, all other tests would pass.
TEST(ZoavFrameWriter, GoldenFrame)
{
    const Bytes head = {
        'Z',  'O',  'A',  'V',  // dwFlag
        0xFD, 0x00, 0x00, 0x00, // chType: I frame; chSubType, chChannel, chSubSeq
        0x01, 0x00, 0x00, 0x00, // dwSeq = 1
        0x84, 0x00, 0x00, 0x00, // dwFrameLen = 132
        0x05, 0x31, 0x44, 0x50, // dateTime = 2020-01-02 03:04:05
        0xE8, 0x03,             // nTimeStamp = 1000
        0x00, 0x77,             // nExtFrameLen, nTotalValue
    };
    const Bytes tail = {'z', 'o', 'a', 'v', 0x84, 0x00, 0x00, 0x00};
    const Bytes payload(100, 0xAB);
    const KX_TIME time = {2020, 1, 2, 3, 4, 5, 0};
    const Bytes frame = ZoavFrame().Type(ZOAV_FRAME::I).Seq(1).Time(time).TimeStamp(1000).Payload(payload).Build();
    EXPECT_EQ(frame, head + payload + tail);
}

TEST(ZoavFrameWriter, HeadsStandInFrontOfThePayload)
{
    const Bytes frame = ZoavFrame().ExtHead(ExtHead82(640, 480)).ExtHead(ExtHead81(8, 25)).Payload(Bytes(100)).Build();
    ASSERT_EQ(frame.size(), 144U);
    EXPECT_EQ(frame[12], 144);
    EXPECT_EQ(frame[22], 12);
    const Bytes heads = {0x82, 0, 0, 0, 0x80, 0x02, 0xE0, 0x01, 0x81, 0, 8, 25};
    EXPECT_EQ(Bytes(frame.begin() + 24, frame.begin() + 36), heads);
}

TEST(ExtHeads, CodesAndBytes)
{
    EXPECT_EQ((Fields{*SampleTypeOf(8000), *SampleTypeOf(48000), *SampleTypeOf(64000)}), (Fields{0, 9, 13}));
    EXPECT_EQ(SampleTypeOf(24000), std::nullopt);
    EXPECT_EQ((Fields{BitRateTypeOf(64000), BitRateTypeOf(384000), BitRateTypeOf(12345)}), (Fields{10, 21, 0}));
    EXPECT_EQ(ExtHead8C(2, 26, 8, 0), (Bytes{0x8C, 8, 2, 26, 8, 0, 0, 0}));
    EXPECT_EQ(ExtHead95(0, 0x1234, 0x56789A), (Bytes{0x95, 0, 0x34, 0x12, 0x9A, 0x78, 0x56, 0}));
    EXPECT_EQ(ExtHead8A(8, 30000, 1001), (Bytes{0x8A, 0, 8, 0, 0x30, 0x75, 0xE9, 0x03}));
}

} // namespace Marvane::FrameSift
