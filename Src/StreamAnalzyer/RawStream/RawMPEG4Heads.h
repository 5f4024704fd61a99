// What the heads of one frame of an MPEG-4 elementary stream tell.
#ifndef FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_RAWMPEG4HEADS_H
#define FRAMESIFT_SRC_STREAMANALZYER_RAWSTREAM_RAWMPEG4HEADS_H

#include <cstdint>

#include "IAnalyzer/FrameInfo.h"
#include "Memory/LogicData.h"
#include "StreamAnalzyer/WordSlider.h"

namespace Marvane::FrameSift {

// A frame has to have so many bytes in the window to be looked at, and its heads are looked for in them. What is behind
// them is body.
inline constexpr int gsk_rawMpeg4HeadsLen = 100;

// Slides over the heads of the frame whose first byte the slider is in front of, and fills frame. True: the slider stands
// in the body, so the next border ends the frame. False if the window ends before.
bool ReadRawMPEG4Heads(CLogicData& logicData, CWordSlider& slider, FrameInfo& frame);

} // namespace Marvane::FrameSift

#endif
