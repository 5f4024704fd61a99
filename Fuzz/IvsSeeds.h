// Seeds of the fuzz targets for intelligent video metadata.
#ifndef FRAMESIFT_FUZZ_IVSSEEDS_H
#define FRAMESIFT_FUZZ_IVSSEEDS_H

#include <string>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Sound payloads of the format that a target is for, which between them hold every kind of record and attribute. None for
// a target that is for something else.
std::vector<Bytes> IvsSeeds(const std::string& target);

} // namespace Marvane::FrameSift

#endif
