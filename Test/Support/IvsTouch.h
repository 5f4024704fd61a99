// Reads all that a parser of intelligent video metadata hands out, so that a sanitizer finds what is not there. Needs no
// test framework: the fuzz targets use it too.
#ifndef FRAMESIFT_TEST_SUPPORT_IVSTOUCH_H
#define FRAMESIFT_TEST_SUPPORT_IVSTOUCH_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// The records of a callback as an array of T: for (const auto& object : IvsRecords<KX_IVS_OBJ>(pRecords, nLen))
template <class T>
std::span<T> IvsRecords(void* pRecords, int nLen)
{
    return {static_cast<T*>(pRecords), static_cast<size_t>(nLen) / sizeof(T)};
}

// Written for the compiler, which would else leave out the reading.
inline volatile uint8_t g_touched;

inline void TouchBytes(const void* pBytes, size_t nSize)
{
    const auto* p = static_cast<const uint8_t*>(pBytes);
    uint8_t nSum = 0;
    for (size_t n = 0; n < nSize; ++n)
        nSum = static_cast<uint8_t>(nSum + p[n]);
    g_touched = nSum;
}

inline void TouchPositions(const KX_IVS_POSITION* pPositions, size_t nCount)
{
    if (pPositions != nullptr)
        TouchBytes(pPositions, nCount * sizeof *pPositions);
}

inline void TouchElement(const KX_IVS_ZOOP_OBJ_ELEMENT& element)
{
    if (element.pStruct == nullptr)
        return;
    if (element.nType == KX_IVS_ZOOP_ELEMENT_CIRCULAR)
        TouchBytes(element.pStruct, sizeof(KX_IVS_ZOOP_OBJ_ELEMENT_CIRCULAR));
    if (element.nType == KX_IVS_ZOOP_ELEMENT_BROKENLINE) {
        const auto& line = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_BROKENLINE*>(element.pStruct);
        TouchBytes(&line, sizeof line);
        TouchPositions(line.pointer, line.chCount);
    }
    if (element.nType == KX_IVS_ZOOP_ELEMENT_POLYGON) {
        const auto& polygon = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_POLYGON*>(element.pStruct);
        TouchBytes(&polygon, sizeof polygon);
        TouchPositions(polygon.pointer, polygon.chCount);
    }
    if (element.nType == KX_IVS_ZOOP_ELEMENT_TEXT) {
        const auto& text = *static_cast<const KX_IVS_ZOOP_OBJ_ELEMENT_TEXT*>(element.pStruct);
        TouchBytes(&text, sizeof text);
        if (text.pString != nullptr)
            TouchBytes(text.pString, text.wTxtLen);
    }
}

inline void TouchOverlay(const KX_IVS_ZOOP_OBJ& object)
{
    for (size_t n = 0; object.pElement != nullptr && n < object.chCount; ++n)
        TouchElement(object.pElement[n]);
    if (object.pInfo != nullptr)
        TouchBytes(object.pInfo, object.wInfoLen);
}

inline void TouchTraffic(const KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR& record)
{
    for (size_t n = 0; n < record.nIVSTrafficPlanNum; ++n) {
        const KX_IVS_TRAFFIC_PLAN& plan = record.pIVSTrafficPlan[n];
        TouchBytes(&plan, sizeof plan);
        TouchBytes(plan.pRegion, plan.RegionNum * sizeof(KX_IVS_TRAFFIC_REGION));
    }
}

inline void TouchCommon(const KX_IVS_COMMON_OBJ& object)
{
    if (object.pArrtibute95 != nullptr)
        TouchBytes(object.pArrtibute95, sizeof *object.pArrtibute95);
    if (object.pArrtibute96 != nullptr)
        TouchBytes(object.pArrtibute96, sizeof *object.pArrtibute96);
}

// Reads every byte of the records of a callback and of all that they lead to.
inline void TouchIvsRecords(KX_IVS_PARSE_TYPE eType, void* pRecords, int nLen)
{
    TouchBytes(pRecords, static_cast<size_t>(nLen));
    if (eType == IVS_TRACK_A1_EX) {
        const auto& all = *static_cast<const KX_IVS_OBJ_ALL*>(pRecords);
        TouchBytes(all.ObjUnion.IVSObjA0Ex, all.ObjUnionLen);
    }
    if (eType == IVS_TRACK_ZOOP)
        TouchOverlay(*static_cast<const KX_IVS_ZOOP_OBJ*>(pRecords));
    if (eType == IVS_TRACK_B1) {
        for (const auto& record : IvsRecords<KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR>(pRecords, nLen))
            TouchTraffic(record);
    }
    if (eType == IVS_TRACK_40) {
        for (const auto& object : IvsRecords<KX_IVS_COMMON_OBJ>(pRecords, nLen))
            TouchCommon(object);
    }
}

} // namespace Marvane::FrameSift

#endif
