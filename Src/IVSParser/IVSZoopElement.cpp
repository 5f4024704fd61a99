#include "IVSParser/IVSZoopElement.h"

#include <iterator>

#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

using CIRCLE = KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR;
using LINE = KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE;
using POLYGON = KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON;
using TEXT = KX_IVS_ZOOP_OBJ_ELEMENT_TEXT;

// What follows the type on the wire, one behind the other. A row per number and not one for several: at the end of the
// data each is read or left out for itself.
constexpr IVS_FIELD sc_circleFields[] = {
    IVS_FIELD_OF(0, CIRCLE, chWidth),
    IVS_FIELD_OF(1, CIRCLE, chStyle),
    IVS_FIELD_OF(2, CIRCLE, chRes0),
    IVS_FIELD_OF(3, CIRCLE, wRadius),
    IVS_FIELD_OF(5, CIRCLE, wRes1),
    IVS_FIELD_OF(7, CIRCLE, positionCircle.x),
    IVS_FIELD_OF(9, CIRCLE, positionCircle.y),
    IVS_FIELD_OF(11, CIRCLE, chLineA),
    IVS_FIELD_OF(12, CIRCLE, chLineR),
    IVS_FIELD_OF(13, CIRCLE, chLineG),
    IVS_FIELD_OF(14, CIRCLE, chLineB),
    IVS_FIELD_OF(15, CIRCLE, chRegA),
    IVS_FIELD_OF(16, CIRCLE, chRegR),
    IVS_FIELD_OF(17, CIRCLE, chRegG),
    IVS_FIELD_OF(18, CIRCLE, chRegB),
};

constexpr IVS_FIELD sc_lineFields[] = {
    IVS_FIELD_OF(0, LINE, chCount), IVS_FIELD_OF(1, LINE, chWidth), IVS_FIELD_OF(2, LINE, chStyle),
    IVS_FIELD_OF(3, LINE, chLineA), IVS_FIELD_OF(4, LINE, chLineR), IVS_FIELD_OF(5, LINE, chLineG),
    IVS_FIELD_OF(6, LINE, chLineB),
};

constexpr IVS_FIELD sc_polygonFields[] = {
    IVS_FIELD_OF(0, POLYGON, chCount), IVS_FIELD_OF(1, POLYGON, chWidth), IVS_FIELD_OF(2, POLYGON, chStyle),
    IVS_FIELD_OF(3, POLYGON, chLineA), IVS_FIELD_OF(4, POLYGON, chLineR), IVS_FIELD_OF(5, POLYGON, chLineG),
    IVS_FIELD_OF(6, POLYGON, chLineB), IVS_FIELD_OF(7, POLYGON, chRegA),  IVS_FIELD_OF(8, POLYGON, chRegR),
    IVS_FIELD_OF(9, POLYGON, chRegG),  IVS_FIELD_OF(10, POLYGON, chRegB),
};

constexpr IVS_FIELD sc_textFields[] = {
    IVS_FIELD_OF(0, TEXT, chCharset),    IVS_FIELD_OF(1, TEXT, chRes1),   IVS_FIELD_OF(3, TEXT, stringPos.x),
    IVS_FIELD_OF(5, TEXT, stringPos.y),  IVS_FIELD_OF(7, TEXT, chLineA),  IVS_FIELD_OF(8, TEXT, chLineR),
    IVS_FIELD_OF(9, TEXT, chLineG),      IVS_FIELD_OF(10, TEXT, chLineB), IVS_FIELD_OF(11, TEXT, chFontSize),
    IVS_FIELD_OF(12, TEXT, chFontAlign), IVS_FIELD_OF(13, TEXT, wTxtLen),
};

constexpr IVS_FIELD sc_positionFields[] = {
    IVS_FIELD_OF(0, KX_IVS_POSITION, x),
    IVS_FIELD_OF(2, KX_IVS_POSITION, y),
};

// Null if there is no memory.
KX_IVS_POSITION* ReadPositions(CBufferRead& pb, uint8_t nCount)
{
    KX_IVS_POSITION* pPositions = TryAllocRecords<KX_IVS_POSITION>(nCount).release();
    for (size_t n = 0; pPositions != nullptr && n < nCount; ++n)
        ReadFields<sc_positionFields>(pb, pPositions[n]);
    return pPositions;
}

// Each answers the size on the wire that its element claims, type included, whether the data holds it or not.
uint32_t ParserIVSTrackZOOPObjElementCircle(CIRCLE& circle, CBufferRead& pb)
{
    ReadFields<sc_circleFields>(pb, circle);
    return 1 + IvsWireSize(sc_circleFields);
}

uint32_t ParserIVSTrackZOOPObjElementLine(LINE& line, CBufferRead& pb)
{
    ReadFields<sc_lineFields>(pb, line);
    line.pointer = ReadPositions(pb, line.chCount);
    return 1 + IvsWireSize(sc_lineFields) + line.chCount * uint32_t{sizeof(KX_IVS_POSITION)};
}

uint32_t ParserIVSTrackZOOPObjElementPolygon(POLYGON& polygon, CBufferRead& pb)
{
    ReadFields<sc_polygonFields>(pb, polygon);
    polygon.pointer = ReadPositions(pb, polygon.chCount);
    return 1 + IvsWireSize(sc_polygonFields) + polygon.chCount * uint32_t{sizeof(KX_IVS_POSITION)};
}

uint32_t ParserIVSTrackZOOPObjElementText(TEXT& text, CBufferRead& pb)
{
    ReadFields<sc_textFields>(pb, text);
    text.pString = pb.ReadBuffer(text.wTxtLen);
    return 1 + IvsWireSize(sc_textFields) + text.wTxtLen;
}

} // namespace

bool ParserIVSTrackZOOPObjElement(KX_IVS_ZOOP_OBJ_ELEMENT& element, ZOOP_ELEMENT_RECORD& record, CBufferRead& pb)
{
    const uint8_t chType = pb.ReadInt8();
    element.nType = chType;
    element.pStruct = &record;
    record.circle.chType = chType; // all of them begin with it
    switch (chType) {
    case KX_IVS_ZOOP_ELEMENT_CIRCULAR:
        element.nLength = ParserIVSTrackZOOPObjElementCircle(record.circle, pb);
        return true;
    case KX_IVS_ZOOP_ELEMENT_BROKENLINE:
        element.nLength = ParserIVSTrackZOOPObjElementLine(record.line, pb);
        return record.line.pointer != nullptr;
    case KX_IVS_ZOOP_ELEMENT_POLYGON:
        element.nLength = ParserIVSTrackZOOPObjElementPolygon(record.polygon, pb);
        return record.polygon.pointer != nullptr;
    case KX_IVS_ZOOP_ELEMENT_TEXT:
        element.nLength = ParserIVSTrackZOOPObjElementText(record.text, pb);
        return true;
    default:
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParserIVSTrackOPObjElement] chType is not support! chType =  %d\n", int{chType});
        element.pStruct = nullptr;
        return true;
    }
}

void ReleaseZoopElement(const KX_IVS_ZOOP_OBJ_ELEMENT& element)
{
    if (element.pStruct == nullptr)
        return;
    if (element.nType == KX_IVS_ZOOP_ELEMENT_BROKENLINE)
        delete[] static_cast<const LINE*>(element.pStruct)->pointer;
    if (element.nType == KX_IVS_ZOOP_ELEMENT_POLYGON)
        delete[] static_cast<const POLYGON*>(element.pStruct)->pointer;
}

} // namespace Marvane::FrameSift
