#include "Recordings/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "Io/AppError.h"
#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

namespace {

[[noreturn]] void ThrowFailed(const char* pVerb, const std::string& name)
{
    const int nError = errno;
    throw CAppError(EXIT_CODE::Io, std::string("cannot ") + pVerb + " " + name + ": " + std::strerror(nError));
}

void ExpectRegular(const struct stat& status, const std::string& name)
{
    if (S_ISDIR(status.st_mode))
        throw CAppError(EXIT_CODE::Io, "cannot read " + name + ": it is a directory");
    if (!S_ISREG(status.st_mode))
        throw CAppError(EXIT_CODE::Io, "cannot read " + name +
                                           ": this verb needs the name of a regular file; \"framesift frames\" reads "
                                           "pipes and standard input");
}

} // namespace

CRegularFile::CRegularFile(const std::string& path) : m_name(path == "-" ? "standard input" : EscapeBytes(path))
{
    struct stat status = {};
    if (path == "-") // even if a file is there: the library opens by name
        ExpectRegular(status, m_name);
    // Asked first, as opening has effects on some devices; and again, as the name may have changed hands.
    if (stat(path.c_str(), &status) != 0)
        ThrowFailed("open", m_name);
    ExpectRegular(status, m_name);
    m_nFile = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_nFile < 0)
        ThrowFailed("open", m_name);
    status = {};
    if (fstat(m_nFile, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(m_nFile);
        ExpectRegular(status, m_name);
    }
}

CRegularFile::~CRegularFile()
{
    close(m_nFile);
}

size_t CRegularFile::ReadAt(uint64_t nOffset, std::span<uint8_t> buffer) const
{
    size_t nDone = 0;
    while (nDone < buffer.size()) {
        const auto rest = buffer.subspan(nDone);
        const ssize_t nRead = pread(m_nFile, rest.data(), rest.size(), static_cast<off_t>(nOffset + nDone));
        if (nRead == 0)
            break;
        if (nRead > 0)
            nDone += static_cast<size_t>(nRead);
        else if (errno != EINTR)
            ThrowFailed("read", m_name);
    }
    return nDone;
}

uint64_t CRegularFile::Size() const
{
    struct stat status = {};
    if (fstat(m_nFile, &status) != 0)
        ThrowFailed("read", m_name);
    return static_cast<uint64_t>(status.st_size);
}

bool CRegularFile::IsSameFile(const std::string& path) const
{
    struct stat mine = {};
    struct stat other = {};
    return fstat(m_nFile, &mine) == 0 && stat(path.c_str(), &other) == 0 && mine.st_dev == other.st_dev &&
           mine.st_ino == other.st_ino;
}

} // namespace Marvane::FrameSift
