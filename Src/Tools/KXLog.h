// The library's log: silent until a client asks for it.
#ifndef FRAMESIFT_SRC_TOOLS_KXLOG_H
#define FRAMESIFT_SRC_TOOLS_KXLOG_H

#include <atomic>
#include <cstdio>
#include <string>

#include "Tools/AutoLock.h"
#include "framesift/log_level.h"

// One line of the log. pFile is the source path below the project root, as "Src/FrameSift"; the message brings its own
// line end. Costs one comparison if the level is off.
#define KX_WRITE_LOG(level, pFile, ...)                                                                                \
    ::Marvane::FrameSift::CKXLog::WriteLog(level, "SIFTKIT", pFile, __func__, __LINE__, "55751", __VA_ARGS__)

namespace Marvane::FrameSift {

// Three states: silent, file, standard output. Once standard output is chosen it wins for the rest of the process, and
// a file once opened is never exchanged or closed; only the level can still change.
class CKXLog
{
public:
    // Any thread, any time. Failures are not told: a recorder must not stumble over its log. A line of more than 8190
    // characters is not written to a file at all. The revision is printed nowhere.
    static void WriteLog(int level, const char* module, const char* file, const char* function, int line,
                         const char* revision, const char* format, ...) __attribute__((format(printf, 7, 8)));

    // The word of a KX_LOG_LEVEL; empty for any other number.
    static std::string TranslateLoglevelToString(int level);

    // pLogPath: a directory, a whole file name if it contains "FlowMorph.log", or empty for standard output. With
    // hModule the log goes to the library's own directory and pLogPath only has to be there. Answers 1 if pLogPath is
    // null, else 0, also if the file cannot be opened: the level then stays as it was.
    static int CreateLog(const char* pLogPath, int nLogPathLength, void* hModule, int logLevel);

    // For a loader that wants to tell; nothing reads it.
    static void SetSharedLibrary(bool bSharedLibrary);

private:
    // Threads read these while CreateLog writes them, with no lock in between.
    static inline std::atomic<bool> m_bSharedLibrary = false;
    static inline std::atomic<bool> m_bUsePrintf = false;
    static inline std::atomic<int> m_logLevel = KX_LOG_LevelFatal;
    static inline CKXMutex m_csAccess; // CreateLog
    static inline std::atomic<std::FILE*> m_fFile = nullptr;
    static inline std::string m_logpath; // not used
};

} // namespace Marvane::FrameSift

#endif
