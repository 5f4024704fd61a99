/**
 * @file
 * IVS records of the attributes that a common object carries. What stands in ivs_types.h holds for all of them.
 *
 * The number in a record's name is the attribute's type on the wire. The codes (models, brands, colours, sexes, ...) are
 * the camera's own. An attribute shorter than its record leaves the rest of the record as it was: 0, or as an attribute of the
 * same type in front of it in the same object has set it.
 */
#ifndef FRAMESIFT_IVS_ATTRIBUTES_H
#define FRAMESIFT_IVS_ATTRIBUTES_H

#include <stdint.h>

#include "framesift/ivs_types.h"

/** 0x80: body of a vehicle. 64 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_80
{
    /** whether the colour counts */
    uint8_t colorVailed;
    /** model */
    uint8_t carModel;
    /** brand */
    uint16_t brand;
    /** colour: red */
    uint8_t color_r;
    /** colour: green */
    uint8_t color_g;
    /** colour: blue */
    uint8_t color_b;
    /** colour: alpha */
    uint8_t color_a;
    /** series of the brand */
    uint16_t subbrand;
    /** year of the series */
    uint16_t year;
    /** windscreen */
    KX_IVS_POINT windowPosition;
    /** how sure the vehicle was found */
    uint8_t nReliabilityOfVehicleBodyDetection;
    /** not used */
    uint8_t reserved[43];
} KX_IVS_TRAFFIC_ATTRIBUTE_80;

/** 0x81: the front seats of a vehicle. 64 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_81
{
    /** driver */
    KX_IVS_POINT mainPosition;
    /** passenger */
    KX_IVS_POINT coPosition;
    /** belt of the driver, 0 to 3 */
    uint8_t mainSafetyBelt;
    /** belt of the passenger, 0 to 3 */
    uint8_t coSafetyBelt;
    /** sun visor of the driver: always 0 */
    uint8_t mainSunvisor;
    /** sun visor of the passenger: always 0 */
    uint8_t coSunvisor;
    /** not used */
    uint8_t reserved[44];
} KX_IVS_TRAFFIC_ATTRIBUTE_81;

/** 0x82: text of a number plate. 256 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_82
{
    /** character set */
    uint8_t plateEncode;
    /** length of the text in bytes, as on the wire: bound it by the size of plateInfo */
    uint8_t plateInfoLen;
    /** not used */
    uint8_t reserved[2];
    /** the text, not zero-terminated; left as it was if the data ends before it does */
    uint8_t plateInfo[252];
} KX_IVS_TRAFFIC_ATTRIBUTE_82;

/** 0x83: looks of a number plate. 64 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_83
{
    /** whether the colour counts */
    uint8_t colorVailed;
    /** not used */
    uint8_t reserved[3];
    /** colour */
    uint32_t color;
    /** country, as letters */
    uint8_t strCountry[4];
    /** kind of the plate */
    uint16_t plateType;
    /** width of the plate */
    uint16_t plateWidth;
    /** how sure the plate was read */
    uint8_t plateConfidence;
    /** not used */
    uint8_t reserved1[47];
} KX_IVS_TRAFFIC_ATTRIBUTE_83;

/** 0x84: where an object comes from, and its track. 512 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_84
{
    /** objects that it split off from or is made of, as on the wire: 0 to 255. Bound it by the 63 of fatherID. */
    uint8_t fatherCount;
    /** places in trackPoint, 0 to 31 */
    uint8_t pointCount;
    /** kind of the track */
    uint8_t trackType;
    /** not used */
    uint8_t reserved;
    /** the track */
    KX_IVS_POINT trackPoint[32];
    /** numbers of those objects */
    uint32_t fatherID[63];
} KX_IVS_TRAFFIC_ATTRIBUTE_84;

/** A colour and where it was found. 12 bytes. */
typedef struct KX_IVS_ATTRIBUTE_MAINCOLOR
{
    /** where */
    KX_IVS_POINT mainColRect;
    /** the colour */
    uint32_t mainColor;
} KX_IVS_ATTRIBUTE_MAINCOLOR;

/** 0x85: main colours. 256 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_85
{
    /** colour space of the numbers */
    uint8_t colorSpace;
    /** colours that the camera announced, 0 to 21 */
    uint8_t mainColorCount;
    /** not used */
    uint8_t reserved[2];
    /** the colours. As many are read as the object's attribute 0x84 in front of this one has places, and none without
       one; the others are 0. */
    KX_IVS_ATTRIBUTE_MAINCOLOR color[21];
} KX_IVS_TRAFFIC_ATTRIBUTE_85;

/** 0x86: speed. 64 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_86
{
    /** unit of the numbers */
    uint8_t speedType;
    /** not used */
    uint8_t reserved;
    /** speed */
    uint16_t speed;
    /** its part across the picture */
    uint16_t speedX;
    /** its part down the picture */
    uint16_t speedY;
    /** not used */
    uint8_t reserved1[56];
} KX_IVS_TRAFFIC_ATTRIBUTE_86;

/** 0x87: how long an object has stayed. 64 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_87
{
    /** where */
    KX_IVS_POINT trackPoint;
    /** how long, in the camera's unit */
    uint16_t staytime;
    /** not used */
    uint8_t reserved1[54];
} KX_IVS_TRAFFIC_ATTRIBUTE_87;

/** 0x88: looks of a person. 64 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_88
{
    /** age */
    uint8_t age;
    /** sex */
    uint8_t sex;
    /** expression */
    uint8_t face;
    /** glasses */
    uint8_t glass;
    /** hat */
    uint8_t hat;
    /** telephone */
    uint8_t call;
    /** backpack */
    uint8_t backPack;
    /** umbrella */
    uint8_t umbrella;
    /** height */
    uint8_t height;
    /** mask */
    uint8_t mask;
    /** kind of the coat */
    uint8_t coattype;
    /** kind of the trousers */
    uint8_t pantstype;
    /** colour of the coat, four bytes of the camera; 0, 0, 0, 255 if the data ends before it does */
    uint8_t coatcolor[4];
    /** colour of the trousers, the same */
    uint8_t pantscolor[4];
    /** not used */
    uint8_t reserved[44];
} KX_IVS_TRAFFIC_ATTRIBUTE_88;

/** 0x89: a face. 256 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_89
{
    /** numbers in feature, 0 to 56 */
    uint8_t posCount;
    /** not used */
    uint8_t reserved;
    /** turn of the head to the side, in the camera's unit */
    int16_t yawAngle;
    /** tilt to the side */
    int16_t rollAngle;
    /** nod */
    int16_t pitchAngle;
    /** left eye */
    KX_IVS_POSITION lEyePos;
    /** right eye */
    KX_IVS_POSITION rEyePos;
    /** nose */
    KX_IVS_POSITION nosePos;
    /** left corner of the mouth */
    KX_IVS_POSITION lMouthPos;
    /** right corner of the mouth */
    KX_IVS_POSITION rMouthPos;
    /** features, the camera's own */
    uint32_t feature[57];
} KX_IVS_TRAFFIC_ATTRIBUTE_89;

/** 0x8C: things behind a windscreen. 256 bytes. */
typedef struct KX_IVS_TRAFFIC_ATTRIBUTE_8C
{
    /** hanging things, 0 to 4 */
    uint8_t car_hanging_accessoryCount;
    /** boxes of tissues, 0 to 4 */
    uint8_t tissue_boxCount;
    /** sun visors, 0 to 4 */
    uint8_t sun_visorCount;
    /** inspection marks, 0 to 8 */
    uint8_t annual_inspection_standardCount;
    /** where they are */
    KX_IVS_POINT car_hanging_accessoryPos[4];
    /** where they are */
    KX_IVS_POINT tissue_boxPos[4];
    /** where they are */
    KX_IVS_POINT sun_visorPos[4];
    /** where they are */
    KX_IVS_POINT annual_inspection_standardPos[8];
    /** not used */
    uint8_t reserved1[92];
} KX_IVS_TRAFFIC_ATTRIBUTE_8C;

/** 0x8E: a name. 32 bytes. */
typedef struct KX_IVS_ATTRIBUTE_8E
{
    /** character set */
    uint8_t name_codec_format;
    /** length of the name in bytes, as on the wire: bound it by the size of name */
    uint8_t name_lenth;
    /** the name, not zero-terminated; left as it was if it is longer than this, or if the data ends before it does */
    uint8_t name[28];
    /** not used */
    uint8_t reserved[2];
} KX_IVS_ATTRIBUTE_8E;

/** 0x90: how long an object has queued. 16 bytes. */
typedef struct KX_IVS_ATTRIBUTE_90
{
    /** how long, in the camera's unit */
    uint32_t m_QueuingTime;
    /** not used */
    uint8_t reserved[12];
} KX_IVS_ATTRIBUTE_90;

/** 0x92: a vehicle without a motor. 56 bytes. */
typedef struct KX_IVS_ATTRIBUTE_92
{
    /** colour, four bytes of the camera */
    uint8_t vehicles_color[4];
    /** kind */
    uint8_t vehicles_type;
    /** people on it */
    uint8_t cyclingnumber;
    /** not used */
    uint8_t reserved[50];
} KX_IVS_ATTRIBUTE_92;

/** 0x93: a ship. 56 bytes. */
typedef struct KX_IVS_ATTRIBUTE_93
{
    /** length, in the camera's unit */
    uint16_t ship_length;
    /** height */
    uint8_t ship_height;
    /** speed */
    uint8_t ship_speed;
    /** distance */
    uint16_t ship_distance;
    /** not used */
    uint8_t reserved[50];
} KX_IVS_ATTRIBUTE_93;

/** 0x94: an object as a radar sees it. 40 bytes. */
typedef struct KX_IVS_ATTRIBUTE_94
{
    /** distance, in the camera's unit */
    uint16_t obj_Distance;
    /** angle */
    int16_t obj_Angle;
    /** speed */
    uint16_t obj_Speed;
    /** kind */
    uint8_t obj_type;
    /** not used */
    uint8_t resv;
    /** number that the radar gave it */
    uint16_t obj_Id;
    /** not used */
    uint8_t reserved[30];
} KX_IVS_ATTRIBUTE_94;

/** 0x97: another number of the object. 32 bytes. */
typedef struct KX_IVS_ATTRIBUTE_97
{
    /** whether the number counts */
    uint8_t obj_Validity;
    /** not used */
    uint8_t reserved1[3];
    /** the number */
    uint32_t obj_ID;
    /** not used */
    uint8_t reserved[24];
} KX_IVS_ATTRIBUTE_97;

/** The attributes of an object. 2156 bytes. */
typedef struct KX_IVS_ATTRIBUTE
{
    /** which there are: bit n stands for type 0x80 + n. Those whose bit is not set are all 0. */
    uint32_t attrflag;
    /** body of a vehicle */
    KX_IVS_TRAFFIC_ATTRIBUTE_80 arrtibute80;
    /** front seats */
    KX_IVS_TRAFFIC_ATTRIBUTE_81 arrtibute81;
    /** text of a number plate */
    KX_IVS_TRAFFIC_ATTRIBUTE_82 arrtibute82;
    /** looks of a number plate */
    KX_IVS_TRAFFIC_ATTRIBUTE_83 arrtibute83;
    /** origin and track */
    KX_IVS_TRAFFIC_ATTRIBUTE_84 arrtibute84;
    /** main colours */
    KX_IVS_TRAFFIC_ATTRIBUTE_85 arrtibute85;
    /** speed */
    KX_IVS_TRAFFIC_ATTRIBUTE_86 arrtibute86;
    /** stay */
    KX_IVS_TRAFFIC_ATTRIBUTE_87 arrtibute87;
    /** looks of a person */
    KX_IVS_TRAFFIC_ATTRIBUTE_88 arrtibute88;
    /** a face */
    KX_IVS_TRAFFIC_ATTRIBUTE_89 arrtibute89;
    /** things behind a windscreen */
    KX_IVS_TRAFFIC_ATTRIBUTE_8C arrtibute8C;
    /** a name */
    KX_IVS_ATTRIBUTE_8E arrtibute8E;
    /** time in a queue */
    KX_IVS_ATTRIBUTE_90 arrtibute90;
    /** a vehicle without a motor */
    KX_IVS_ATTRIBUTE_92 arrtibute92;
    /** a ship */
    KX_IVS_ATTRIBUTE_93 arrtibute93;
    /** seen by radar */
    KX_IVS_ATTRIBUTE_94 arrtibute94;
    /** another number */
    KX_IVS_ATTRIBUTE_97 arrtibute97;
} KX_IVS_ATTRIBUTE;

#endif
