// Which frames a listing shows.
#ifndef FRAMESIFT_APP_FRAMES_FRAMEFILTER_H
#define FRAMESIFT_APP_FRAMES_FRAMEFILTER_H

#include <set>

#include "Frames/FrameState.h"

namespace Marvane::FrameSift {

// A frame must pass every condition that is set.
struct FRAME_FILTER
{
    std::set<int32_t> types; // KX_FRAME_TYPE_*; empty: all
    bool bKeysOnly = false;
    bool bErrorsOnly = false;

    bool Passes(const FrameInfo& frame) const
    {
        const bool bKey =
            frame.frameType == KX_FRAME_TYPE_VIDEO && IsIFrameSubType(frame.frameSubType) && !IsLostFrame(frame);
        return (types.empty() || types.count(int32_t{frame.frameType}) > 0) && (!bKeysOnly || bKey) &&
               (!bErrorsOnly || frame.errorFlags != KX_ERROR_FLAGS_NOERROR);
    }
};

} // namespace Marvane::FrameSift

#endif
