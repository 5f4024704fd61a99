#include "Tools/CalculateTime.h"

#include <climits>
#include <cmath>

#include "Support/BitWriter.h"
#include "Support/LogOf.h"
#include "Support/Samples.h"

namespace Marvane::FrameSift {

namespace {

// Gives video frames one after the other, in sequence.
struct RATE_FEED
{
    float Give(int32_t nTimeStamp, int32_t nSubType = KX_FRAME_SUB_TYPE_VIDEO_P_FRAME)
    {
        frame.frameSeq = static_cast<int32_t>(++nSeq);
        frame.timeStamp = nTimeStamp;
        frame.frameSubType = nSubType;
        frame.rateValue = 7;
        return calculate.GetFrameRate(&frame);
    }
    // The last answer of several.
    float GiveAll(const std::vector<int32_t>& timeStamps)
    {
        float fRate = -1;
        for (const int32_t nTimeStamp : timeStamps)
            fRate = Give(nTimeStamp);
        return fRate;
    }

    CCalculateTime calculate;
    FrameInfo frame{};
    uint32_t nSeq = 100;
};

Bytes AdtsHead(uint32_t nFrameLen, uint32_t nSync = 0xFFF1)
{
    return CBitWriter().Bits(16, nSync).Bits(14, 0x1B10).Bits(13, nFrameLen).Bits(13, 0x1FFC).Raw();
}

double DurationOf(int32_t nCodec, int32_t nSampleRate, Bytes bytes, int32_t nLen)
{
    FrameInfo frame{};
    frame.frameEncodeType = nCodec;
    frame.samplesPerSec = nSampleRate;
    frame.streamPointer = bytes.data();
    frame.streamLen = nLen;
    return CCalculateTime::GetAudioDuration(&frame);
}

} // namespace

TEST(CalculateTime, RateOfIntervals)
{
    for (const auto& [pName, timeStamps, fRate] : Rows<const char*, std::vector<int32_t>, float>{
             {"nothing measured", {0}, 0.0F},
             {"first walk", {0, 40, 80, 120}, 25.0F},
             {"rounded", {0, 33, 66, 100}, 30.0F},
             {"ten times the interval before it", {0, 40, 80, 480, 520, 560, 600}, 9.0F},
             {"a jump counts without its time", {0, 40, 80, 520, 560, 600, 640}, 31.0F},
             {"no time at all", {5, 5, 5, 5}, 0.0F},
             {"back, and on", {0, 40, 80, 120, 20, 21, 22}, 25.0F},
             {"back, and measured anew", {0, 40, 80, 120, 20, 40, 60, 80}, 50.0F}})
        EXPECT_EQ(RATE_FEED().GiveAll(timeStamps), fRate) << pName;
    RATE_FEED decoded; // B frames come behind what they need
    for (const auto& [nTimeStamp, nSubType, fRate] : Rows<int32_t, int32_t, float>{
             {0, 0, 0.0F}, {120, 1, 0.0F}, {40, 2, 0.0F}, {80, 2, 0.0F}, {240, 1, 25.0F}, {160, 2, 25.0F}})
        EXPECT_EQ(decoded.Give(nTimeStamp, nSubType), fRate) << nTimeStamp;
    EXPECT_EQ(CCalculateTime().GetFrameRate(nullptr), 0.0F);
}

TEST(CalculateTime, EstimateIsRefreshedOnceASecondAndKept)
{
    RATE_FEED feed;
    for (const auto& [nFrom, nTo, nInterval, fRate] :
         Rows<int, int, int, float>{{0, 1200, 40, 25.0F}, {1200, 1800, 20, 25.0F}, {1800, 4200, 20, 50.0F}}) {
        for (int nTime = nFrom; nTime < nTo; nTime += nInterval)
            feed.Give(nTime);
        EXPECT_EQ(feed.Give(nTo - 1), fRate);
        EXPECT_EQ(uint16_t{feed.frame.rateValue}, 0);
    }
    ++feed.nSeq;
    EXPECT_EQ(feed.Give(4240), 50.0F);
    EXPECT_EQ(uint16_t{feed.frame.rateValue}, 7); // a restart tells no fraction
    feed.Give(4280);
    feed.calculate.SeekClear();
    EXPECT_EQ(feed.Give(4320), 50.0F);
    EXPECT_EQ(uint16_t{feed.frame.rateValue}, 7);
    feed.nSeq = INT32_MAX - 1U;
    EXPECT_EQ(feed.GiveAll({0, 40, 80, 120}), 25.0F); // across the largest sequence
}

TEST(CalculateTime, SurvivesAnyTimeStamps)
{
    std::mt19937 random(49);
    const int32_t extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 1000, INT_MAX - 1, INT_MAX};
    RATE_FEED feed;
    for (int n = 0; n < 20000; ++n)
        ASSERT_TRUE(std::isfinite(feed.Give(extremes[random() % 8], random() % 4 != 0 ? 2 : 1)));
}

TEST(CalculateTime, FractionsThatFitIntoAFrame)
{
    const auto deal = [](uint32_t nValue, uint32_t nDenominator) {
        const bool bFits = CCalculateTime::DealRate(nValue, nDenominator);
        return Fields{bFits ? 1 : 0, nValue, nDenominator};
    };
    EXPECT_EQ(deal(0, 0), (Fields{1, 0, 0}));
    EXPECT_EQ(deal(65535, 1), (Fields{1, 65535, 1}));
    EXPECT_EQ(deal(700000, 100), (Fields{1, 7000, 1}));
    const auto refuse = [&] {
        EXPECT_EQ(deal(700000, 10), (Fields{0, 700000, 10}));
        EXPECT_EQ(deal(7, UINT32_MAX), (Fields{0, 7, UINT32_MAX}));
    };
    EXPECT_EQ(LogOf(refuse, false), "warn Rate is Error, rateValue:700000,rateDenominator:10\n"
                                    "warn Rate is Error, rateValue:7,rateDenominator:4294967295\n");
}

TEST(CalculateTime, AudioDurations)
{
    const Bytes adts = AdtsHead(9) + Bytes(2, 0) + AdtsHead(7);
    for (const auto& [nCodec, nSampleRate, nLen, dDuration] :
         Rows<int32_t, int32_t, int32_t, double>{{KX_ENCODE_AUDIO_PCM16, 8000, 640, 40.0},
                                                 {KX_ENCODE_AUDIO_PCM16, 1, INT_MAX, 500.0 * INT_MAX},
                                                 {KX_ENCODE_AUDIO_G711A, 8000, 160, 20.0},
                                                 {KX_ENCODE_AUDIO_G711U, 16000, 1, 0.0625},
                                                 {KX_ENCODE_AUDIO_PCM, 8000, 160, 20.0},
                                                 {KX_ENCODE_AUDIO_AAC, 8000, 16, 256.0},
                                                 {KX_ENCODE_AUDIO_G726_16, 8000, 160, 0.0},
                                                 {KX_ENCODE_AUDIO_G711A, 0, 160, 0.0},
                                                 {KX_ENCODE_AUDIO_G711A, -8000, 160, 0.0},
                                                 {KX_ENCODE_AUDIO_AAC, 8000, INT_MIN, 0.0}})
        EXPECT_EQ(DurationOf(nCodec, nSampleRate, adts, nLen), dDuration) << nCodec;
    EXPECT_EQ(CCalculateTime::GetAudioDuration(nullptr), 0.0);
    // Frames with an MPEG-2 head are not counted (AAC), or only the first one (layer II).
    for (const auto& [pFile, nCodec, dDuration] :
         Rows<const char*, int32_t, double>{{"audio/aac_lc_16k_mono.aac", KX_ENCODE_AUDIO_AAC, 1280.0},
                                            {"audio/aac_lc_8k_mono.aac", KX_ENCODE_AUDIO_AAC, 0.0},
                                            {"audio/mp2_48k_stereo_192.mp2", KX_ENCODE_AUDIO_MP2, 288.0},
                                            {"audio/mp2_16k_mono_32.mp2", KX_ENCODE_AUDIO_MP2, 72.0}}) {
        const Bytes stream = ReadSample(pFile);
        const int32_t nRate = SampleOf(pFile)["facts"]["rate"];
        EXPECT_EQ(DurationOf(nCodec, nRate, stream, static_cast<int32_t>(stream.size())), dDuration) << pFile;
    }
    const Fields samples = {CCalculateTime::CalMPEGSampleBit(2, 1), CCalculateTime::CalMPEGSampleBit(3, 1),
                            CCalculateTime::CalMPEGSampleBit(0, 3), CCalculateTime::CalMPEGSampleBit(1, 2)};
    EXPECT_EQ(samples, (Fields{576, 1152, 384, 0}));
    const Fields rates = {
        CCalculateTime::GetMPEGBitRateByIndex(1, 2, 14), CCalculateTime::GetMPEGBitRateByIndex(25, 2, 14),
        CCalculateTime::GetMPEGBitRateByIndex(1, 2, 15), CCalculateTime::GetMPEGBitRateByIndex(1, 3, 1)};
    EXPECT_EQ(rates, (Fields{384, 160, 0, 0}));
}

TEST(CalculateTime, CountsEndWhereNothingMovesOn)
{
    const Bytes mpeg1 = {0xFF, 0xFD, 0xE4, 0}; // 384 kbit/s
    const Bytes moved = {0xFF, 0xFF, 0xE0, 0}; // of layer I, which moves on by the bit that is added
    for (const auto& [bytes, nAac, nMp2] : Rows<Bytes, uint32_t, uint32_t>{{{}, 0, 0},
                                                                           {{0xFF, 0xF1}, 1, 0},
                                                                           {AdtsHead(0) + AdtsHead(7), 1, 1},
                                                                           {AdtsHead(8191), 1, 1},
                                                                           {AdtsHead(7) + AdtsHead(8, 0xFFF9), 1, 1},
                                                                           {mpeg1 + mpeg1, 0, 2},
                                                                           {moved, 0, 2},
                                                                           {{0xFF, 0xDF, 0xE4}, 0, 0}}) {
        EXPECT_EQ(CCalculateTime::GetAACFrameNum(bytes.data(), LengthOf(bytes)), nAac);
        EXPECT_EQ(CCalculateTime::GetMP2FrameNum(bytes.data(), LengthOf(bytes), 144000 * 384 / 4), nMp2);
    }
    EXPECT_EQ(CCalculateTime::GetMP2FrameNum((mpeg1 + mpeg1).data(), 8, 0), 1U);
    EXPECT_EQ(CCalculateTime::GetAACFrameNum(nullptr, 9) + CCalculateTime::GetMP2FrameNum(nullptr, 9, 8000), 0U);
}

} // namespace Marvane::FrameSift
