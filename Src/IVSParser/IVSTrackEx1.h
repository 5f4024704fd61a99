// The extension records behind the tracked objects of the extended form.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSTRACKEX1_H
#define FRAMESIFT_SRC_IVSPARSER_IVSTRACKEX1_H

#include <cstddef>
#include <span>

#include "framesift/ivs.h"

namespace Marvane::FrameSift {

class CBufferRead;

inline constexpr size_t gsk_maxTrackExObjects = 200;

// Reads records from pb's place to its end and sets the fields of the objects that they name; no more than
// gsk_maxTrackExObjects objects. A record for none of them counts for nothing, and what is damaged ends the walk.
void ReadTrackEx1(CBufferRead& pb, std::span<KX_IVS_OBJ_EX> objects);

} // namespace Marvane::FrameSift

#endif
