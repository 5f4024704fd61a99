// What the log lines of the exported calls have in common.
#ifndef FRAMESIFT_SRC_FRAMESIFT_CALLLOG_H
#define FRAMESIFT_SRC_FRAMESIFT_CALLLOG_H

#include <cstdint>

#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

// All calls log under the folder, whichever file they stand in.
inline constexpr auto gsk_callPath = "Src/FrameSift";

// The log prints a handle as the number that it is.
inline long HandleNumber(void* handle)
{
    return static_cast<long>(reinterpret_cast<intptr_t>(handle));
}

} // namespace Marvane::FrameSift

#endif
