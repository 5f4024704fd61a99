#include "Io/InputFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Io/AppError.h"
#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

CInputFile::CInputFile(const std::string& path) : m_name(path == "-" ? "standard input" : EscapeBytes(path))
{
    m_nFile = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (m_nFile < 0)
        throw CAppError(EXIT_CODE::Io, "cannot open " + m_name + ": " + std::strerror(errno));
    struct stat status = {};
    if (fstat(m_nFile, &status) != 0)
        return; // a closed standard input; the first read says so
    if (S_ISREG(status.st_mode))
        m_nSize = static_cast<uint64_t>(status.st_size);
    if (S_ISDIR(status.st_mode)) {
        close(m_nFile);
        throw CAppError(EXIT_CODE::Io, "cannot read " + m_name + ": it is a directory");
    }
}

CInputFile::~CInputFile()
{
    if (m_nFile > STDIN_FILENO)
        close(m_nFile);
}

size_t CInputFile::Read(std::span<uint8_t> buffer)
{
    if (m_failure)
        std::rethrow_exception(m_failure);
    if (m_bEnd) // a terminal would ask for another one
        return 0;
    for (;;) {
        const ssize_t nRead = read(m_nFile, buffer.data(), buffer.size());
        if (nRead >= 0)
            return static_cast<size_t>(nRead);
        if (errno == EAGAIN) { // somebody who shares the descriptor has made it non-blocking
            pollfd waiting = {m_nFile, POLLIN, 0};
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            throw CAppError(EXIT_CODE::Io, "cannot read " + m_name + ": " + std::strerror(errno));
        }
    }
}

size_t CInputFile::ReadAtLeast(std::span<uint8_t> buffer, size_t nLeast)
{
    if (m_failure)
        std::rethrow_exception(m_failure);
    size_t nFilled = 0;
    while (nFilled < nLeast && !m_bEnd && !m_failure) {
        try {
            const size_t nRead = Read(buffer.subspan(nFilled));
            nFilled += nRead;
            m_bEnd = nRead == 0;
        } catch (const CAppError&) {
            if (nFilled == 0)
                throw;
            m_failure = std::current_exception();
        }
    }
    return nFilled;
}

bool CInputFile::IsSameFile(const std::string& path) const
{
    struct stat mine = {};
    struct stat other = {};
    return fstat(m_nFile, &mine) == 0 && stat(path.c_str(), &other) == 0 && S_ISREG(mine.st_mode) &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

} // namespace Marvane::FrameSift
