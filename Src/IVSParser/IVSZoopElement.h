// The elements of a drawing.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSZOOPELEMENT_H
#define FRAMESIFT_SRC_IVSPARSER_IVSZOOPELEMENT_H

#include "framesift/ivs_overlay.h"

namespace Marvane::FrameSift {

class CBufferRead;

// Room for the record of an element, whatever its type: one array of them serves a whole drawing.
union ZOOP_ELEMENT_RECORD {
    KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR circle;
    KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE line;
    KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON polygon;
    KX_IVS_ZOOP_OBJ_ELEMENT_TEXT text;
};

// Reads an element into element and record, both zeros before. An element of an unknown type takes up the byte of its
// type, no more, and has no record. False: no memory for its points.
bool ParserIVSTrackZOOPObjElement(KX_IVS_ZOOP_OBJ_ELEMENT& element, ZOOP_ELEMENT_RECORD& record, CBufferRead& pb);

// Frees what the record of an element leads to. The record may be null.
void ReleaseZoopElement(const KX_IVS_ZOOP_OBJ_ELEMENT& element);

} // namespace Marvane::FrameSift

#endif
