// The index of a recording: its size, and the time of its operations. Beside it the obvious list, a vector of records.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "FileAnalzyer/SimulateByStream/IndexList.h"

namespace {

// What the allocator gave, its rounding included. This program has one thread.
size_t g_nLiveBytes = 0;
size_t g_nPeakBytes = 0;

void* Allocate(size_t nSize) noexcept
{
    void* pBlock = std::malloc(std::max<size_t>(nSize, 1));
    g_nLiveBytes += pBlock != nullptr ? malloc_usable_size(pBlock) : 0;
    g_nPeakBytes = std::max(g_nPeakBytes, g_nLiveBytes);
    return pBlock;
}

void* AllocateOrThrow(size_t nSize)
{
    void* pBlock = Allocate(nSize);
    if (pBlock == nullptr)
        throw std::bad_alloc();
    return pBlock;
}

void Release(void* pBlock) noexcept
{
    g_nLiveBytes -= pBlock != nullptr ? malloc_usable_size(pBlock) : 0;
    std::free(pBlock);
}

} // namespace

void* operator new(size_t nSize)
{
    return AllocateOrThrow(nSize);
}

void* operator new[](size_t nSize)
{
    return AllocateOrThrow(nSize);
}

void* operator new(size_t nSize, const std::nothrow_t&) noexcept
{
    return Allocate(nSize);
}

void* operator new[](size_t nSize, const std::nothrow_t&) noexcept
{
    return Allocate(nSize);
}

void operator delete(void* pBlock) noexcept
{
    Release(pBlock);
}

void operator delete[](void* pBlock) noexcept
{
    Release(pBlock);
}

void operator delete(void* pBlock, size_t) noexcept
{
    Release(pBlock);
}

void operator delete[](void* pBlock, size_t) noexcept
{
    Release(pBlock);
}

namespace Marvane::FrameSift {

namespace {

constexpr int64_t sc_frames = 1'000'000;
constexpr auto sc_all = static_cast<int32_t>(KX_INDEX_BIT_FLAG_ALL);
using Records = std::vector<FILE_INDEX_INFO>;

// A recording of about five and a half hours: 25 pictures a second, every 50th an I frame, and as many audio frames.
class CRecorder
{
public:
    explicit CRecorder(bool bCiphered) : m_bCiphered(bCiphered) {}

    FILE_INDEX_INFO Next(int64_t n)
    {
        const auto nJitter = static_cast<int64_t>(m_random() % 5 == 0 ? m_random() % 5 : 2);
        m_nMilliSeconds = n / 2 * 40 + nJitter;
        FILE_INDEX_INFO record{};
        FrameInfo& frame = record.frameInfo;
        frame.streamType = KX_STREAM_TYPE_ZOSTD;
        frame.timeStamp = static_cast<int32_t>(m_nMilliSeconds & 0xFFFF);
        frame.frameTime = WallClock();
        frame.utcTime = 1'700'000'000'000 + static_cast<uint64_t>(m_nMilliSeconds);
        if (n % 2 == 0)
            Video(frame, n / 2);
        else
            Audio(frame, n / 2);
        Place(record);
        return record;
    }

private:
    KX_TIME WallClock() const
    {
        const auto nSecond = static_cast<int32_t>(m_nMilliSeconds / 1000);
        return {2031, 5, 17, 8 + nSecond / 3600, nSecond / 60 % 60, nSecond % 60, 0};
    }

    void Video(FrameInfo& frame, int64_t n)
    {
        const bool bKeyFrame = n % 50 == 0;
        frame.frameType = KX_FRAME_TYPE_VIDEO;
        frame.frameSubType = bKeyFrame ? KX_FRAME_SUB_TYPE_VIDEO_I_FRAME : KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
        frame.frameEncodeType = KX_ENCODE_VIDEO_ZO_H264;
        frame.frameSeq = static_cast<int32_t>(n);
        frame.frameRate = 25;
        frame.width = 1920;
        frame.height = 1080;
        frame.deinterlace = 2;
        frame.rateValue = 25;
        frame.rateDenominator = 1;
        frame.extDataLen = bKeyFrame ? 56 : 24;
        m_nHeads = 24 + frame.extDataLen;
        frame.frameLen = static_cast<int32_t>(bKeyFrame ? 60'000 + m_random() % 60'000 : 2000 + m_random() % 9000);
        if (m_bCiphered)
            Cipher(frame);
    }

    void Audio(FrameInfo& frame, int64_t n)
    {
        frame.frameType = KX_FRAME_TYPE_AUDIO;
        frame.frameEncodeType = KX_ENCODE_AUDIO_G711A;
        frame.frameSeq = static_cast<int32_t>(n);
        frame.samplesPerSec = 8000;
        frame.bitsPerSample = 16;
        frame.channels = 1;
        frame.extDataLen = 12;
        m_nHeads = 24 + frame.extDataLen;
        frame.frameLen = static_cast<int32_t>(m_nHeads + 320 + 8);
    }

    // What changes with each frame is not to be foreseen: the worst there is.
    void Cipher(FrameInfo& frame)
    {
        frame.nEncryptType = KX_ENCRYPT_AES256_GDPR2;
        frame.nEncryptLen = frame.frameLen / 16 * 16;
        frame.nB5Headoffset = 40;
        std::fill_n(frame.nB5HeadEncryptVKid, sizeof frame.nB5HeadEncryptVKid, uint8_t{0x5A});
        frame.nB5HeadEncryptCrc16 = 0x1234;
        for (uint8_t* pField : {frame.nB5HeadIV, frame.nB5Random, frame.nB5Random + 16})
            std::generate_n(pField, 16, [&] { return static_cast<uint8_t>(m_random()); });
    }

    // Now and then a block of something else stands between two frames.
    void Place(FILE_INDEX_INFO& record)
    {
        FrameInfo& frame = record.frameInfo;
        m_nOffset += m_random() % 1000 == 0 ? 512 : 0;
        record.indexInfo.frameOffset = m_nOffset;
        record.indexInfo.streamOffset = m_nOffset + m_nHeads;
        frame.streamLen = static_cast<int32_t>(frame.frameLen - int64_t{m_nHeads} - 8);
        frame.framePointer = m_window + m_nOffset % 1000;
        frame.streamPointer = m_window + m_nOffset % 1000 + m_nHeads;
        frame.extDataPtr = m_window + m_nOffset % 1000 + 24;
        m_nOffset += frame.frameLen;
    }

    bool m_bCiphered;
    std::mt19937 m_random{1};
    int64_t m_nMilliSeconds = 0;
    int64_t m_nOffset = 0;
    uint32_t m_nHeads = 0;
    uint8_t m_window[1200] = {};
};

struct RECORDING
{
    const char* pName;
    bool bCiphered;
    bool bBaseRead;
    Records records;
    CIndexList list;
};

void InputAll(CIndexList& list, Records& records)
{
    ExtZOAVIFrameInfo ext{};
    for (FILE_INDEX_INFO& record : records)
        list.InputFrame(&record.indexInfo, &record.frameInfo, &ext);
}

bool Same(const FILE_INDEX_INFO& record, const KX_INDEX_INFO& index, const FrameInfo& frame)
{
    FrameInfo kept = record.frameInfo;
    kept.framePointer = kept.streamPointer = kept.extDataPtr = nullptr;
    return std::memcmp(&record.indexInfo, &index, sizeof index) == 0 && std::memcmp(&kept, &frame, sizeof kept) == 0;
}

// Without the same answer neither times nor sizes say anything.
bool Agree(RECORDING& recording)
{
    std::vector<KX_INDEX_INFO> indexes(sc_frames);
    std::vector<FrameInfo> frames(sc_frames);
    int32_t nCount = 0;
    if (recording.list.GetAllIndex(sc_all, indexes.data(), frames.data(), sc_frames, &nCount) != KX_SUCCESS ||
        nCount != sc_frames)
        return false;
    std::mt19937 random(2);
    for (size_t n = 0; n < sc_frames; ++n) {
        KX_INDEX_INFO index{};
        FrameInfo frame{};
        const size_t nAt = random() % sc_frames;
        if (!Same(recording.records[n], indexes[n], frames[n]) ||
            recording.list.GetOneIndex(static_cast<int64_t>(nAt), &index, &frame, nullptr) != KX_SUCCESS ||
            !Same(recording.records[nAt], index, frame))
            return false;
    }
    return true;
}

// In bytes for each P or audio frame: the I frames' share is theirs to carry.
void ReportSize(benchmark::State& state, size_t nBytes, size_t nPeak)
{
    constexpr double nIFrames = sc_frames / 2.0 / 50.0;
    state.counters["bytes_per_P_or_audio"] = static_cast<double>(nBytes) / (sc_frames - nIFrames);
    state.counters["peak_bytes"] = static_cast<double>(nPeak) / (sc_frames - nIFrames);
}

void ReportTime(benchmark::State& state, double nFrames)
{
    state.counters["s_per_frame"] =
        benchmark::Counter(nFrames, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class Container, class Fill>
void Input(benchmark::State& state, Fill&& fill)
{
    for (auto _ : state) {
        const size_t nBefore = g_nLiveBytes;
        g_nPeakBytes = g_nLiveBytes;
        auto pContainer = std::make_unique<Container>();
        fill(*pContainer);
        state.PauseTiming();
        ReportSize(state, g_nLiveBytes - nBefore, g_nPeakBytes - nBefore);
        pContainer.reset();
        state.ResumeTiming();
    }
    ReportTime(state, sc_frames);
}

void InputIndex(benchmark::State& state, RECORDING& recording)
{
    Input<CIndexList>(state, [&](CIndexList& list) {
        list.SetBaseRead(recording.bBaseRead);
        InputAll(list, recording.records);
    });
}

void InputVector(benchmark::State& state, RECORDING& recording)
{
    Input<Records>(state, [&](Records& records) {
        for (FILE_INDEX_INFO& record : recording.records) {
            record.indexInfo.index = static_cast<int64_t>(records.size());
            records.push_back(record);
        }
    });
}

template <class Copy>
void OneByOne(benchmark::State& state, bool bRandom, Copy&& copy)
{
    std::minstd_rand random(3);
    KX_INDEX_INFO index;
    FrameInfo frame;
    int64_t nAt = 0;
    for (auto _ : state) {
        nAt = bRandom ? static_cast<int64_t>(random() % sc_frames) : (nAt + 1) % sc_frames;
        copy(nAt, index, frame);
        benchmark::DoNotOptimize(index);
        benchmark::DoNotOptimize(frame);
    }
    ReportTime(state, 1);
}

template <bool bRandom>
void OneIndex(benchmark::State& state, RECORDING& recording)
{
    OneByOne(state, bRandom, [&](int64_t nAt, KX_INDEX_INFO& index, FrameInfo& frame) {
        recording.list.GetOneIndex(nAt, &index, &frame, nullptr);
    });
}

template <bool bRandom>
void OneOfVector(benchmark::State& state, RECORDING& recording)
{
    OneByOne(state, bRandom, [&](int64_t nAt, KX_INDEX_INFO& index, FrameInfo& frame) {
        index = recording.records[static_cast<size_t>(nAt)].indexInfo;
        frame = recording.records[static_cast<size_t>(nAt)].frameInfo;
    });
}

void AllIndex(benchmark::State& state, RECORDING& recording)
{
    std::vector<KX_INDEX_INFO> indexes(sc_frames);
    std::vector<FrameInfo> frames(sc_frames);
    int32_t nCount = 0;
    for (auto _ : state)
        recording.list.GetAllIndex(sc_all, indexes.data(), frames.data(), sc_frames, &nCount);
    ReportTime(state, sc_frames);
}

void AllOfVector(benchmark::State& state, RECORDING& recording)
{
    std::vector<KX_INDEX_INFO> indexes(sc_frames);
    std::vector<FrameInfo> frames(sc_frames);
    for (auto _ : state) {
        for (size_t n = 0; n < sc_frames; ++n) {
            frames[n] = recording.records[n].frameInfo;
            indexes[n] = recording.records[n].indexInfo;
        }
        benchmark::ClobberMemory();
    }
    ReportTime(state, sc_frames);
}

void Register(RECORDING& recording)
{
    const struct
    {
        const char* pName;
        void (*pfnRun)(benchmark::State&, RECORDING&);
    } rows[] = {
        {"InputFrame/index", &InputIndex},
        {"InputFrame/baseline_vector", &InputVector},
        {"GetOneIndex_random/index", &OneIndex<true>},
        {"GetOneIndex_random/baseline_vector", &OneOfVector<true>},
        {"GetOneIndex_sequential/index", &OneIndex<false>},
        {"GetOneIndex_sequential/baseline_vector", &OneOfVector<false>},
        {"GetAllIndex/index", &AllIndex},
        {"GetAllIndex/baseline_vector", &AllOfVector},
    };
    for (const auto& row : rows) {
        const std::string name = std::string(recording.pName) + "/" + row.pName;
        const auto pfnRun = row.pfnRun;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [pfnRun, &recording](benchmark::State& state) { pfnRun(state, recording); });
    }
}

} // namespace

} // namespace Marvane::FrameSift

int main(int argc, char** argv)
{
    using namespace Marvane::FrameSift;
    benchmark::Initialize(&argc, argv);
    RECORDING recordings[] = {
        {"Clear", false, false, {}, {}}, {"ClearSeekable", false, true, {}, {}}, {"RandomIV", true, false, {}, {}}};
    for (RECORDING& recording : recordings) {
        CRecorder recorder(recording.bCiphered);
        recording.list.SetBaseRead(recording.bBaseRead);
        for (int64_t n = 0; n < sc_frames; ++n)
            recording.records.push_back(recorder.Next(n));
        InputAll(recording.list, recording.records);
        if (!Agree(recording)) {
            std::fprintf(stderr, "%s: not the records that went in\n", recording.pName);
            return 1;
        }
        Register(recording);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
