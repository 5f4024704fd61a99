// The picture size that a frame's heads announce.
#ifndef FRAMESIFT_APP_FRAMES_ANNOUNCEDSIZE_H
#define FRAMESIFT_APP_FRAMES_ANNOUNCEDSIZE_H

#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

// Fills in nAnnouncedWidth and nAnnouncedHeight. The record's pointers must be alive.
void TakeAnnouncedSize(LISTED_FRAME& listed);

} // namespace Marvane::FrameSift

#endif
