// Tracked objects, the scene and traffic counts.
#include "Ivs/Json/IvsFields.h"

namespace Marvane::FrameSift {

namespace {

constexpr JSON_FIELD sc_track[] = {
    JSON_VALUE(KX_IVS_OBJ, obj_id),
    JSON_VALUE(KX_IVS_OBJ, enable).As(JSON_ROLE::State),
    JSON_VALUE(KX_IVS_OBJ, trackpt_num).OnWire(1),
    JsonSkip(1 + 1 + 4), // the second byte counts words in front of the points; none are written
    // The next object begins behind ten points, whatever the count says.
    JSON_LIST(KX_IVS_OBJ, track_point, "trackpt_num").Limits(0, 255).Extent(JSON_EXTENT::AtMostArray),
};

constexpr JSON_FIELD sc_trackEx[] = {
    JSON_VALUE(KX_IVS_OBJ_EX, obj_id),
    JSON_VALUE(KX_IVS_OBJ_EX, operator_type).OnWire(1),
    JSON_VALUE(KX_IVS_OBJ_EX, enable).As(JSON_ROLE::Computed),
    JSON_VALUE(KX_IVS_OBJ_EX, trackpt_num).OnWire(1),
    JSON_VALUE(KX_IVS_OBJ_EX, object_type),
    JsonSkip(1 + 2),
    JSON_VALUE(KX_IVS_OBJ_EX, decode_id).OnWire(1),
    JSON_VALUE(KX_IVS_OBJ_EX, object_sub_type),
    JSON_LIST(KX_IVS_OBJ_EX, track_point, "trackpt_num"),
    JSON_VALUE(KX_IVS_OBJ_EX, frame_part_id).As(JSON_ROLE::Computed),
    JSON_VALUE(KX_IVS_OBJ_EX, color).As(JSON_ROLE::Computed), // stands once, in the head of the payload
};

constexpr JSON_FIELD sc_extension[] = {
    JSON_VALUE(KX_IVS_OBJ_EX, ex_info_size),
    JsonSkip(4), // the number of the object
    JSON_VALUE(KX_IVS_OBJ_EX, speed),
    JSON_VALUE(KX_IVS_OBJ_EX, speed_X),
    JSON_VALUE(KX_IVS_OBJ_EX, speed_Y),
    JSON_VALUE(KX_IVS_OBJ_EX, speed_unit),
    JSON_VALUE(KX_IVS_OBJ_EX, color_space),
    JSON_VALUE(KX_IVS_OBJ_EX, main_color_num),
    JSON_VALUE(KX_IVS_OBJ_EX, main_region_rect_x),
    JSON_VALUE(KX_IVS_OBJ_EX, main_region_rect_y),
    JSON_VALUE(KX_IVS_OBJ_EX, main_region_rect_width),
    JSON_VALUE(KX_IVS_OBJ_EX, main_region_rect_height),
    JSON_VALUE(KX_IVS_OBJ_EX, main_region_color),
};

constexpr JSON_FIELD sc_a0[] = {
    JSON_VALUE(KX_IVS_OBJ_A0, objID),
    JSON_VALUE(KX_IVS_OBJ_A0, timeTag),
    JsonSkip(2),
    JSON_VALUE(KX_IVS_OBJ_A0, trackPoint),
    JSON_VALUE(KX_IVS_OBJ_A0, trackTime),
    JSON_VALUE(KX_IVS_OBJ_A0, appearTime).As(JSON_ROLE::Computed),
    JSON_VALUE(KX_IVS_OBJ_A0, disappearTime).As(JSON_ROLE::Computed),
    JsonSkip(4 + 4), // times that no decoder reads
};

constexpr JSON_FIELD sc_a0Ex[] = {
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, objID),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, timeTag),
    JsonSkip(2),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, trackPoint),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, trackTime),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, appearTime).As(JSON_ROLE::Computed),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, disappearTime).As(JSON_ROLE::Computed),
    JsonSkip(4 + 4),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, Objtype),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, speed),
    JSON_VALUE(KX_IVS_OBJ_A0_Ex, direct),
    JSON_LIST(KX_IVS_OBJ_A0_Ex, globalColor, ""),
    JSON_LIST(KX_IVS_OBJ_A0_Ex, topColor, ""),
    JSON_LIST(KX_IVS_OBJ_A0_Ex, bottomColor, ""),
    JsonSkip(2),
};

using SCENE_POINT = KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR;
constexpr JSON_FIELD sc_scenePoint[] = {
    JSON_VALUE(SCENE_POINT, nIndex),
    JSON_VALUE(SCENE_POINT, sceneInfoPoint),
    JSON_TEXT(SCENE_POINT, fristtile, ""),
    JSON_VALUE(SCENE_POINT, enable),
    JSON_VALUE(SCENE_POINT, titleType),
    JSON_VALUE(SCENE_POINT, titleAttribute),
    JSON_VALUE(SCENE_POINT, sharpType),
    JSON_VALUE(SCENE_POINT, polygon_num),
    JsonSkip(3),
    JSON_LIST(SCENE_POINT, polygon, "polygon_num").Limits(0, 255).Extent(JSON_EXTENT::Array),
};

constexpr JSON_FIELD sc_trafficRegion[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_REGION, RegionId).OnWire(1),
    JSON_VALUE(KX_IVS_TRAFFIC_REGION, State).OnWire(1),
    JsonSkip(2),
    JSON_VALUE(KX_IVS_TRAFFIC_REGION, PeopleNum),
};
constexpr JSON_TABLE sc_trafficRegionFields = {sc_trafficRegion};

constexpr JSON_FIELD sc_trafficPlan[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_PLAN, PlanId).OnWire(1),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_TRAFFIC_PLAN, RuleType),
    JsonSkip(2 + 2), // the second is the length of the plan
    JSON_VALUE(KX_IVS_TRAFFIC_PLAN, RegionNum).As(JSON_ROLE::Computed),
    JSON_LIST(KX_IVS_TRAFFIC_PLAN, pRegion, "RegionNum").Named("regions").Of(sc_trafficRegionFields).Limits(0, 32),
};

using TRAFFIC_RECORD = KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR;
constexpr JSON_FIELD sc_traffic[] = {
    JSON_VALUE(TRAFFIC_RECORD, NumberStat),
    JsonSkip(2 + 4), // the second is the length of the record
    JSON_VALUE(TRAFFIC_RECORD, nIVSTrafficPlanNum).As(JSON_ROLE::Computed),
    JSON_LIST(TRAFFIC_RECORD, pIVSTrafficPlan, "nIVSTrafficPlanNum")
        .Named("plans")
        .Of(gsk_trafficPlanFields)
        .Limits(0, 32),
};

} // namespace

constexpr JSON_TABLE gsk_trackFields = {sc_track};
constexpr JSON_TABLE gsk_trackExFields = {sc_trackEx};
constexpr JSON_TABLE gsk_extensionFields = {sc_extension};
constexpr JSON_TABLE gsk_a0Fields = {sc_a0};
constexpr JSON_TABLE gsk_a0ExFields = {sc_a0Ex};
constexpr JSON_TABLE gsk_scenePointFields = {sc_scenePoint};
constexpr JSON_TABLE gsk_trafficFields = {sc_traffic};
constexpr JSON_TABLE gsk_trafficPlanFields = {sc_trafficPlan, 6};

} // namespace Marvane::FrameSift
