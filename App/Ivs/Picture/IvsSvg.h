// A picture of a recording's intelligent video metadata, as SVG.
#ifndef FRAMESIFT_APP_IVS_PICTURE_IVSSVG_H
#define FRAMESIFT_APP_IVS_PICTURE_IVSSVG_H

#include <string>

#include "Ivs/Picture/IvsScene.h"

namespace Marvane::FrameSift {

// How many units the camera divides the picture into.
struct IVS_UNITS
{
    uint32_t nAcross = 8192;
    uint32_t nDown = 8192;
    bool bAssumed = true; // nobody has said so
};

// name: of the recording, in bytes.
std::string IvsSvg(const IVS_SCENE& scene, const IVS_UNITS& units, const std::string& name);

} // namespace Marvane::FrameSift

#endif
