// Titles and polygons of the scene.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

using SCENE_POINTS = KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR;

constexpr int sc_minLength = 8;
constexpr int sc_maxElements = 512;

constexpr IVS_FIELD sc_elementFields[] = {
    IVS_FIELD_OF(0, SCENE_POINTS, nIndex),     IVS_FIELD_OF(4, SCENE_POINTS, sceneInfoPoint),
    IVS_FIELD_OF(8, SCENE_POINTS, fristtile),  IVS_FIELD_OF(72, SCENE_POINTS, enable),
    IVS_FIELD_OF(73, SCENE_POINTS, titleType), IVS_FIELD_OF(74, SCENE_POINTS, titleAttribute),
    IVS_FIELD_OF(75, SCENE_POINTS, sharpType), IVS_FIELD_OF(76, SCENE_POINTS, polygon_num),
};
constexpr uint32_t sc_polygonAt = 80;
constexpr uint32_t sc_stride = 144; // on the wire; a polygon of 16 corners fills it

// pWire: sc_stride bytes. Corners that the record has no room for are dropped; what it announces stays.
void ReadElement(const uint8_t* pWire, SCENE_POINTS& element)
{
    FillWhole<sc_elementFields>(pWire, element);
    const size_t nCorners = std::min<size_t>(element.polygon_num, KX_IVS_MAX_SCENE_POINT);
    std::memcpy(element.polygon, pWire + sc_polygonAt, nCorners * sizeof(KX_IVS_POSITION));
}

} // namespace

int ParseIVSTrackEx3(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData)
{
    if (len < sc_minLength) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackEx3] data is not enough! len =  %d\n", len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(len));
    // Counted in 16 bits, deliberately: of a very long payload only a part may be read.
    const auto nCount = static_cast<uint16_t>(static_cast<uint32_t>(len) / sc_stride);
    if (nCount == 0 || nCount > sc_maxElements) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseIVSTrackEx3] scene_points is not allowed! nIvsObjNum =  %d\n", int{nCount});
        return KX_ERROR_IVS_DATA_WRONG;
    }
    const auto elements = TryAllocRecords<SCENE_POINTS>(nCount);
    if (elements == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackEx3] out of memory %d * %d\n", int{nCount},
                     static_cast<int>(sizeof(SCENE_POINTS)));
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    int nTotal = 0;
    for (size_t n = 0; n < nCount; ++n) {
        if (const uint8_t* pWire = pb.ReadBuffer(sc_stride))
            ReadElement(pWire, elements[n]);
        nTotal += static_cast<int>(sc_polygonAt + sizeof(KX_IVS_POSITION) * elements[n].polygon_num);
        if (nTotal > len) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackEx3] some data wrong,%d , %d\n", nTotal, len);
            return KX_ERROR_SYSTEM_OUT_OF_MEMORY; // an odd code for damage; deliberate
        }
    }
    return HandOut(pCallBack, pUserData, IVS_TRACK_EX3, elements.get(), nCount);
}

} // namespace Marvane::FrameSift
