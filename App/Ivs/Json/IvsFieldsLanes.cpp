// The lanes of signal flow objects.
#include "Ivs/Json/IvsFields.h"

namespace Marvane::FrameSift {

namespace {

using LOOPS = KX_SIGNAL_FLOW_LANE_INFO;
constexpr JSON_FIELD sc_lane8D[] = {
    JSON_VALUE(LOOPS, LaneNum),
    JSON_VALUE(LOOPS, virtualLoopTotalNum),
    JSON_VALUE(LOOPS, firstVirtualLoopStatus),
    JSON_VALUE(LOOPS, secondVirtualLoopStatus),
    JSON_VALUE(LOOPS, queneLenth),
    JSON_VALUE(LOOPS, ltailCoordinates),
    JSON_VALUE(LOOPS, rtailCoordinates),
    JSON_VALUE(LOOPS, firstVirtualCoordinates1),
    JSON_VALUE(LOOPS, firstVirtualCoordinates2),
    JSON_VALUE(LOOPS, firstVirtualCoordinates3),
    JSON_VALUE(LOOPS, firstVirtualCoordinates4),
    JSON_VALUE(LOOPS, secondVirtualCoordinates1),
    JSON_VALUE(LOOPS, secondVirtualCoordinates2),
    JSON_VALUE(LOOPS, secondVirtualCoordinates3),
    JSON_VALUE(LOOPS, secondVirtualCoordinates4),
};
constexpr JSON_TABLE sc_lane8DFields = {sc_lane8D};

// The writer puts the types in front; the length of 0x8D too, the others have a packet_length.
constexpr JSON_FIELD sc_8D[] = {
    JSON_VALUE(KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D, laneCount),
    JsonSkip(1),
    JSON_LIST(KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D, signal_flow_laneInfo, "laneCount").Of(sc_lane8DFields).Limits(1, 5),
};

constexpr JSON_FIELD sc_lane91[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_id),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_type),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91_LANE_INFO, left_lane_position),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91_LANE_INFO, right_lane_position),
    JSON_TEXT(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_name, ""),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_virtual_number),
    JSON_LIST(KX_IVS_ATTRIBUTE_91_LANE_INFO, lane_calibration, "lane_virtual_number"),
};
constexpr JSON_TABLE sc_lane91Fields = {sc_lane91};

constexpr JSON_FIELD sc_91[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_91, packet_length),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91, increment_id),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91, lane_number),
    JSON_LIST(KX_IVS_ATTRIBUTE_91, lane_info, "lane_number").Of(sc_lane91Fields).Limits(1, 5),
    JSON_VALUE(KX_IVS_ATTRIBUTE_91, mark_number),
    JsonSkip(1),
    JSON_LIST(KX_IVS_ATTRIBUTE_91, mark_position, "mark_number").WithNext(),
    JSON_LIST(KX_IVS_ATTRIBUTE_91, mark_value, "mark_number"),
};

using LOOP = KX_IVS_VIRTUAL_CIRCLE;
constexpr JSON_FIELD sc_circle[] = {
    JSON_VALUE(LOOP, circle_id),
    JSON_VALUE(LOOP, circle_color),
    JSON_VALUE(LOOP, left_lane_position),
    JSON_VALUE(LOOP, right_lane_position),
    JSON_VALUE(LOOP, left_inflection_count),
    JSON_VALUE(LOOP, right_inflection_count),
    JSON_LIST(LOOP, left_inflection_position, "left_inflection_count").Limits(0, 255),
    JSON_LIST(LOOP, right_inflection_position, "right_inflection_count").Limits(0, 255),
};
constexpr JSON_TABLE sc_circleFields = {sc_circle};

using LANE_95 = KX_IVS_ATTRIBUTE_95_LANE_INFO;
constexpr JSON_FIELD sc_lane95[] = {
    JSON_VALUE(LANE_95, lane_id),
    JSON_VALUE(LANE_95, left_lane_position_num),
    JSON_LIST(LANE_95, left_lane_position, "left_lane_position_num").Limits(1, 20),
    JSON_VALUE(LANE_95, right_lane_position_num),
    JsonSkip(1),
    JSON_LIST(LANE_95, right_lane_position, "right_lane_position_num").Limits(1, 20),
    JSON_VALUE(LANE_95, lane_virtual_number),
    JsonSkip(1),
    JSON_LIST(LANE_95, virtual_circle, "lane_virtual_number").Of(sc_circleFields),
};
constexpr JSON_TABLE sc_lane95Fields = {sc_lane95};

constexpr JSON_FIELD sc_95[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_95, packet_length),
    JSON_VALUE(KX_IVS_ATTRIBUTE_95, lane_number),
    JsonSkip(1),
    JSON_LIST(KX_IVS_ATTRIBUTE_95, lane_info, "lane_number").Of(sc_lane95Fields).Limits(1, 8),
};

using LANE_96 = KX_IVS_ATTRIBUTE_96_LANE_INFO;
constexpr JSON_FIELD sc_lane96[] = {
    JSON_VALUE(LANE_96, lane_id),
    JSON_VALUE(LANE_96, lane_type),
    JSON_VALUE(LANE_96, left_lane_position_num),
    JsonSkip(1),
    JSON_LIST(LANE_96, left_lane_position, "left_lane_position_num").Limits(1, 20),
    JSON_VALUE(LANE_96, right_lane_position_num),
    JsonSkip(1),
    JSON_LIST(LANE_96, right_lane_position, "right_lane_position_num").Limits(1, 20),
    JSON_TEXT(LANE_96, lane_name, ""),
    JSON_VALUE(LANE_96, lane_virtual_number),
    JsonSkip(1),
    JSON_LIST(LANE_96, virtual_circle, "lane_virtual_number").Of(sc_circleFields),
};
constexpr JSON_TABLE sc_lane96Fields = {sc_lane96};

constexpr JSON_FIELD sc_96[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_96, packet_length),
    JSON_VALUE(KX_IVS_ATTRIBUTE_96, lane_number),
    JsonSkip(1),
    JSON_LIST(KX_IVS_ATTRIBUTE_96, lane_info, "lane_number").Of(sc_lane96Fields).Limits(1, 8),
    JSON_VALUE(KX_IVS_ATTRIBUTE_96, mark_number),
    JsonSkip(1),
    JSON_LIST(KX_IVS_ATTRIBUTE_96, mark_position, "mark_number").WithNext(),
    JSON_LIST(KX_IVS_ATTRIBUTE_96, mark_value, "mark_number"),
};

constexpr JSON_TABLE sc_laneFields[] = {{sc_8D}, {sc_91}, {sc_95}, {sc_96}};

constexpr JSON_LANES sc_lanes[] = {
    {"8D", 0x8D, OBJ_ATTR_0x8D, &sc_laneFields[0]},
    {"91", 0x91, OBJ_ATTR_0x91, &sc_laneFields[1]},
    {"95", 0x95, OBJ_ATTR_0x95, &sc_laneFields[2]},
    {"96", 0x96, OBJ_ATTR_0x96, &sc_laneFields[3]},
};

} // namespace

std::span<const JSON_LANES> IvsLanes()
{
    return sc_lanes;
}

} // namespace Marvane::FrameSift
