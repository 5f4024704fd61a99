// How each stream type can be parsed.
#ifndef FRAMESIFT_SRC_FRAMESIFT_STREAMTYPEMAP_H
#define FRAMESIFT_SRC_FRAMESIFT_STREAMTYPEMAP_H

#include <cstdint>

namespace Marvane::FrameSift {

// A KX_PARSE_TYPE; 0 for a type that the table does not name.
int32_t getParseType(int32_t streamType);

} // namespace Marvane::FrameSift

#endif
