/**
 * @file
 * IVS records of common objects (IVS_TRACK_40): vehicles, faces, lanes and others, in groups. What stands in ivs_types.h
 * holds for all of them.
 */
#ifndef FRAMESIFT_IVS_OBJECTS_H
#define FRAMESIFT_IVS_OBJECTS_H

#include <stdint.h>

#include "framesift/ivs_attributes.h"
#include "framesift/ivs_lanes.h"
#include "framesift/ivs_types.h"

/** Head of the segment that an object stands in. 32 bytes. */
typedef struct KX_IVS_SEGMENT_INFO
{
    /** kind of the segment, 0 to 191: its type on the wire less 0x40 */
    uint8_t funcType;
    /** groups of the segment */
    uint8_t groupCount;
    /** name of the camera; zero-terminated only if shorter than the field */
    uint8_t cameraID[20];
    /** not used */
    uint8_t resv[10];
} KX_IVS_SEGMENT_INFO;

/** Which attributes an object has: the values of KX_IVS_COMMON_OBJ::attrUnionflag. */
typedef enum OBJ_ATTR_UNION_FLAG
{
    /** attr.comm */
    OBJ_ATTR_COMM = 0,
    /** attr.signal_flow */
    OBJ_ATTR_0x8D = 1,
    /** attr.arrtibute91 */
    OBJ_ATTR_0x91 = 2,
    /** pArrtibute95 */
    OBJ_ATTR_0x95 = 3,
    /** pArrtibute96 */
    OBJ_ATTR_0x96 = 4
} OBJ_ATTR_UNION_FLAG;

/** The attributes that stand in the object itself. 2156 bytes. */
typedef union KX_IVS_COMMON_OBJ_ATTR {
    /** with OBJ_ATTR_COMM */
    KX_IVS_ATTRIBUTE comm;
    /** with OBJ_ATTR_0x8D */
    KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D signal_flow;
    /** with OBJ_ATTR_0x91 */
    KX_IVS_ATTRIBUTE_91 arrtibute91;
} KX_IVS_COMMON_OBJ_ATTR;

/** An object of a group. All that it leads to ends with the callback. 2248 bytes. */
typedef struct KX_IVS_COMMON_OBJ
{
    /** head of its segment */
    KX_IVS_SEGMENT_INFO segInfo;
    /** number of its group */
    uint32_t groupID;
    /** number of the object, the camera's own */
    uint32_t objID;
    /** where it is; vehicles (objType 2 and 5) only */
    KX_IVS_POINT trackPoint;
    /** class, the camera's own: 2 and 5 vehicles, 15 a face, 18 and 27 lanes (signal flow); others have attributes only */
    uint8_t objType;
    /** whether trackPoint counts; vehicles only */
    uint8_t pointVailed;
    /** what happened to it, the camera's own; not of faces */
    uint8_t operatorType;
    /** not used */
    uint8_t reserved;
    /** size of this record, 2248: the way to the next one */
    uint32_t nStructSize;
    /** version of facedata; faces only */
    uint8_t version;
    /** which attributes it has: OBJ_ATTR_UNION_FLAG */
    uint8_t attrUnionflag;
    /** not used */
    uint8_t resv[2];
    /** faces only: data of the camera's own, in the buffer that is being parsed. Its length is not told. Null if the data
       ends before it does. */
    const uint8_t* facedata;
    /** attributes, but for 0x95 and 0x96 */
    KX_IVS_COMMON_OBJ_ATTR attr;
    /** with OBJ_ATTR_0x95, else null */
    KX_IVS_ATTRIBUTE_95* pArrtibute95;
    /** with OBJ_ATTR_0x96, else null */
    KX_IVS_ATTRIBUTE_96* pArrtibute96;
} KX_IVS_COMMON_OBJ;

#endif
