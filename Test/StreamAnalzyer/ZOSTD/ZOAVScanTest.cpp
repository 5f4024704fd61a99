// What the scan asks of a ZOAV stream besides its frames.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <utility>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"
#include "Memory/LogicData.h"
#include "StreamAnalzyer/ZOSTD/ZOAVStream.h"
#include "Support/Sift.h"

namespace Marvane::FrameSift {

TEST(ZoavEndTime, OnlyHeadsCountAndOnlyTheirTime)
{
    class CTimes : public IFrameCallBack
    {
    public:
        int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo*, void*) override
        {
            stamps.push_back(int32_t{frame->timeStamp});
            lengths.push_back(int32_t{frame->frameLen});
            return 0;
        }
        std::vector<int32_t> stamps, lengths;
    };
    Bytes bytes = Bytes{'z', 'o', 'a', 'v'} + Bytes{'Z', 'O', 'I', 'I', 0, 0, 0, 0} +
                  ZoavFrame().TimeStamp(7).WrongSum() + ZoavFrame().TimeStamp(8).ClaimLength(0x1300000) + Filler(48);
    CZOAVStream stream;
    stream.SetCallBackUserData(reinterpret_cast<void*>(intptr_t{CALLBACK_USE_BASE_END_TIME}));
    CLogicData data;
    data.JoinData(bytes.data(), static_cast<int>(bytes.size()));
    CTimes times;
    EXPECT_EQ(stream.ParseData(&data, &times), KX_SUCCESS);
    EXPECT_EQ(times.stamps, (std::vector<int32_t>{7, 8}));
    EXPECT_EQ(times.lengths, (std::vector<int32_t>{0, 0}));
}

TEST(ZoavKeyFrames, AreFoundByTheirHeads)
{
    Bytes bytes = ZoavFrame().Type(ZOAV_FRAME::P).Payload(Filler(10)) + ZoavFrame().Payload(Filler(10)) +
                  ZoavFrame().Type(ZOAV_FRAME::P, 1) + ZoavFrame().Type(ZOAV_FRAME::Audio) +
                  ZoavFrame().Type(ZOAV_FRAME::Jpeg).ClaimLength(0xFFFFFFFF);
    CZOAVStream stream;
    CLogicData data;
    data.JoinData(bytes.data(), static_cast<int>(bytes.size()));
    EXPECT_FALSE(stream.ParseKeyFrame(&data, false));
    VIDEO_KEY_FRAME_INFO info{};
    for (const auto& [nPos, nSubType] : {std::pair{148, 8}, {84, 19}, {42, 0}}) {
        ASSERT_TRUE(stream.GetVideoKeyFrameInfo(info));
        EXPECT_EQ(info.nVideoFramePos, nPos);
        EXPECT_EQ(info.nFrameSubType, nSubType);
    }
}

TEST(ZoavTime, IsLocalTimeInMilliseconds)
{
    Bytes bytes = ZoavFrame().Time({2031, 4, 9, 10, 31, 2, 0}).TimeStamp(999).Payload({});
    CZOAVStream stream;
    CLogicData data;
    data.JoinData(bytes.data(), static_cast<int>(bytes.size()));
    int64_t nTime = 0;
    ASSERT_TRUE(stream.ParseFrameTime(&data, nTime));
    std::tm local{};
    local.tm_year = 131;
    local.tm_mon = 3;
    local.tm_mday = 9;
    local.tm_hour = 10;
    local.tm_min = 31;
    local.tm_sec = 2;
    EXPECT_EQ(nTime, int64_t{static_cast<uint32_t>(std::mktime(&local))} * 1000);
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
