// The fields of a frame in machine-readable output, in one list for JSON and CSV.
#ifndef FRAMESIFT_APP_FRAMES_FRAMEFIELDS_H
#define FRAMESIFT_APP_FRAMES_FRAMEFIELDS_H

#include <span>
#include <string>
#include <variant>

#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

// Empty where the field has no meaning for the frame.
using FIELD_VALUE = std::variant<std::monostate, int64_t, std::string>;

struct FRAME_FIELD
{
    const char* pName;
    FIELD_VALUE (*pfnValue)(const LISTED_FRAME& listed);
};

// Names and order are stable: a new field goes to the end.
std::span<const FRAME_FIELD> FrameFields();
// The fields that a stream client gets, as they stand in KX_FRAME_INFO and by its names, without the pointers. A dot
// stands in front of a member of a member.
std::span<const FRAME_FIELD> RawFrameFields();

} // namespace Marvane::FrameSift

#endif
