/**
 * @file
 * IVS records of the lanes of a road: the one attribute that a signal flow object carries. What stands in ivs_types.h
 * holds for all of them.
 *
 * The number in a record's name is the attribute's type on the wire. Positions here may lie outside the picture, so they
 * are signed. Codes and units are the camera's own. Where the data ends before an attribute does, the rest of it is 0;
 * but a small number behind the cut may be read from the last bytes.
 */
#ifndef FRAMESIFT_IVS_LANES_H
#define FRAMESIFT_IVS_LANES_H

#include <stdint.h>

#include "framesift/ivs_types.h"

/** A place, in the camera's units. 4 bytes. */
typedef struct KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION
{
    /** from the left edge */
    int16_t x;
    /** from the top edge */
    int16_t y;
} KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION;

/** A line between two places. 8 bytes. */
typedef struct KX_IVS_LINE_POSITION
{
    /** where it begins */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION stratpoint;
    /** where it ends */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION endpoint;
} KX_IVS_LINE_POSITION;

/** A mark of the distance scale along a lane. 2 bytes. */
typedef struct KX_IVS_LANE_CALIBRATION
{
    /** from the top edge */
    int16_t YPoint;
} KX_IVS_LANE_CALIBRATION;

/** A lane of attribute 0x8D: its two virtual loops and its queue. 48 bytes. */
typedef struct KX_SIGNAL_FLOW_LANE_INFO
{
    /** number of the lane */
    uint8_t LaneNum;
    /** loops that it has */
    uint8_t virtualLoopTotalNum;
    /** state of the first loop */
    uint8_t firstVirtualLoopStatus;
    /** state of the second loop */
    uint8_t secondVirtualLoopStatus;
    /** length of the queue */
    uint32_t queneLenth;
    /** left end of the queue's tail */
    KX_IVS_POSITION ltailCoordinates;
    /** right end of the queue's tail */
    KX_IVS_POSITION rtailCoordinates;
    /** first loop: its corners */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION firstVirtualCoordinates1;
    /** second corner */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION firstVirtualCoordinates2;
    /** third corner */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION firstVirtualCoordinates3;
    /** fourth corner */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION firstVirtualCoordinates4;
    /** second loop: its corners */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION secondVirtualCoordinates1;
    /** second corner */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION secondVirtualCoordinates2;
    /** third corner */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION secondVirtualCoordinates3;
    /** fourth corner */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION secondVirtualCoordinates4;
} KX_SIGNAL_FLOW_LANE_INFO;

/** 0x8D: lanes with virtual loops and queues. 256 bytes. */
typedef struct KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D
{
    /** lanes, 1 to 5 */
    uint8_t laneCount;
    /** not used */
    uint8_t nReserverd[7];
    /** the lanes */
    KX_SIGNAL_FLOW_LANE_INFO signal_flow_laneInfo[5];
    /** not used */
    uint8_t reserved1[8];
} KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D;

/** A virtual loop: the piece of a lane between two lines, which may have bends. 180 bytes. */
typedef struct KX_IVS_VIRTUAL_CIRCLE
{
    /** number of the loop */
    uint8_t circle_id;
    /** colour to draw it in */
    uint8_t circle_color;
    /** its left edge */
    KX_IVS_LINE_POSITION left_lane_position;
    /** its right edge */
    KX_IVS_LINE_POSITION right_lane_position;
    /** bends of the left edge, as on the wire: 0 to 255. Bound it by the 20 of the array. */
    uint8_t left_inflection_count;
    /** bends of the right edge, the same */
    uint8_t right_inflection_count;
    /** the first 20 bends of the left edge */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION left_inflection_position[20];
    /** the first 20 bends of the right edge */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION right_inflection_position[20];
} KX_IVS_VIRTUAL_CIRCLE;

/** A lane of attribute 0x91. 188 bytes. */
typedef struct KX_IVS_ATTRIBUTE_91_LANE_INFO
{
    /** number of the lane */
    uint8_t lane_id;
    /** kind of the lane */
    uint8_t lane_type;
    /** not used */
    uint8_t reserved1[2];
    /** its left edge */
    KX_IVS_LINE_POSITION left_lane_position;
    /** its right edge */
    KX_IVS_LINE_POSITION right_lane_position;
    /** its name, in the camera's character set; zero-terminated only if shorter than the field */
    uint8_t lane_name[16];
    /** not used */
    uint8_t reserved2[3];
    /** marks in lane_calibration, 0 to 70 */
    uint8_t lane_virtual_number;
    /** distance scale along the lane */
    KX_IVS_LANE_CALIBRATION lane_calibration[70];
    /** not used */
    uint8_t reserved3[8];
} KX_IVS_ATTRIBUTE_91_LANE_INFO;

/** 0x91: lanes with straight edges, and marks of distance. 1798 bytes. */
typedef struct KX_IVS_ATTRIBUTE_91
{
    /** length that the wire states: a multiple of 4, not 0 */
    uint8_t packet_length;
    /** goes up when the lanes change */
    uint8_t increment_id;
    /** lanes, 1 to 5 */
    uint8_t lane_number;
    /** not used */
    uint8_t reserved1;
    /** the lanes */
    KX_IVS_ATTRIBUTE_91_LANE_INFO lane_info[5];
    /** marks, 0 to 140 */
    uint8_t mark_number;
    /** not used */
    uint8_t reserved2[3];
    /** where the marks are */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION mark_position[140];
    /** what they say */
    int16_t mark_value[140];
    /** not used */
    uint8_t resv[10];
} KX_IVS_ATTRIBUTE_91;

/** A lane of attribute 0x95. 1434 bytes. */
typedef struct KX_IVS_ATTRIBUTE_95_LANE_INFO
{
    /** number of the lane */
    uint8_t lane_id;
    /** points of its left edge, 1 to 20 */
    uint8_t left_lane_position_num;
    /** its left edge */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION left_lane_position[20];
    /** points of its right edge, 1 to 20 */
    uint8_t right_lane_position_num;
    /** not used */
    uint8_t reserved1;
    /** its right edge */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION right_lane_position[20];
    /** virtual loops, 0 to 7 */
    uint8_t lane_virtual_number;
    /** not used */
    uint8_t reserved3;
    /** the loops */
    KX_IVS_VIRTUAL_CIRCLE virtual_circle[7];
    /** not used */
    uint8_t reserved4[8];
} KX_IVS_ATTRIBUTE_95_LANE_INFO;

/** 0x95: lanes with bent edges and virtual loops. 11492 bytes. */
typedef struct KX_IVS_ATTRIBUTE_95
{
    /** length that the wire states: a multiple of 4, not 0 */
    uint8_t packet_length;
    /** lanes, 1 to 8 */
    uint8_t lane_number;
    /** not used */
    uint8_t reserved1;
    /** the lanes */
    KX_IVS_ATTRIBUTE_95_LANE_INFO lane_info[8];
    /** not used */
    uint8_t resv[16];
} KX_IVS_ATTRIBUTE_95;

/** A lane of attribute 0x96. 12792 bytes. */
typedef struct KX_IVS_ATTRIBUTE_96_LANE_INFO
{
    /** number of the lane */
    uint8_t lane_id;
    /** kind of the lane */
    uint8_t lane_type;
    /** points of its left edge, 1 to 20 */
    uint8_t left_lane_position_num;
    /** not used */
    uint8_t reserved1;
    /** its left edge */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION left_lane_position[20];
    /** points of its right edge, 1 to 20 */
    uint8_t right_lane_position_num;
    /** not used */
    uint8_t reserved2;
    /** its right edge */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION right_lane_position[20];
    /** its name, in the camera's character set; zero-terminated only if shorter than the field */
    uint8_t lane_name[16];
    /** virtual loops, 0 to 70 */
    uint8_t lane_virtual_number;
    /** not used */
    uint8_t reserved3;
    /** the loops */
    KX_IVS_VIRTUAL_CIRCLE virtual_circle[70];
    /** not used */
    uint8_t reserved4[8];
} KX_IVS_ATTRIBUTE_96_LANE_INFO;

/** 0x96: lanes with bent edges, names, many virtual loops, and marks of distance. 103200 bytes. */
typedef struct KX_IVS_ATTRIBUTE_96
{
    /** length that the wire states: a multiple of 4, not 0 */
    uint8_t packet_length;
    /** lanes, 1 to 8 */
    uint8_t lane_number;
    /** not used */
    uint8_t reserved1;
    /** the lanes */
    KX_IVS_ATTRIBUTE_96_LANE_INFO lane_info[8];
    /** marks, 0 to 140 */
    uint8_t mark_number;
    /** not used */
    uint8_t reserved2[3];
    /** where the marks are */
    KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION mark_position[140];
    /** what they say */
    int16_t mark_value[140];
    /** not used */
    uint8_t resv[16];
} KX_IVS_ATTRIBUTE_96;

#endif
