#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Ivs/IvsPrinterLines.h"
#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"

namespace Marvane::FrameSift {

namespace {

std::string PointsText(const KX_IVS_POSITION* pPoints, size_t nCount)
{
    std::string text;
    for (const KX_IVS_POSITION& point : Behind(pPoints, nCount))
        text += fmt::format(" {},{}", point.x, point.y);
    return text;
}

// Alpha, red, green, blue.
template <class ELEMENT>
std::string LineColour(const ELEMENT& element)
{
    return fmt::format("#{:02X}{:02X}{:02X}{:02X}", element.chLineA, element.chLineR, element.chLineG, element.chLineB);
}

template <class ELEMENT>
std::string AreaColour(const ELEMENT& element)
{
    return fmt::format("#{:02X}{:02X}{:02X}{:02X}", element.chRegA, element.chRegR, element.chRegG, element.chRegB);
}

std::string TextOf(const KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR& circle)
{
    return fmt::format("circle at {},{} radius {}, line {} area {}", circle.positionCircle.x, circle.positionCircle.y,
                       circle.wRadius, LineColour(circle), AreaColour(circle));
}

std::string TextOf(const KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE& line)
{
    return fmt::format("line {}:{}", LineColour(line), PointsText(line.pointer, line.chCount));
}

std::string TextOf(const KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON& polygon)
{
    return fmt::format("polygon, line {} area {}:{}", LineColour(polygon), AreaColour(polygon),
                       PointsText(polygon.pointer, polygon.chCount));
}

std::string TextOf(const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT& text)
{
    const std::string place = fmt::format("text at {},{} in {}", text.stringPos.x, text.stringPos.y, LineColour(text));
    if (text.pString == nullptr && text.wTxtLen > 0)
        return place + ", cut off";
    return fmt::format("{}: \"{}\"", place, CameraText(Behind(text.pString, text.wTxtLen)));
}

std::string ElementText(const KX_IVS_ZOOP_OBJ_ELEMENT& element)
{
    if (element.pStruct == nullptr)
        return fmt::format("element of type {}, which is not known", element.nType);
    switch (element.nType) {
    case KX_IVS_ZOOP_ELEMENT_CIRCULAR:
        return TextOf(*static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR*>(element.pStruct));
    case KX_IVS_ZOOP_ELEMENT_BROKENLINE:
        return TextOf(*static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE*>(element.pStruct));
    case KX_IVS_ZOOP_ELEMENT_POLYGON:
        return TextOf(*static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON*>(element.pStruct));
    default:
        return TextOf(*static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT*>(element.pStruct));
    }
}

std::string InfoText(const KX_IVS_ZOOP_OBJ& drawing)
{
    if (drawing.wInfoLen == 0)
        return {};
    return fmt::format(", {} of its own{}", Counted(drawing.wInfoLen, "byte"),
                       drawing.pInfo == nullptr ? " announced, but cut off" : "");
}

} // namespace

std::string LinesOf(const KX_IVS_ZOOP_OBJ& drawing)
{
    const auto elements = Behind(static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT*>(drawing.pElement), drawing.chCount);
    std::string lines = fmt::format("  drawing {} state {} custom {}: {}{}\n", drawing.nId, drawing.chState,
                                    drawing.wCustom, Counted(elements.size(), "element"), InfoText(drawing));
    for (const KX_IVS_ZOOP_OBJ_ELEMENT& element : elements)
        lines.append("    ").append(ElementText(element)).append("\n");
    return lines;
}

} // namespace Marvane::FrameSift
