// Standard error: the one place that writes to it.
#ifndef FRAMESIFT_APP_IO_ERROROUTPUT_H
#define FRAMESIFT_APP_IO_ERROROUTPUT_H

#include <string_view>

namespace Marvane::FrameSift {

// These keep a failure to themselves: there is nobody left to tell, and the exit code must be that of the work.
void WriteError(std::string_view text) noexcept;
// "framesift: TEXT" and the line's end.
void WriteErrorLine(std::string_view text) noexcept;

// Must come before any file is opened: else a file would get the number of a standard error that is closed, and the
// messages with it.
void OccupyErrorOutput() noexcept;

} // namespace Marvane::FrameSift

#endif
