// The parts of the picture.
#ifndef FRAMESIFT_APP_IVS_PICTURE_IVSSVGPARTS_H
#define FRAMESIFT_APP_IVS_PICTURE_IVSSVGPARTS_H

#include <string>
#include <string_view>

#include "Ivs/Picture/IvsSvgCanvas.h"

namespace Marvane::FrameSift {

inline constexpr std::string_view gsk_svgText = "#e6edf3";
inline constexpr std::string_view gsk_svgDim = "#9aa7b4";
// Roads and scene have no hue: those belong to the classes.
inline constexpr std::string_view gsk_svgRoad = "#c9d1d9";
inline constexpr std::string_view gsk_svgRegion = "#ffffff";

// Of a class by its rank: hues that people with any colour vision tell apart, and from the ninth class on the same with
// dashes.
struct SVG_CLASS_STYLE
{
    std::string_view colour;
    std::string_view dashes; // of the outline of a box
};
SVG_CLASS_STYLE ClassStyle(const IVS_SCENE& scene, int32_t nClass);
std::string ClassName(int32_t nClass);

// Whether the recording begins and ends at different times.
bool HasTimeSpan(const IVS_SCENE& scene);
// "10:00:01"; with the date on another day than the recording begins, with milliseconds if it is over in a few seconds.
// Empty if the time is not known.
std::string ClockText(const IVS_SCENE& scene, const std::optional<KX_TIME>& time);

void DrawObjects(CSvgCanvas& canvas, const IVS_SCENE& scene);
void DrawRegions(CSvgCanvas& canvas, const IVS_SCENE& scene);
void DrawRoads(CSvgCanvas& canvas, const IVS_SCENE& scene);
void DrawDrawings(CSvgCanvas& canvas, const IVS_SCENE& scene);

inline constexpr double gsk_sideWidth = 350;
// Legend, counts and notes, from the corner on. Answers where they end.
double WriteSide(std::string& svg, SVG_POINT corner, const CSvgCanvas& canvas, const IVS_SCENE& scene,
                 const IVS_UNITS& units);

} // namespace Marvane::FrameSift

#endif
