#include "Memory/LogicData.h"

#include <limits>

#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/Testing.h"
#include "framesift/result.h"

namespace Marvane::FrameSift {

namespace {

int Join(CLogicData& data, Bytes& chunk)
{
    return data.JoinData(chunk.data(), static_cast<int>(chunk.size()));
}

// A window with 10 kept bytes, 0 to 9, and a chunk of 20 behind them, 10 to 29.
class LogicDataSeam : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(Join(data, first), KX_SUCCESS);
        ASSERT_EQ(data.SetCurParseIndex(0), KX_SUCCESS);
        ASSERT_EQ(Join(data, second), KX_SUCCESS);
    }

    Bytes first = Counting(10);
    Bytes second = Counting(20, 10);
    CLogicData data;
};

} // namespace

TEST(LogicData, IsEmptyBeforeTheFirstJoin)
{
    CLogicData data;
    int64_t nPos = 0;
    uint8_t* pData = nullptr;
    int nLen = 0;
    EXPECT_TRUE(data.Size() == 0 && data.GetByte(0) == 0 && data.GetData(0, 0) == nullptr);
    for (const int nResult : {data.SetCurParseIndex(0), data.ClearBuffer(), data.GetRemainData(&pData, &nLen),
                              data.SetKeyPos(0, 0), data.GetKeyPos(nPos, nPos)})
        EXPECT_EQ(nResult, -1);
    EXPECT_EQ(data.JoinData(nullptr, 5), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
}

TEST_F(LogicDataSeam, RangesBeforeAndBehindItMoveNothing)
{
    EXPECT_EQ(data.GetData(10, 20), second.data());
    EXPECT_EQ(data.GetData(30, 0), second.data() + 20);
    EXPECT_EQ(data.GetData(30, 1), nullptr);
    const uint8_t* pFixed = data.GetData(0, 10);
    EXPECT_EQ(data.GetData(4, 6), pFixed + 4);
    EXPECT_EQ(data.GetRun(0).size(), 10U);
    EXPECT_EQ(data.GetRun(10).data(), second.data());
}

TEST_F(LogicDataSeam, ARangeAcrossItPullsJustItsBytes)
{
    const uint8_t* pRange = data.GetData(8, 3);
    ASSERT_NE(pRange, nullptr);
    EXPECT_EQ(Bytes(pRange, pRange + 3), (Bytes{8, 9, 10}));
    EXPECT_EQ(data.Size(), 30U);
    EXPECT_EQ(data.GetData(11, 1), second.data() + 1);
    for (int n = 0; n < 30; ++n)
        EXPECT_EQ(data.GetByte(n), n);
    EXPECT_EQ(data.GetByte(30), 0);
    EXPECT_EQ(data.GetByte(-1), 0);
}

TEST_F(LogicDataSeam, WhatIsKeptAndWhatIsCountedAgree)
{
    for (const int nIndex : {4, 10, 25, 30}) {
        SCOPED_TRACE(nIndex);
        CLogicData window;
        ASSERT_EQ(Join(window, first), KX_SUCCESS);
        ASSERT_EQ(window.SetCurParseIndex(0), KX_SUCCESS);
        ASSERT_EQ(Join(window, second), KX_SUCCESS);
        ASSERT_EQ(window.SetCurParseIndex(nIndex), KX_SUCCESS);
        Bytes third = {77};
        ASSERT_EQ(Join(window, third), KX_SUCCESS);
        EXPECT_EQ(window.Size(), static_cast<uint32_t>(30 - nIndex + 1));
        EXPECT_EQ(window.GetDeletedLen(), nIndex);
        EXPECT_EQ(window.GetByte(0), nIndex < 30 ? nIndex : 77);
        int64_t nStreamPos = 0;
        int64_t nFramePos = 0;
        window.SetKeyPos(3, 1);
        EXPECT_EQ(window.GetKeyPos(nStreamPos, nFramePos), KX_SUCCESS);
        EXPECT_EQ(nStreamPos, nIndex + 3);
        EXPECT_EQ(nFramePos, nIndex + 1);
    }
}

TEST_F(LogicDataSeam, RefusesPlacesOutsideIt)
{
    constexpr int nMax = std::numeric_limits<int>::max();
    for (const auto& [nIndex, nLen] :
         Rows<int, int>{{-1, 1}, {0, -1}, {31, 0}, {1, 30}, {nMax, 1}, {1, nMax}, {nMax, nMax}})
        EXPECT_EQ(data.GetData(nIndex, nLen), nullptr) << nIndex << " " << nLen;
    EXPECT_EQ(data.SetCurParseIndex(-1), KX_ERROR_PARAMETER);
    EXPECT_EQ(data.SetCurParseIndex(31), KX_ERROR_PARAMETER);
}

TEST_F(LogicDataSeam, ARefusedChunkLeavesWhatWasKept)
{
    ASSERT_EQ(data.SetCurParseIndex(25), KX_SUCCESS);
    uint8_t byte = 0;
    EXPECT_EQ(data.JoinData(&byte, -1), KX_ERROR_PARAMETER);
    EXPECT_EQ(data.JoinData(&byte, std::numeric_limits<int>::max()), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    Bytes third = {30};
    ASSERT_EQ(Join(data, third), KX_SUCCESS);
    EXPECT_EQ(data.Size(), 6U);
    EXPECT_EQ(data.GetByte(0), 25);
    EXPECT_EQ(data.GetByte(5), 30);
}

TEST_F(LogicDataSeam, ClearedItReadsAsNothingUntilTheNextJoin)
{
    EXPECT_EQ(data.ClearBuffer(), KX_SUCCESS);
    EXPECT_EQ(data.Size(), 0U);
    EXPECT_EQ(data.GetByte(0), 0);
    EXPECT_EQ(data.GetData(0, 0), nullptr);
    EXPECT_EQ(data.SetCurParseIndex(0), KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    ASSERT_EQ(Join(data, second), KX_SUCCESS);
    EXPECT_EQ(data.GetByte(0), 10);
}

TEST_F(LogicDataSeam, AShortValueIsBigEndian)
{
    uint16_t nValue = 0;
    EXPECT_TRUE(data.GetShortValue(9, nValue)); // across the seam
    EXPECT_EQ(nValue, 0x090A);
    EXPECT_FALSE(data.GetShortValue(29, nValue));
}

// Whatever is pulled together, kept and consumed: the window reads as the stream does, what was handed out stays readable
// for the cycle, and the bytes of a chunk are not looked at behind it.
TEST(LogicData, ReadsAsTheStreamHoweverItIsKept)
{
    struct HANDED_OUT
    {
        const uint8_t* pBytes;
        size_t nPos;
        size_t nLen;
    };
    for (uint32_t nSeed = 1; nSeed <= 20; ++nSeed) {
        std::mt19937 random(nSeed);
        const Bytes stream = RandomBytes(random, 400000);
        CLogicData window;
        size_t nFront = 0;
        size_t nFed = 0;
        InChunks(stream, RandomChunks(nSeed, nSeed % 2 == 0 ? 40000 : 700), [&](Bytes& chunk) {
            ASSERT_EQ(Join(window, chunk), KX_SUCCESS);
            nFed += chunk.size();
            const size_t nSize = nFed - nFront;
            ASSERT_EQ(window.Size(), nSize);
            std::vector<HANDED_OUT> handedOut;
            for (size_t n = 0; n < random() % 4; ++n) {
                const size_t nPos = random() % nSize;
                const size_t nLen = random() % (nSize - nPos + 1);
                handedOut.push_back({window.GetData(static_cast<int>(nPos), static_cast<int>(nLen)), nPos, nLen});
            }
            const size_t nKeep = random() % 3 != 0 ? 0 : random() % (nSize + 1);
            ASSERT_EQ(window.SetCurParseIndex(static_cast<int>(nKeep)), KX_SUCCESS);
            for (const HANDED_OUT& one : handedOut)
                ASSERT_TRUE(std::equal(one.pBytes, one.pBytes + one.nLen, stream.data() + nFront + one.nPos));
            uint8_t* pKept = nullptr;
            int nKept = 0;
            window.GetRemainData(&pKept, &nKept);
            nFront += nKeep;
            ASSERT_EQ(Bytes(pKept, pKept + nKept), Part(stream, nFront, nFed - nFront));
        });
    }
}

} // namespace Marvane::FrameSift
