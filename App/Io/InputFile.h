// A file, a pipe or standard input, read in chunks.
#ifndef FRAMESIFT_APP_IO_INPUTFILE_H
#define FRAMESIFT_APP_IO_INPUTFILE_H

#include <cstddef>
#include <cstdint>
#include <exception>
#include <span>
#include <string>

namespace Marvane::FrameSift {

class CInputFile
{
public:
    // "-" is standard input. Throws CAppError if the file cannot be opened or is a directory.
    explicit CInputFile(const std::string& path);
    ~CInputFile();
    CInputFile(const CInputFile&) = delete;
    CInputFile& operator=(const CInputFile&) = delete;

    // Answers what is there, as soon as something is there: a slow pipe gives short reads. 0 at the end.
    size_t Read(std::span<uint8_t> buffer);
    // Waits until the buffer holds nLeast bytes, or less at the end and in front of what cannot be read.
    size_t ReadAtLeast(std::span<uint8_t> buffer, size_t nLeast);
    // 0 unless this is a regular file.
    uint64_t Size() const { return m_nSize; }
    const std::string& Name() const { return m_name; } // escaped, for messages
    bool IsSameFile(const std::string& path) const;

private:
    int m_nFile = -1;
    uint64_t m_nSize = 0;
    std::string m_name;
    // Met by ReadAtLeast behind bytes that it has answered; told by the next read.
    bool m_bEnd = false;
    std::exception_ptr m_failure;
};

} // namespace Marvane::FrameSift

#endif
