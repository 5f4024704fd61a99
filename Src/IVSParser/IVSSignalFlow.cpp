// Objects that carry the lanes of a road.
#include "IVSParser/IVSLane.h"
#include "IVSParser/IVSLaneStore.h"
#include "IVSParser/IVSObject.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

int ParseLanes95(CBufferRead& pb, KX_IVS_COMMON_OBJ& object, IVS_LANE_STORE& store, int nLen)
{
    object.pArrtibute95 = store.lanes95.Take();
    if (object.pArrtibute95 == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseSignalFlow] pObject->attr.pArrtibute95 is null\n");
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    return ParseAttribute95(pb, *object.pArrtibute95, nLen);
}

int ParseLanes96(CBufferRead& pb, KX_IVS_COMMON_OBJ& object, IVS_LANE_STORE& store, int nLen)
{
    object.pArrtibute96 = store.lanes96.Take();
    if (object.pArrtibute96 == nullptr) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseSignalFlow] pObject->attr.pArrtibute96 is null\n");
        return KX_ERROR_SYSTEM_OUT_OF_MEMORY;
    }
    return ParseAttribute96(pb, *object.pArrtibute96, nLen);
}

// From behind nType on. attrUnionflag is set first, so that it stands even if the lanes are damaged.
int ParseLanes(CBufferRead& pb, KX_IVS_COMMON_OBJ& object, IVS_LANE_STORE& store, uint8_t nType, int nLen)
{
    switch (nType) {
    case gsk_lanes8D:
        object.attrUnionflag = OBJ_ATTR_0x8D;
        pb.Backforword(1); // the parser of this form reads the type itself
        return ParseSignalFlowAttribute8D(pb, object.attr.signal_flow, nLen);
    case gsk_lanes91:
        object.attrUnionflag = OBJ_ATTR_0x91;
        return ParseAttribute91(pb, object.attr.arrtibute91, nLen);
    case gsk_lanes95:
        object.attrUnionflag = OBJ_ATTR_0x95;
        return ParseLanes95(pb, object, store, nLen);
    case gsk_lanes96:
        object.attrUnionflag = OBJ_ATTR_0x96;
        return ParseLanes96(pb, object, store, nLen);
    default:
        object.attrUnionflag = OBJ_ATTR_COMM;
        return KX_ERROR_PARAMETER;
    }
}

} // namespace

int ParseSignalFlow(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject, IVS_LANE_STORE& store)
{
    uint16_t nSize = 0;
    if (pObject == nullptr)
        return KX_ERROR_EMPTY_PTR;
    if (!ReadObjectSize(pb, nSize))
        return KX_ERROR_BAD_FORMATTED;
    if (nSize < gsk_commonObjectSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseSignalFlow]SignalFlowLen is not allowed.objsize = %d\n",
                     nSize);
        return KX_ERROR_BAD_FORMATTED;
    }
    CBufferRead body(nullptr, 0);
    if (!ReadObjectBody<gsk_commonObjectFields, gsk_commonObjectSize>(pb, nSize, *pObject, body))
        return KX_ERROR_BAD_FORMATTED;
    // An object that ends here has type 0.
    return ParseLanes(body, *pObject, store, body.ReadInt8(), nSize - gsk_commonObjectSize);
}

} // namespace Marvane::FrameSift
