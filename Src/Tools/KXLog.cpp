#include "Tools/KXLog.h"

#include <cstdarg>
#include <cstddef>
#include <new>

#include "Tools/KXSystem.h"

namespace Marvane::FrameSift {

namespace {

constexpr const char* sc_levelWords[] = {"", "fatal", "error", "warn", "info", "trace", "debug", "hidden"};
static_assert(sizeof(sc_levelWords) / sizeof(sc_levelWords[0]) == KX_LOG_LevelHidden + 1);

constexpr const char* LevelWord(int level)
{
    return level >= KX_LOG_LevelFatal && level <= KX_LOG_LevelHidden ? sc_levelWords[level] : "";
}

// A path that contains this is a whole file name; any other is a directory.
constexpr const char* sc_wholeFileName = "FlowMorph.log";
constexpr const char* sc_logName = "//SiftKit.log";

constexpr size_t sc_lineSize = 8192;
constexpr size_t sc_lineLimit = sc_lineSize - 1; // with the zero behind it; so a line has at most 8190 characters

// What stands before the message: time and level, module, file, line, thread, function.
constexpr char sc_lineHead[] = "%s %s %s:%d tid:%d %s ";

// The first words of a line.
struct LogTime
{
    explicit LogTime(int level)
    {
        const KXSystemTime now = CKXSystem::getCurrentTime();
        // The month is one too high, January is 02 and December 13: that is the form that the readers of these logs
        // know.
        std::snprintf(m_text, sizeof m_text, "%04d-%02d-%02d %02d:%02d:%02d.%03d %s", now.year, now.month + 1, now.day,
                      now.hour, now.minute, now.second, now.millisecond, LevelWord(level));
    }

    char m_text[128]; // holds seven numbers of any size
};

// A line in the making. A piece that does not fit spoils it as a whole.
class LogLine
{
public:
    __attribute__((format(printf, 2, 3))) void Append(const char* format, ...)
    {
        va_list args;
        va_start(args, format);
        AppendList(format, args);
        va_end(args);
    }

    __attribute__((format(printf, 2, 0))) void AppendList(const char* format, va_list args)
    {
        if (m_bDropped)
            return;
        const int nWritten = std::vsnprintf(m_text + m_nLength, sc_lineLimit - m_nLength, format, args);
        m_bDropped = nWritten < 0 || static_cast<size_t>(nWritten) >= sc_lineLimit - m_nLength;
        if (!m_bDropped)
            m_nLength += static_cast<size_t>(nWritten);
    }

    // In one fwrite, so that lines of several threads do not mix.
    void WriteTo(std::FILE* pFile) const
    {
        if (m_bDropped)
            return;
        std::fwrite(m_text, 1, m_nLength, pFile);
        std::fflush(pFile);
    }

private:
    char m_text[sc_lineSize] = {};
    size_t m_nLength = 0;
    bool m_bDropped = false;
};

std::FILE* OpenLogFile(const char* pLogPath)
{
    try {
        std::string path = pLogPath;
        if (path.find(sc_wholeFileName) == std::string::npos)
            path += sc_logName;
        return std::fopen(path.c_str(), "ab");
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

void CKXLog::WriteLog(int level, const char* module, const char* file, const char* function, int line,
                      [[maybe_unused]] const char* revision, const char* format, ...)
{
    if (m_logLevel.load(std::memory_order_relaxed) < level)
        return;
    const bool bUsePrintf = m_bUsePrintf.load(std::memory_order_relaxed);
    std::FILE* pFile = m_fFile.load(std::memory_order_acquire);
    if (!bUsePrintf && pFile == nullptr)
        return;

    const LogTime time(level);
    const int nThread = CKXSystem::getCurrentThreadID();
    va_list args;
    va_start(args, format);
    if (bUsePrintf) {
        // Held over both pieces, else the lines of two threads mix.
        flockfile(stdout);
        std::printf(sc_lineHead, time.m_text, module, file, line, nThread, function);
        std::vprintf(format, args);
        funlockfile(stdout);
    } else {
        LogLine text;
        text.Append(sc_lineHead, time.m_text, module, file, line, nThread, function);
        text.AppendList(format, args);
        text.WriteTo(pFile);
    }
    va_end(args);
}

std::string CKXLog::TranslateLoglevelToString(int level)
{
    return LevelWord(level); // short enough for the string's own buffer: nothing is allocated
}

int CKXLog::CreateLog(const char* pLogPath, [[maybe_unused]] int nLogPathLength, void* hModule, int logLevel)
{
    if (pLogPath == nullptr)
        return 1;
    CKXAutoMutexLock lock(m_csAccess);

    char modulePath[256] = {};
    if (hModule != nullptr) {
        CKXSystem::GetModulePath(hModule, modulePath, sizeof modulePath);
        pLogPath = modulePath;
    }
    if (*pLogPath == '\0') {
        m_bUsePrintf.store(true, std::memory_order_relaxed);
    } else if (m_fFile.load(std::memory_order_relaxed) == nullptr) {
        std::FILE* pFile = OpenLogFile(pLogPath);
        if (pFile == nullptr)
            return 0;
        m_fFile.store(pFile, std::memory_order_release); // the threads that log must see the file's insides too
    }
    m_logLevel.store(logLevel, std::memory_order_relaxed);
    return 0;
}

void CKXLog::SetSharedLibrary(bool bSharedLibrary)
{
    m_bSharedLibrary.store(bSharedLibrary, std::memory_order_relaxed);
}

} // namespace Marvane::FrameSift
