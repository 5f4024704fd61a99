// A finding in words.
#ifndef FRAMESIFT_APP_CHECK_FINDINGTEXT_H
#define FRAMESIFT_APP_CHECK_FINDINGTEXT_H

#include <string>
#include <string_view>

#include "Check/CheckReport.h"

namespace Marvane::FrameSift {

std::string FindingText(const FINDING& finding);

// "1 frame", "2 frames".
std::string Counted(uint64_t nCount, std::string_view noun);
// "2 video frames"; without the kind if that is not known.
std::string LostFramesText(uint64_t nLost, int32_t nFrameType);

} // namespace Marvane::FrameSift

#endif
