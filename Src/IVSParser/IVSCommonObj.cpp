// A segment of common objects: its head, and its groups.
#include <cstring>
#include <memory>

#include "IVSParser/IVSLaneStore.h"
#include "IVSParser/IVSObject.h"
#include "IVSParser/IVSParser.h"
#include "Memory/TryAlloc.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

// A segment must hold more than its head.
constexpr uint32_t sc_segmentHeadSize = 32;
constexpr uint8_t sc_firstCommonSegType = 0x40; // on the wire

// The record that the message about lack of memory tells of, which belongs to another format. Readers of the logs know it
// like that.
constexpr int sc_sizeInMessage = 232;

bool ReadSegmentHead(CBufferRead& pb, KX_IVS_SEGMENT_INFO& segInfo)
{
    constexpr size_t nGroupCountAt = 4;
    constexpr size_t nCameraAt = 12;
    const uint8_t* pHead = pb.ReadBuffer(sc_segmentHeadSize);
    if (pHead == nullptr)
        return false;
    segInfo.funcType = static_cast<uint8_t>(pHead[0] - sc_firstCommonSegType);
    segInfo.groupCount = pHead[nGroupCountAt];
    std::memcpy(segInfo.cameraID, pHead + nCameraAt, sizeof segInfo.cameraID);
    return true;
}

} // namespace

int ParseGroup(CBufferRead& pb, const KX_IVS_SEGMENT_INFO* segInfo, IVSCallBack pCallBack, void* pUserData,
               IVS_LANE_STORE& store)
{
    uint32_t groupID = 0;
    uint8_t nCount = 0;
    if (!pb.ReadUint32Lsb(groupID) || !pb.ReadUint8(nCount) || !pb.Skip(3))
        return KX_ERROR_BAD_FORMATTED;
    if (nCount == 0)
        return KX_SUCCESS;
    const auto objects = TRY_ALLOC_ARRAY<KX_IVS_COMMON_OBJ>(nCount);
    if (objects == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrackEx] out of memory %d * %d\n", nCount,
                     sc_sizeInMessage);
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    store.TakeAllBack(); // from the group before
    for (size_t n = 0; n < nCount; ++n) {
        // Cleared one by one: each is still in the cache when its parser fills it, and a damaged group does not pay for the
        // objects behind the damage.
        KX_IVS_COMMON_OBJ& object = objects[n];
        std::memset(&object, 0, sizeof object);
        object.nStructSize = sizeof object;
        if (segInfo != nullptr)
            object.segInfo = *segInfo;
        object.groupID = groupID;
        const int nResult =
            pb.ReadUint8(object.objType) ? ParseObject(pb, &object, store) : int{KX_ERROR_BAD_FORMATTED};
        if (nResult != KX_SUCCESS) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseGroup] IVS format is error\n");
            return nResult;
        }
    }
    pCallBack(IVS_TRACK_40, objects.get(), nCount * static_cast<int>(sizeof(KX_IVS_COMMON_OBJ)), pUserData);
    return KX_SUCCESS;
}

int ParseIVSCommonObj(const uint8_t* pFrameBody, int len, IVSCallBack pCallBack, void* pUserData, IVS_LANE_STORE& store)
{
    if (pFrameBody == nullptr || len <= static_cast<int>(sc_segmentHeadSize)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSCommonObj] Enter %p, %d\n",
                     static_cast<const void*>(pFrameBody), len);
        pCallBack(IVS_TRACK_40, nullptr, 0, pUserData);
        return KX_ERROR_PARAMETER;
    }
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(len));
    KX_IVS_SEGMENT_INFO segInfo{};
    if (!ReadSegmentHead(pb, segInfo))
        return KX_ERROR_BAD_FORMATTED;
    if (segInfo.groupCount == 0)
        pCallBack(IVS_TRACK_40, nullptr, 0, pUserData);
    for (int n = 0; n < segInfo.groupCount; ++n) {
        const int nResult = ParseGroup(pb, &segInfo, pCallBack, pUserData, store);
        if (nResult != KX_SUCCESS) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseIVSCommonObj] IVS format is error %p, %d\n",
                         static_cast<const void*>(pFrameBody), len);
            return nResult;
        }
    }
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
