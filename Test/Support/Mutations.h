// Damaged copies of sound inputs, for parsers that must survive anything.
#ifndef FRAMESIFT_TEST_SUPPORT_MUTATIONS_H
#define FRAMESIFT_TEST_SUPPORT_MUTATIONS_H

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "FrameWriter/ZOAVFrameWriter.h"

namespace Marvane::FrameSift {

// Calls take nCount times with a damaged copy of one of the seeds: bits flipped, bytes overwritten, cut, doubled, runs of
// zeros or ones. The copy lies in a heap block of just its size, so that a read past it is found; it may be empty, and may
// be written to.
void ForEachMutation(const std::vector<Bytes>& seeds, size_t nCount, uint32_t nRandomSeed,
                     const std::function<void(std::span<uint8_t>)>& take);

} // namespace Marvane::FrameSift

#endif
