#include <fmt/format.h>

#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"
#include "Ivs/Picture/IvsScene.h"

namespace Marvane::FrameSift {

namespace {

using POSITION = KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION;

SCENE_POINT PointOf(const POSITION& position)
{
    return {position.x, position.y};
}

SCENE_POINT PointOf(const KX_IVS_POSITION& position)
{
    return {position.x, position.y};
}

SCENE_LINE LineOf(std::span<const POSITION> positions)
{
    SCENE_LINE line;
    for (const POSITION& position : positions)
        line.push_back(PointOf(position));
    return line;
}

SCENE_LINE LineOf(const KX_IVS_LINE_POSITION& line)
{
    return {PointOf(line.stratpoint), PointOf(line.endpoint)};
}

std::string NameOf(uint32_t nId, const std::string& name)
{
    return name.empty() ? fmt::format("lane {}", nId) : fmt::format("lane {} {}", nId, name);
}

// A loop's edge, its bends between its ends.
SCENE_LINE BentLine(const KX_IVS_LINE_POSITION& ends, std::span<const POSITION> bends)
{
    SCENE_LINE line = LineOf(bends);
    line.insert(line.begin(), PointOf(ends.stratpoint));
    line.push_back(PointOf(ends.endpoint));
    return line;
}

// Down the left edge and up the right one.
SCENE_LINE LoopOf(const KX_IVS_VIRTUAL_CIRCLE& loop)
{
    SCENE_LINE line =
        BentLine(loop.left_lane_position, Front(loop.left_inflection_position, loop.left_inflection_count));
    const SCENE_LINE right =
        BentLine(loop.right_lane_position, Front(loop.right_inflection_position, loop.right_inflection_count));
    line.insert(line.end(), right.rbegin(), right.rend());
    return line;
}

SCENE_LANE LaneOf(const KX_SIGNAL_FLOW_LANE_INFO& info)
{
    SCENE_LANE lane;
    lane.name = NameOf(info.LaneNum, {});
    lane.queue = {PointOf(info.ltailCoordinates), PointOf(info.rtailCoordinates)};
    lane.nQueue = info.queneLenth;
    if (info.virtualLoopTotalNum >= 1)
        lane.loops.push_back({PointOf(info.firstVirtualCoordinates1), PointOf(info.firstVirtualCoordinates2),
                              PointOf(info.firstVirtualCoordinates3), PointOf(info.firstVirtualCoordinates4)});
    if (info.virtualLoopTotalNum >= 2)
        lane.loops.push_back({PointOf(info.secondVirtualCoordinates1), PointOf(info.secondVirtualCoordinates2),
                              PointOf(info.secondVirtualCoordinates3), PointOf(info.secondVirtualCoordinates4)});
    return lane;
}

SCENE_LANE LaneOf(const KX_IVS_ATTRIBUTE_91_LANE_INFO& info)
{
    SCENE_LANE lane;
    lane.name = NameOf(info.lane_id, CameraText(info.lane_name));
    lane.left = LineOf(info.left_lane_position);
    lane.right = LineOf(info.right_lane_position);
    for (const KX_IVS_LANE_CALIBRATION& mark : Front(info.lane_calibration, info.lane_virtual_number))
        lane.scale.push_back(mark.YPoint);
    return lane;
}

template <class INFO>
SCENE_LANE BentLane(const INFO& info, const std::string& name)
{
    SCENE_LANE lane;
    lane.name = NameOf(info.lane_id, name);
    lane.left = LineOf(Front(info.left_lane_position, info.left_lane_position_num));
    lane.right = LineOf(Front(info.right_lane_position, info.right_lane_position_num));
    for (const KX_IVS_VIRTUAL_CIRCLE& loop : Front(info.virtual_circle, info.lane_virtual_number))
        lane.loops.push_back(LoopOf(loop));
    return lane;
}

SCENE_LANE LaneOf(const KX_IVS_ATTRIBUTE_95_LANE_INFO& info)
{
    return BentLane(info, {});
}

SCENE_LANE LaneOf(const KX_IVS_ATTRIBUTE_96_LANE_INFO& info)
{
    return BentLane(info, CameraText(info.lane_name));
}

template <class LANE>
SCENE_ROAD RoadOfLanes(std::span<const LANE> lanes)
{
    SCENE_ROAD road;
    for (const LANE& lane : lanes)
        road.lanes.push_back(LaneOf(lane));
    return road;
}

template <class ATTRIBUTE>
SCENE_ROAD MarkedRoad(const ATTRIBUTE& attribute)
{
    SCENE_ROAD road = RoadOfLanes(Front(attribute.lane_info, attribute.lane_number));
    for (size_t n = 0; n < Front(attribute.mark_position, attribute.mark_number).size(); ++n)
        road.marks.push_back({PointOf(attribute.mark_position[n]), attribute.mark_value[n]});
    return road;
}

} // namespace

SCENE_ROAD RoadOf(const KX_IVS_COMMON_OBJ& object)
{
    if (object.attrUnionflag == OBJ_ATTR_0x8D)
        return RoadOfLanes(Front(object.attr.signal_flow.signal_flow_laneInfo, object.attr.signal_flow.laneCount));
    if (object.attrUnionflag == OBJ_ATTR_0x91)
        return MarkedRoad(object.attr.arrtibute91);
    if (const auto* p95 = object.pArrtibute95; p95 != nullptr)
        return RoadOfLanes(Front(p95->lane_info, p95->lane_number));
    if (const auto* p96 = object.pArrtibute96; p96 != nullptr)
        return MarkedRoad(*p96);
    return {};
}

} // namespace Marvane::FrameSift
