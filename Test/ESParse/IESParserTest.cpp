#include "ESParse/IESParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

namespace {

// One call on a heap block of just the size, so that a read past it is found.
template <class Result>
Result Ask(Result (*pfnAsk)(const uint8_t*, uint32_t), const Bytes& bytes)
{
    const auto pBlock = std::make_unique<uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), pBlock.get());
    return pfnAsk(pBlock.get(), static_cast<uint32_t>(bytes.size()));
}

bool IsUnitAt(const Bytes& bytes, size_t nPos)
{
    return bytes[nPos] == 0 && bytes[nPos + 1] == 0 && bytes[nPos + 2] == 1;
}

// The scan, position by position.
KX_ES_TYPE TypeByPosition(const Bytes& bytes)
{
    for (size_t nPos = 0; nPos + 4 <= bytes.size(); ++nPos) {
        const uint8_t nCode = bytes[nPos + 3];
        if (!IsUnitAt(bytes, nPos))
            continue;
        if (nCode == 0xB0 || nCode == 0xB6)
            return KX_ES_MPEG4;
        if (nCode == 0xB3 || nCode == 0xB5 || nCode == 0xB8)
            return KX_ES_MPEG2;
        if ((nCode & 31) == 1 || (nCode & 31) == 7)
            return KX_ES_H264;
        const int nH265 = nCode >> 1 & 63;
        if (nCode < 128 && nH265 >= 32 && nH265 <= 34)
            return KX_ES_H265;
    }
    return KX_ES_UNKOWN;
}

bool HasH264ByPosition(const Bytes& bytes, int nType)
{
    for (size_t nPos = 0; nPos + 5 <= bytes.size(); ++nPos) {
        if (IsUnitAt(bytes, nPos) && (bytes[nPos + 3] & 31) == nType)
            return true;
    }
    return false;
}

} // namespace

TEST(ESParser, TypeByTheFirstKnownUnit)
{
    const struct
    {
        uint8_t nCode;
        KX_ES_TYPE eType;
    } rows[] = {{0xB0, KX_ES_MPEG4},  {0xB6, KX_ES_MPEG4},  {0xB3, KX_ES_MPEG2}, {0xB5, KX_ES_MPEG2},
                {0xB8, KX_ES_MPEG2},  {0x67, KX_ES_H264},   {0x41, KX_ES_H264},  {0x61, KX_ES_H264},
                {0x40, KX_ES_H265},   {0x42, KX_ES_H265},   {0x44, KX_ES_H265},  {0x46, KX_ES_UNKOWN},
                {0x65, KX_ES_UNKOWN}, {0xC0, KX_ES_UNKOWN}, {0xC1, KX_ES_H264}};
    for (const auto& row : rows) {
        EXPECT_EQ(Ask(CESParser::GetESType, {0, 0, 1, row.nCode}), row.eType) << int{row.nCode};
        const KX_ES_TYPE eBehind = row.eType == KX_ES_UNKOWN ? KX_ES_MPEG4 : row.eType;
        EXPECT_EQ(Ask(CESParser::GetESType, {0, 0, 0, 1, row.nCode, 0, 0, 1, 0xB6}), eBehind) << int{row.nCode};
    }
    EXPECT_EQ(Ask(CESParser::GetESType, {0, 0, 1}), KX_ES_UNKOWN);
    EXPECT_EQ(CESParser::GetESType(nullptr, 100), KX_ES_UNKOWN);
}

TEST(ESParser, UnitsAtTheFront)
{
    EXPECT_TRUE(Ask(CESParser::IsH264IFrameID, {0, 0, 0, 1, 0x67}));
    EXPECT_TRUE(Ask(CESParser::IsH264IFrameID, {0xFF, 0, 0, 1, 0x67})); // the first byte does not count
    EXPECT_FALSE(Ask(CESParser::IsH264IFrameID, {0, 0, 0, 1, 0x61}));
    EXPECT_FALSE(Ask(CESParser::IsH264IFrameID, {0, 0, 0, 1}));
    EXPECT_FALSE(Ask(CESParser::IsH264IFrameID, {0, 0, 1, 0x67, 0}));
    EXPECT_TRUE(Ask(CESParser::IsH264PFrameID, {0, 0, 0, 1, 0x61}));
    EXPECT_FALSE(Ask(CESParser::IsH264PFrameID, {0, 0, 0, 1, 0x67}));
    EXPECT_TRUE(Ask(CESParser::IsMPEG4IFrameID, {0, 0, 1, 0xB0}));
    EXPECT_FALSE(Ask(CESParser::IsMPEG4IFrameID, {0, 0, 1, 0xB6}));
    EXPECT_TRUE(Ask(CESParser::IsMPEG4PFrameID, {0, 0, 1, 0xB6}));
    EXPECT_FALSE(Ask(CESParser::IsMPEG4PFrameID, {0, 0, 1}));
    for (const auto pfnAsk : {CESParser::IsH264IFrame, CESParser::IsH264PFrame, CESParser::IsH264IFrameID,
                              CESParser::IsH264PFrameID, CESParser::IsMPEG4IFrameID, CESParser::IsMPEG4PFrameID})
        EXPECT_FALSE(pfnAsk(nullptr, 100));
}

// Bytes full of start codes and near misses, against a scan that looks at every position.
TEST(ESParser, ScansLikePositionByPosition)
{
    constexpr uint8_t alphabet[] = {0, 0, 0, 0, 1, 1, 0x67, 0x41, 0x40, 0xB0, 0xB3, 0x65, 0xFF};
    std::mt19937 random(5);
    int nFound = 0;
    for (int nRound = 0; nRound < 20000; ++nRound) {
        Bytes bytes(random() % 64);
        std::generate(bytes.begin(), bytes.end(), [&] { return alphabet[random() % sizeof alphabet]; });
        const bool bIFrame = HasH264ByPosition(bytes, 7);
        ASSERT_EQ(Ask(CESParser::GetESType, bytes), TypeByPosition(bytes));
        ASSERT_EQ(Ask(CESParser::IsH264IFrame, bytes), bIFrame);
        ASSERT_EQ(Ask(CESParser::IsH264PFrame, bytes), HasH264ByPosition(bytes, 1));
        nFound += bIFrame ? 1 : 0;
    }
    EXPECT_GT(nFound, 300);
}

} // namespace Marvane::FrameSift
