// What the fuzz targets of the older formats start from.
#ifndef FRAMESIFT_FUZZ_LEGACYSEEDS_H
#define FRAMESIFT_FUZZ_LEGACYSEEDS_H

#include <string>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Empty for a target of another kind.
std::vector<Bytes> LegacySeeds(const std::string& target);

} // namespace Marvane::FrameSift

#endif
