#include "Mux/RecordingWriter.h"

#include <fmt/format.h>

#include "Io/AppError.h"

namespace Marvane::FrameSift {

KX_TIME TimeAt(CLOCK_MS nStart, uint64_t nDueMs)
{
    const auto time = ClockToTime(nStart + static_cast<CLOCK_MS>(nDueMs));
    if (!time)
        throw CAppError(EXIT_CODE::Usage, fmt::format("the recording would run past the year {}", gsk_lastYear));
    return *time;
}

} // namespace Marvane::FrameSift
