// Rows for the places that attributes tell.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSATTRIBUTEPOINT_H
#define FRAMESIFT_SRC_IVSPARSER_IVSATTRIBUTEPOINT_H

#include "IVSParser/IVSField.h"

// One row for each number: an attribute may end in the middle of a place, and the numbers in front of its end count.
// NOLINTBEGIN(bugprone-macro-parentheses): the name of a member cannot stand in them
#define IVS_POSITION_OF(nWire, RECORD, member)                                                                         \
    IVS_FIELD_OF(nWire, RECORD, member.x), IVS_FIELD_OF((nWire) + 2, RECORD, member.y)
#define IVS_POINT_OF(nWire, RECORD, member)                                                                            \
    IVS_POSITION_OF(nWire, RECORD, member), IVS_FIELD_OF((nWire) + 4, RECORD, member.xSize),                           \
        IVS_FIELD_OF((nWire) + 6, RECORD, member.ySize)
// NOLINTEND(bugprone-macro-parentheses)

#endif
