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
    FrameInfo frame = {};         // as a client of a stream handle gets it; packed: copy its members by value
    FrameInfo parsed = {};        // as the parser made it, with what a stream handle blanks: cipher, interlace, levels
    int32_t nAnnouncedWidth = 0;  // what the frame's own heads say of the picture, before its payload is asked; 0: they
    int32_t nAnnouncedHeight = 0; // say nothing
    int32_t nStreamType = 0;      // of the stream: in its frames a stream handle blanks it
    int32_t nInnerType = 0;       // which of the older formats it is, as far as was known when the frame was found
    bool bNumbered = true;        // else the number is what a reader has counted on its way, and says nothing
    int64_t nFrameOffset = 0;   // in the stream, of the whole frame; of a picture of HB, of the block that completed it
    int64_t nPayloadOffset = 0; // in the stream; that of the frame if it has no payload
};

// Whether the frame is put together from pieces, so that it stands nowhere in the stream, and its lengths say nothing of it.
inline bool IsPutTogether(const LISTED_FRAME& listed)
{
    return listed.nInnerType == KX_STREAM_TYPE_HB && listed.parsed.frameType == KX_FRAME_TYPE_VIDEO;
}

// The analyzer behind a stream handle. At each frame it notes what will be gone when the frame is fetched: the window's
// key positions, the parser's own record and what the heads announced.
class CFrameSource : private CStreamAnalyzer
{
public:
    // nType: a KX_STREAM_TYPE; 0: to be found out.
    explicit CFrameSource(int32_t nType = KX_STREAM_TYPE_UNKNOWN);

    // The AES key, 16, 24 or 32 bytes, from the next Feed on. A KX_RESULT.
    int SetKey(std::span<const uint8_t> key);
    // A KX_RESULT; KX_ERROR_UNGET_STREAM_TYPE asks for more.
    int Feed(std::span<uint8_t> chunk);
    // At the end of the stream: what waits for nothing but a next frame comes out. A KX_RESULT, as of Feed.
    int Flush();
    // False if all frames of the last chunk are taken.
    bool Next(LISTED_FRAME& listed);
    int StreamType() { return GetStreamType(); }
    int InnerType() const { return GetInnerType(); }
    // Bytes at the end of what was fed that wait for the rest of a frame. In the older formats the four that only end the
    // last frame are among them.
    uint64_t UnfinishedBytes();

private:
    int OnFrame(FrameInfo* frame, ExtZOAVIFrameInfo* ext, void* userData) override;

    std::deque<LISTED_FRAME> m_notes; // one for each frame in the analyzer's queue; frame itself is filled at Next
    int64_t m_nLastEnd = 0;
    int m_nAppended = 0;         // bytes in the window that the stream does not have
    bool m_bOutOfMemory = false; // the scan asks no callback how it went
};

} // namespace Marvane::FrameSift

#endif
