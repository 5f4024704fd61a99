// A stream read chunk by chunk to its end, as frames.
#ifndef FRAMESIFT_APP_FRAMES_FRAMEREADING_H
#define FRAMESIFT_APP_FRAMES_FRAMEREADING_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Frames/FrameSource.h"
#include "Frames/ProgressBar.h"
#include "Frames/WhyNoFrames.h"
#include "Io/InputFile.h"

namespace Marvane::FrameSift {

// Holds one chunk, whatever the input's size, and shows on standard error how far it is.
class CFrameReading
{
public:
    // path: "-" is standard input. key: AES; empty: enciphered frames stay so. nType: a KX_STREAM_TYPE; 0: to be found
    // out. Throws CAppError.
    CFrameReading(const std::string& path, int32_t nChunk, std::span<const uint8_t> key, bool bListingOnTerminal,
                  int32_t nType = KX_STREAM_TYPE_UNKNOWN);

    // Reads on; the frames of the chunk before end, and behind the last chunk come those that nothing follows. False at
    // the end of the input. Throws CAppError for a stream that
    // cannot be read or parsed.
    bool ReadChunk();
    // False if all frames of the chunk are taken.
    bool Next(LISTED_FRAME& listed);
    void ShowProgress() { m_progress.Update(m_nBytes); }
    // Throws CAppError if what was read shows no format, or has no frame of one that takes it.
    void RequireFormat();

    int32_t StreamType() { return m_source.StreamType(); }
    uint64_t Bytes() const { return m_nBytes; } // read so far
    uint64_t UnfinishedBytes() { return m_source.UnfinishedBytes(); }
    const CInputFile& Input() const { return m_input; }

private:
    size_t Read();
    void JudgeResult(int nResult);

    CInputFile m_input;
    CProgressBar m_progress;
    std::vector<uint8_t> m_chunk;
    CFrameSource m_source;
    CInputStart m_start;
    bool m_bFixed; // the type
    bool m_bAnyFrame = false;
    uint64_t m_nBytes = 0;
    bool m_bEnd = false; // of the frames too
};

} // namespace Marvane::FrameSift

#endif
