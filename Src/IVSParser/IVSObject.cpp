#include "IVSParser/IVSObject.h"

#include "IVSParser/IVSAttribute.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr IVS_FIELD sc_vehicleFields[] = {
    IVS_FIELD_OF(0, KX_IVS_COMMON_OBJ, objID),
    IVS_FIELD_OF(4, KX_IVS_COMMON_OBJ, trackPoint), // a vehicle has all of its fixed fields or is none
    IVS_FIELD_OF(12, KX_IVS_COMMON_OBJ, pointVailed),
    IVS_FIELD_OF(13, KX_IVS_COMMON_OBJ, operatorType),
};

struct OBJECT_ROW
{
    uint8_t objType; // on the wire
    int (*pfnParse)(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject, IVS_LANE_STORE& store);
};

// Of these, lanes alone need memory apart.
template <int (*pfnParse)(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject)>
int WithoutStore(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject, IVS_LANE_STORE&)
{
    return pfnParse(pb, pObject);
}

constexpr OBJECT_ROW sc_objects[] = {
    {2, &WithoutStore<&ParseVehicleObject>},
    {5, &WithoutStore<&ParseVehicleObject>},
    {15, &WithoutStore<&ParseFaceObject>},
    {18, &ParseSignalFlow},
    {27, &ParseSignalFlow},
};

} // namespace

bool ReadObjectSize(CBufferRead& pb, uint16_t& nSize)
{
    return pb.Skip(1) && pb.ReadUint16Lsb(nSize);
}

int ParseObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject, IVS_LANE_STORE& store)
{
    if (pObject == nullptr)
        return KX_ERROR_EMPTY_PTR;
    for (const OBJECT_ROW& row : sc_objects) {
        if (row.objType == pObject->objType)
            return row.pfnParse(pb, pObject, store);
    }
    return ParseCommonObject(pb, pObject);
}

int ParseVehicleObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject)
{
    uint16_t nSize = 0;
    if (pObject == nullptr)
        return KX_ERROR_EMPTY_PTR;
    if (!ReadObjectSize(pb, nSize))
        return KX_ERROR_BAD_FORMATTED;
    if (nSize < gsk_vehicleObjectSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseVehicleObject]VehicleObjectLen is not allowed.objsize = %d\n", nSize);
        return KX_ERROR_BAD_FORMATTED;
    }
    CBufferRead body(nullptr, 0);
    if (!ReadObjectBody<sc_vehicleFields, gsk_vehicleObjectSize>(pb, nSize, *pObject, body))
        return KX_ERROR_BAD_FORMATTED;
    return ParseAttribute(body, pObject->attr.comm, nSize - gsk_vehicleObjectSize);
}

// Reads on the group's reader. Face data that is not all there is no failure, and the next object is looked for where the
// data begins.
int ParseFaceObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject)
{
    uint16_t nSize = 0;
    if (pObject == nullptr)
        return KX_ERROR_EMPTY_PTR;
    if (!ReadObjectSize(pb, nSize))
        return KX_ERROR_BAD_FORMATTED;
    if (nSize < gsk_commonObjectSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseFaceObject]FaceObjectLen is not allowed.objsize = %d\n",
                     nSize);
        return KX_ERROR_BAD_FORMATTED;
    }
    if (!pb.ReadUint32Lsb(pObject->objID) || !pb.ReadUint8(pObject->version) || !pb.Skip(3))
        return KX_ERROR_BAD_FORMATTED;
    pObject->facedata = pb.ReadBuffer(static_cast<uint32_t>(nSize - gsk_commonObjectSize));
    return KX_SUCCESS;
}

int ParseCommonObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject)
{
    uint16_t nSize = 0;
    if (pObject == nullptr)
        return KX_ERROR_EMPTY_PTR;
    if (!ReadObjectSize(pb, nSize))
        return KX_ERROR_BAD_FORMATTED;
    if (nSize < gsk_commonObjectSize) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseCommonObject]CommonObjectLen is not allowed.objsize = %d\n",
                     nSize);
        return KX_ERROR_BAD_FORMATTED;
    }
    CBufferRead body(nullptr, 0);
    if (!ReadObjectBody<gsk_commonObjectFields, gsk_commonObjectSize>(pb, nSize, *pObject, body))
        return KX_ERROR_BAD_FORMATTED;
    return ParseAttribute(body, pObject->attr.comm, nSize - gsk_commonObjectSize);
}

} // namespace Marvane::FrameSift
