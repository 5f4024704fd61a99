// The scan through the public calls, and beside it, on the same bytes, the obvious search for heads byte by byte. The
// search is not told where a frame ends and verifies nothing: it is a yardstick for the machine, not a rival.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>

#include "BenchStreams.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_streamSize = size_t{32} << 20;

size_t CountByLibrary(Bytes& stream, size_t nChunk)
{
    void* handle = KX_CreateFrameSift(0);
    KX_FRAME_INFO frame;
    size_t nFrames = 0;
    for (size_t nPos = 0; nPos < stream.size(); nPos += nChunk) {
        const size_t nLength = std::min(nChunk, stream.size() - nPos);
        KX_ParseData(handle, stream.data() + nPos, static_cast<int32_t>(nLength));
        while (KX_GetOneFrame(handle, &frame) == KX_SUCCESS)
            nFrames += frame.errorFlags == KX_ERROR_FLAGS_NOERROR ? 1 : 0;
    }
    KX_Destroy(handle);
    return nFrames;
}

size_t CountByteByByte(const Bytes& stream)
{
    size_t nFrames = 0;
    for (size_t nPos = 0; nPos + 4 <= stream.size(); ++nPos) {
        const uint8_t* pPlace = stream.data() + nPos;
        if (std::memcmp(pPlace, "ZOAV", 4) == 0 || std::memcmp(pPlace, "MYAV", 4) == 0 ||
            std::memcmp(pPlace, "LXAV", 4) == 0 || std::memcmp(pPlace, "WMAV", 4) == 0)
            ++nFrames;
    }
    return nFrames;
}

void Measure(benchmark::State& state, Bytes& stream, size_t nChunk)
{
    size_t nFrames = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(nFrames = nChunk != 0 ? CountByLibrary(stream, nChunk) : CountByteByByte(stream));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * stream.size()));
    state.counters["frames"] = static_cast<double>(nFrames);
}

// Without the same answer the times say nothing.
bool Agree(const char* pName, Bytes& stream, size_t nChunk)
{
    const size_t nLibrary = CountByLibrary(stream, nChunk);
    const size_t nByteByByte = CountByteByByte(stream);
    if (nLibrary == nByteByByte && nLibrary > 0)
        return true;
    std::fprintf(stderr, "%s: the library found %zu frames, the search %zu\n", pName, nLibrary, nByteByByte);
    return false;
}

struct CASE
{
    const char* pName;
    Bytes stream;
};

void Register(CASE& row)
{
    const auto add = [&row](const std::string& way, size_t nChunk) {
        benchmark::RegisterBenchmark((std::string(row.pName) + way).c_str(), [&row, nChunk](benchmark::State& state) {
            Measure(state, row.stream, nChunk);
        })->Unit(benchmark::kMillisecond);
    };
    add("/chunks_of_1_MiB", size_t{1} << 20);
    add("/chunks_of_64_KiB", size_t{64} << 10);
    add("/chunks_of_1400", 1400);
    add("/baseline_byte_by_byte", 0); // baseline: the obvious code
}

} // namespace

} // namespace Marvane::FrameSift

int main(int argc, char** argv)
{
    using namespace Marvane::FrameSift;
    benchmark::Initialize(&argc, argv);
    CASE cases[] = {{"Recording", RecordingStream(sc_streamSize)}, {"Rubbish", RubbishStream(sc_streamSize)}};
    for (CASE& row : cases) {
        for (const size_t nChunk : {size_t{1} << 20, size_t{64} << 10, size_t{1400}}) {
            if (!Agree(row.pName, row.stream, nChunk))
                return 1;
        }
        Register(row);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
