// Checks one recording, in a single pass.
#ifndef FRAMESIFT_APP_CHECK_FILECHECK_H
#define FRAMESIFT_APP_CHECK_FILECHECK_H

#include <vector>

#include "Check/FrameOrder.h"

namespace Marvane::FrameSift {

struct CHECK_OPTIONS
{
    std::vector<uint8_t> key; // AES; may be empty
    CLOCK_LIMITS clock;
    uint64_t nMaxFindings = 1000;        // of each kind
    size_t nChunk = size_t{1024} * 1024; // bytes read at a time
};

// path: "-" is standard input. Whatever keeps the file from being read or recognised stands in the report. Holds one chunk
// and one unfinished frame, whatever the file's size.
CHECK_REPORT CheckFile(const std::string& path, const CHECK_OPTIONS& options);

} // namespace Marvane::FrameSift

#endif
