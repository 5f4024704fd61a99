#include "Tools/KXVerify.h"

#include <climits>
#include <ostream>
#include <string_view>

#include "Support/Testing.h"
#include "Tools/KXVerifyCrc32.h"

namespace Marvane::FrameSift {
namespace {

struct SUMS
{
    uint8_t sum8 = 0;
    uint32_t sum32 = 0;
    uint32_t xor32 = 0;
    uint32_t crc32 = 0;
    bool operator==(const SUMS&) const = default;
};

std::ostream& operator<<(std::ostream& out, const SUMS& sums)
{
    return out << std::hex << int{sums.sum8} << ' ' << sums.sum32 << ' ' << sums.xor32 << ' ' << sums.crc32;
}

SUMS SumsOf(const uint8_t* data, int len)
{
    return {CKXVerify::GetSum8(data, len), CKXVerify::GetSum32(data, len), CKXVerify::GetXor32(data, len),
            CKXVerify::GetCRC32(data, len)};
}

uint32_t Crc32BitByBit(uint32_t nCrc, std::span<const uint8_t> bytes)
{
    for (const uint8_t nByte : bytes) {
        nCrc ^= nByte;
        for (int nBit = 0; nBit < 8; ++nBit)
            nCrc = (nCrc & 1) != 0 ? nCrc >> 1 ^ 0xEDB88320U : nCrc >> 1;
    }
    return nCrc;
}

// Byte by byte, each at its place in a word.
SUMS ObviousSumsOf(std::span<const uint8_t> bytes)
{
    SUMS sums;
    for (size_t n = 0; n < bytes.size(); ++n) {
        const uint32_t nPart = uint32_t{bytes[n]} << (n % 4 * 8);
        sums.sum8 = static_cast<uint8_t>(sums.sum8 + bytes[n]);
        sums.sum32 += nPart;
        sums.xor32 ^= nPart;
    }
    sums.crc32 = ~Crc32BitByBit(0xFFFFFFFF, bytes);
    return sums;
}

const auto* Ascii(std::string_view text)
{
    return reinterpret_cast<const uint8_t*>(text.data());
}

} // namespace

TEST(KXVerify, KnownSums)
{
    const uint8_t bytes[] = {1, 2, 3, 4, 5};
    EXPECT_EQ(CKXVerify::GetSum32(bytes, 5), 0x04030206U);
    EXPECT_EQ(CKXVerify::GetXor32(bytes, 5), 0x04030204U);
    EXPECT_EQ(CKXVerify::GetSum8(bytes, 5), 15);
    EXPECT_EQ(CKXVerify::GetCRC32(Ascii("123456789"), 9), 0xCBF43926U);
    EXPECT_EQ(CKXVerify::crc16(0, Ascii("123456789"), 9), 0xBB3D); // the check value of CRC-16/ARC
    EXPECT_EQ(CKXVerify::crc16(CKXVerify::crc16(0, Ascii("1234"), 4), Ascii("56789"), 5), 0xBB3D);
    EXPECT_EQ(CKXVerify::crc16(0xFFFF, Ascii("123456789"), 9), 0x4B37); // as in MODBUS: the caller's initial value
    EXPECT_EQ(CKXVerify::crc16_byte(0, 1), 0xC0C1);
}

TEST(KXVerify, NothingToSum)
{
    const uint8_t bytes[] = {1, 2, 3, 4};
    for (const int nLength : {0, -1, -3, -4, INT_MIN})
        EXPECT_EQ(SumsOf(bytes, nLength), SUMS()) << nLength;
    EXPECT_EQ(SumsOf(nullptr, 4), SUMS());
    EXPECT_EQ(CKXVerify::crc16(7, bytes, 0), 7);
    EXPECT_EQ(CKXVerify::crc16(7, nullptr, 4), 7);
}

// Blocks of the heap that end with the last byte, so that a read past it is found.
TEST(KXVerify, EveryLengthAndAddress)
{
    std::mt19937 random(11);
    for (size_t nRound = 0; nRound < 320; ++nRound) {
        const size_t nLength = nRound <= 300 ? nRound : random() % 200000;
        const size_t nShift = random() % 17;
        SCOPED_TRACE(testing::Message() << nLength << " at " << nShift);
        const auto block = std::make_unique<uint8_t[]>(nShift + nLength);
        const std::span<uint8_t> bytes(block.get() + nShift, nLength);
        std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<uint8_t>(random()); });
        const SUMS expected = ObviousSumsOf(bytes);
        EXPECT_EQ(SumsOf(bytes.data(), static_cast<int>(nLength)), nLength > 0 ? expected : SUMS());
        // Both forms, and both from any remainder on.
        const auto nCrc = static_cast<uint32_t>(random());
        const uint32_t nExpected = Crc32BitByBit(nCrc, bytes);
        EXPECT_EQ(Crc32ByTable(nCrc, bytes), nExpected);
        if (Crc32ByFolding() != nullptr) {
            EXPECT_EQ(Crc32ByFolding()(nCrc, bytes), nExpected);
        }
    }
}

} // namespace Marvane::FrameSift
