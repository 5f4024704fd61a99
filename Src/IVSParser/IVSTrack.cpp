// Tracked objects, first form.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_version = 1;
constexpr uint8_t sc_stateFinished = 3;

constexpr IVS_FIELD sc_objectFields[] = {
    IVS_FIELD_OF(0, KX_IVS_OBJ, obj_id),
    {5, 1, offsetof(KX_IVS_OBJ, trackpt_num)},
};
// The rest of an object's head: its state, and the number of words between head and points.
constexpr size_t sc_stateAt = 4;
constexpr size_t sc_extraWordsAt = 7;
constexpr uint32_t sc_objectHeadSize = 12;

bool ReadObject(CBufferRead& pb, KX_IVS_OBJ& object)
{
    const uint8_t* pHead = pb.ReadBuffer(sc_objectHeadSize);
    if (pHead == nullptr)
        return false;
    FillWhole<sc_objectFields>(pHead, object);
    object.enable = pHead[sc_stateAt] == sc_stateFinished ? 0 : 1;
    // Of more than ten announced points only ten are stepped over too, so that all behind such an object is misread.
    // Deliberate, and the announced number is handed out as it stands.
    const uint32_t nSize = std::min<uint32_t>(object.trackpt_num, KX_IVS_MAX_TRACK_POINT) * sizeof(KX_IVS_POINT);
    const uint32_t nExtra = sizeof(uint32_t) * pHead[sc_extraWordsAt];
    const uint8_t* pExtra = pb.ReadBuffer(nExtra + nSize);
    if (pExtra == nullptr)
        return false;
    std::memcpy(object.track_point, pExtra + nExtra, nSize);
    return true;
}

int ReadObjects(CBufferRead& pb, size_t nCount, IVSCallBack pCallBack, void* pUserData)
{
    const auto objects = TryAllocRecords<KX_IVS_OBJ>(nCount);
    if (objects == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrack] out of memory %d * %d\n",
                     static_cast<int>(nCount), static_cast<int>(sizeof(KX_IVS_OBJ)));
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    for (size_t n = 0; n < nCount; ++n) {
        if (!ReadObject(pb, objects[n]))
            return KX_ERROR_IVS_DATA_WRONG;
    }
    return HandOut(pCallBack, pUserData, IVS_TRACK, objects.get(), nCount);
}

} // namespace

int ParseIVSTrack(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData)
{
    if (len < 2) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrack] Len wrong  %d,%d\n", 0, len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(len));
    const int nVersion = pb.ReadInt16();
    if (nVersion != sc_version) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrack] version is invailed! version %d.\n", nVersion);
        return KX_ERROR_WRONG_VERSION;
    }
    uint8_t nCount = 0;
    if (!pb.ReadUint8(nCount)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrack] ObjNum Len wrong %d,%d\n", 3, len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    if (!pb.Skip(1)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSTrack] Len wrong %d,%d\n", 4, len);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    if (nCount == 0)
        return HandOutNothing(pCallBack, pUserData, IVS_TRACK);
    return ReadObjects(pb, nCount, pCallBack, pUserData);
}

} // namespace Marvane::FrameSift
