#include "Io/ErrorOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>

namespace Marvane::FrameSift {

void WriteError(std::string_view text) noexcept
{
    while (!text.empty()) {
        const ssize_t nWritten = write(STDERR_FILENO, text.data(), text.size());
        if (nWritten >= 0) {
            text.remove_prefix(static_cast<size_t>(nWritten));
        } else if (errno == EAGAIN) { // somebody who shares the descriptor has made it non-blocking
            pollfd waiting = {STDERR_FILENO, POLLOUT, 0};
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            return;
        }
    }
}

void WriteErrorLine(std::string_view text) noexcept
{
    try { // in one piece, lest the lines of several processes mix
        WriteError("framesift: " + std::string(text) + "\n");
    } catch (const std::bad_alloc&) {
        WriteError(text);
    }
}

void OccupyErrorOutput() noexcept
{
    if (fcntl(STDERR_FILENO, F_GETFD) != -1)
        return;
    const int nFile = open("/dev/null", O_WRONLY);
    if (nFile == -1 || nFile == STDERR_FILENO)
        return;
    dup2(nFile, STDERR_FILENO);
    close(nFile);
}

} // namespace Marvane::FrameSift
