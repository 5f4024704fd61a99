// The objects of a group, by their class.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSOBJECT_H
#define FRAMESIFT_SRC_IVSPARSER_IVSOBJECT_H

#include <cstdint>

#include "IVSParser/IVSField.h"
#include "Tools/BufferRead.h"
#include "framesift/ivs.h"

namespace Marvane::FrameSift {

struct IVS_LANE_STORE;

// On the wire: objType, a byte that is not used, and the size of the whole object in two.
inline constexpr uint16_t gsk_objectHeadSize = 4;
// The smallest objects: head and fixed fields. What follows is attributes or data.
inline constexpr uint16_t gsk_vehicleObjectSize = 20;
inline constexpr uint16_t gsk_commonObjectSize = 12;

// Reads an object whose objType has been read into it. All parsers of objects go on behind that byte, answer
// KX_ERROR_EMPTY_PTR if pObject is null, and KX_ERROR_BAD_FORMATTED if the object is damaged.
int ParseObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject, IVS_LANE_STORE& store);
int ParseVehicleObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject);
int ParseFaceObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject);
int ParseCommonObject(CBufferRead& pb, KX_IVS_COMMON_OBJ* pObject);

// The objects of one group; calls back with all of them if none is damaged. segInfo may be null.
int ParseGroup(CBufferRead& pb, const KX_IVS_SEGMENT_INFO* segInfo, IVSCallBack pCallBack, void* pUserData,
               IVS_LANE_STORE& store);

// The size of an object, from behind its objType on. False: cut off in front of its end.
[[nodiscard]] bool ReadObjectSize(CBufferRead& pb, uint16_t& nSize);

// The rest of an object of nSize bytes, and its fixed fields. A reader of its own: a damaged attribute cannot run on into
// the next object. False: not all of it is there.
template <const auto& fields, uint16_t nFixedSize>
[[nodiscard]] bool ReadObjectBody(CBufferRead& pb, uint16_t nSize, KX_IVS_COMMON_OBJ& object, CBufferRead& body)
{
    static_assert(IvsWireSize(fields) <= nFixedSize - gsk_objectHeadSize);
    const auto nBodySize = static_cast<uint32_t>(nSize - gsk_objectHeadSize);
    const uint8_t* pBody = pb.ReadBuffer(nBodySize);
    if (pBody == nullptr)
        return false;
    body = CBufferRead(pBody, nBodySize);
    FillFields<fields>(body, object);
    return body.Skip(nFixedSize - gsk_objectHeadSize);
}

// Of all objects but vehicles and faces, from behind their head on.
inline constexpr IVS_FIELD gsk_commonObjectFields[] = {
    IVS_FIELD_OF(0, KX_IVS_COMMON_OBJ, objID),
    IVS_FIELD_OF(4, KX_IVS_COMMON_OBJ, operatorType),
};

} // namespace Marvane::FrameSift

#endif
