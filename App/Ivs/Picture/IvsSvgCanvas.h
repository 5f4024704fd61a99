// The area of an SVG that stands for the video picture, and labels that keep out of each other's way.
#ifndef FRAMESIFT_APP_IVS_PICTURE_IVSSVGCANVAS_H
#define FRAMESIFT_APP_IVS_PICTURE_IVSSVGCANVAS_H

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Ivs/Picture/IvsScene.h"
#include "Ivs/Picture/IvsSvg.h"

namespace Marvane::FrameSift {

// In pixels of the SVG.
struct SVG_POINT
{
    double x;
    double y;
};

struct SVG_BOX
{
    double x;
    double y;
    double w;
    double h;

    SVG_POINT Middle() const { return {x + w / 2, y + h / 2}; }
};

// What gets its room first.
enum class SVG_RANK : uint8_t
{
    Object,
    Region,
    Lane,
    Time,
    Mark
};

struct SVG_LABEL
{
    SVG_RANK eRank;
    std::string text; // escaped for a terminal, not for XML
    std::string_view colour;
    double dSize; // of the letters
};

// Characters that XML gives a meaning become entities. text: valid UTF-8 without control characters.
std::string XmlText(std::string_view text);
// With one decimal, or none if that is 0.
std::string Number(double dValue);
// Not more than so many characters; what is longer ends in an ellipsis.
std::string Shortened(const std::string& text, size_t nMost);
// Rather too wide than too narrow.
double TextWidth(std::string_view text, double dSize);
std::string PointsAttribute(const std::vector<SVG_POINT>& points);

class CSvgCanvas
{
public:
    CSvgCanvas(const IVS_SCENE& scene, const IVS_UNITS& units);

    const SVG_BOX& Area() const { return m_area; }
    SVG_POINT At(double x, double y) const;
    std::vector<SVG_POINT> At(const SCENE_LINE& line) const;
    SVG_BOX BoxOf(const KX_IVS_POINT& place) const;
    double Across(double dUnits) const { return dUnits / m_units.nAcross * m_area.w; }

    // Elements: later ones cover earlier ones; what reaches out of the area is cut off.
    void Add(std::string_view element) { m_elements.append(element).append("\n"); }
    // Labels stay out of these where they can.
    void Keep(const SVG_BOX& box) { m_boxes.push_back(box); }
    // Room that a text of its own takes: no label gets over it.
    void Reserve(const SVG_BOX& box) { m_taken.push_back(box); }
    void LabelBeside(const SVG_BOX& box, SVG_LABEL label) { m_waiting.emplace_back(box, std::move(label)); }
    // Once, when all is drawn. Each label goes where it covers least: beside its box, else into it. Leaves out what has no
    // room.
    void PlaceLabels();

    const std::string& Elements() const { return m_elements; }
    const std::string& Labels() const { return m_labels; }
    uint64_t LabelsLeftOut() const { return m_nLabelsLeftOut; }

private:
    void Place(const SVG_BOX& box, const SVG_LABEL& label);
    double Cost(const SVG_BOX& place, const SVG_BOX& own) const;

    IVS_UNITS m_units;
    SVG_BOX m_area;
    std::string m_elements;
    std::string m_labels;
    std::vector<std::pair<SVG_BOX, SVG_LABEL>> m_waiting;
    std::vector<SVG_BOX> m_boxes;
    std::vector<SVG_BOX> m_taken;
    uint64_t m_nLabelsLeftOut = 0;
};

} // namespace Marvane::FrameSift

#endif
