#include "Tools/BitsStream.h"

#include "Support/BitWriter.h"
#include "Support/RandomStream.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

namespace {

struct READER
{
    explicit READER(const Bytes& source) : bytes(Part(source, 0)) { bs.Init(bytes.data(), LengthOf(bytes)); }

    Bytes bytes;
    CBitsStream bs;
};

// One by one, the obvious way.
uint32_t BitsAt(const Bytes& bytes, size_t nPos, uint32_t nCount)
{
    uint32_t nValue = 0;
    for (size_t n = nPos; n < nPos + nCount; ++n)
        nValue = nValue << 1 | (bytes[n / 8] >> (7 - n % 8) & 1U);
    return nValue;
}

// What the nth word reads as: real bytes, then ones; but a word that the end cuts, from the third on, comes for ever.
uint32_t WordOf(Bytes bytes, size_t nWord)
{
    const size_t nLastWord = bytes.size() / 4;
    if (bytes.size() % 4 != 0 && nLastWord >= 2)
        nWord = std::min(nWord, nLastWord);
    bytes.resize(std::max(bytes.size(), 4 * nWord + 4), 0xFF);
    return BitsAt(bytes, 32 * nWord, 32);
}

} // namespace

TEST(BitsStream, ReadsLikeBitByBit)
{
    std::mt19937 random(51);
    for (int nRound = 0; nRound < 2000; ++nRound) {
        const Bytes bytes = RandomBytes(random, 1 + random() % 40);
        READER reader(bytes);
        for (size_t nPos = 0; nPos < 8 * bytes.size();) {
            const auto nLeft = static_cast<uint32_t>(std::min<size_t>(32, 8 * bytes.size() - nPos));
            const uint32_t nCount = 1 + static_cast<uint32_t>(random()) % nLeft;
            const uint32_t nWanted = BitsAt(bytes, nPos, nCount);
            ASSERT_EQ(reader.bs.ShowBits(nCount), nWanted) << nPos << " of " << bytes.size();
            nPos += nCount;
            switch (random() % 3) {
            case 0:
                ASSERT_EQ(reader.bs.GetBits(nCount), nWanted);
                break;
            case 1:
                reader.bs.Skip(nCount);
                break;
            default:
                reader.bs.Skip(nCount);
                reader.bs.ByteAlign();
                nPos = (nPos + 7) / 8 * 8;
            }
        }
        EXPECT_EQ(reader.bs.Length(), bytes.size());
    }
}

TEST(BitsStream, OnesOrTheCutWordPastTheEnd)
{
    for (size_t nSize = 0; nSize <= 24; ++nSize) {
        const Bytes bytes = Counting(nSize, 0x10);
        READER reader(bytes);
        for (size_t nWord = 0; nWord < 12; ++nWord)
            ASSERT_EQ(reader.bs.GetBits(32), WordOf(bytes, nWord)) << "word " << nWord << " of " << nSize << " bytes";
    }
    CBitsStream bs;
    bs.Init(nullptr, 8);
    EXPECT_EQ(bs.GetBits(32), UINT32_MAX);
}

TEST(BitsStream, Golomb)
{
    CBitWriter writer;
    const int32_t values[] = {0, 1, 2, 3, 7, 8, 254, 65535, 0x7FFFFFFE};
    for (const int32_t nValue : values)
        writer.Ue(static_cast<uint32_t>(nValue)).Se(nValue / 2).Se(-nValue / 2);
    READER reader(writer.Raw());
    for (const int32_t nValue : values) {
        EXPECT_EQ(reader.bs.GetUeGolomb(), nValue);
        EXPECT_EQ(reader.bs.GetSeGolomb(), nValue / 2);
        EXPECT_EQ(reader.bs.GetSeGolomb(), -nValue / 2);
    }
    READER past(Bytes(12, 0));
    for (int n = 0; n < 3; ++n)
        past.bs.Skip(32);
    EXPECT_EQ(past.bs.GetUeGolomb(), 0);
}

// No value is promised, but an end is: at the first one past the end, and for what is read after the long code too.
TEST(BitsStream, GolombOfZerosEnds)
{
    for (const size_t nSize : std::initializer_list<size_t>{1, 7, 8, 9, 11, 12, 13, 64, 1001}) {
        READER reader(Bytes(nSize, 0));
        for (int n = 0; n < 100; ++n) {
            reader.bs.GetUeGolomb();
            reader.bs.GetSeGolomb();
        }
    }
}

TEST(BitsStream, LongSkips)
{
    READER reader(Counting(40, 0x10));
    for (const uint32_t nBits : {8U, 32U, 48U, 8U}) // profile, tier and level of H.265
        reader.bs.Skip(nBits);
    EXPECT_EQ(reader.bs.GetBits(8), 0x1CU);

    READER far(Counting(40, 0x10));
    far.bs.Skip(100); // one word, whatever the length
    EXPECT_EQ(far.bs.Pos(), 68U + 8U);
    far.bs.Skip(0);
    far.bs.Skip(0);
    EXPECT_EQ(far.bs.ShowBits(32), 0x1C1D1E1FU << 4 | 2U);
    far.bs.Skip(UINT32_MAX);
    far.bs.GetUeGolomb();
    far.bs.ByteAlign();
}

TEST(BitsStream, PositionCountsAWordAsAByte)
{
    READER reader(Counting(40, 0x10));
    EXPECT_EQ(reader.bs.ShowBits(0), 0x10111213U); // the whole word, only here
    reader.bs.GetBits(3);
    EXPECT_EQ(reader.bs.ShowBits(0), 0U);
    reader.bs.ByteAlign();
    reader.bs.ByteAlign();
    EXPECT_EQ(reader.bs.Pos(), 8U);
    reader.bs.Skip(32);
    EXPECT_EQ(reader.bs.Pos(), 8U + 8U);
    for (int n = 0; n < 20; ++n)
        reader.bs.Skip(32);
    EXPECT_EQ(reader.bs.Pos(), 8U + 8U * 8U); // stands still two words before the end
}

} // namespace Marvane::FrameSift
