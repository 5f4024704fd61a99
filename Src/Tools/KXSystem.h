// The dynamic loader and the clock.
#ifndef FRAMESIFT_SRC_TOOLS_KXSYSTEM_H
#define FRAMESIFT_SRC_TOOLS_KXSYSTEM_H

#include <atomic>
#include <cstdint>

namespace Marvane::FrameSift {

// Local time.
struct KXSystemTime
{
    int32_t year;  // full
    int32_t month; // 1 to 12
    int32_t day;
    int32_t wday; // days since Sunday
    int32_t hour;
    int32_t minute;
    int32_t second;
    int32_t millisecond;
};

class CKXSystem
{
public:
    // Null for a name that does not end in ".so"; nothing is tried then.
    static void* SFLoadLibrary(const char* pFileName);
    static void* GetProcAddress(void* hModule, const char* pProcName);
    static bool FreeLibrary(void* hModule);

    static bool SetModuleHandle(void* hModule);   // always true
    static bool SetModulePath(const char* pPath); // does nothing; always true

    // Loads a library that lies beside this one. pName: file name, at most 1024 characters.
    static void* Load(const char* pName);

    // The directory of the library that holds this very code, whatever hModule is; it ends in its separator. "./" if it
    // is not known, or does not fit into size bytes with the zero behind it.
    static void GetModulePath(void* hModule, char* pOut, int32_t size);

    static void KXSleep(int ms); // 0 and below yield the processor
    static KXSystemTime getCurrentTime();
    static int getCurrentThreadID(); // cut to 32 bits: good for telling threads apart in a log, no more

private:
    static inline std::atomic<void*> s_hModule = nullptr;
    static inline char s_modulePath[1024] = {}; // not used
};

} // namespace Marvane::FrameSift

#endif
