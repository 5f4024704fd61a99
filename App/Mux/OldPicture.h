// Which pictures the heads of the older formats can tell of.
#ifndef FRAMESIFT_APP_MUX_OLDPICTURE_H
#define FRAMESIFT_APP_MUX_OLDPICTURE_H

#include <string_view>

#include "Mux/Track.h"

namespace Marvane::FrameSift {

// Throws CAppError with EXIT_CODE::Usage unless the rate is whole and fits into five bits.
void RequireOldRate(FRAME_RATE rate, std::string_view family);

// The same unless both sides are multiples of nStep and fit.
void RequireOldSize(const MediaUnit& unit, uint32_t nStep, PICTURE_SIZE largest, std::string_view family);

} // namespace Marvane::FrameSift

#endif
