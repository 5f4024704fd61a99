// Lets each allocation of a stream's life fail in turn. A program of its own: it replaces the global operator new.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "Support/Sift.h"

namespace {

bool g_bCounting = false;
int g_nUntilFailure = -1;

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

} // namespace

TEST(AllocFailure, NoneLeavesACallAsAnException)
{
    Bytes stream;
    for (uint32_t nSeq = 1; nSeq <= 5; ++nSeq)
        stream = stream + ZoavFrame().Seq(nSeq).ExtHead({0xB1, 3, 42}).Payload(Bytes(nSeq * 9000, 0xAB));
    g_nUntilFailure = -1;
    EXPECT_EQ(Live(stream).nGoodFrames, 5);
    int nHurt = 0;
    for (int nFailing = 0; nFailing < 60; ++nFailing) {
        g_nUntilFailure = nFailing;
        LIFE life;
        EXPECT_NO_THROW(life = Live(stream)) << "allocation " << nFailing;
        g_bCounting = false;
        nHurt += life.bFailureSeen || life.nGoodFrames < 5 ? 1 : 0;
    }
    EXPECT_GT(nHurt, 0); // else no failure was reached
}

} // namespace Marvane::FrameSift
