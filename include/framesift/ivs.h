/**
 * @file
 * The calls for intelligent video metadata (IVS): tracked objects, their attributes, lanes, traffic counts and overlay
 * drawings, which a camera sends as the payload of data frames.
 *
 * Two ways in:
 *  - KX_ParseIVS takes a payload and its format and hands out records. It needs no handle. Frames of
 *    KX_FRAME_SUB_TYPE_DATA_INTL carry IVS_TRACK_EX, frames of KX_FRAME_SUB_TYPE_DATA_INTLEX carry IVS_TRACK_EX2; of the
 *    other formats the caller must know.
 *  - KX_ParseIVSEx takes the payload of a frame and the frame's subtype, on a stream handle, and hands out objects in one
 *    plain form, _KX_IVS_OBJ_INFO, to the callback that KX_SetIVSObjAttrCBFun has set.
 *
 * Callbacks run inside the call, on its thread. The records, and all that they lead to, end when the callback returns:
 * copy what you need for longer. The buffer that is being parsed is never written to, and pointers that lead into it are
 * good as long as it is. A callback may make any call on any handle, this call included. It must not throw.
 *
 * The codes that these calls answer are those of KX_RESULT_EX where the numbers are 15 to 18.
 */
#ifndef FRAMESIFT_IVS_H
#define FRAMESIFT_IVS_H

#include <stdint.h>

#include "framesift/export.h"
#include "framesift/ivs_attributes.h" // IWYU pragma: export
#include "framesift/ivs_lanes.h"      // IWYU pragma: export
#include "framesift/ivs_objects.h"    // IWYU pragma: export
#include "framesift/ivs_overlay.h"    // IWYU pragma: export
#include "framesift/ivs_track.h"      // IWYU pragma: export
#include "framesift/ivs_traffic.h"    // IWYU pragma: export
#include "framesift/ivs_types.h"      // IWYU pragma: export

#ifdef __cplusplus
extern "C" {
#endif

/** One attribute of an object in the plain form. 16 bytes. */
typedef struct _KX_IVS_OBJ_ATTR_UNIT /* NOLINT(bugprone-reserved-identifier): the name is part of the boundary */
{
    /** which: one bit, as in KX_IVS_ATTRIBUTE::attrflag */
    uint32_t nAttrFlag;
    /** size of its record in bytes */
    uint32_t nAttrDataLen;
    /** its record: KX_IVS_TRAFFIC_ATTRIBUTE_80 for 0x1 and so on; ends with the callback */
    void* pAttrBuf;
} KX_IVS_OBJ_ATTR_UNIT;

/** An object in the plain form. 192 bytes. */
typedef struct _KX_IVS_OBJ_INFO /* NOLINT(bugprone-reserved-identifier): the name is part of the boundary */
{
    /** of a tracked object KX_IVS_OBJ_EX::decode_id, of a common object KX_IVS_SEGMENT_INFO::funcType */
    uint32_t classID;
    /** number of the object, the camera's own */
    uint32_t objID;
    /**
     * Where it is. Of a tracked object the newest place; one with no place, or with 10, shows the place of the object in
     * front of it in the same buffer, and the first one zeros.
     */
    KX_IVS_POINT trackPoint;
    /** class of the object, the camera's own */
    uint8_t objType;
    /** whether trackPoint counts; 1 for every tracked object */
    uint8_t pointVailed;
    /** what happened to it, the camera's own */
    uint8_t operatorType;
    /** 0 */
    uint8_t reserved[29];
    /** attributes at pAttrData, 0 to 17; 0 for a tracked object */
    uint32_t nAttrCount;
    /** the attributes; null for a tracked object, not null for a common object even if there are none. Ends with the
       callback. */
    KX_IVS_OBJ_ATTR_UNIT* pAttrData;
    /** 0 */
    uint8_t reserved1[128];
} KX_IVS_OBJ_INFO;

/**
 * Takes the records of KX_ParseIVS.
 *
 * | IVSType         | pIVSBuff                                         | called                                        |
 * |-----------------|--------------------------------------------------|-----------------------------------------------|
 * | IVS_TRACK       | array of KX_IVS_OBJ                              | once; null and 0 if there are none            |
 * | IVS_TRACK_EX    | array of KX_IVS_OBJ_EX                           | once; null and 0 if there are none            |
 * | IVS_TRACK_40    | array of KX_IVS_COMMON_OBJ                       | once a group with objects; null and 0 for a segment without groups or too short |
 * | IVS_TRACK_A1    | array of KX_IVS_OBJ_A0                           | once a segment; null and 0 if there are none; not for objects of an unknown length |
 * | IVS_TRACK_A1_EX | one KX_IVS_OBJ_ALL                               | once a segment                                |
 * | IVS_TRACK_EX3   | array of KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR     | once                                          |
 * | IVS_TRACK_ZOOP  | one KX_IVS_ZOOP_OBJ                              | once a drawing                                |
 * | IVS_TRACK_B1    | array of KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR | once                                          |
 *
 * @param IVSType      kind of the records.
 * @param pIVSBuff     the records; they end with this callback; null if there are none.
 * @param nIVSBuffLen  length of the records in bytes: their number times their size.
 * @param pUserData    as given to KX_ParseIVS.
 * @return any number; it is not looked at.
 */
typedef int (*IVSCallBack)(KX_IVS_PARSE_TYPE IVSType, void* pIVSBuff, int nIVSBuffLen, void* pUserData);

/**
 * Takes one object of KX_ParseIVSEx.
 * @param pObjInfo   a KX_IVS_OBJ_INFO; ends with this callback.
 * @param nLen       its size, 192.
 * @param pReserved  always null.
 * @param pUserData  as given to KX_SetIVSObjAttrCBFun.
 */
typedef void (*IVSObjAttrCBFun)(unsigned char* pObjInfo, int nLen, void* pReserved, void* pUserData);

/**
 * Parses a payload of IVS and hands its records to a callback.
 *
 * What is found to be damaged is not handed out. In IVS_TRACK_EX2 the groups in front of the damage have been handed out
 * by then. Some damage shows in the records and not in the answer: attributes, lanes and face data that end early come
 * with what is there, and so do the drawings of IVS_TRACK_ZOOP, which are never judged.
 * @param pBuffer    the payload; borrowed for the length of the call, not written to.
 * @param len        its length in bytes, from 1 on. A number below 0 is a payload without bytes: too short, but for
 *                   IVS_TRACK_EX2, where it is one without segments.
 * @param parseType  IVS_TRACK, IVS_TRACK_EX, IVS_TRACK_EX2, IVS_TRACK_EX3, IVS_TRACK_ZOOP or IVS_TRACK_15.
 * @param pCallBack  takes the records; null: nothing is handed out, and the answer is the same.
 * @param pUserData  handed to pCallBack as it stands.
 * @retval KX_SUCCESS                        parsed to its end. It may have held nothing to hand out; IVS_TRACK_15 answers
 *                                           so too where plans or regions are damaged, too many, or too much for memory.
 * @retval KX_ERROR_PARAMETER                pBuffer is null or len is 0; or, in IVS_TRACK_EX2, a segment is too short or
 *                                           longer than the payload, or lanes have a number that cannot be, or a form that is not known.
 * @retval KX_ERROR_BAD_FORMATTED            an object or attribute of IVS_TRACK_EX2 is damaged.
 * @retval KX_ERROR_SYSTEM_OUT_OF_MEMORY     out of memory; or the polygons of IVS_TRACK_EX3 are longer than the payload.
 * @retval KX_ERROR_WRONG_VERSION            IVS_TRACK or IVS_TRACK_EX of a version that is not known.
 * @retval KX_ERROR_BAD_OBJ_COUNT            more than 200 objects in IVS_TRACK_EX.
 * @retval KX_ERROR_PARSE_TYPE_NO_SUPPORT    parseType is none of the six.
 * @retval KX_ERROR_IVS_DATA_WRONG           damaged: cut off, of a wrong length, or without the marks of its format.
 * @note Any thread, any time: it keeps nothing.
 */
FRAMESIFT_API int KX_ParseIVS(unsigned char* pBuffer, int len, KX_IVS_PARSE_TYPE parseType, IVSCallBack pCallBack,
                              void* pUserData);

/**
 * Parses the payload of a frame and hands its objects to the callback of the handle, one by one, in the plain form.
 *
 * Handed out are tracked objects (KX_IVS_OBJ_EX) and common objects with attributes (KX_IVS_COMMON_OBJ); not the objects
 * of A0 segments, and not lanes.
 * @param handle        from KX_CreateFrameSift. The stream fed to it does not matter.
 * @param pBuffer       KX_FRAME_INFO::streamPointer; borrowed for the length of the call, not written to.
 * @param len           KX_FRAME_INFO::streamLen, in bytes.
 * @param frameSubType  KX_FRAME_INFO::frameSubType.
 * @retval KX_SUCCESS          parsed; or frameSubType is neither KX_FRAME_SUB_TYPE_DATA_INTL nor
 *                             KX_FRAME_SUB_TYPE_DATA_INTLEX, and nothing was done.
 * @retval KX_ERROR_PARAMETER  not a live stream handle; pBuffer is null or len is 0; or as KX_ParseIVS. A call with a
 *                             live handle and a null pBuffer or a len of 0 takes a reference on the handle that it does
 *                             not give back: the handle then needs one more KX_Destroy.
 * @return else as KX_ParseIVS. Without a callback the payload is parsed and judged all the same.
 * @note May run beside anything but KX_SetIVSObjAttrCBFun on the same handle. The answer is not kept for
 *       KX_GetLastError.
 */
FRAMESIFT_API int KX_ParseIVSEx(void* handle, unsigned char* pBuffer, int len, int frameSubType);

/**
 * Sets who takes the objects of KX_ParseIVSEx on a handle.
 * @param handle     from KX_CreateFrameSift.
 * @param pCallBack  takes them; null: nobody.
 * @param pUserData  handed to pCallBack as it stands; not owned.
 * @retval KX_SUCCESS          set; from the next KX_ParseIVSEx on.
 * @retval KX_ERROR_PARAMETER  not a live stream handle.
 * @note Not while another thread is in a KX_ParseIVSEx on the same handle. From the callback itself it may be called.
 */
FRAMESIFT_API int KX_SetIVSObjAttrCBFun(void* handle, IVSObjAttrCBFun pCallBack, void* pUserData);

#ifdef __cplusplus
}
#endif

#endif
