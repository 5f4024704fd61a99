// A segment of A0 objects.
#include "IVSParser/IVSField.h"
#include "IVSParser/IVSParser.h"
#include "IVSParser/IVSRecords.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_segHeadSize = 4;
constexpr int sc_objectsAt = 8;

// What both kinds of objects begin with.
template <class RECORD>
constexpr IVS_FIELD sc_trackFields[] = {
    IVS_FIELD_OF(0, RECORD, objID),
    IVS_FIELD_OF(1, RECORD, timeTag),
    IVS_FIELD_OF(4, RECORD, trackPoint),
    IVS_FIELD_OF(12, RECORD, trackTime),
};

constexpr IVS_FIELD sc_looksFields[] = {
    IVS_FIELD_OF(24, KX_IVS_OBJ_A0_Ex, Objtype),  IVS_FIELD_OF(25, KX_IVS_OBJ_A0_Ex, speed),
    IVS_FIELD_OF(26, KX_IVS_OBJ_A0_Ex, direct),   IVS_FIELD_OF(28, KX_IVS_OBJ_A0_Ex, globalColor),
    IVS_FIELD_OF(38, KX_IVS_OBJ_A0_Ex, topColor), IVS_FIELD_OF(48, KX_IVS_OBJ_A0_Ex, bottomColor),
};

// The objects of either kind are as long on the wire as in memory.
template <class RECORD>
void ReadObject(const uint8_t* pWire, RECORD& object)
{
    FillWhole<sc_trackFields<RECORD>>(pWire, object);
    // The wire has words of its own for both, which are not read. Deliberate.
    object.appearTime = object.trackTime + 4;
    object.disappearTime = object.trackTime + 8;
    if constexpr (sizeof(RECORD) == sizeof(KX_IVS_OBJ_A0_Ex))
        FillWhole<sc_looksFields>(pWire, object);
}

// Null if there is no memory. The message tells the size of the wrapper for either kind; log readers know it so.
template <class RECORD>
std::unique_ptr<RECORD[]> ReadObjects(CBufferRead& pb, size_t nCount)
{
    auto objects = TryAllocRecords<RECORD>(nCount);
    if (objects == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelError, gsk_ivsPath, "[ParseIVSTrackA1] out of memory %d * %d\n",
                     static_cast<int>(nCount), static_cast<int>(sizeof(KX_IVS_OBJ_ALL)));
        return nullptr;
    }
    for (size_t n = 0; n < nCount; ++n) {
        if (const uint8_t* pWire = pb.ReadBuffer(sizeof(RECORD)))
            ReadObject(pWire, objects[n]);
    }
    return objects;
}

int HandOutObjects(CBufferRead& pb, size_t nCount, IVSCallBack pCallBack, void* pUserData)
{
    const auto objects = ReadObjects<KX_IVS_OBJ_A0>(pb, nCount);
    if (objects == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    return HandOut(pCallBack, pUserData, IVS_TRACK_A1, objects.get(), nCount);
}

// These come in a wrapper, the others do not: deliberate.
int HandOutExtendedObjects(CBufferRead& pb, size_t nCount, IVSCallBack pCallBack, void* pUserData)
{
    const auto objects = ReadObjects<KX_IVS_OBJ_A0_Ex>(pb, nCount);
    if (objects == nullptr)
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    KX_IVS_OBJ_ALL all;
    std::memset(&all, 0, sizeof all);
    all.type = 1;
    all.ObjUnion.IVSObjA0Ex = objects.get();
    all.ObjUnionLen = static_cast<uint32_t>(nCount * sizeof(KX_IVS_OBJ_A0_Ex));
    return HandOut(pCallBack, pUserData, IVS_TRACK_A1_EX, &all, 1);
}

} // namespace

int ParseIVSTrackA1(const uint8_t* pFrameBody, int nLen, int nBufferLen, IVSCallBack pCallBack, void* pUserData)
{
    CBufferRead pb(pFrameBody, static_cast<uint32_t>(nBufferLen));
    pb.Skip(sc_segHeadSize);
    const uint8_t nCount = pb.ReadInt8();
    const uint8_t nObjectSize = pb.ReadInt8();
    if (nCount == 0)
        return HandOutNothing(pCallBack, pUserData, IVS_TRACK_A1);
    const int nDataLen = nLen - sc_objectsAt;
    if (nCount * nObjectSize == 0 || nCount * nObjectSize != nDataLen) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "ParseIVSTrackA1 object data is not enough! objCount = %d, objInfoLen = %d, dataLen = %d\n",
                     int{nCount}, int{nObjectSize}, nDataLen);
        return KX_ERROR_IVS_DATA_WRONG;
    }
    pb.Skip(2);
    if (nObjectSize == sizeof(KX_IVS_OBJ_A0))
        return HandOutObjects(pb, nCount, pCallBack, pUserData);
    if (nObjectSize == sizeof(KX_IVS_OBJ_A0_Ex))
        return HandOutExtendedObjects(pb, nCount, pCallBack, pUserData);
    return KX_SUCCESS; // objects of a length that is not known are stepped over
}

} // namespace Marvane::FrameSift
