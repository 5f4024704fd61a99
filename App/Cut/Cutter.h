// Copies a part of a recording, frame by frame.
#ifndef FRAMESIFT_APP_CUT_CUTTER_H
#define FRAMESIFT_APP_CUT_CUTTER_H

#include <cstdint>
#include <string>

#include "Recordings/TimeSearch.h"

namespace Marvane::FrameSift {

struct CUT_OPTIONS
{
    std::string path;
    int32_t nType = 0; // KX_STREAM_TYPE_*; 0: to be found out
    TIME_RANGE times;
    std::string outputPath; // "-": standard output
};

struct CUT_RESULT
{
    std::string inputName; // escaped, for messages
    std::string outputName;
    std::string note; // for the user; may be empty
    uint64_t nVideo = 0;
    uint64_t nKeys = 0; // among them
    uint64_t nAudio = 0;
    uint64_t nOther = 0;
    uint64_t nBytes = 0;        // written
    uint64_t nLeftOutBytes = 0; // of the part, in no frame
};

// Throws CAppError; the text says how much of the output there is.
CUT_RESULT CutRecording(const CUT_OPTIONS& options);

} // namespace Marvane::FrameSift

#endif
