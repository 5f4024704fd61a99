// The frames of a stream, with the offsets that the public record does not carry.
#ifndef FRAMESIFT_APP_FRAMES_FRAMESOURCE_H
#define FRAMESIFT_APP_FRAMES_FRAMESOURCE_H

#include <cstdint>
#include <deque>
#include <span>

#include "IAnalyzer/FrameInfo.h"
#include "ParserMethod/StreamAnalyzer.h"

namespace Marvane::FrameSift {

// A frame and where it stands. Its pointers end at the next Feed.
struct LISTED_FRAME
{
    FrameInfo frame = {};       // packed: copy its members by value
    int32_t nStreamType = 0;    // of the stream: in its frames a stream handle blanks it
    int64_t nFrameOffset = 0;   // in the stream, of the whole frame
    int64_t nPayloadOffset = 0; // in the stream; that of the frame if it has no payload
};

// The analyzer behind a stream handle, which notes the window's key positions while they stand: at each frame. The
// frames are those that a client of the handle gets, so what a handle keeps back is not seen here either.
class CFrameSource : private CStreamAnalyzer
{
public:
    CFrameSource();

    // A KX_RESULT; KX_ERROR_UNGET_STREAM_TYPE asks for more.
    int Feed(std::span<uint8_t> chunk);
    // False if all frames of the last chunk are taken.
    bool Next(LISTED_FRAME& listed);
    int StreamType() { return GetStreamType(); }
    // Bytes at the end of what was fed that wait for the rest of a frame.
    uint64_t UnfinishedBytes();

private:
    struct FRAME_PLACE
    {
        int64_t nFrameOffset;
        int64_t nPayloadOffset;
    };
    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) override;

    std::deque<FRAME_PLACE> m_places; // one for each frame in the analyzer's queue
    int64_t m_nLastEnd = 0;
    bool m_bOutOfMemory = false; // the scan asks no callback how it went
};

} // namespace Marvane::FrameSift

#endif
