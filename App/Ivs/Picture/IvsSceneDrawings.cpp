#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"
#include "Ivs/Picture/IvsScene.h"

namespace Marvane::FrameSift {

namespace {

SCENE_POINT PointOf(const KX_IVS_POSITION& position)
{
    return {position.x, position.y};
}

template <class ELEMENT>
SCENE_COLOUR LineColour(const ELEMENT& element)
{
    return {element.chLineA, element.chLineR, element.chLineG, element.chLineB};
}

template <class ELEMENT>
SCENE_COLOUR AreaColour(const ELEMENT& element)
{
    return {element.chRegA, element.chRegR, element.chRegG, element.chRegB};
}

template <class ELEMENT>
void TakePoints(SCENE_SHAPE& shape, const ELEMENT& element)
{
    shape.nWidth = element.chWidth;
    shape.line = LineColour(element);
    for (const KX_IVS_POSITION& point : Behind(static_cast<const KX_IVS_POSITION*>(element.pointer), element.chCount))
        shape.points.push_back(PointOf(point));
}

void TakeElement(SCENE_SHAPE& shape, const KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR& circle)
{
    shape.points = {PointOf(circle.positionCircle)};
    shape.nSize = circle.wRadius;
    shape.nWidth = circle.chWidth;
    shape.line = LineColour(circle);
    shape.area = AreaColour(circle);
}

void TakeElement(SCENE_SHAPE& shape, const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT& text)
{
    shape.points = {PointOf(text.stringPos)};
    shape.nSize = text.chFontSize;
    shape.line = LineColour(text);
    const auto bytes = Behind(text.pString, text.wTxtLen);
    shape.text = CameraText(bytes.first(std::min(bytes.size(), gsk_maxSceneTextBytes)));
}

SCENE_SHAPE ShapeOf(const KX_IVS_ZOOP_OBJ_ELEMENT& element)
{
    SCENE_SHAPE shape;
    shape.nType = element.nType;
    switch (element.nType) {
    case KX_IVS_ZOOP_ELEMENT_CIRCULAR:
        TakeElement(shape, *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR*>(element.pStruct));
        break;
    case KX_IVS_ZOOP_ELEMENT_BROKENLINE:
        TakePoints(shape, *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE*>(element.pStruct));
        break;
    case KX_IVS_ZOOP_ELEMENT_POLYGON: {
        const auto& polygon = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON*>(element.pStruct);
        TakePoints(shape, polygon);
        shape.area = AreaColour(polygon);
        break;
    }
    default:
        TakeElement(shape, *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT*>(element.pStruct));
    }
    return shape;
}

} // namespace

std::vector<SCENE_SHAPE> ShapesOf(const KX_IVS_ZOOP_OBJ& drawing)
{
    std::vector<SCENE_SHAPE> shapes;
    const auto elements = Behind(static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT*>(drawing.pElement), drawing.chCount);
    for (const KX_IVS_ZOOP_OBJ_ELEMENT& element : elements.first(std::min(elements.size(), gsk_maxDrawingElements))) {
        if (element.pStruct != nullptr)
            shapes.push_back(ShapeOf(element));
    }
    return shapes;
}

} // namespace Marvane::FrameSift
