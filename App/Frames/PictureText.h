// The format of a frame in a table for people.
#ifndef FRAMESIFT_APP_FRAMES_PICTURETEXT_H
#define FRAMESIFT_APP_FRAMES_PICTURETEXT_H

#include <string>

#include "Frames/FrameSource.h"

namespace Marvane::FrameSift {

// Of a video frame: "1920x1080 (head 1920x1088) 25/s", and on a key frame what its payload adds. Empty if neither the
// payload nor a head tells the size.
std::string PictureText(const LISTED_FRAME& listed);

} // namespace Marvane::FrameSift

#endif
