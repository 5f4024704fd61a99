#include "Tools/KXSystem.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <new>
#include <string>
#include <string_view>

namespace Marvane::FrameSift {

namespace {

// The directory of pFileName with its separator; empty if the name has none.
std::string_view DirectoryOf(const char* pFileName)
{
    const std::string_view name = pFileName != nullptr ? pFileName : "";
    const size_t nLast = name.find_last_of("/\\");
    return nLast == std::string_view::npos ? std::string_view() : name.substr(0, nLast + 1);
}

} // namespace

void* CKXSystem::SFLoadLibrary(const char* pFileName)
{
    if (pFileName == nullptr || !std::string_view(pFileName).ends_with(".so"))
        return nullptr;
    return dlopen(pFileName, RTLD_LAZY);
}

void* CKXSystem::GetProcAddress(void* hModule, const char* pProcName)
{
    return pProcName != nullptr ? dlsym(hModule, pProcName) : nullptr;
}

bool CKXSystem::FreeLibrary(void* hModule)
{
    return hModule != nullptr && dlclose(hModule) == 0;
}

bool CKXSystem::SetModuleHandle(void* hModule)
{
    s_hModule.store(hModule, std::memory_order_relaxed);
    return true;
}

bool CKXSystem::SetModulePath([[maybe_unused]] const char* pPath)
{
    return true;
}

void* CKXSystem::Load(const char* pName)
{
    constexpr size_t nMaxName = 1024;
    if (pName == nullptr || std::strlen(pName) > nMaxName)
        return nullptr;
    char directory[1024];
    GetModulePath(s_hModule.load(std::memory_order_relaxed), directory, sizeof directory);
    try {
        const std::string path = std::string(directory) + pName;
        return SFLoadLibrary(path.c_str());
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void CKXSystem::GetModulePath([[maybe_unused]] void* hModule, char* pOut, int32_t size)
{
    if (pOut == nullptr || size < 1)
        return;
    const auto nSize = static_cast<size_t>(size);
    std::fill_n(pOut, nSize, '\0');

    Dl_info info = {};
    const bool bKnown = dladdr(reinterpret_cast<void*>(&CKXSystem::GetModulePath), &info) != 0;
    std::string_view directory = bKnown ? DirectoryOf(info.dli_fname) : std::string_view();
    // Cut short it would name another directory, and the log would turn up where nobody looks for it.
    if (directory.empty() || directory.size() >= nSize)
        directory = "./";
    std::copy_n(directory.begin(), std::min(directory.size(), nSize - 1), pOut);
}

void CKXSystem::KXSleep(int ms)
{
    constexpr int nStep = 1000 * 1000; // usleep takes 32 bits of microseconds, which ms * 1000 may exceed
    do {
        const int nNow = std::clamp(ms, 0, nStep);
        usleep(static_cast<useconds_t>(nNow) * 1000);
        ms -= nNow;
    } while (ms > 0);
}

KXSystemTime CKXSystem::getCurrentTime()
{
    timeval now = {};
    gettimeofday(&now, nullptr);
    tm local = {};
    localtime_r(&now.tv_sec, &local);
    return {.year = local.tm_year + 1900,
            .month = local.tm_mon + 1,
            .day = local.tm_mday,
            .wday = local.tm_wday,
            .hour = local.tm_hour,
            .minute = local.tm_min,
            .second = local.tm_sec,
            .millisecond = static_cast<int32_t>(now.tv_usec / 1000)};
}

int CKXSystem::getCurrentThreadID()
{
    return static_cast<int>(static_cast<uint32_t>(pthread_self()));
}

} // namespace Marvane::FrameSift
