// A file of bytes that stay where they are, read at any place.
#ifndef FRAMESIFT_APP_RECORDINGS_REGULARFILE_H
#define FRAMESIFT_APP_RECORDINGS_REGULARFILE_H

#include <cstdint>
#include <span>
#include <string>

namespace Marvane::FrameSift {

class CRegularFile
{
public:
    // Throws CAppError for what cannot be opened and for pipes, devices and directories, without opening those.
    explicit CRegularFile(const std::string& path);
    ~CRegularFile();
    CRegularFile(const CRegularFile&) = delete;
    CRegularFile& operator=(const CRegularFile&) = delete;

    // Fills the buffer unless the file ends in front of its end; answers the bytes read. Throws CAppError if the read fails.
    size_t ReadAt(uint64_t nOffset, std::span<uint8_t> buffer) const;
    uint64_t Size() const; // of now
    bool IsSameFile(const std::string& path) const;
    const std::string& Name() const { return m_name; } // escaped, for messages

private:
    std::string m_name;
    int m_nFile = -1;
};

} // namespace Marvane::FrameSift

#endif
