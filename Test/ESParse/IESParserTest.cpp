#include "ESParse/IESParser.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

template <class Result>
Result Ask(Result (*pfnAsk)(const uint8_t*, uint32_t), Bytes bytes)
{
    bytes.shrink_to_fit(); // so that a read past it is found
    return pfnAsk(bytes.data(), LengthOf(bytes));
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

TEST(ESParser, UnitsAtTheFront)
{
    for (const auto& [bytes, answers] :
         Rows<Bytes, std::string>{{{0, 0, 0, 1, 0x67}, "1000"},
                                  {{0xFF, 0, 0, 1, 0x67}, "1000"}, // the first byte does not count
                                  {{0, 0, 0, 1, 0x61}, "0100"},
                                  {{0, 0, 0, 1}, "0000"},
                                  {{0, 0, 1, 0x67, 0}, "0000"},
                                  {{0, 0, 1, 0xB0}, "0010"},
                                  {{0, 0, 1, 0xB6}, "0001"},
                                  {{0, 0, 1}, "0000"}}) {
        std::string told;
        for (const auto pfnAsk : {CESParser::IsH264IFrameID, CESParser::IsH264PFrameID, CESParser::IsMPEG4IFrameID,
                                  CESParser::IsMPEG4PFrameID})
            told += Ask(pfnAsk, bytes) && !pfnAsk(nullptr, 100) ? "1" : "0";
        EXPECT_EQ(told, answers);
    }
    EXPECT_FALSE(CESParser::IsH264IFrame(nullptr, 100) || CESParser::IsH264PFrame(nullptr, 100));
    EXPECT_EQ(CESParser::GetESType(nullptr, 100), KX_ES_UNKOWN);
}

// Bytes full of start codes and near misses, against a scan that looks at every position.
TEST(ESParser, ScansLikePositionByPosition)
{
    constexpr uint8_t alphabet[] = {0,    0,    0,    0,    0,    0,    1,    1,    1,    0xB0, 0xB6, 0xB3, 0xB5, 0xB8,
                                    0x67, 0x41, 0x61, 0xC1, 0x40, 0x42, 0x44, 0x46, 0x65, 0xC0, 0x47, 0xC4, 0xFF};
    std::mt19937 random(5);
    int nFound = 0;
    for (int nRound = 0; nRound < 20000; ++nRound) {
        Bytes bytes(random() % 128);
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
