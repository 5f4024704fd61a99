#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <tuple>

#include "FrameWriter/RecordingClock.h"
#include "Frames/FrameText.h"
#include "Ivs/Picture/IvsSvgParts.h"

namespace Marvane::FrameSift {

namespace {

// Widely known as safe for people with colour deficiencies; its blue is lightened for the dark ground.
constexpr std::string_view sc_hues[] = {"#e69f00", "#56b4e9", "#2fbf8f", "#f0e442",
                                        "#e0701a", "#d48bb8", "#8ea2ff", "#dddddd"};
constexpr std::string_view sc_dashes[] = {"", "7 3", "2 3", "9 3 2 3"};

constexpr size_t sc_earlierBoxes = 6; // of an object
constexpr size_t sc_fewObjects = 8;   // of more only some earlier boxes are drawn, lest they hide each other
constexpr size_t sc_earlierBoxesOfMany = 2;
constexpr size_t sc_mostWithTimes = 60; // objects; of more the labels tell the numbers only
constexpr size_t sc_titleLetters = 20;
constexpr double sc_nameSize = 13;
constexpr double sc_timeSize = 11;

std::string Rectangle(const SVG_BOX& box, std::string_view attributes)
{
    return fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" {}/>", Number(box.x), Number(box.y),
                       Number(box.w), Number(box.h), attributes);
}

// Evenly over the time, without the last place.
void DrawEarlierBoxes(CSvgCanvas& canvas, const SCENE_OBJECT& object, std::string_view colour, size_t nMost)
{
    const size_t nEarlier = object.places.size() - 1;
    const size_t nBoxes = std::min(nEarlier, nMost);
    for (size_t n = 0; n < nBoxes; ++n) {
        const SVG_BOX box = canvas.BoxOf(object.places[n * nEarlier / nBoxes]);
        canvas.Add(Rectangle(box, fmt::format("class=\"earlier\" stroke=\"{}\"", colour)));
    }
}

// Points to where the track comes from the last step that can be seen.
std::string ArrowHead(const std::vector<SVG_POINT>& track, std::string_view colour)
{
    constexpr double sc_length = 11;
    constexpr double sc_halfWidth = 5;
    const SVG_POINT end = track.back();
    const auto farEnough = [&](const SVG_POINT& point) { return std::hypot(point.x - end.x, point.y - end.y) > 4; };
    const auto from = std::find_if(track.rbegin(), track.rend(), farEnough);
    if (from == track.rend())
        return {};
    const double dLength = std::hypot(end.x - from->x, end.y - from->y);
    const SVG_POINT ahead = {(end.x - from->x) / dLength, (end.y - from->y) / dLength};
    const SVG_POINT base = {end.x - ahead.x * sc_length, end.y - ahead.y * sc_length};
    return fmt::format("<polygon class=\"arrow\" fill=\"{}\" points=\"{}\"/>", colour,
                       PointsAttribute({end,
                                        {base.x - ahead.y * sc_halfWidth, base.y + ahead.x * sc_halfWidth},
                                        {base.x + ahead.y * sc_halfWidth, base.y - ahead.x * sc_halfWidth}}));
}

std::vector<SVG_POINT> TrackOf(const CSvgCanvas& canvas, const SCENE_OBJECT& object)
{
    std::vector<SVG_POINT> track;
    for (const KX_IVS_POINT& place : object.places)
        track.push_back(canvas.At(place.x, place.y));
    return track;
}

void DrawTrack(CSvgCanvas& canvas, const SCENE_OBJECT& object, std::string_view colour)
{
    const auto track = TrackOf(canvas, object);
    canvas.Add(fmt::format("<polyline class=\"track\" stroke=\"{}\" points=\"{}\"/>", colour, PointsAttribute(track)));
    canvas.Add(fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"3.5\" fill=\"{}\"/>", Number(track.front().x),
                           Number(track.front().y), colour));
    canvas.Add(ArrowHead(track, colour));
}

// What a browser shows of the object under the mouse.
std::string Tooltip(const SCENE_OBJECT& object)
{
    std::string text = fmt::format("object {}{}{}, {}, places: {}", object.name, object.title.empty() ? "" : " ",
                                   object.title, ClassName(object.nClass), object.places.size());
    if (object.first && object.last)
        text.append(", ").append(TimeText(*object.first)).append(" to ").append(TimeText(*object.last));
    return XmlText(text);
}

void DrawObject(CSvgCanvas& canvas, const SCENE_OBJECT& object, const SVG_CLASS_STYLE& style, size_t nEarlierBoxes)
{
    canvas.Add(fmt::format("<g><title>{}</title>", Tooltip(object)));
    if (object.places.size() > 1) {
        DrawEarlierBoxes(canvas, object, style.colour, nEarlierBoxes);
        DrawTrack(canvas, object, style.colour);
    }
    const std::string dashes =
        style.dashes.empty() ? std::string() : fmt::format(" stroke-dasharray=\"{}\"", style.dashes);
    const SVG_BOX box = canvas.BoxOf(object.places.back());
    canvas.Add(Rectangle(box, fmt::format("class=\"box\" stroke=\"{0}\" fill=\"{0}\"{1}", style.colour, dashes)));
    canvas.Add("</g>");
    canvas.Keep(box);
}

std::string NameText(const IVS_SCENE& scene, const SCENE_OBJECT& object, bool bTimes)
{
    std::string text = object.name;
    if (!object.title.empty())
        text.append(" ").append(Shortened(object.title, sc_titleLetters));
    if (bTimes && object.last)
        text.append(" ").append(ClockText(scene, object.last));
    return text;
}

void LabelStart(CSvgCanvas& canvas, const IVS_SCENE& scene, const SCENE_OBJECT& object, std::string_view colour)
{
    if (object.places.size() < 2 || !object.first)
        return;
    const SVG_POINT start = canvas.At(object.places.front().x, object.places.front().y);
    canvas.LabelBeside({start.x - 4, start.y - 4, 8, 8},
                       {SVG_RANK::Time, ClockText(scene, object.first), colour, sc_timeSize});
}

} // namespace

SVG_CLASS_STYLE ClassStyle(const IVS_SCENE& scene, int32_t nClass)
{
    const auto rank =
        static_cast<size_t>(std::distance(scene.objectsByClass.begin(), scene.objectsByClass.lower_bound(nClass)));
    return {sc_hues[rank % std::size(sc_hues)], sc_dashes[rank / std::size(sc_hues) % std::size(sc_dashes)]};
}

std::string ClassName(int32_t nClass)
{
    return nClass == gsk_noClass ? "no class told" : fmt::format("class {}", nClass);
}

bool HasTimeSpan(const IVS_SCENE& scene)
{
    return scene.first && TimeToClock(*scene.first) != TimeToClock(*scene.last);
}

std::string ClockText(const IVS_SCENE& scene, const std::optional<KX_TIME>& time)
{
    constexpr CLOCK_MS sc_shortSpan = 10'000;
    if (!time || !scene.first)
        return {};
    std::string text = fmt::format("{:02}:{:02}:{:02}", time->nHour, time->nMinute, time->nSecond);
    if (std::abs(TimeToClock(*scene.last) - TimeToClock(*scene.first)) < sc_shortSpan)
        text += fmt::format(".{:03}", time->nMilliSecond);
    const auto dayOf = [](const KX_TIME& of) { return std::tuple(of.nYear, of.nMonth, of.nDay); };
    if (dayOf(*time) == dayOf(*scene.first))
        return text;
    return fmt::format("{:04}-{:02}-{:02} {}", time->nYear, time->nMonth, time->nDay, text);
}

void DrawObjects(CSvgCanvas& canvas, const IVS_SCENE& scene)
{
    std::vector<const SCENE_OBJECT*> seen; // those seen last on top, and their labels first
    for (const auto& [key, object] : scene.objects) {
        if (!object.places.empty())
            seen.push_back(&object);
    }
    std::stable_sort(seen.begin(), seen.end(),
                     [](const auto* pLeft, const auto* pRight) { return pLeft->nLastSeen < pRight->nLastSeen; });
    const size_t nEarlierBoxes = seen.size() <= sc_fewObjects ? sc_earlierBoxes : sc_earlierBoxesOfMany;
    for (const SCENE_OBJECT* pObject : seen)
        DrawObject(canvas, *pObject, ClassStyle(scene, pObject->nClass), nEarlierBoxes);
    const bool bTimes = seen.size() <= sc_mostWithTimes && HasTimeSpan(scene);
    std::reverse(seen.begin(), seen.end());
    for (const SCENE_OBJECT* pObject : seen)
        canvas.LabelBeside(canvas.BoxOf(pObject->places.back()),
                           {SVG_RANK::Object, NameText(scene, *pObject, bTimes),
                            ClassStyle(scene, pObject->nClass).colour, sc_nameSize});
    for (const SCENE_OBJECT* pObject : seen) {
        if (bTimes)
            LabelStart(canvas, scene, *pObject, ClassStyle(scene, pObject->nClass).colour);
    }
}

} // namespace Marvane::FrameSift
