// Writes the index of a recording.
#ifndef FRAMESIFT_APP_INDEX_INDEXLISTING_H
#define FRAMESIFT_APP_INDEX_INDEXLISTING_H

#include <cstdint>
#include <string>
#include <vector>

#include "Frames/FrameFilter.h"

namespace Marvane::FrameSift {

struct INDEX_OPTIONS
{
    std::string path;
    std::string output = "-"; // "-": standard output
    bool bJson = false;       // else CSV
    int32_t nType = 0;        // KX_STREAM_TYPE_*; 0: to be found out
    FRAME_FILTER filter;
    std::vector<uint8_t> key; // AES; empty: enciphered frames stay so
};

// Lines go out while the pass runs; those of a pass that fails or is interrupted stay written. Throws CAppError.
void ListIndex(const INDEX_OPTIONS& options);

} // namespace Marvane::FrameSift

#endif
