#include <fmt/format.h>

#include <algorithm>

#include "Ivs/Picture/IvsSvgParts.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_titleLetters = 32;
constexpr double sc_labelSize = 12;
constexpr double sc_markSize = 10;

SVG_BOX Around(const SVG_POINT& point)
{
    return {point.x - 2, point.y - 2, 4, 4};
}

// The middle of the line's points.
SVG_POINT MiddleOf(const std::vector<SVG_POINT>& points)
{
    SVG_POINT sum = {0, 0};
    for (const SVG_POINT& point : points)
        sum = {sum.x + point.x, sum.y + point.y};
    const auto dCount = static_cast<double>(std::max<size_t>(points.size(), 1));
    return {sum.x / dCount, sum.y / dCount};
}

void AddLine(CSvgCanvas& canvas, const char* pElement, const char* pClass, const SCENE_LINE& line)
{
    if (!line.empty())
        canvas.Add(fmt::format("<{} class=\"{}\" points=\"{}\"/>", pElement, pClass, PointsAttribute(canvas.At(line))));
}

// Where an edge passes the height y; none if it does not reach there.
std::optional<double> CrossingOf(const SCENE_LINE& edge, double y)
{
    for (size_t n = 1; n < edge.size(); ++n) {
        const SCENE_POINT& from = edge[n - 1];
        const SCENE_POINT& to = edge[n];
        if (from.y != to.y && y >= std::min(from.y, to.y) && y <= std::max(from.y, to.y))
            return from.x + (y - from.y) * (to.x - from.x) / (to.y - from.y);
    }
    return std::nullopt;
}

void DrawScale(CSvgCanvas& canvas, const SCENE_LANE& lane)
{
    for (const int32_t y : lane.scale) {
        const auto left = CrossingOf(lane.left, y);
        const auto right = CrossingOf(lane.right, y);
        if (left && right)
            canvas.Add(fmt::format("<polyline class=\"scale\" points=\"{}\"/>",
                                   PointsAttribute({canvas.At(*left, y), canvas.At(*right, y)})));
    }
}

SVG_POINT LabelPointOf(const CSvgCanvas& canvas, const SCENE_LANE& lane)
{
    if (!lane.left.empty() && !lane.right.empty())
        return MiddleOf(canvas.At(SCENE_LINE{lane.left.back(), lane.right.back()}));
    return MiddleOf(canvas.At(lane.loops.empty() ? lane.queue : lane.loops.front()));
}

void DrawLane(CSvgCanvas& canvas, const SCENE_LANE& lane)
{
    AddLine(canvas, "polyline", "edge", lane.left);
    AddLine(canvas, "polyline", "edge", lane.right);
    DrawScale(canvas, lane);
    for (const SCENE_LINE& loop : lane.loops)
        AddLine(canvas, "polygon", "loop", loop);
    AddLine(canvas, "polyline", "queue", lane.queue);
    const std::string queue = lane.queue.empty() ? std::string() : fmt::format(", queue {}", lane.nQueue);
    canvas.LabelBeside(Around(LabelPointOf(canvas, lane)),
                       {SVG_RANK::Lane, Shortened(lane.name, sc_titleLetters) + queue, gsk_svgRoad, sc_labelSize});
}

std::string Colour(const char* pName, const SCENE_COLOUR& colour)
{
    return fmt::format("{0}=\"#{1:02x}{2:02x}{3:02x}\" {0}-opacity=\"{4:.2f}\"", pName, colour.chR, colour.chG,
                       colour.chB, colour.chA / 255.0);
}

std::string Outline(const SCENE_SHAPE& shape)
{
    constexpr uint32_t sc_widest = 8; // a wrong width must not hide the picture
    return fmt::format("{} stroke-width=\"{}\"", Colour("stroke", shape.line), std::clamp(shape.nWidth, 1U, sc_widest));
}

void DrawText(CSvgCanvas& canvas, const SCENE_SHAPE& shape)
{
    constexpr uint32_t sc_smallest = 10; // the unit of the size is the camera's own
    constexpr uint32_t sc_largest = 40;
    const SVG_POINT at = canvas.At(shape.points.front().x, shape.points.front().y);
    const double dSize = std::clamp(shape.nSize, sc_smallest, sc_largest);
    canvas.Add(fmt::format("<text class=\"drawn\" x=\"{}\" y=\"{}\" font-size=\"{}\" {}>{}</text>", Number(at.x),
                           Number(at.y + dSize), Number(dSize), Colour("fill", shape.line), XmlText(shape.text)));
    canvas.Reserve({at.x, at.y, TextWidth(shape.text, dSize), dSize * 1.25});
}

void DrawShape(CSvgCanvas& canvas, const SCENE_SHAPE& shape)
{
    if (shape.points.empty())
        return;
    switch (shape.nType) {
    case KX_IVS_ZOOP_ELEMENT_CIRCULAR: {
        const SVG_POINT at = canvas.At(shape.points.front().x, shape.points.front().y);
        canvas.Add(fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\" {} {}/>", Number(at.x), Number(at.y),
                               Number(canvas.Across(shape.nSize)), Colour("fill", shape.area), Outline(shape)));
        break;
    }
    case KX_IVS_ZOOP_ELEMENT_BROKENLINE:
        canvas.Add(fmt::format("<polyline points=\"{}\" fill=\"none\" {}/>", PointsAttribute(canvas.At(shape.points)),
                               Outline(shape)));
        break;
    case KX_IVS_ZOOP_ELEMENT_POLYGON:
        canvas.Add(fmt::format("<polygon points=\"{}\" {} {}/>", PointsAttribute(canvas.At(shape.points)),
                               Colour("fill", shape.area), Outline(shape)));
        break;
    default:
        DrawText(canvas, shape);
    }
}

} // namespace

void DrawRegions(CSvgCanvas& canvas, const IVS_SCENE& scene)
{
    for (const auto& [nIndex, region] : scene.regions) {
        AddLine(canvas, "polygon", region.bShown ? "region" : "region hidden", region.corners);
        const std::string title = Shortened(region.title, sc_titleLetters);
        const std::string text = title.empty() ? fmt::format("title {}", nIndex) : title;
        canvas.LabelBeside(Around(canvas.At(region.titleAt.x, region.titleAt.y)),
                           {SVG_RANK::Region, text, region.bShown ? gsk_svgRegion : gsk_svgDim, sc_labelSize});
    }
}

void DrawRoads(CSvgCanvas& canvas, const IVS_SCENE& scene)
{
    for (const auto& [key, road] : scene.roads) {
        for (const SCENE_LANE& lane : road.lanes)
            DrawLane(canvas, lane);
        for (const SCENE_MARK& mark : road.marks) {
            const SVG_POINT at = canvas.At(mark.at.x, mark.at.y);
            canvas.Add(fmt::format("<circle class=\"mark\" cx=\"{}\" cy=\"{}\" r=\"2\"/>", Number(at.x), Number(at.y)));
            canvas.LabelBeside(Around(at), {SVG_RANK::Mark, std::to_string(mark.nValue), gsk_svgDim, sc_markSize});
        }
    }
}

void DrawDrawings(CSvgCanvas& canvas, const IVS_SCENE& scene)
{
    for (const auto& [nId, shapes] : scene.drawings) {
        for (const SCENE_SHAPE& shape : shapes)
            DrawShape(canvas, shape);
    }
}

} // namespace Marvane::FrameSift
