/**
 * @file
 * Intelligent video metadata (IVS): formats, and the points that all records share.
 *
 * All records of IVS are laid out by the natural alignment of a 64-bit machine; their sizes stand at them and are
 * fixed. Reserved bytes read 0 unless told otherwise. Numbers stand as on the wire and are not checked against each
 * other unless told: hostile data may carry any.
 *
 * Coordinates are those of the camera. Most cameras divide the picture into 8192 units across and 8192 down, whatever
 * its size in pixels; the data does not tell.
 */
#ifndef FRAMESIFT_IVS_TYPES_H
#define FRAMESIFT_IVS_TYPES_H

#include <stdint.h>

#include "framesift/export.h"

/**
 * Formats of IVS. A caller names one of the first six to KX_ParseIVS; a callback gets the kind of the records that it is
 * handed. The numbers are fixed.
 */
typedef enum KX_IVS_PARSE_TYPE FRAMESIFT_ENUM_BASE
{
    /** To parse: tracked objects, first form. Records: KX_IVS_OBJ. */
    IVS_TRACK = 0,
    /** To parse: tracked objects, extended form; what frames of KX_FRAME_SUB_TYPE_DATA_INTL carry. Records:
       KX_IVS_OBJ_EX. */
    IVS_TRACK_EX = 1,
    /** To parse: segments of objects; what frames of KX_FRAME_SUB_TYPE_DATA_INTLEX carry. Its records come as
       IVS_TRACK_40, IVS_TRACK_A1 and IVS_TRACK_A1_EX. */
    IVS_TRACK_EX2 = 2,
    /** To parse: titles and polygons of the scene. Records: KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR. */
    IVS_TRACK_EX3 = 3,
    /** To parse: overlay drawings. Records: KX_IVS_ZOOP_OBJ. */
    IVS_TRACK_ZOOP = 20,
    /** To parse: counts of people or vehicles. Its records come as IVS_TRACK_B1. */
    IVS_TRACK_15 = 21,
    /** Told to a callback: an array of KX_IVS_COMMON_OBJ. */
    IVS_TRACK_40 = 64,
    /** Told to a callback: an array of KX_IVS_OBJ_A0. */
    IVS_TRACK_A1 = 161,
    /** Told to a callback: one KX_IVS_OBJ_ALL, which leads to an array of KX_IVS_OBJ_A0_Ex. */
    IVS_TRACK_A1_EX = 162,
    /** Told to a callback: an array of KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR. */
    IVS_TRACK_B1 = 177
} KX_IVS_PARSE_TYPE;

/** An object's place in the picture, in the camera's units. 8 bytes. */
typedef struct KX_IVS_POINT
{
    /** from the left edge */
    uint16_t x;
    /** from the top edge */
    uint16_t y;
    /** width */
    uint16_t xSize;
    /** height */
    uint16_t ySize;
} KX_IVS_POINT;

/** A place in the picture, in the camera's units. 4 bytes. */
typedef struct KX_IVS_POSITION
{
    /** from the left edge */
    uint16_t x;
    /** from the top edge */
    uint16_t y;
} KX_IVS_POSITION;

#endif
