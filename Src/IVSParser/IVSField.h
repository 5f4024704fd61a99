// The fields of a record on the wire as rows of a table, and what fills a record from them.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSFIELD_H
#define FRAMESIFT_SRC_IVSPARSER_IVSFIELD_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <span>
#include <utility>

#include "Tools/BufferRead.h"

namespace Marvane::FrameSift {

// A field is copied as it stands: the records have the byte order of the wire. So a number may also fill a wider member
// of a zeroed record, and one row may stand for neighbours that are neighbours in the record too.
static_assert(std::endian::native == std::endian::little);

struct IVS_FIELD
{
    uint16_t nWire;   // offset in the payload
    uint16_t nWidth;  // in bytes, on the wire
    uint16_t nRecord; // offset in the record
};

// The row of a member that is as wide in the record as on the wire.
#define IVS_FIELD_OF(nWire, RECORD, member)                                                                            \
    ::Marvane::FrameSift::IVS_FIELD                                                                                    \
    {                                                                                                                  \
        nWire, sizeof(RECORD::member), offsetof(RECORD, member)                                                        \
    }

// Bytes that a payload needs to hold all fields.
constexpr uint32_t IvsWireSize(std::span<const IVS_FIELD> fields)
{
    uint32_t nSize = 0;
    for (const IVS_FIELD& field : fields)
        nSize = std::max(nSize, uint32_t{field.nWire} + field.nWidth);
    return nSize;
}

constexpr bool FitsInto(std::span<const IVS_FIELD> fields, size_t nRecordSize)
{
    return std::all_of(fields.begin(), fields.end(),
                       [&](const IVS_FIELD& field) { return size_t{field.nRecord} + field.nWidth <= nRecordSize; });
}

// Null leaves the field as it is.
inline void FillField(const IVS_FIELD& field, const uint8_t* pWire, void* pRecord)
{
    if (pWire != nullptr)
        std::memcpy(static_cast<uint8_t*>(pRecord) + field.nRecord, pWire, field.nWidth);
}

// pWire: IvsWireSize(fields) bytes. The table is an argument of the template so that each field is one move of a known
// width; a loop over it would call memcpy for each.
template <const auto& fields, class RECORD>
void FillWhole(const uint8_t* pWire, RECORD& record)
{
    static_assert(FitsInto(fields, sizeof(RECORD)));
    [&]<size_t... n>(std::index_sequence<n...>)
    {
        (FillField(fields[n], pWire + fields[n].nWire, &record), ...);
    }
    (std::make_index_sequence<std::size(fields)>());
}

// payload: from the first byte of the record to the end of what belongs to it. A field that is not wholly inside keeps
// its value.
template <const auto& fields, class RECORD>
void FillFields(CBufferRead payload, RECORD& record)
{
    constexpr uint32_t k_wireSize = IvsWireSize(fields);
    CBufferRead whole = payload;
    if (const uint8_t* pWire = whole.ReadBuffer(k_wireSize))
        return FillWhole<fields>(pWire, record);
    for (const IVS_FIELD& field : fields) {
        CBufferRead rest = payload;
        FillField(field, rest.Skip(field.nWire) ? rest.ReadBuffer(field.nWidth) : nullptr, &record);
    }
}

// The same for fields that stand one behind the other from the reader's place on; moves the reader. If there is too
// little, each is read in its turn: one that does not fit leaves its bytes to the next one that does.
template <const auto& fields, class RECORD>
void ReadFields(CBufferRead& pb, RECORD& record)
{
    constexpr uint32_t k_wireSize = IvsWireSize(fields);
    if (const uint8_t* pWire = pb.ReadBuffer(k_wireSize))
        return FillWhole<fields>(pWire, record);
    for (const IVS_FIELD& field : fields)
        FillField(field, pb.ReadBuffer(field.nWidth), &record);
}

} // namespace Marvane::FrameSift

#endif
