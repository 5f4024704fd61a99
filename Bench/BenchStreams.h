// The streams that the benchmarks run over.
#ifndef FRAMESIFT_BENCH_BENCHSTREAMS_H
#define FRAMESIFT_BENCH_BENCHSTREAMS_H

#include <string>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// The access units of sample files, each in a frame with the usual extension heads, over and over until nBytes are
// full. Empty if the samples are not there.
Bytes RecordingStream(size_t nBytes);

// One sound frame, by which the format is known, and behind it nBytes that hold no frame.
Bytes RubbishStream(size_t nBytes);

} // namespace Marvane::FrameSift

#endif
