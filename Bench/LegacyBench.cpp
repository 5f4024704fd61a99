// The older formats, in chunks of several sizes: what a byte costs must not depend on how long a frame waits. Beside them,
// on the same bytes, a search for start codes by memchr.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <functional>

#include "BenchStreams.h"
#include "ESParse/StartCode.h"
#include "FrameWriter/LegacyFrameWriter.h"
#include "ParserMethod/StreamAnalyzer.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_streamSize = size_t{16} << 20;

size_t CountByLibrary(Bytes& stream, int nType, size_t nChunk)
{
    CStreamAnalyzer analyzer(0);
    analyzer.InitEx(nType);
    size_t nFrames = 0;
    for (size_t nPos = 0; nPos < stream.size(); nPos += nChunk) {
        const size_t nLength = std::min(nChunk, stream.size() - nPos);
        analyzer.ParseData(stream.data() + nPos, static_cast<int>(nLength));
        FrameInfo frame;
        ExtZOAVIFrameInfo ext;
        while (analyzer.GetOneFrame(&frame, &ext) == KX_SUCCESS)
            nFrames += frame.errorFlags == KX_ERROR_FLAGS_NOERROR ? 1 : 0;
    }
    return nFrames;
}

size_t CountStartCodes(const Bytes& stream)
{
    size_t nCodes = 0;
    for (size_t nPos = FindStartCode(stream, 0, 1); nPos < stream.size(); nPos = FindStartCode(stream, nPos + 3, 1))
        ++nCodes;
    return nCodes;
}

struct CASE
{
    const char* pName;
    int nType;
    std::function<Bytes(const Bytes& payload)> frameOf;
    size_t nPayload;  // of each frame
    Bytes front = {}; // what lets the format be known
    Bytes stream = {};
};

// A picture's worth of bytes without a start code in it but the one in front.
Bytes Picture(size_t nSize)
{
    Bytes picture = {0, 0, 1, 0xB6, 0x10};
    uint32_t nRandom = 1;
    while (picture.size() < nSize) {
        nRandom = nRandom * 1664525 + 1013904223;
        picture.push_back(static_cast<uint8_t>(nRandom >> 24 | 2));
    }
    return picture;
}

void Fill(CASE& row)
{
    const Bytes picture = Picture(row.nPayload);
    row.stream = row.front;
    while (row.stream.size() < sc_streamSize) {
        const Bytes frame = row.frameOf(picture);
        row.stream.insert(row.stream.end(), frame.begin(), frame.end());
    }
    row.stream = row.stream + LegacyEndMark() + Bytes(128, 0x11);
}

Bytes HbBlocks(const Bytes& payload, uint32_t& nBlockSeq)
{
    Bytes blocks;
    for (size_t nPos = 0; nPos < payload.size(); nPos += gsk_hbBlockPayload)
        blocks = blocks + HbBlock({}, ++nBlockSeq, std::span(payload).subspan(nPos));
    return blocks;
}

std::vector<CASE> Cases()
{
    const auto newFrame = [](const Bytes& payload) { return NewKeyFrame(NEW_HEADS::New, {}, payload); };
    const auto dataFrame = [](const Bytes& payload) {
        return NewKeyFrame(NEW_HEADS::New, {}, Picture(40)) + NewDataFrame(1, payload);
    };
    const auto bare = [](const Bytes& payload) { return payload; };
    const auto hbBlocks = [nBlockSeq = uint32_t{0}](const Bytes& payload) mutable {
        return HbBlocks(payload, nBlockSeq);
    };
    // A ZOPT head is judged by what one chunk holds: the first frames are short.
    const Bytes zoptFront = ZoptFrame(Picture(9)) + ZoptFrame(Picture(9)) + ZoptFrame(Picture(9));
    const auto audio = [](const Bytes& payload) { return OldAudioFrame(14, 2, payload); };
    return {{"New_14_KiB", KX_STREAM_TYPE_OLD, newFrame, 14000},
            {"New_data_14_KiB", KX_STREAM_TYPE_OLD, dataFrame, 14000},
            {"New_data_8_MiB", KX_STREAM_TYPE_OLD, dataFrame, size_t{8} << 20},
            {"Zopt_14_KiB", KX_STREAM_TYPE_OLD, &ZoptFrame, 14000, zoptFront},
            {"Hb_14_KiB", KX_STREAM_TYPE_OLD, hbBlocks, 14000},
            {"RawMpeg4_14_KiB", KX_STREAM_TYPE_MPEG4, bare, 14000},
            {"RawMpeg4_8_MiB", KX_STREAM_TYPE_MPEG4, bare, size_t{8} << 20},
            {"PureAudio_320", KX_STREAM_TYPE_OLD, audio, 320}};
}

void Measure(benchmark::State& state, CASE& row, size_t nChunk)
{
    size_t nFound = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(nFound = nChunk != 0 ? CountByLibrary(row.stream, row.nType, nChunk)
                                                      : CountStartCodes(row.stream));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(row.stream.size()));
    state.counters["found"] = static_cast<double>(nFound);
}

void Register(CASE& row)
{
    const auto add = [&row](const std::string& way, size_t nChunk) {
        benchmark::RegisterBenchmark((std::string(row.pName) + way).c_str(), [&row, nChunk](benchmark::State& state) {
            Measure(state, row, nChunk);
        })->Unit(benchmark::kMillisecond);
    };
    add("/chunks_of_1_MiB", size_t{1} << 20);
    add("/chunks_of_1400", 1400);
    add("/chunks_of_64", 64);
    add("/baseline_start_codes", 0);
}

} // namespace

} // namespace Marvane::FrameSift

int main(int argc, char** argv)
{
    using namespace Marvane::FrameSift;
    benchmark::Initialize(&argc, argv);
    auto cases = Cases();
    for (CASE& row : cases) {
        Fill(row);
        Register(row);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
