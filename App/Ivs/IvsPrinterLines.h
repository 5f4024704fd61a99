// Lines of text for the records of intelligent video metadata: one for each object, lane, region and element. Each line
// is indented and whole.
#ifndef FRAMESIFT_APP_IVS_IVSPRINTERLINES_H
#define FRAMESIFT_APP_IVS_IVSPRINTERLINES_H

#include <string>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

std::string LinesOf(const KX_IVS_OBJ& object);
std::string LinesOf(const KX_IVS_OBJ_EX& object);
std::string LinesOf(const KX_IVS_OBJ_A0& object);
std::string LinesOf(const KX_IVS_OBJ_A0_Ex& object);
std::string LinesOf(const KX_IVS_COMMON_OBJ& object);
std::string LinesOf(const KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR& title);
std::string LinesOf(const KX_IVS_ZOOP_OBJ& drawing);
std::string LinesOf(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record);

// ", body: model 3, brand 7, plate \"AB 123\"": all that an object has.
std::string AttributesText(const KX_IVS_ATTRIBUTE& attributes);
// The lanes of a signal flow object, whatever the attribute they stand in.
std::string LaneLines(const KX_IVS_COMMON_OBJ& object);
std::string LanesText(const KX_IVS_COMMON_OBJ& object); // ", 3 lanes"

// "at 4096,2048 size 300x200"
std::string PlaceText(const KX_IVS_POINT& point);

} // namespace Marvane::FrameSift

#endif
