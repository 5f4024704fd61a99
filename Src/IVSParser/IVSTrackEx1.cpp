#include "IVSParser/IVSTrackEx1.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "IVSParser/IVSField.h"

namespace Marvane::FrameSift {

namespace {

// IVS_TRACK_EX1, but for the id of the object: what an object takes from its record.
constexpr IVS_FIELD sc_extensionFields[] = {
    IVS_FIELD_OF(0, KX_IVS_OBJ_EX, ex_info_size),
    IVS_FIELD_OF(6, KX_IVS_OBJ_EX, speed),
    IVS_FIELD_OF(8, KX_IVS_OBJ_EX, speed_X),
    IVS_FIELD_OF(10, KX_IVS_OBJ_EX, speed_Y),
    IVS_FIELD_OF(12, KX_IVS_OBJ_EX, speed_unit),
    IVS_FIELD_OF(13, KX_IVS_OBJ_EX, color_space),
    IVS_FIELD_OF(14, KX_IVS_OBJ_EX, main_color_num),
    IVS_FIELD_OF(16, KX_IVS_OBJ_EX, main_region_rect_x),
    IVS_FIELD_OF(18, KX_IVS_OBJ_EX, main_region_rect_y),
    IVS_FIELD_OF(20, KX_IVS_OBJ_EX, main_region_rect_width),
    IVS_FIELD_OF(22, KX_IVS_OBJ_EX, main_region_rect_height),
    IVS_FIELD_OF(24, KX_IVS_OBJ_EX, main_region_color),
};
constexpr uint32_t sc_objectIdAt = 2;

// The objects in the order of their ids, equal ids in the order of the objects: records of two bytes are legal, and
// looking through 200 objects for each would make a call run for hundreds of times its length.
class CObjectsById
{
public:
    explicit CObjectsById(std::span<KX_IVS_OBJ_EX> objects) : m_objects(objects)
    {
        for (size_t n = 0; n < objects.size(); ++n)
            m_keys[n] = uint64_t{static_cast<uint32_t>(objects[n].obj_id)} << 32 | n;
        std::sort(m_keys.data(), End());
    }

    // The first one of that id, or null.
    KX_IVS_OBJ_EX* First(uint32_t nObjectId)
    {
        const uint64_t* pKey = std::lower_bound(m_keys.data(), End(), uint64_t{nObjectId} << 32);
        return pKey != End() && *pKey >> 32 == nObjectId ? &Object(*pKey) : nullptr;
    }

    // Gives all others of an id what the first one has. They began alike, and all records for the id were for them too.
    void ShareExtensions()
    {
        KX_IVS_OBJ_EX* pFirst = nullptr;
        for (const uint64_t* pKey = m_keys.data(); pKey != End(); ++pKey) {
            KX_IVS_OBJ_EX& object = Object(*pKey);
            if (pFirst != nullptr && pFirst->obj_id == object.obj_id)
                CopyExtension(*pFirst, object);
            else
                pFirst = &object;
        }
    }

private:
    static void CopyExtension(const KX_IVS_OBJ_EX& from, KX_IVS_OBJ_EX& to)
    {
        constexpr size_t k_begin = offsetof(KX_IVS_OBJ_EX, ex_info_size);
        constexpr size_t k_end = offsetof(KX_IVS_OBJ_EX, reserved);
        std::memcpy(reinterpret_cast<uint8_t*>(&to) + k_begin, reinterpret_cast<const uint8_t*>(&from) + k_begin,
                    k_end - k_begin);
    }

    KX_IVS_OBJ_EX& Object(uint64_t nKey) { return m_objects[static_cast<uint32_t>(nKey)]; }
    uint64_t* End() { return m_keys.data() + m_objects.size(); }

    std::span<KX_IVS_OBJ_EX> m_objects;
    std::array<uint64_t, gsk_maxTrackExObjects> m_keys; // id above index
};

// Steps over the next record. record then stands at its first byte and goes to the end of the data: a record is read in
// full whatever its size, from the next one if need be. Deliberate.
bool NextRecord(CBufferRead& pb, CBufferRead& record)
{
    record = pb;
    // A record of two bytes that ends with the data is not looked at, and one of size 0 would come again for ever.
    CBufferRead head = pb;
    const uint16_t nSize = head.ReadInt16();
    return nSize != 0 && head.Skip(1) && pb.Skip(nSize);
}

} // namespace

void ReadTrackEx1(CBufferRead& pb, std::span<KX_IVS_OBJ_EX> objects)
{
    CBufferRead record = pb;
    if (!NextRecord(pb, record))
        return;
    CObjectsById byId(objects);
    do {
        CBufferRead id = record;
        uint32_t nObjectId = 0;
        const bool bId = id.Skip(sc_objectIdAt) && id.ReadUint32Lsb(nObjectId);
        KX_IVS_OBJ_EX* pObject = bId ? byId.First(nObjectId) : nullptr;
        if (pObject != nullptr)
            FillFields<sc_extensionFields>(record, *pObject);
    } while (NextRecord(pb, record));
    byId.ShareExtensions();
}

} // namespace Marvane::FrameSift
