/**
 * @file
 * IVS records of tracked objects and of the scene. What stands in ivs_types.h holds for all of them.
 */
#ifndef FRAMESIFT_IVS_TRACK_H
#define FRAMESIFT_IVS_TRACK_H

#include <stdint.h>

#include "framesift/ivs_types.h"

/** Points that a track record holds. */
#define KX_IVS_MAX_TRACK_POINT 10
/** Corners that a scene polygon holds. */
#define KX_IVS_MAX_SCENE_POINT 16

/** A tracked object, first form (IVS_TRACK). 92 bytes. */
typedef struct KX_IVS_OBJ
{
    /** number of the object, the camera's own */
    uint32_t obj_id;
    /** 1: it lives; 0: its track is finished */
    uint32_t enable;
    /** its newest places, oldest first */
    KX_IVS_POINT track_point[KX_IVS_MAX_TRACK_POINT];
    /** places that the camera announced, 0 to 255. May exceed the 10 that track_point holds: bound it before use. */
    uint32_t trackpt_num;
} KX_IVS_OBJ;

/**
 * A tracked object, extended form (IVS_TRACK_EX). 232 bytes.
 *
 * The fields from ex_info_size to main_region_color come from an extension record for the object. Without one they are
 * 0, but speed is 65535; a record cut off by the end of the data sets only those fields that it still holds.
 */
typedef struct KX_IVS_OBJ_EX
{
    /** decoder, or channel, that the object belongs to; 0 to 255 */
    int32_t decode_id;
    /** number of the object, the camera's own */
    int32_t obj_id;
    /** 1: it lives; 0: its track is finished */
    int32_t enable;
    /** its newest places, oldest first */
    KX_IVS_POINT track_point[KX_IVS_MAX_TRACK_POINT];
    /** places in track_point, 0 to 10 */
    int32_t trackpt_num;
    /** state of the object, 0 to 255, in the camera's own code; below 3 it lives */
    int32_t operator_type;
    /** which object of its buffer this is, from 0 on */
    int32_t frame_part_id;
    /** colour byte of the whole buffer, the camera's own */
    uint8_t color;
    /** class of the object, the camera's own */
    uint8_t object_type;
    /** class within the class */
    uint8_t object_sub_type;
    /** not used */
    uint8_t reserved1;
    /** size of the extension record, in bytes; 0: there was none */
    uint16_t ex_info_size;
    /** speed in speed_unit; 65535: not known */
    uint16_t speed;
    /** its part across the picture */
    uint16_t speed_X;
    /** its part down the picture */
    uint16_t speed_Y;
    /** unit of the speeds, the camera's own */
    uint8_t speed_unit;
    /** colour space of main_region_color, the camera's own */
    uint8_t color_space;
    /** main colours found */
    uint16_t main_color_num;
    /** region of the main colour: left edge */
    uint16_t main_region_rect_x;
    /** top edge */
    uint16_t main_region_rect_y;
    /** width */
    uint16_t main_region_rect_width;
    /** height */
    uint16_t main_region_rect_height;
    /** main colour of the region */
    uint32_t main_region_color;
    /** not used */
    uint8_t reserved[96];
    /** room for a renderer; always 0 here */
    int32_t nRenderNum;
} KX_IVS_OBJ_EX;

/** A tracked object of an A0 segment (IVS_TRACK_A1). 24 bytes. */
typedef struct KX_IVS_OBJ_A0
{
    /** number of the object, the camera's own */
    uint8_t objID;
    /** time tag, the camera's own */
    uint8_t timeTag;
    /** not used */
    uint16_t reserved;
    /** where it is */
    KX_IVS_POINT trackPoint;
    /** when it was there, on the camera's clock */
    uint32_t trackTime;
    /** trackTime plus 4. The data has a number of its own, which has never been read. */
    uint32_t appearTime;
    /** trackTime plus 8. The same. */
    uint32_t disappearTime;
} KX_IVS_OBJ_A0;

/** A tracked object of an A0 segment, with its looks. 60 bytes. */
typedef struct KX_IVS_OBJ_A0_Ex
{
    /** number of the object, the camera's own */
    uint8_t objID;
    /** time tag, the camera's own */
    uint8_t timeTag;
    /** not used */
    uint16_t reserved;
    /** where it is */
    KX_IVS_POINT trackPoint;
    /** when it was there, on the camera's clock */
    uint32_t trackTime;
    /** as in KX_IVS_OBJ_A0 */
    uint32_t appearTime;
    /** as in KX_IVS_OBJ_A0 */
    uint32_t disappearTime;
    /** class of the object, the camera's own */
    uint8_t Objtype;
    /** speed, in the camera's unit */
    uint8_t speed;
    /** direction, in the camera's unit */
    uint16_t direct;
    /** colours of the whole object, the camera's own */
    uint8_t globalColor[10];
    /** colours of its upper part, the same */
    uint8_t topColor[10];
    /** colours of its lower part, the same */
    uint8_t bottomColor[10];
    /** not used */
    uint8_t reserve[2];
} KX_IVS_OBJ_A0_Ex;

/** The array that a KX_IVS_OBJ_ALL leads to; its type says which member counts. 8 bytes. */
typedef union KX_IVS_OBJ_UNION {
    /** with type 0; never handed out: an array of KX_IVS_OBJ_A0 comes as itself, as IVS_TRACK_A1 */
    KX_IVS_OBJ_A0* IVSObjA0;
    /** with type 1 */
    KX_IVS_OBJ_A0_Ex* IVSObjA0Ex;
} KX_IVS_OBJ_UNION;

/** Leads to the objects of an extended A0 segment (IVS_TRACK_A1_EX). 24 bytes. */
typedef struct KX_IVS_OBJ_ALL
{
    /** 0: KX_IVS_OBJ_A0, 1: KX_IVS_OBJ_A0_Ex */
    uint32_t type;
    /** the objects; they end with the callback */
    KX_IVS_OBJ_UNION ObjUnion;
    /** their length in bytes: number of objects times 60 */
    uint32_t ObjUnionLen;
} KX_IVS_OBJ_ALL;

/** A title in the scene, with the polygon that it names (IVS_TRACK_EX3). 144 bytes. */
typedef struct KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR
{
    /** number of the entry, the camera's own */
    int32_t nIndex;
    /** where the title stands */
    KX_IVS_POSITION sceneInfoPoint;
    /** the title; bytes in the camera's character set, zero-terminated only if shorter than the field */
    char fristtile[64];
    /** whether it is to be shown */
    uint8_t enable;
    /** kind of the title, the camera's own */
    uint8_t titleType;
    /** attribute of the title, the camera's own */
    uint8_t titleAttribute;
    /** shape, the camera's own */
    uint8_t sharpType;
    /** corners that the camera announced. May exceed the 16 that polygon holds: bound it before use. */
    uint8_t polygon_num;
    /** not used */
    uint8_t reserved[3];
    /** corners */
    KX_IVS_POSITION polygon[KX_IVS_MAX_SCENE_POINT];
} KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR;

#endif
