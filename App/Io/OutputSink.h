// A buffered way out, to a file or to standard output, that reports every failure to write.
#ifndef FRAMESIFT_APP_IO_OUTPUTSINK_H
#define FRAMESIFT_APP_IO_OUTPUTSINK_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Marvane::FrameSift {

class COutputSink
{
public:
    // "-" is standard output. Throws CAppError if the file cannot be created.
    explicit COutputSink(const std::string& path);
    ~COutputSink(); // drops what was not flushed: only Close says whether all is written
    COutputSink(const COutputSink&) = delete;
    COutputSink& operator=(const COutputSink&) = delete;

    // These throw CClosedPipe if the reader went away, CAppError for a full disk and the like.
    void Write(std::span<const uint8_t> bytes);
    void Write(std::string_view text);
    void Flush();
    void Close();

    uint64_t WrittenBytes() const { return m_nWritten; } // those that the system took
    bool IsTerminal() const;
    const std::string& Name() const { return m_name; } // escaped, for messages

private:
    int m_nFile = -1;
    uint64_t m_nWritten = 0;
    std::vector<uint8_t> m_buffer;
    std::string m_name;
};

} // namespace Marvane::FrameSift

#endif
