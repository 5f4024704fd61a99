// Pieces of text that several printers need.
#ifndef FRAMESIFT_APP_FRAMES_FRAMETEXT_H
#define FRAMESIFT_APP_FRAMES_FRAMETEXT_H

#include <cstdint>
#include <map>
#include <string>

#include "Frames/FrameState.h"

namespace Marvane::FrameSift {

// "2026-01-31T10:00:00.250", as the recording's clock says; empty for a time that does not exist.
std::string TimeText(const KX_TIME& time);

// "13:30:29" of a time that has no date, as MPEG-4 tells one in the head of a group; else as TimeText.
std::string TimeOrHourText(const KX_TIME& time);

// Names; empty where the frame has none, as a place of lost frames.
std::string SubTypeText(const FrameInfo& frame);
std::string CodecText(const FrameInfo& frame);
std::string CipherStateText(const FrameInfo& parsed);

// "12 video, 3 audio": how many of each code, by its name.
std::string CountsText(const std::map<int32_t, uint64_t>& counts, std::string (*pfnName)(int32_t nCode));

} // namespace Marvane::FrameSift

#endif
