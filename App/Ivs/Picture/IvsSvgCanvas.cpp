#include "Ivs/Picture/IvsSvgCanvas.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace Marvane::FrameSift {

namespace {

constexpr double sc_left = 16;
constexpr double sc_top = 60;
constexpr double sc_mostWidth = 1280;
constexpr double sc_mostHeight = 960;
constexpr double sc_noRoom = 1e9;

double AspectOf(const IVS_SCENE& scene)
{
    constexpr double sc_usual = 16.0 / 9;
    if (scene.nWidth <= 0 || scene.nHeight <= 0)
        return sc_usual;
    return std::clamp(double(scene.nWidth) / scene.nHeight, 1.0 / 3, 4.0); // a damaged head may tell anything
}

SVG_BOX AreaOf(double dAspect)
{
    const double dWidth = std::min(sc_mostWidth, std::round(sc_mostHeight * dAspect));
    return {sc_left, sc_top, dWidth, std::round(dWidth / dAspect)};
}

double SharedArea(const SVG_BOX& left, const SVG_BOX& right)
{
    const double w = std::min(left.x + left.w, right.x + right.w) - std::max(left.x, right.x);
    const double h = std::min(left.y + left.h, right.y + right.h) - std::max(left.y, right.y);
    return w > 0 && h > 0 ? w * h : 0;
}

bool Holds(const SVG_BOX& outer, const SVG_BOX& inner)
{
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

// Bytes of the character at nPos; the text is valid UTF-8.
size_t CharacterLength(std::string_view text, size_t nPos)
{
    const auto chLead = static_cast<uint8_t>(text[nPos]);
    return chLead < 0x80 ? 1 : chLead < 0xE0 ? 2 : chLead < 0xF0 ? 3 : 4;
}

std::vector<SVG_POINT> PlacesBeside(const SVG_BOX& box, double w, double h)
{
    constexpr double gap = 2;
    const double dRight = box.x + box.w + gap;
    const double dBelow = box.y + box.h + gap;
    const double dAbove = box.y - h - gap;
    const double dMiddle = box.y + (box.h - h) / 2;
    std::vector<SVG_POINT> places = {{box.x, dAbove},
                                     {box.x, dBelow},
                                     {dRight, dMiddle},
                                     {box.x - w - gap, dMiddle},
                                     {box.x + box.w - w, dAbove},
                                     {box.x + box.w - w, dBelow},
                                     {dRight, dAbove},
                                     {dRight, dBelow},
                                     {box.x - w - gap, dAbove},
                                     {box.x - w - gap, dBelow},
                                     {box.x + gap, box.y + gap}};
    for (const double dFurther : {h, 2 * h}) {
        places.push_back({box.x, dAbove - dFurther});
        places.push_back({box.x, dBelow + dFurther});
    }
    return places;
}

} // namespace

std::string XmlText(std::string_view text)
{
    std::string escaped;
    for (const char chByte : text) {
        switch (chByte) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += chByte;
        }
    }
    return escaped;
}

std::string Number(double dValue)
{
    std::string text = fmt::format("{:.1f}", dValue);
    if (text.ends_with(".0"))
        text.resize(text.size() - 2);
    return text == "-0" ? "0" : text;
}

std::string Shortened(const std::string& text, size_t nMost)
{
    size_t nPos = 0;
    size_t nCharacters = 0;
    size_t nCut = 0; // where the ellipsis would go
    while (nPos < text.size()) {
        if (++nCharacters == nMost)
            nCut = nPos;
        nPos += CharacterLength(text, nPos);
    }
    return nCharacters <= nMost ? text : text.substr(0, nCut) + "\xE2\x80\xA6";
}

double TextWidth(std::string_view text, double dSize)
{
    double dEms = 0;
    for (size_t nPos = 0; nPos < text.size(); nPos += CharacterLength(text, nPos))
        dEms += static_cast<uint8_t>(text[nPos]) < 0xE0 ? 0.62 : 1.0; // East Asian letters are as wide as high
    return dEms * dSize;
}

std::string PointsAttribute(const std::vector<SVG_POINT>& points)
{
    std::string text;
    for (const SVG_POINT& point : points)
        text += fmt::format("{}{},{}", text.empty() ? "" : " ", Number(point.x), Number(point.y));
    return text;
}

CSvgCanvas::CSvgCanvas(const IVS_SCENE& scene, const IVS_UNITS& units) : m_units(units), m_area(AreaOf(AspectOf(scene)))
{}

SVG_POINT CSvgCanvas::At(double x, double y) const
{
    return {m_area.x + Across(x), m_area.y + y / m_units.nDown * m_area.h};
}

std::vector<SVG_POINT> CSvgCanvas::At(const SCENE_LINE& line) const
{
    std::vector<SVG_POINT> points;
    for (const SCENE_POINT& point : line)
        points.push_back(At(point.x, point.y));
    return points;
}

// A place without a size is drawn all the same.
SVG_BOX CSvgCanvas::BoxOf(const KX_IVS_POINT& place) const
{
    constexpr double sc_smallest = 6;
    const SVG_POINT middle = At(place.x, place.y);
    const double w = std::max(sc_smallest, Across(place.xSize));
    const double h = std::max(sc_smallest, double(place.ySize) / m_units.nDown * m_area.h);
    return {middle.x - w / 2, middle.y - h / 2, w, h};
}

double CSvgCanvas::Cost(const SVG_BOX& place, const SVG_BOX& own) const
{
    if (!Holds(m_area, place))
        return sc_noRoom;
    for (const SVG_BOX& taken : m_taken) {
        if (SharedArea(taken, place) > 0)
            return sc_noRoom;
    }
    double dCost = SharedArea(own, place) / 2; // in its own box a label is better than in another's
    for (const SVG_BOX& box : m_boxes)
        dCost += SharedArea(box, place);
    return dCost;
}

void CSvgCanvas::PlaceLabels()
{
    std::stable_sort(m_waiting.begin(), m_waiting.end(),
                     [](const auto& left, const auto& right) { return left.second.eRank < right.second.eRank; });
    for (const auto& [box, label] : m_waiting)
        Place(box, label);
    m_waiting.clear();
}

void CSvgCanvas::Place(const SVG_BOX& box, const SVG_LABEL& label)
{
    const double w = TextWidth(label.text, label.dSize) + 2;
    const double h = label.dSize * 1.25;
    SVG_BOX best = {};
    double dBest = sc_noRoom;
    for (SVG_POINT place : PlacesBeside(box, w, h)) {
        place.x = std::max(m_area.x, std::min(place.x, m_area.x + m_area.w - w));
        place.y = std::max(m_area.y, std::min(place.y, m_area.y + m_area.h - h));
        const double dCost = Cost({place.x, place.y, w, h}, box);
        if (dCost < dBest) {
            dBest = dCost;
            best = {place.x, place.y, w, h};
        }
        if (dBest <= 0)
            break;
    }
    if (dBest >= sc_noRoom) {
        ++m_nLabelsLeftOut;
        return;
    }
    m_taken.push_back(best);
    m_labels += fmt::format("<text class=\"label\" x=\"{}\" y=\"{}\" font-size=\"{}\" fill=\"{}\">{}</text>\n",
                            Number(best.x + 1), Number(best.y + label.dSize), Number(label.dSize), label.colour,
                            XmlText(label.text));
}

} // namespace Marvane::FrameSift
