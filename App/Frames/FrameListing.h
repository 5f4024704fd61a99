// Reads a stream to its end and lists its frames.
#ifndef FRAMESIFT_APP_FRAMES_FRAMELISTING_H
#define FRAMESIFT_APP_FRAMES_FRAMELISTING_H

#include <string>
#include <vector>

#include "Frames/FrameFilter.h"

namespace Marvane::FrameSift {

enum class LISTING_FORM : uint8_t
{
    Text,
    Json,
    Csv
};

struct LISTING_OPTIONS
{
    std::string path; // "-": standard input
    int32_t nChunk = 1024 * 1024;
    LISTING_FORM eForm = LISTING_FORM::Text;
    int32_t nType = 0; // KX_STREAM_TYPE_*; 0: to be found out
    FRAME_FILTER filter;
    std::vector<uint8_t> key;     // AES; empty: enciphered frames stay so
    uint64_t nLimit = UINT64_MAX; // lines
};

// Lists on standard output, and answers the summary. Throws CAppError. Holds one chunk, whatever the input's size.
std::string ListFrames(const LISTING_OPTIONS& options);

} // namespace Marvane::FrameSift

#endif
