// Lets each allocation of a stream's life fail in turn. A program of its own: it replaces the global operator new.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

#include "Support/RandomLegacy.h"
#include "Support/RandomStream.h"
#include "Support/Sift.h"
#include "Support/TempDirectory.h"

namespace {

// A pass allocates on a thread of its own.
std::atomic<bool> g_bCounting = false;
std::atomic<int> g_nUntilFailure = -1;

void* Allocate(size_t nSize)
{
    if (g_bCounting && g_nUntilFailure-- == 0)
        return nullptr;
    return std::malloc(std::max<size_t>(nSize, 1));
}

void* AllocateOrThrow(size_t nSize)
{
    void* pBlock = Allocate(nSize);
    if (pBlock == nullptr)
        throw std::bad_alloc();
    return pBlock;
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
    std::free(pBlock);
}

void operator delete[](void* pBlock) noexcept
{
    std::free(pBlock);
}

void operator delete(void* pBlock, size_t) noexcept
{
    std::free(pBlock);
}

void operator delete[](void* pBlock, size_t) noexcept
{
    std::free(pBlock);
}

namespace Marvane::FrameSift {

namespace {

// Only the library's allocations count.
template <class Call>
int Counted(Call&& call)
{
    g_bCounting = true;
    const int nResult = call();
    g_bCounting = false;
    return nResult;
}

struct LIFE
{
    int nGoodFrames = 0;
    bool bFailureSeen = false;
};

LIFE Live(const Bytes& stream)
{
    LIFE life;
    void* handle = nullptr;
    const Bytes key(49, 1);
    Counted([&] { return (handle = KX_CreateFrameSift(0)) != nullptr ? 0 : 1; });
    Counted([&] { return KX_StreamEncryptKey(handle, KX_ENCRYPT_AES, key.data(), 16); });
    Counted([&] { return KX_StreamEncryptKey(handle, KX_ENCRYPT_AES256, key.data(), 49); });
    InChunks(stream, FixedChunks(7000), [&](Bytes& chunk) {
        const int nResult =
            Counted([&] { return KX_ParseData(handle, chunk.data(), static_cast<int32_t>(chunk.size())); });
        life.bFailureSeen = life.bFailureSeen || nResult != KX_SUCCESS;
        KX_FRAME_INFO frame;
        while (Counted([&] { return KX_GetOneFrame(handle, &frame); }) == KX_SUCCESS)
            life.nGoodFrames += frame.errorFlags == KX_ERROR_FLAGS_NOERROR ? 1 : 0;
    });
    KX_Destroy(handle);
    return life;
}

Bytes FiveFrames()
{
    Bytes stream;
    for (uint32_t nSeq = 1; nSeq <= 5; ++nSeq)
        stream = stream + ZoavFrame().Seq(nSeq).ExtHead({0xB1, 3, 42}).Payload(Bytes(nSeq * 9000, 0xAB));
    return stream;
}

struct FILE_LIFE
{
    std::atomic<bool> bEnd = false;
    std::vector<int> results; // of each call, with the last error at the end
    int nIndexed = 0;
    int nRead = 0;
};

int32_t NoteIndex(void*, KX_FRAME_INFO* frame, KX_INDEX_INFO*, int32_t, void* userData)
{
    auto* pLife = static_cast<FILE_LIFE*>(userData);
    pLife->nIndexed += frame != nullptr ? 1 : 0;
    pLife->bEnd = frame == nullptr;
    return 0;
}

// The whole life of a recording, through the public calls.
void LiveFile(const char* path, FILE_LIFE& life)
{
    void* handle = KX_CreateFileHandle(0, path);
    life.results.push_back(handle != nullptr ? KX_SUCCESS : KX_ERROR_SYSTEM_OUT_OF_MEMORY);
    life.results.push_back(handle != nullptr ? KX_FileParser(handle, NoteIndex, nullptr, &life) : 0);
    while (handle != nullptr && life.results.back() == KX_SUCCESS && !life.bEnd)
        std::this_thread::yield();
    for (const int nSeekType : {KX_SEEK_I_FRAME, KX_SEEK_PRECISE_OFFSET}) {
        KX_FileSeekByOffset(handle, nSeekType == KX_SEEK_I_FRAME ? 60000 : 0, nSeekType);
        KX_FRAME_INFO frame;
        KXint64 nOffset = 0;
        life.nRead = 0;
        int nResult = KX_SUCCESS;
        while ((nResult = KX_FileReadOneFrame(handle, &nOffset, &frame)) == KX_SUCCESS)
            ++life.nRead;
        if (handle != nullptr)
            life.results.push_back(nResult);
    }
    const int nLast = KX_GetLastError(handle);
    KX_Destroy(handle);
    life.results.push_back(nLast);
}

// One payload for each parser of metadata that allocates; in the segments two lanes, whose records are apart.
std::vector<std::pair<KX_IVS_PARSE_TYPE, Bytes>> IvsPayloads()
{
    const auto sized = [](Bytes bytes, size_t nSize) {
        bytes.resize(nSize);
        return bytes;
    };
    const Bytes positions = {1, 1, 1, 0, 1, 0, 1, 0, 2, 0, 2, 0, 0, 0}; // a lane of 0x95 without loops
    const Bytes lane95 = Bytes{18, 0, 32, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0x95, 4, 1, 0} + sized(positions, 16);
    const Bytes lane96 = sized({18, 0, 48, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0x96, 4, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0}, 48);
    const Bytes group = Bytes{7, 0, 0, 0, 2, 0, 0, 0} + lane95 + lane96;
    const Bytes extended = sized({0xA1, 0, 68, 0, 1, 60, 0, 0}, 68);
    return {
        {IVS_TRACK, sized({1, 0, 1, 0}, 16)},
        {IVS_TRACK_EX, sized({1, 0, 1, 0}, 16)},
        {IVS_TRACK_EX2, sized({0x41, 0, 120, 0, 1}, 32) + group},
        {IVS_TRACK_EX2, extended},
        {IVS_TRACK_EX3, Bytes(144)},
        {IVS_TRACK_ZOOP, sized({1, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0, 2, 2, 1, 0, 0, 0, 0, 0, 0, 5, 0, 6, 0, 1}, 46)},
        {IVS_TRACK_15, sized({13, 0, 0, 0, 25, 0, 0, 0, 1, 0, 2, 0, 0, 0, 16, 0}, 25)},
    };
}

int CountIvsCalls(KX_IVS_PARSE_TYPE, void* pRecords, int, void* pUserData)
{
    *static_cast<int*>(pUserData) += pRecords != nullptr ? 1 : 0;
    return 0;
}

} // namespace

TEST(AllocFailure, NoneIsMissedInMetadata)
{
    for (auto& [eType, payload] : IvsPayloads()) {
        SCOPED_TRACE(eType);
        int nFailing = -1; // the first round is a sound one
        bool bFailed = false;
        do {
            int nCalls = 0;
            g_nUntilFailure = nFailing;
            const int nResult = Counted([&, pPayload = &payload, eWhich = eType] {
                return KX_ParseIVS(pPayload->data(), static_cast<int>(pPayload->size()), eWhich, CountIvsCalls,
                                   &nCalls);
            });
            bFailed = nFailing >= 0 && g_nUntilFailure < 0;
            // Traffic counts tell of their records alone; without plans or regions they hand out nothing, in silence.
            const bool bSilent = eType == IVS_TRACK_15 && nFailing > 0;
            EXPECT_EQ(nResult, bFailed && !bSilent ? KX_ERROR_SYSTEM_OUT_OF_MEMORY : KX_SUCCESS) << nFailing;
            EXPECT_EQ(nCalls, bFailed ? 0 : 1) << nFailing;
        } while (nFailing++ == -1 || bFailed);
        EXPECT_GT(nFailing, 1); // else nothing was allocated
    }
}

TEST(AllocFailure, NoneLeavesARecordingAsAnException)
{
    const TempDirectory directory;
    const std::string path = directory.Path() + "/recording";
    const Bytes bytes = FiveFrames();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    const std::vector<int> allowed = {KX_SUCCESS,
                                      -1,
                                      KX_ERROR_INVALID_HANDLE,
                                      KX_ERROR_FILE_TYPE_NOSUPPORT,
                                      KX_ERROR_THREAD_CREATE_FAILED,
                                      KX_ERROR_PARAMETER,
                                      KX_ERROR_FILE_OPEN,
                                      KX_ERROR_SYSTEM_OUT_OF_MEMORY,
                                      KX_ERROR_UNGET_STREAM_TYPE,
                                      KX_ERROR_READ_FILE_END};
    int nHurt = 0;
    for (int nFailing = -1; nFailing < 120; ++nFailing) {
        SCOPED_TRACE(nFailing);
        FILE_LIFE life;
        life.results.reserve(16);
        g_nUntilFailure = nFailing;
        g_bCounting = true;
        EXPECT_NO_THROW(LiveFile(path.c_str(), life));
        g_bCounting = false;
        for (const int nResult : life.results)
            EXPECT_NE(std::find(allowed.begin(), allowed.end(), nResult), allowed.end()) << nResult;
        if (nFailing == -1) {
            EXPECT_EQ((std::vector<int>{life.nIndexed, life.nRead}), (std::vector<int>{5, 5}));
        }
        // What was lost is told: by a code, or as the last error of the handle.
        const bool bComplained = std::any_of(life.results.begin(), life.results.end(), [](int nResult) {
            return nResult != KX_SUCCESS && nResult != KX_ERROR_READ_FILE_END;
        });
        EXPECT_TRUE(bComplained || life.nRead == 5) << life.nRead;
        nHurt += bComplained ? 1 : 0;
    }
    EXPECT_GT(nHurt, 5);
}

TEST(AllocFailure, NoneLeavesACallAsAnException)
{
    std::vector<Bytes> streams = {FiveFrames()};
    for (const LEGACY_FORMAT eFormat :
         {LEGACY_FORMAT::New, LEGACY_FORMAT::Zopt, LEGACY_FORMAT::Hb, LEGACY_FORMAT::Audio})
        streams.push_back(Joined(RandomLegacyFrames(eFormat, 1, 30, 4000)));
    for (const Bytes& stream : streams) {
        g_nUntilFailure = -1;
        const int nSound = Live(stream).nGoodFrames;
        EXPECT_GE(nSound, 5);
        int nHurt = 0;
        for (int nFailing = 0; nFailing < 60; ++nFailing) {
            g_nUntilFailure = nFailing;
            LIFE life;
            EXPECT_NO_THROW(life = Live(stream)) << "allocation " << nFailing;
            g_bCounting = false;
            nHurt += life.bFailureSeen || life.nGoodFrames < nSound ? 1 : 0;
        }
        EXPECT_GT(nHurt, 0); // else no failure was reached
    }
}

} // namespace Marvane::FrameSift
