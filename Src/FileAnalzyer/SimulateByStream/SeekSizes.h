// Sizes that both kinds of seek go by.
#ifndef FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_SEEKSIZES_H
#define FRAMESIFT_SRC_FILEANALZYER_SIMULATEBYSTREAM_SEEKSIZES_H

#include <cstdint>

namespace Marvane::FrameSift {

inline constexpr uint32_t sc_seekBuffer = 1024 * 1024;

} // namespace Marvane::FrameSift

#endif
