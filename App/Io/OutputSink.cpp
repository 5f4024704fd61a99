#include "Io/OutputSink.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Io/AppError.h"
#include "Io/EscapeBytes.h"
#include "Io/Interrupt.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_bufferSize = size_t{256} * 1024;
constexpr mode_t sc_newFileMode = 0666; // the umask takes from it
constexpr int sc_patienceMs = 50;

bool IsPipe(const std::string& path)
{
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && S_ISFIFO(facts.st_mode);
}

// A pipe is waited for until somebody reads it, but not in open(), where Ctrl-C could not end the wait.
int OpenOutput(const std::string& path)
{
    const CInterruptWatch watch;
    for (;;) {
        const int nFile = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, sc_newFileMode);
        if (nFile >= 0) {
            fcntl(nFile, F_SETFL, fcntl(nFile, F_GETFL) & ~O_NONBLOCK);
            return nFile;
        }
        if (errno != ENXIO || !IsPipe(path))
            return nFile;
        watch.ThrowIfAsked();
        poll(nullptr, 0, sc_patienceMs);
    }
}

} // namespace

COutputSink::COutputSink(const std::string& path) : m_name(path == "-" ? "standard output" : EscapeBytes(path))
{
    m_nFile = path == "-" ? STDOUT_FILENO : OpenOutput(path);
    if (m_nFile < 0)
        throw CAppError(EXIT_CODE::Io, "cannot create " + m_name + ": " + std::strerror(errno));
}

COutputSink::~COutputSink()
{
    if (m_nFile > STDERR_FILENO)
        close(m_nFile);
}

void COutputSink::Write(std::span<const uint8_t> bytes)
{
    m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
    if (m_buffer.size() >= sc_bufferSize)
        Flush();
}

void COutputSink::Write(std::string_view text)
{
    Write(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

void COutputSink::Flush()
{
    size_t nDone = 0;
    while (nDone < m_buffer.size()) {
        const ssize_t nWritten = write(m_nFile, m_buffer.data() + nDone, m_buffer.size() - nDone);
        if (nWritten >= 0) {
            nDone += static_cast<size_t>(nWritten);
            m_nWritten += static_cast<uint64_t>(nWritten);
        } else if (errno == EPIPE) {
            throw CClosedPipe("the reader of " + m_name + " has closed it");
        } else if (errno == EAGAIN) { // somebody who shares the descriptor has made it non-blocking
            pollfd waiting = {m_nFile, POLLOUT, 0};
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            throw CAppError(EXIT_CODE::Io, "cannot write " + m_name + ": " + std::strerror(errno));
        }
    }
    m_buffer.clear();
}

void COutputSink::Close()
{
    Flush();
    const int nFile = m_nFile;
    m_nFile = -1;
    // A full disk on a network file system shows only here.
    if (nFile >= 0 && close(nFile) != 0 && errno != EINTR)
        throw CAppError(EXIT_CODE::Io, "cannot write " + m_name + ": " + std::strerror(errno));
}

bool COutputSink::IsTerminal() const
{
    return isatty(m_nFile) == 1;
}

} // namespace Marvane::FrameSift
