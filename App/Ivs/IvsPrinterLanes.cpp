#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Ivs/IvsPrinterLines.h"
#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"

namespace Marvane::FrameSift {

namespace {

using POSITION = KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION;

std::string EdgeText(const char* pName, std::span<const POSITION> edge)
{
    std::string text = fmt::format(", {}", pName);
    for (const POSITION& point : edge)
        text += fmt::format(" {},{}", point.x, point.y);
    return text;
}

std::string EdgeText(const char* pName, const KX_IVS_LINE_POSITION& edge)
{
    const POSITION ends[] = {edge.stratpoint, edge.endpoint};
    return EdgeText(pName, ends);
}

std::string NamePart(const uint8_t (&name)[16])
{
    const std::string text = CameraText(name);
    return text.empty() ? text : fmt::format(" \"{}\"", text);
}

std::string LineOf(const KX_SIGNAL_FLOW_LANE_INFO& lane)
{
    return fmt::format("    lane {}: queue of {} from {},{} to {},{}, {} (states {} and {})\n", lane.LaneNum,
                       lane.queneLenth, lane.ltailCoordinates.x, lane.ltailCoordinates.y, lane.rtailCoordinates.x,
                       lane.rtailCoordinates.y, Counted(lane.virtualLoopTotalNum, "loop"), lane.firstVirtualLoopStatus,
                       lane.secondVirtualLoopStatus);
}

std::string LineOf(const KX_IVS_ATTRIBUTE_91_LANE_INFO& lane)
{
    return fmt::format("    lane {}{}: kind {}{}{}, {}\n", lane.lane_id, NamePart(lane.lane_name), lane.lane_type,
                       EdgeText("left", lane.left_lane_position), EdgeText("right", lane.right_lane_position),
                       Counted(lane.lane_virtual_number, "scale mark"));
}

template <class LANE>
std::string BentEdges(const LANE& lane)
{
    return EdgeText("left", Front(lane.left_lane_position, lane.left_lane_position_num)) +
           EdgeText("right", Front(lane.right_lane_position, lane.right_lane_position_num));
}

std::string LineOf(const KX_IVS_ATTRIBUTE_95_LANE_INFO& lane)
{
    return fmt::format("    lane {}: {}{}\n", lane.lane_id, Counted(lane.lane_virtual_number, "loop"), BentEdges(lane));
}

std::string LineOf(const KX_IVS_ATTRIBUTE_96_LANE_INFO& lane)
{
    return fmt::format("    lane {}{}: kind {}, {}{}\n", lane.lane_id, NamePart(lane.lane_name), lane.lane_type,
                       Counted(lane.lane_virtual_number, "loop"), BentEdges(lane));
}

template <class LANE>
std::string LinesOfLanes(std::span<const LANE> lanes)
{
    std::string lines;
    for (const LANE& lane : lanes)
        lines += LineOf(lane);
    return lines;
}

template <class ATTRIBUTE>
std::string MarkLines(const ATTRIBUTE& attribute)
{
    std::string lines;
    for (size_t n = 0; n < Front(attribute.mark_position, attribute.mark_number).size(); ++n)
        lines += fmt::format("    mark {} at {},{}\n", attribute.mark_value[n], attribute.mark_position[n].x,
                             attribute.mark_position[n].y);
    return lines;
}

} // namespace

std::string LanesText(const KX_IVS_COMMON_OBJ& object)
{
    size_t nLanes = 0;
    if (object.attrUnionflag == OBJ_ATTR_0x8D)
        nLanes = object.attr.signal_flow.laneCount;
    else if (object.attrUnionflag == OBJ_ATTR_0x91)
        nLanes = object.attr.arrtibute91.lane_number;
    else if (object.pArrtibute95 != nullptr)
        nLanes = object.pArrtibute95->lane_number;
    else if (object.pArrtibute96 != nullptr)
        nLanes = object.pArrtibute96->lane_number;
    return ", " + Counted(nLanes, "lane");
}

std::string LaneLines(const KX_IVS_COMMON_OBJ& object)
{
    const auto& attr = object.attr;
    if (object.attrUnionflag == OBJ_ATTR_0x8D)
        return LinesOfLanes(Front(attr.signal_flow.signal_flow_laneInfo, attr.signal_flow.laneCount));
    if (object.attrUnionflag == OBJ_ATTR_0x91)
        return LinesOfLanes(Front(attr.arrtibute91.lane_info, attr.arrtibute91.lane_number)) +
               MarkLines(attr.arrtibute91);
    if (const auto* p95 = object.pArrtibute95; p95 != nullptr)
        return LinesOfLanes(Front(p95->lane_info, p95->lane_number));
    if (const auto* p96 = object.pArrtibute96; p96 != nullptr)
        return LinesOfLanes(Front(p96->lane_info, p96->lane_number)) + MarkLines(*p96);
    return {};
}

} // namespace Marvane::FrameSift
