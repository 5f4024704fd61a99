#include "Tools/KXSystem.h"

#include <dlfcn.h>

#include <chrono>
#include <ctime>
#include <filesystem>

#include "Support/TempDirectory.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {
namespace {

// The own directory, in buffers that just hold it and in shorter ones: a part of a path would be another directory.
TEST(KXSystem, ModulePath)
{
    char path[1024];
    CKXSystem::GetModulePath(nullptr, path, sizeof path);
    const std::string directory = path;
    ASSERT_TRUE(directory.ends_with('/') && directory.size() >= 3);
    EXPECT_TRUE(std::filesystem::equivalent(directory, std::filesystem::read_symlink("/proc/self/exe").parent_path()));
    const auto nSize = static_cast<int32_t>(directory.size());
    for (const int32_t size : {nSize + 1, nSize, 3, 1, 0, -1}) {
        std::memset(path, 'x', sizeof path);
        CKXSystem::GetModulePath(nullptr, path, size);
        const std::string expected = size > nSize ? directory : size >= 3 ? "./" : size == 1 ? "" : "x";
        EXPECT_EQ(std::string(path, strnlen(path, size < 1 ? 1 : sizeof path)), expected) << size;
        EXPECT_EQ(path[size < 0 ? 0 : size], 'x') << size;
    }
    CKXSystem::GetModulePath(nullptr, nullptr, 10);
}

// With the one library that is always there, under a name that ends as it must.
TEST(KXSystem, LoadsFromAnyAndFromItsOwnDirectory)
{
    constexpr const char* pSymbol = "gnu_get_libc_version";
    void* pAddress = dlsym(RTLD_DEFAULT, pSymbol);
    Dl_info info = {};
    ASSERT_NE(dladdr(pAddress, &info), 0);
    const TempDirectory directory;
    const std::filesystem::path name = directory.Path() + "/c.so";
    std::filesystem::create_symlink(info.dli_fname, name);
    char own[1024];
    CKXSystem::GetModulePath(nullptr, own, sizeof own);
    std::string nameFromOwn = (std::filesystem::relative(directory.Path(), own) / "c.so").string();

    for (void* hModule : {CKXSystem::SFLoadLibrary(name.c_str()), CKXSystem::Load(nameFromOwn.c_str())}) {
        ASSERT_NE(hModule, nullptr);
        EXPECT_EQ(CKXSystem::GetProcAddress(hModule, pSymbol), pAddress);
        EXPECT_TRUE(CKXSystem::FreeLibrary(hModule));
    }
    while (nameFromOwn.size() <= 1024)
        nameFromOwn.insert(nameFromOwn.rfind('/'), 1, '/'); // the same file by a name that is too long
    EXPECT_EQ(CKXSystem::Load(nameFromOwn.c_str()), nullptr);
    for (const char* pName : {"libc.so.6", "", "so", "/nowhere.so", static_cast<const char*>(nullptr)})
        EXPECT_EQ(CKXSystem::SFLoadLibrary(pName), nullptr);
    EXPECT_TRUE(CKXSystem::Load(nullptr) == nullptr && CKXSystem::GetProcAddress(nullptr, nullptr) == nullptr);
    EXPECT_FALSE(CKXSystem::FreeLibrary(nullptr));
}

TEST(KXSystem, ClockShowsLocalTime)
{
    const time_t nBefore = time(nullptr);
    const KXSystemTime now = CKXSystem::getCurrentTime();
    tm local = {};
    local.tm_year = now.year - 1900;
    local.tm_mon = now.month - 1;
    std::tie(local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec) =
        std::tuple(now.day, now.hour, now.minute, now.second);
    local.tm_isdst = -1;
    const time_t nNow = mktime(&local);
    EXPECT_TRUE(nBefore <= nNow && nNow <= time(nullptr));
    EXPECT_EQ(local.tm_wday, now.wday);
    EXPECT_TRUE(now.millisecond >= 0 && now.millisecond < 1000);
}

TEST(KXSystem, SleepsAsLongAsTold)
{
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    CKXSystem::KXSleep(-1);
    CKXSystem::KXSleep(0);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(10)); // not -1 as a huge number
    const auto second = Clock::now();
    CKXSystem::KXSleep(20);
    EXPECT_GE(Clock::now() - second, std::chrono::milliseconds(20));
}

} // namespace
} // namespace Marvane::FrameSift
