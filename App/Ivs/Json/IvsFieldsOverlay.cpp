// Overlay drawings.
#include "Ivs/Json/IvsFields.h"

namespace Marvane::FrameSift {

namespace {

constexpr JSON_FIELD sc_overlayHead[] = {
    JSON_VALUE(KX_IVS_ZOOP_OBJ, nId), JSON_VALUE(KX_IVS_ZOOP_OBJ, wCustom), JSON_VALUE(KX_IVS_ZOOP_OBJ, chState),
    JSON_VALUE(KX_IVS_ZOOP_OBJ, chCount).As(JSON_ROLE::Computed), // that of the elements, which follow
};

constexpr JSON_FIELD sc_overlayTail[] = {
    JSON_VALUE(KX_IVS_ZOOP_OBJ, wInfoLen),
    JSON_TEXT(KX_IVS_ZOOP_OBJ, pInfo, "wInfoLen").Named("info"),
};

using CIRCLE = KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR;
constexpr JSON_FIELD sc_circle[] = {
    JSON_VALUE(CIRCLE, chWidth), JSON_VALUE(CIRCLE, chStyle), JSON_VALUE(CIRCLE, chRes0),
    JSON_VALUE(CIRCLE, wRadius), JSON_VALUE(CIRCLE, wRes1),   JSON_VALUE(CIRCLE, positionCircle),
    JSON_VALUE(CIRCLE, chLineA), JSON_VALUE(CIRCLE, chLineR), JSON_VALUE(CIRCLE, chLineG),
    JSON_VALUE(CIRCLE, chLineB), JSON_VALUE(CIRCLE, chRegA),  JSON_VALUE(CIRCLE, chRegR),
    JSON_VALUE(CIRCLE, chRegG),  JSON_VALUE(CIRCLE, chRegB),
};

using LINE = KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE;
constexpr JSON_FIELD sc_line[] = {
    JSON_VALUE(LINE, chCount), JSON_VALUE(LINE, chWidth),
    JSON_VALUE(LINE, chStyle), JSON_VALUE(LINE, chLineA),
    JSON_VALUE(LINE, chLineR), JSON_VALUE(LINE, chLineG),
    JSON_VALUE(LINE, chLineB), JSON_LIST(LINE, pointer, "chCount").Limits(0, 255),
};

using POLYGON = KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON;
constexpr JSON_FIELD sc_polygon[] = {
    JSON_VALUE(POLYGON, chCount), JSON_VALUE(POLYGON, chWidth), JSON_VALUE(POLYGON, chStyle),
    JSON_VALUE(POLYGON, chLineA), JSON_VALUE(POLYGON, chLineR), JSON_VALUE(POLYGON, chLineG),
    JSON_VALUE(POLYGON, chLineB), JSON_VALUE(POLYGON, chRegA),  JSON_VALUE(POLYGON, chRegR),
    JSON_VALUE(POLYGON, chRegG),  JSON_VALUE(POLYGON, chRegB),  JSON_LIST(POLYGON, pointer, "chCount").Limits(0, 255),
};

using TEXT = KX_IVS_ZOOP_OBJ_ELEMENT_TEXT;
constexpr JSON_FIELD sc_text[] = {
    JSON_VALUE(TEXT, chCharset), JSON_LIST(TEXT, chRes1, ""),         JSON_VALUE(TEXT, stringPos),
    JSON_VALUE(TEXT, chLineA),   JSON_VALUE(TEXT, chLineR),           JSON_VALUE(TEXT, chLineG),
    JSON_VALUE(TEXT, chLineB),   JSON_VALUE(TEXT, chFontSize),        JSON_VALUE(TEXT, chFontAlign),
    JSON_VALUE(TEXT, wTxtLen),   JSON_TEXT(TEXT, pString, "wTxtLen"),
};

constexpr JSON_TABLE sc_circleFields = {sc_circle};
constexpr JSON_TABLE sc_lineFields = {sc_line};
constexpr JSON_TABLE sc_polygonFields = {sc_polygon};
constexpr JSON_TABLE sc_textFields = {sc_text};

constexpr JSON_ELEMENT sc_elements[] = {
    {"circle", KX_IVS_ZOOP_ELEMENT_CIRCULAR, &sc_circleFields},
    {"line", KX_IVS_ZOOP_ELEMENT_BROKENLINE, &sc_lineFields},
    {"polygon", KX_IVS_ZOOP_ELEMENT_POLYGON, &sc_polygonFields},
    {"text", KX_IVS_ZOOP_ELEMENT_TEXT, &sc_textFields},
};

} // namespace

constexpr JSON_TABLE gsk_overlayHeadFields = {sc_overlayHead};
constexpr JSON_TABLE gsk_overlayTailFields = {sc_overlayTail};

std::span<const JSON_ELEMENT> IvsElements()
{
    return sc_elements;
}

} // namespace Marvane::FrameSift
