// From the internal frame record to the public one.
#ifndef FRAMESIFT_SRC_FRAMESIFT_FRAMECONVERT_H
#define FRAMESIFT_SRC_FRAMESIFT_FRAMECONVERT_H

#include "IAnalyzer/FrameInfo.h"

namespace Marvane::FrameSift {

// Copies 18 fields; nothing else of the target is touched, and nothing of the extension record is read.
void ChangeFrameToKXFrame(const FrameInfo& frame, const ExtZOAVIFrameInfo& ext, KX_FRAME_INFO& target);

} // namespace Marvane::FrameSift

#endif
