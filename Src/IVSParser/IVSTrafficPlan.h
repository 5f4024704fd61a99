// The rule plans of a traffic record.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSTRAFFICPLAN_H
#define FRAMESIFT_SRC_IVSPARSER_IVSTRAFFICPLAN_H

#include <cstdint>
#include <span>

#include "framesift/ivs_traffic.h"

namespace Marvane::FrameSift {

// Of records, plans and regions alike.
inline constexpr int gsk_maxTrafficNum = 32;

// body: what follows the record's head. False: damaged, or no memory; then no record of the payload may be handed out.
// What the record leads to is the caller's to free, also then.
bool ParseIVSTrackTrafficPlan(std::span<const uint8_t> body, KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record);

void FreeTrafficPlans(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record);

} // namespace Marvane::FrameSift

#endif
