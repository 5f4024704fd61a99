// What the scan asks of a ZOAV stream besides its frames.

#include "Memory/LogicData.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Support/Sift.h"
#include "Support/Testing.h"
#include "Support/ZoavParse.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

TEST(ZoavEndTime, OnlyHeadsCountAndOnlyTheirTime)
{
    CZoavParse parse;
    parse.stream.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_END_TIME}));
    const auto frames =
        parse.Feed(Bytes{'z', 'o', 'a', 'v', 'Z', 'O', 'I', 'I', 0, 0, 0, 0} + ZoavFrame().TimeStamp(7).WrongSum() +
                   ZoavFrame().TimeStamp(8).ClaimLength(0x1300000) + Filler(48));
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ((Fields{frames[0].frame.timeStamp, frames[1].frame.timeStamp, frames[0].frame.frameLen}),
              (Fields{7, 8, 0}));
}

namespace {

struct SCAN
{
    explicit SCAN(Bytes source) : bytes(std::move(source))
    {
        data.JoinData(bytes.data(), static_cast<int>(bytes.size()));
    }

    Bytes bytes;
    CLogicData data;
    CZOAVStream stream;
};

} // namespace

TEST(ZoavKeyFrames, AreFoundByTheirHeadsAndTheLastIsGivenFirst)
{
    // One that ends before it begins must not hold the scan up.
    SCAN scan(ZoavFrame().Type(ZOAV_FRAME::P).Payload(Filler(10)) + ZoavFrame().Payload(Filler(10)) +
              ZoavFrame().Type(ZOAV_FRAME::P, 1).ClaimLength(0) + ZoavFrame().Type(ZOAV_FRAME::Audio) +
              ZoavFrame().Type(ZOAV_FRAME::Jpeg).ClaimLength(0xFFFFFFFF));
    EXPECT_FALSE(scan.stream.ParseKeyFrame(&scan.data, false));
    VIDEO_KEY_FRAME_INFO info{};
    for (const auto& [nPos, nSubType] : {std::pair{148, 8}, {84, 19}, {42, 0}}) {
        ASSERT_TRUE(scan.stream.GetVideoKeyFrameInfo(info));
        EXPECT_EQ((Fields{info.nVideoFramePos, info.nFrameSubType}), (Fields{nPos, nSubType}));
    }
    EXPECT_FALSE(scan.stream.GetVideoKeyFrameInfo(info));
    // One I frame is enough if asked for; what was noted before it can be dropped.
    SCAN one(ZoavFrame().Type(ZOAV_FRAME::P, 1) + ZoavFrame().Type(ZOAV_FRAME::I, 2) + ZoavFrame().Build());
    EXPECT_TRUE(one.stream.ParseKeyFrame(&one.data, true));
    ASSERT_TRUE(one.stream.GetVideoKeyFrameInfo(info));
    EXPECT_EQ(info.nFrameSubType, 20);
    one.stream.ClearKeyFrameInfo();
    EXPECT_FALSE(one.stream.GetVideoKeyFrameInfo(info));
}

TEST(ZoavTime, IsLocalTimeInMilliseconds)
{
    SCAN scan(Filler(2) + ZoavFrame().Time({2031, 4, 9, 10, 31, 2, 0}).TimeStamp(999).Build());
    int64_t nTime = 0;
    ASSERT_TRUE(scan.stream.ParseFrameTime(&scan.data, nTime));
    EXPECT_EQ(nTime, int64_t{CKXConvert::KXTimeToTimeStamp({2031, 4, 9, 10, 31, 2, 0})} * 1000);
    int64_t nStreamPos = 0;
    int64_t nFramePos = 0;
    scan.data.GetKeyPos(nStreamPos, nFramePos);
    EXPECT_EQ(nFramePos, 2);
    EXPECT_FALSE(scan.stream.ParseFrameTime(nullptr, nTime));
    // Without a frame the answer is whether the window was too short to keep anything of.
    SCAN none(Filler(10));
    SCAN tooShort(Filler(2));
    EXPECT_FALSE(none.stream.ParseFrameTime(&none.data, nTime));
    EXPECT_TRUE(tooShort.stream.ParseFrameTime(&tooShort.data, nTime));
}

// Not reached through the scan, which has the search for the next border turned off.
TEST(ZoavBorder, ATailBelongsToItsFrame)
{
    CZOAVStream stream;
    FrameInfo frame{};
    stream.SetActualFrameLength(10, static_cast<int>(FourCC("LXAV")), 53, frame);
    EXPECT_EQ(int32_t{frame.frameLen}, 40);
    stream.SetActualFrameLength(10, static_cast<int>(FourCC("lxav")), 53, frame);
    EXPECT_EQ(int32_t{frame.frameLen}, 48);
    stream.SetActualFrameLength(10, static_cast<int>(FourCC("ZOII")), 99, frame);
    EXPECT_EQ(int32_t{frame.frameLen}, 48);
    EXPECT_FALSE(stream.IsBorderID(static_cast<int>(FourCC("ZOII"))));
}

TEST(ZoavDetectorTest, ItsBoundsAreItsOwn)
{
    const auto check = [](const Bytes& frame) {
        STD_FRAME_HEAD head;
        std::copy_n(frame.begin(), sizeof head, reinterpret_cast<uint8_t*>(&head));
        return CZOAVStream::CheckStdFrameHead(&head);
    };
    EXPECT_FALSE(CZOAVStream::CheckStdFrameHead(nullptr));
    EXPECT_TRUE(check(ZoavFrame().RawType(0x80)));
    EXPECT_FALSE(check(ZoavFrame().RawType(0x55)));
    EXPECT_FALSE(check(ZoavFrame().RawType(0xF2)));
    EXPECT_TRUE(check(ZoavFrame().ClaimLength(0xA00000)));
    EXPECT_FALSE(check(ZoavFrame().ClaimLength(0xA00001)));
    EXPECT_FALSE(check(ZoavFrame().WrongSum()));
}

} // namespace Marvane::FrameSift
