// The frames of a part of a recording, read one by one.
#ifndef FRAMESIFT_APP_RECORDINGS_RANGEREAD_H
#define FRAMESIFT_APP_RECORDINGS_RANGEREAD_H

#include <functional>
#include <span>
#include <string>

#include "Recordings/Recording.h"
#include "Recordings/TimeSearch.h"

namespace Marvane::FrameSift {

// False for a record of lost frames, of a tail or a magic alone, and of a block that is stepped over.
bool IsWholeFrame(const FrameInfo& frame);

// The payload as far as the frame holds it: what a frame claims may be less than nothing, or reach out of it.
std::span<const uint8_t> PayloadOf(const FrameInfo& frame);

// Goes over the whole recording and finds the part. Throws CAppError for a time that is not there.
FOUND_RANGE FindRange(CRecording& recording, const TIME_RANGE& times);

// Whether nothing stands at nOffset and behind but the four bytes that end the last frame in the older formats.
bool IsEndMark(const CRecording& recording, uint64_t nOffset);

// Calls take for each record of the part, damaged ones too; its pointers end with the call. Answers how many bytes lie
// behind the last record, an end mark apart, if the part ends with the recording. Throws CAppError with EXIT_CODE::Interrupted at Ctrl-C.
uint64_t ReadRange(CRecording& recording, const FOUND_RANGE& range,
                   const std::function<void(const LISTED_FRAME&)>& take);

// Throws CAppError with EXIT_CODE::Usage, and EXIT_CODE::Io for an input that is no regular file.
void RefuseToOverwriteInput(const std::string& inputPath, const std::string& outputPath);

} // namespace Marvane::FrameSift

#endif
