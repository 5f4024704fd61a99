// The sums over a payload. Beside the CRC-32 zlib's, beside the word sums a plain read of the same bytes.
#include <benchmark/benchmark.h>

#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Tools/KXVerify.h"
#include "Tools/KXVerifyCrc32.h"

namespace Marvane::FrameSift {

namespace {

using Bytes = std::vector<uint8_t>;

// No byte is 0xFF: the plain read looks for one.
Bytes Payload(size_t nBytes)
{
    Bytes bytes(nBytes);
    for (size_t n = 0; n < nBytes; ++n)
        bytes[n] = static_cast<uint8_t>((n * n >> 3) % 255);
    return bytes;
}

int Length(const Bytes& bytes)
{
    return static_cast<int>(bytes.size());
}

uint32_t Chosen(const Bytes& bytes)
{
    return CKXVerify::GetCRC32(bytes.data(), Length(bytes));
}

uint32_t Table(const Bytes& bytes)
{
    return ~Crc32ByTable(~uint32_t{0}, bytes);
}

uint32_t Zlib(const Bytes& bytes)
{
    return static_cast<uint32_t>(crc32(crc32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size())));
}

uint32_t Sum32(const Bytes& bytes)
{
    return CKXVerify::GetSum32(bytes.data(), Length(bytes));
}

uint32_t Xor32(const Bytes& bytes)
{
    return CKXVerify::GetXor32(bytes.data(), Length(bytes));
}

uint32_t Sum8(const Bytes& bytes)
{
    return CKXVerify::GetSum8(bytes.data(), Length(bytes));
}

uint32_t ReadAll(const Bytes& bytes)
{
    return std::memchr(bytes.data(), 0xFF, bytes.size()) == nullptr ? 0 : 1;
}

struct OBVIOUS
{
    uint32_t sum8 = 0;
    uint32_t sum32 = 0;
    uint32_t xor32 = 0;
};

OBVIOUS ObviousSums(const Bytes& bytes)
{
    OBVIOUS sums;
    for (size_t n = 0; n < bytes.size(); ++n) {
        const uint32_t nPart = uint32_t{bytes[n]} << (n % 4 * 8);
        sums.sum8 = (sums.sum8 + bytes[n]) & 0xFF;
        sums.sum32 += nPart;
        sums.xor32 ^= nPart;
    }
    return sums;
}

// Without the same answer the times say nothing.
bool Agree(const Bytes& bytes)
{
    const uint32_t nZlib = Zlib(bytes);
    const OBVIOUS sums = ObviousSums(bytes);
    return Chosen(bytes) == nZlib && Table(bytes) == nZlib && Sum8(bytes) == sums.sum8 && Sum32(bytes) == sums.sum32 &&
           Xor32(bytes) == sums.xor32 && ReadAll(bytes) == 0;
}

void Register(const Bytes& bytes)
{
    const struct
    {
        const char* pSubject;
        const char* pWay;
        uint32_t (*pfnSum)(const Bytes&);
    } rows[] = {
        {"Crc32", "chosen", &Chosen},
        {"Crc32", "table", &Table},
        {"Crc32", "baseline_zlib", &Zlib},
        {"WordSums", "Sum32", &Sum32},
        {"WordSums", "Xor32", &Xor32},
        {"WordSums", "Sum8", &Sum8},
        {"WordSums", "baseline_memchr", &ReadAll},
    };
    for (const auto& row : rows) {
        const std::string name =
            std::string(row.pSubject) + "/" + std::to_string(bytes.size() >> 10) + "_KiB/" + row.pWay;
        const auto pfnSum = row.pfnSum;
        benchmark::RegisterBenchmark(name.c_str(), [pfnSum, &bytes](benchmark::State& state) {
            for (auto _ : state)
                benchmark::DoNotOptimize(pfnSum(bytes));
            state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
        });
    }
}

} // namespace

} // namespace Marvane::FrameSift

int main(int argc, char** argv)
{
    using namespace Marvane::FrameSift;
    benchmark::Initialize(&argc, argv);
    const Bytes payloads[] = {Payload(size_t{64} << 10), Payload(size_t{1} << 20), Payload(size_t{32} << 20)};
    for (const Bytes& bytes : payloads) {
        if (!Agree(bytes)) {
            std::fprintf(stderr, "not the sums that the baselines give\n");
            return 1;
        }
        Register(bytes);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
