// Writes the payloads of a recording's frames, a file for each kind.
#ifndef FRAMESIFT_APP_EXTRACT_EXTRACTION_H
#define FRAMESIFT_APP_EXTRACT_EXTRACTION_H

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Io/OutputSink.h"
#include "Recordings/Recording.h"
#include "Recordings/TimeSearch.h"

namespace Marvane::FrameSift {

// Of one kind of frames.
struct PAYLOAD_OUTPUT
{
    int32_t nFrameType;
    const char* pName;
    std::string path;                // "-": standard output; empty: not asked for
    std::optional<COutputSink> sink; // from the first frame on: a recording without such frames overwrites nothing
    uint64_t nFrames = 0;
    uint64_t nBytes = 0;
};

struct EXTRACT_OPTIONS
{
    std::string path;
    std::vector<uint8_t> key; // AES; may be empty
    int32_t nType = 0;        // KX_STREAM_TYPE_*; 0: to be found out
    TIME_RANGE times;
    std::string videoPath, audioPath, dataPath; // "-": standard output; empty: not asked for
};

class CExtraction
{
public:
    explicit CExtraction(const EXTRACT_OPTIONS& options);

    // Throws CAppError; the text says how much of the outputs there is.
    void Run();

    // Lines for the user: what was left out, and why.
    std::vector<std::string> Notes() const;
    // "a.h264: 50 video frames, 14400 bytes; a.aac: 20 audio frames, 3000 bytes"
    std::string Summary() const;
    // A kind that was asked for and has not one frame; null if there is none.
    const char* MissingKind() const;

private:
    void RunIndexed();
    void RunAsStream();
    void ReadStream(const std::function<void(const LISTED_FRAME&)>& take);
    void RefuseChangeOfCodec(const FOUND_RANGE& range) const;
    void WriteAll(const std::function<void()>& write);
    void Take(const FrameInfo& frame, const FrameInfo& parsed);
    PAYLOAD_OUTPUT* OutputFor(int32_t nFrameType);
    std::string OutputsSoFar() const;

    const EXTRACT_OPTIONS& m_options;
    std::string m_name; // escaped
    std::array<PAYLOAD_OUTPUT, 3> m_outputs;
    std::map<int32_t, uint64_t> m_damaged;    // by error code
    std::map<int32_t, uint64_t> m_enciphered; // by cipher
    std::string m_note;
    uint64_t m_nUnread = 0; // bytes behind the last frame of the recording
};

} // namespace Marvane::FrameSift

#endif
