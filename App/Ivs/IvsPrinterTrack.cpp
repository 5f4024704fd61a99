#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Ivs/IvsPrinterLines.h"
#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint16_t sc_noSpeed = 65535;

// The newest place, and how many there are.
std::string TrackText(std::span<const KX_IVS_POINT> track)
{
    if (track.empty())
        return "nowhere";
    return PlaceText(track.back()) + (track.size() == 1 ? "" : fmt::format(", track of {}", track.size()));
}

const char* LifeText(bool bLives)
{
    return bLives ? "" : ", finished";
}

// Both kinds of A0 objects.
template <class OBJECT>
std::string PlainText(const OBJECT& object)
{
    return fmt::format("  object {} {}, tag {}, time {}", object.objID, PlaceText(object.trackPoint), object.timeTag,
                       object.trackTime);
}

} // namespace

std::string PlaceText(const KX_IVS_POINT& point)
{
    return fmt::format("at {},{} size {}x{}", point.x, point.y, point.xSize, point.ySize);
}

std::string LinesOf(const KX_IVS_OBJ& object)
{
    return fmt::format("  object {} {}{}\n", object.obj_id, TrackText(Front(object.track_point, object.trackpt_num)),
                       LifeText(object.enable != 0));
}

std::string LinesOf(const KX_IVS_OBJ_EX& object)
{
    const auto nPoints = static_cast<size_t>(std::max(object.trackpt_num, 0));
    std::string line =
        fmt::format("  object {} class {}.{} {}, decoder {}, state {}{}", object.obj_id, object.object_type,
                    object.object_sub_type, TrackText(Front(object.track_point, nPoints)), object.decode_id,
                    object.operator_type, LifeText(object.enable != 0));
    if (object.speed != sc_noSpeed)
        line += fmt::format(", speed {} (unit {})", object.speed, object.speed_unit);
    if (object.main_color_num > 0)
        line += fmt::format(", {}, the first {:08X}", Counted(object.main_color_num, "main colour"),
                            object.main_region_color);
    return line + "\n";
}

std::string LinesOf(const KX_IVS_OBJ_A0& object)
{
    return PlainText(object) + "\n";
}

std::string LinesOf(const KX_IVS_OBJ_A0_Ex& object)
{
    return PlainText(object) +
           fmt::format(", class {}, speed {}, direction {}\n", object.Objtype, object.speed, object.direct);
}

std::string LinesOf(const KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR& title)
{
    std::string line = fmt::format("  title {} \"{}\" at {},{}{}, kind {}", title.nIndex, CameraText(title.fristtile),
                                   title.sceneInfoPoint.x, title.sceneInfoPoint.y,
                                   title.enable != 0 ? "" : ", not to be shown", title.titleType);
    const auto corners = Front(title.polygon, title.polygon_num);
    line += corners.empty() ? ", no polygon" : ", polygon";
    for (const KX_IVS_POSITION& corner : corners)
        line += fmt::format(" {},{}", corner.x, corner.y);
    return line + "\n";
}

std::string LinesOf(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record)
{
    std::string lines;
    for (const KX_IVS_TRAFFIC_PLAN& plan : Behind(record.pIVSTrafficPlan, record.nIVSTrafficPlanNum)) {
        const auto regions = Behind(plan.pRegion, plan.RegionNum);
        if (regions.empty())
            lines += fmt::format("  plan {} rule {}: no region\n", plan.PlanId, plan.RuleType);
        for (const KX_IVS_TRAFFIC_REGION& region : regions)
            lines += fmt::format("  plan {} rule {} region {}: count {}, state {}\n", plan.PlanId, plan.RuleType,
                                 region.RegionId, region.PeopleNum, region.State);
    }
    return lines.empty() ? fmt::format("  record of type {}: no plan\n", record.NumberStat) : lines;
}

} // namespace Marvane::FrameSift
