// Tracked objects, extended form.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "IVSParser/IVSTrackEx1.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_version = 1;
constexpr int sc_versionWithExtensions = 2;
constexpr uint32_t sc_headSize = 4;
constexpr uint8_t sc_firstDeadState = 3;
constexpr uint16_t sc_speedUnknown = 0xFFFF;

constexpr IVS_FIELD sc_objectFields[] = {
    IVS_FIELD_OF(0, KX_IVS_OBJ_EX, obj_id),       {4, 1, offsetof(KX_IVS_OBJ_EX, operator_type)},
    {5, 1, offsetof(KX_IVS_OBJ_EX, trackpt_num)}, IVS_FIELD_OF(6, KX_IVS_OBJ_EX, object_type),
    {10, 1, offsetof(KX_IVS_OBJ_EX, decode_id)},  IVS_FIELD_OF(11, KX_IVS_OBJ_EX, object_sub_type),
};
constexpr size_t sc_extraWordsAt = 7; // number of words between an object's head and its points
constexpr uint32_t sc_objectHeadSize = 12;

struct TRACK_EX_HEAD
{
    int nVersion;
    uint8_t nCount;
    uint8_t nColor;
};

bool ReadObject(CBufferRead& pb, KX_IVS_OBJ_EX& object)
{
    const uint8_t* pHead = pb.ReadBuffer(sc_objectHeadSize);
    if (pHead == nullptr)
        return false;
    FillWhole<sc_objectFields>(pHead, object);
    object.enable = object.operator_type < sc_firstDeadState ? 1 : 0;
    object.speed = sc_speedUnknown;
    // Of more than ten announced points only ten are stepped over too, so that all behind such an object is misread.
    // Deliberate.
    object.trackpt_num = std::min(object.trackpt_num, KX_IVS_MAX_TRACK_POINT);
    const uint32_t nSize = static_cast<uint32_t>(object.trackpt_num) * sizeof(KX_IVS_POINT);
    const uint32_t nExtra = sizeof(uint32_t) * pHead[sc_extraWordsAt];
    const uint8_t* pExtra = pb.ReadBuffer(nExtra + nSize);
    if (pExtra == nullptr)
        return false;
    std::memcpy(object.track_point, pExtra + nExtra, nSize);
    return true;
}

int ReadObjects(CBufferRead& pb, const TRACK_EX_HEAD& head, IVSCallBack pCallBack, void* pUserData)
{
    const auto objects = TryAllocRecords<KX_IVS_OBJ_EX>(head.nCount);
    if (objects == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrackEx] out of memory %d * %d\n", int{head.nCount},
                     static_cast<int>(sizeof(KX_IVS_OBJ_EX)));
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    for (int32_t n = 0; n < head.nCount; ++n) {
        KX_IVS_OBJ_EX& object = objects[static_cast<size_t>(n)];
        if (!ReadObject(pb, object))
            return KX_ERROR_IVS_DATA_WRONG;
        object.frame_part_id = n;
        object.color = head.nColor;
    }
    if (head.nVersion == sc_versionWithExtensions)
        ReadTrackEx1(pb, {objects.get(), head.nCount});
    return HandOut(pCallBack, pUserData, IVS_TRACK_EX, objects.get(), head.nCount);
}

} // namespace

int ParseIVSTrackEx(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData)
{
    if (len < static_cast<int>(sc_headSize)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackEx] data is not enough! %d\n", len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(len));
    TRACK_EX_HEAD head{};
    head.nVersion = pb.ReadInt16();
    head.nCount = pb.ReadInt8();
    head.nColor = pb.ReadInt8();
    if (head.nVersion != sc_version && head.nVersion != sc_versionWithExtensions) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrackEx] version is invailed! version = %d\n",
                     head.nVersion);
        return KX_ERROR_WRONG_VERSION;
    }
    if (head.nCount > gsk_maxTrackExObjects) {
        // The message names the other format. Deliberate.
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrack] object num is invailed! nIvsObjNum = %d\n",
                     int{head.nCount});
        return KX_ERROR_BAD_OBJ_COUNT;
    }
    if (head.nCount == 0)
        return HandOutNothing(pCallBack, pUserData, IVS_TRACK_EX);
    return ReadObjects(pb, head, pCallBack, pUserData);
}

} // namespace Marvane::FrameSift
