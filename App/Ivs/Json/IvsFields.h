// The fields of the records of intelligent video metadata, in the order in which they stand on the wire. One table
// serves both ways: JSON from a record, and a payload from JSON.
#ifndef FRAMESIFT_APP_IVS_JSON_IVSFIELDS_H
#define FRAMESIFT_APP_IVS_JSON_IVSFIELDS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

enum class JSON_TYPE : uint8_t
{
    U8,
    U16,
    U32,
    I16,
    I32,
    Point,
    Position,
    SignedPosition,
    Line,
    Record
};

enum class JSON_ROLE : uint8_t
{
    Value,
    Computed, // made by the decoder: printed, and passed over where JSON is read
    Skipped,  // bytes of the wire that no field takes
    List,
    Text,
    State,    // "enable" as the state byte that the first track format has for it
    HighBits, // two of the four low bits of a byte
    LowBits   // the other two, of the same byte
};

// How many entries of a list stand on the wire.
enum class JSON_EXTENT : uint8_t
{
    Counted,     // as its count says, also above what a record holds
    AtMostArray, // as its count says, but no more than a record holds
    Array        // always as many as a record holds
};

struct JSON_TABLE;

struct JSON_FIELD
{
    std::string_view name;
    JSON_ROLE eRole = JSON_ROLE::Value;
    JSON_TYPE eType = JSON_TYPE::U8; // of the value, or of each entry

    // Lists and texts only.
    JSON_EXTENT eExtent = JSON_EXTENT::Counted;
    bool bPointer = false;  // the record holds a pointer to the entries
    bool bWithNext = false; // on the wire its entries take turns with those of the next row

    uint32_t nOffset = 0; // in the record
    uint32_t nWire = 0;   // bytes on the wire; 0: as many as in the record

    // Lists and texts only.
    std::string_view count; // the field that counts the entries; empty: the list has one length
    uint32_t nStride = 1;   // from entry to entry in the record
    uint32_t nMax = 0;      // entries that the record holds
    uint32_t nMinCount = 0; // limits of the count
    uint32_t nMaxCount = 0;
    const JSON_TABLE* pEntries = nullptr; // the fields of an entry that is a record

    // For the tables: the same row with something changed.
    constexpr JSON_FIELD OnWire(uint32_t nBytes) const;
    constexpr JSON_FIELD As(JSON_ROLE eNewRole) const;
    constexpr JSON_FIELD Named(std::string_view newName) const;
    constexpr JSON_FIELD Of(const JSON_TABLE& entries) const;
    constexpr JSON_FIELD Limits(uint32_t nMin, uint32_t nMost) const;
    constexpr JSON_FIELD Extent(JSON_EXTENT eNewExtent) const;
    constexpr JSON_FIELD WithNext() const;
};

struct JSON_TABLE
{
    std::span<const JSON_FIELD> fields;
    int32_t nLengthAt = -1; // where the record tells its own length on the wire, in two bytes; -1: it does not
};

constexpr JSON_FIELD JSON_FIELD::OnWire(uint32_t nBytes) const
{
    JSON_FIELD row = *this;
    row.nWire = nBytes;
    return row;
}

constexpr JSON_FIELD JSON_FIELD::As(JSON_ROLE eNewRole) const
{
    JSON_FIELD row = *this;
    row.eRole = eNewRole;
    return row;
}

constexpr JSON_FIELD JSON_FIELD::Named(std::string_view newName) const
{
    JSON_FIELD row = *this;
    row.name = newName;
    return row;
}

constexpr JSON_FIELD JSON_FIELD::Of(const JSON_TABLE& entries) const
{
    JSON_FIELD row = *this;
    row.eType = JSON_TYPE::Record;
    row.pEntries = &entries;
    return row;
}

constexpr JSON_FIELD JSON_FIELD::Limits(uint32_t nMin, uint32_t nMost) const
{
    JSON_FIELD row = *this;
    row.nMinCount = nMin;
    row.nMaxCount = nMost;
    return row;
}

constexpr JSON_FIELD JSON_FIELD::Extent(JSON_EXTENT eNewExtent) const
{
    JSON_FIELD row = *this;
    row.eExtent = eNewExtent;
    return row;
}

constexpr JSON_FIELD JSON_FIELD::WithNext() const
{
    JSON_FIELD row = *this;
    row.bWithNext = true;
    return row;
}

// Of a type that is none of the others: a record, whose table the row must name.
template <class T>
constexpr JSON_TYPE JsonTypeOf()
{
    if constexpr (std::is_same_v<T, uint8_t> || std::is_same_v<T, char>)
        return JSON_TYPE::U8;
    else if constexpr (std::is_same_v<T, uint16_t>)
        return JSON_TYPE::U16;
    else if constexpr (std::is_same_v<T, uint32_t>)
        return JSON_TYPE::U32;
    else if constexpr (std::is_same_v<T, int16_t> || std::is_same_v<T, KX_IVS_LANE_CALIBRATION>)
        return JSON_TYPE::I16;
    else if constexpr (std::is_same_v<T, int32_t>)
        return JSON_TYPE::I32;
    else if constexpr (std::is_same_v<T, KX_IVS_POINT>)
        return JSON_TYPE::Point;
    else if constexpr (std::is_same_v<T, KX_IVS_POSITION>)
        return JSON_TYPE::Position;
    else if constexpr (std::is_same_v<T, KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION>)
        return JSON_TYPE::SignedPosition;
    else if constexpr (std::is_same_v<T, KX_IVS_LINE_POSITION>)
        return JSON_TYPE::Line;
    else
        return JSON_TYPE::Record;
}

template <class MEMBER>
constexpr JSON_FIELD JsonValue(std::string_view name, size_t nOffset)
{
    JSON_FIELD row;
    row.name = name;
    row.eType = JsonTypeOf<MEMBER>();
    row.nOffset = static_cast<uint32_t>(nOffset);
    return row;
}

// MEMBER is an array, or a pointer to as many entries as their count says.
template <class MEMBER>
constexpr JSON_FIELD JsonList(std::string_view name, size_t nOffset, std::string_view count)
{
    using ENTRY = std::remove_cv_t<std::remove_pointer_t<std::remove_extent_t<MEMBER>>>;
    JSON_FIELD row = JsonValue<ENTRY>(name, nOffset).As(JSON_ROLE::List);
    row.count = count;
    row.nStride = sizeof(ENTRY);
    row.bPointer = std::is_pointer_v<MEMBER>;
    row.nMax = row.bPointer ? uint32_t{UINT16_MAX} : static_cast<uint32_t>(std::extent_v<MEMBER>);
    row.nMaxCount = row.nMax;
    row.eExtent = count.empty() ? JSON_EXTENT::Array : JSON_EXTENT::Counted;
    return row;
}

constexpr JSON_FIELD JsonSkip(uint32_t nBytes)
{
    return JSON_FIELD().As(JSON_ROLE::Skipped).OnWire(nBytes);
}

// Macros, since only they can tell a member's name and place at once.
#define JSON_VALUE(RECORD, MEMBER) JsonValue<decltype(RECORD::MEMBER)>(#MEMBER, offsetof(RECORD, MEMBER))
#define JSON_LIST(RECORD, MEMBER, COUNT) JsonList<decltype(RECORD::MEMBER)>(#MEMBER, offsetof(RECORD, MEMBER), COUNT)
#define JSON_TEXT(RECORD, MEMBER, COUNT) JSON_LIST(RECORD, MEMBER, COUNT).As(JSON_ROLE::Text)

// Tracks and the scene.
extern const JSON_TABLE gsk_trackFields;       // KX_IVS_OBJ
extern const JSON_TABLE gsk_trackExFields;     // KX_IVS_OBJ_EX
extern const JSON_TABLE gsk_extensionFields;   // KX_IVS_OBJ_EX, from its extension record
extern const JSON_TABLE gsk_a0Fields;          // KX_IVS_OBJ_A0
extern const JSON_TABLE gsk_a0ExFields;        // KX_IVS_OBJ_A0_Ex
extern const JSON_TABLE gsk_scenePointFields;  // KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR
extern const JSON_TABLE gsk_trafficFields;     // KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR
extern const JSON_TABLE gsk_trafficPlanFields; // KX_IVS_TRAFFIC_PLAN

// Common objects: the head of their segment, and what stands in front of their attributes.
extern const JSON_TABLE gsk_segmentFields; // KX_IVS_SEGMENT_INFO
struct JSON_OBJECT_KIND
{
    const JSON_TABLE* pFields; // KX_IVS_COMMON_OBJ
    bool bFace;
    bool bLanes;
};
const JSON_OBJECT_KIND& ObjectKindOf(uint32_t objType);

// What an object says of itself: a row for each type that a decoder knows.
struct JSON_ATTRIBUTE
{
    std::string_view name;     // "80"
    const JSON_TABLE* pFields; // of its record
    uint32_t nOffset;          // in KX_IVS_ATTRIBUTE
    uint8_t chType;            // on the wire
};
std::span<const JSON_ATTRIBUTE> IvsAttributes();

struct JSON_LANES
{
    std::string_view name; // "8D"
    uint8_t chType;        // on the wire
    OBJ_ATTR_UNION_FLAG eFlag;
    const JSON_TABLE* pFields;
};
std::span<const JSON_LANES> IvsLanes();

// Overlay drawings: all in front of the elements, an element, all behind them.
extern const JSON_TABLE gsk_overlayHeadFields; // KX_IVS_ZOOP_OBJ
extern const JSON_TABLE gsk_overlayTailFields; // KX_IVS_ZOOP_OBJ
struct JSON_ELEMENT
{
    std::string_view name; // "circle"
    uint8_t chType;        // KX_IVS_ZOOP_ELEMENT_TYPE
    const JSON_TABLE* pFields;
};
std::span<const JSON_ELEMENT> IvsElements();

} // namespace Marvane::FrameSift

#endif
