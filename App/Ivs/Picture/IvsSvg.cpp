#include "Ivs/Picture/IvsSvg.h"

#include <fmt/format.h>

#include <algorithm>

#include "Check/FindingText.h"
#include "Frames/FrameText.h"
#include "Ivs/IvsText.h"
#include "Ivs/Picture/IvsSvgParts.h"

namespace Marvane::FrameSift {

namespace {

constexpr double sc_margin = 16;
constexpr size_t sc_nameLetters = 60;

// The halo keeps letters readable on whatever they cover.
constexpr const char* sc_style = R"(<style>
text { font-family: "DejaVu Sans", Verdana, Arial, sans-serif; }
.title { font-size: 18px; font-weight: bold; fill: #e6edf3; }
.heading { font-size: 13px; font-weight: bold; fill: #e6edf3; }
.side { font-size: 12px; fill: #e6edf3; }
.note, .subtitle, .axis { font-size: 12px; fill: #9aa7b4; }
.label, .drawn { paint-order: stroke; stroke: #14181d; stroke-width: 3px; stroke-linejoin: round; }
.box { fill-opacity: 0.12; stroke-width: 2.5; }
.swatch { fill-opacity: 0.35; stroke-width: 2; }
.earlier { fill: none; stroke-width: 1; stroke-opacity: 0.4; }
.track { fill: none; stroke-width: 1.5; stroke-opacity: 0.85; stroke-linejoin: round; }
.edge { fill: none; stroke: #c9d1d9; stroke-width: 2; }
.scale { fill: none; stroke: #c9d1d9; stroke-width: 1; stroke-opacity: 0.6; }
.loop { fill: #c9d1d9; fill-opacity: 0.08; stroke: #c9d1d9; stroke-width: 1.2; stroke-dasharray: 5 3; }
.queue { fill: none; stroke: #ffffff; stroke-width: 5; }
.mark { fill: #9aa7b4; }
.region { fill: #ffffff; fill-opacity: 0.06; stroke: #ffffff; stroke-width: 1.5; stroke-dasharray: 1.5 3.5; stroke-linecap: round; }
.hidden { stroke-opacity: 0.4; fill-opacity: 0; }
</style>
)";

// The end of a long name tells more than its beginning.
std::string EndOf(const std::string& name)
{
    const size_t nSlash = name.rfind('/');
    return Shortened(nSlash == std::string::npos ? name : name.substr(nSlash + 1), sc_nameLetters);
}

std::string Subtitle(const IVS_SCENE& scene)
{
    std::string text = Counted(scene.nFrames, "payload") + " of metadata";
    if (scene.first)
        text += ", " + TimeText(*scene.first);
    if (HasTimeSpan(scene))
        text += " to " + TimeText(*scene.last);
    return text;
}

bool IsNothingDrawn(const IVS_SCENE& scene)
{
    return scene.roads.empty() && scene.regions.empty() && scene.drawings.empty() &&
           std::all_of(scene.objects.begin(), scene.objects.end(),
                       [](const auto& entry) { return entry.second.places.empty(); });
}

const char* NothingText(const IVS_SCENE& scene)
{
    if (scene.nFrames == 0)
        return "no metadata in this recording";
    const bool bNoneRead = scene.leftOut.nEnciphered + scene.leftOut.nFailed == scene.nFrames;
    return bNoneRead ? "no metadata could be read" : "the metadata tells of no place";
}

std::string AreaElements(const CSvgCanvas& canvas, const IVS_SCENE& scene, const IVS_UNITS& units)
{
    const SVG_BOX& area = canvas.Area();
    const std::string frame = fmt::format("x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"", Number(area.x),
                                          Number(area.y), Number(area.w), Number(area.h));
    std::string svg = fmt::format("<clipPath id=\"picture\"><rect {}/></clipPath>\n<rect {} fill=\"#20262d\" "
                                  "stroke=\"#4a5561\"/>\n<g clip-path=\"url(#picture)\">\n",
                                  frame, frame);
    svg.append(canvas.Elements()).append(canvas.Labels()).append("</g>\n");
    const double dBelow = area.y + area.h + 16;
    svg += fmt::format("<text class=\"axis\" x=\"{}\" y=\"{}\">0</text>\n<text class=\"axis\" text-anchor=\"end\" "
                       "x=\"{}\" y=\"{}\">{} across, {} down</text>\n",
                       Number(area.x), Number(dBelow), Number(area.x + area.w), Number(dBelow), units.nAcross,
                       units.nDown);
    if (IsNothingDrawn(scene))
        svg += fmt::format("<text class=\"subtitle\" text-anchor=\"middle\" x=\"{}\" y=\"{}\">{}</text>\n",
                           Number(area.Middle().x), Number(area.Middle().y), NothingText(scene));
    return svg;
}

} // namespace

std::string IvsSvg(const IVS_SCENE& scene, const IVS_UNITS& units, const std::string& name)
{
    CSvgCanvas canvas(scene, units);
    DrawRegions(canvas, scene);
    DrawRoads(canvas, scene);
    DrawDrawings(canvas, scene);
    DrawObjects(canvas, scene);
    canvas.PlaceLabels();

    const SVG_BOX& area = canvas.Area();
    std::string side;
    const double dSideEnd = WriteSide(side, {area.x + area.w + 20, area.y - 8}, canvas, scene, units);
    const std::string title = EndOf(CameraText({reinterpret_cast<const uint8_t*>(name.data()), name.size()}));
    const std::string width = Number(area.x + area.w + 20 + gsk_sideWidth + sc_margin);
    const std::string height = Number(std::max(area.y + area.h + 28, dSideEnd + sc_margin));
    std::string svg =
        fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
                    "width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\">\n",
                    width, height);
    svg += fmt::format("<title>{}</title>\n{}<rect width=\"100%\" height=\"100%\" fill=\"#14181d\"/>\n", XmlText(title),
                       sc_style);
    svg += fmt::format("<text class=\"title\" x=\"{}\" y=\"28\">{}</text>\n<text class=\"subtitle\" x=\"{}\" "
                       "y=\"48\">{}</text>\n",
                       Number(area.x), XmlText(title), Number(area.x), XmlText(Subtitle(scene)));
    return svg + AreaElements(canvas, scene, units) + side + "</svg>\n";
}

} // namespace Marvane::FrameSift
