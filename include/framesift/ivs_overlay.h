/**
 * @file
 * IVS records of overlay drawings (IVS_TRACK_ZOOP), which an application on the camera wants to see laid over the
 * picture. What stands in ivs_types.h holds for all of them; arrays and element records end with the callback.
 *
 * Colours are alpha, red, green, blue, 0 to 255 each. Widths, styles, font sizes and alignments are the camera's own.
 */
#ifndef FRAMESIFT_IVS_OVERLAY_H
#define FRAMESIFT_IVS_OVERLAY_H

#include <stdint.h>

#include "framesift/ivs_types.h"

/** Kinds of elements: the values of KX_IVS_ZOOP_OBJ_ELEMENT::nType. The numbers are fixed. */
typedef enum KX_IVS_ZOOP_ELEMENT_TYPE
{
    /** KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR */
    KX_IVS_ZOOP_ELEMENT_CIRCULAR = 1,
    /** KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE */
    KX_IVS_ZOOP_ELEMENT_BROKENLINE = 2,
    /** KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON */
    KX_IVS_ZOOP_ELEMENT_POLYGON = 3,
    /** KX_IVS_ZOOP_OBJ_ELEMENT_TEXT */
    KX_IVS_ZOOP_ELEMENT_TEXT = 4
} KX_IVS_ZOOP_ELEMENT_TYPE;

/** A circle. 20 bytes. */
typedef struct KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR
{
    /** KX_IVS_ZOOP_ELEMENT_CIRCULAR */
    uint8_t chType;
    /** of the line */
    uint8_t chWidth;
    /** of the line */
    uint8_t chStyle;
    /** not used, as on the wire */
    uint8_t chRes0;
    /** radius, in the camera's units */
    uint16_t wRadius;
    /** not used, as on the wire */
    uint16_t wRes1;
    /** its middle */
    KX_IVS_POSITION positionCircle;
    /** line: alpha */
    uint8_t chLineA;
    /** line: red */
    uint8_t chLineR;
    /** line: green */
    uint8_t chLineG;
    /** line: blue */
    uint8_t chLineB;
    /** area: alpha */
    uint8_t chRegA;
    /** area: red */
    uint8_t chRegR;
    /** area: green */
    uint8_t chRegG;
    /** area: blue */
    uint8_t chRegB;
} KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR;

/** A line from point to point. 16 bytes. */
typedef struct KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE
{
    /** KX_IVS_ZOOP_ELEMENT_BROKENLINE */
    uint8_t chType;
    /** points */
    uint8_t chCount;
    /** of the line */
    uint8_t chWidth;
    /** of the line */
    uint8_t chStyle;
    /** line: alpha */
    uint8_t chLineA;
    /** line: red */
    uint8_t chLineR;
    /** line: green */
    uint8_t chLineG;
    /** line: blue */
    uint8_t chLineB;
    /** chCount points; those behind the end of the data are 0 */
    KX_IVS_POSITION* pointer;
} KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE;

/** A closed line and the area in it. 24 bytes. */
typedef struct KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON
{
    /** KX_IVS_ZOOP_ELEMENT_POLYGON */
    uint8_t chType;
    /** corners */
    uint8_t chCount;
    /** of the line */
    uint8_t chWidth;
    /** of the line */
    uint8_t chStyle;
    /** line: alpha */
    uint8_t chLineA;
    /** line: red */
    uint8_t chLineR;
    /** line: green */
    uint8_t chLineG;
    /** line: blue */
    uint8_t chLineB;
    /** area: alpha */
    uint8_t chRegA;
    /** area: red */
    uint8_t chRegR;
    /** area: green */
    uint8_t chRegG;
    /** area: blue */
    uint8_t chRegB;
    /** chCount corners; those behind the end of the data are 0 */
    KX_IVS_POSITION* pointer;
} KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON;

/** A text. 24 bytes. */
typedef struct KX_IVS_ZOOP_OBJ_ELEMENT_TEXT
{
    /** KX_IVS_ZOOP_ELEMENT_TEXT */
    uint8_t chType;
    /** character set, the camera's own */
    uint8_t chCharset;
    /** not used, as on the wire */
    uint8_t chRes1[2];
    /** where it begins */
    KX_IVS_POSITION stringPos;
    /** text: alpha */
    uint8_t chLineA;
    /** text: red */
    uint8_t chLineR;
    /** text: green */
    uint8_t chLineG;
    /** text: blue */
    uint8_t chLineB;
    /** size of the letters */
    uint8_t chFontSize;
    /** alignment */
    uint8_t chFontAlign;
    /** length of pString in bytes, as on the wire */
    uint16_t wTxtLen;
    /** the text, not zero-terminated; it lies in the buffer that is being parsed. Null if the data ends before it does,
       whatever wTxtLen says. */
    const uint8_t* pString;
} KX_IVS_ZOOP_OBJ_ELEMENT_TEXT;

/** One element of a drawing. 16 bytes. */
typedef struct KX_IVS_ZOOP_OBJ_ELEMENT
{
    /** KX_IVS_ZOOP_ELEMENT_TYPE, or a number without a name */
    uint32_t nType;
    /** size of the element on the wire, in bytes; 0 for a type without a name */
    uint32_t nLength;
    /** the record of its type; null for a type without a name */
    void* pStruct;
} KX_IVS_ZOOP_OBJ_ELEMENT;

/** A drawing. Where the data ends before a drawing does, its rest is 0, and drawings of zeros may follow. 32 bytes. */
typedef struct KX_IVS_ZOOP_OBJ
{
    /** number of the drawing, the camera's own */
    uint32_t nId;
    /** the application's own */
    uint16_t wCustom;
    /** state, the camera's own */
    uint8_t chState;
    /** elements at pElement */
    uint8_t chCount;
    /** chCount elements */
    KX_IVS_ZOOP_OBJ_ELEMENT* pElement;
    /** length of pInfo in bytes, as on the wire */
    uint16_t wInfoLen;
    /** bytes of the application; they lie in the buffer that is being parsed. Null if the data ends before they do,
       whatever wInfoLen says. */
    const uint8_t* pInfo;
} KX_IVS_ZOOP_OBJ;

/** Head of a buffer of drawings. No call hands it out. 16 bytes. */
typedef struct KX_IVS_ZOOP
{
    /** 1 */
    uint8_t chVersion;
    /** not used */
    uint8_t chReserve[3];
    /** drawings */
    KX_IVS_ZOOP_OBJ* pObj;
} KX_IVS_ZOOP;

#endif
