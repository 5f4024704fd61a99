#include "Tools/KXVerify.h"

#include <array>
#include <bit>
#include <cstring>
#include <functional>
#include <numeric>
#include <span>

#include "Tools/BufferRead.h"
#include "Tools/KXVerifyCrc32.h"

namespace Marvane::FrameSift {

namespace {

std::span<const uint8_t> Bytes(const uint8_t* data, int len)
{
    return data != nullptr && len > 0 ? std::span(data, static_cast<size_t>(len)) : std::span<const uint8_t>();
}

static_assert(std::endian::native == std::endian::little);

// Four words at a time, in four sums that do not wait for each other: one after the other, the words come slower than
// memory delivers them. OPERATION takes words and such groups of them.
using WORDS [[gnu::vector_size(16)]] = uint32_t;
constexpr size_t sc_sums = 4;

template <typename OPERATION>
uint32_t FoldWords(std::span<const uint8_t> bytes, OPERATION operation)
{
    WORDS sums[sc_sums] = {};
    for (; bytes.size() >= sizeof sums; bytes = bytes.subspan(sizeof sums)) {
        for (size_t n = 0; n < sc_sums; ++n) {
            WORDS words;
            std::memcpy(&words, bytes.data() + n * sizeof words, sizeof words);
            sums[n] = operation(sums[n], words);
        }
    }
    const WORDS sum = operation(operation(sums[0], sums[1]), operation(sums[2], sums[3]));
    uint32_t nResult = operation(operation(sum[0], sum[1]), operation(sum[2], sum[3]));
    for (; bytes.size() >= sizeof nResult; bytes = bytes.subspan(sizeof nResult))
        nResult = operation(nResult, LoadUint32Lsb(bytes.data()));
    return operation(nResult, static_cast<uint32_t>(LoadLsb(bytes.data(), bytes.size())));
}

constexpr std::array<uint16_t, 256> crc16_table = [] {
    std::array<uint16_t, 256> table = {};
    for (unsigned n = 0; n < table.size(); ++n) {
        unsigned nCrc = n;
        for (int nBit = 0; nBit < 8; ++nBit)
            nCrc = nCrc >> 1 ^ ((nCrc & 1) != 0 ? 0xA001U : 0U);
        table[n] = static_cast<uint16_t>(nCrc);
    }
    return table;
}();

} // namespace

uint8_t CKXVerify::GetSum8(const uint8_t* data, int len)
{
    const auto bytes = Bytes(data, len);
    const auto add = [](uint8_t nSum, uint8_t nByte) { return static_cast<uint8_t>(nSum + nByte); };
    return std::accumulate(bytes.begin(), bytes.end(), uint8_t{0}, add);
}

uint32_t CKXVerify::GetSum32(const uint8_t* data, int len)
{
    return FoldWords(Bytes(data, len), std::plus<>());
}

uint32_t CKXVerify::GetXor32(const uint8_t* data, int len)
{
    return FoldWords(Bytes(data, len), std::bit_xor<>());
}

uint32_t CKXVerify::GetCRC32(const uint8_t* data, int len)
{
    const CRC32_FORM pfnByFolding = Crc32ByFolding();
    return ~(pfnByFolding != nullptr ? pfnByFolding : Crc32ByTable)(~uint32_t{0}, Bytes(data, len));
}

uint16_t CKXVerify::crc16(uint16_t crc, const uint8_t* data, size_t len)
{
    for (size_t n = 0; data != nullptr && n < len; ++n)
        crc = crc16_byte(crc, data[n]);
    return crc;
}

uint16_t CKXVerify::crc16_byte(uint16_t crc, uint8_t value)
{
    return static_cast<uint16_t>(crc16_table[(crc ^ value) & 0xFF] ^ crc >> 8);
}

} // namespace Marvane::FrameSift
