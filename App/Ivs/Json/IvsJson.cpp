#include "Ivs/Json/IvsJson.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "Io/EscapeBytes.h"
#include "Ivs/Json/IvsFields.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

template <class T>
T Load(const uint8_t* pBytes)
{
    T value;
    std::memcpy(&value, pBytes, sizeof value);
    return value;
}

ordered_json SignedPosition(const uint8_t* pBytes)
{
    return {Load<int16_t>(pBytes), Load<int16_t>(pBytes + 2)};
}

ordered_json ValueToJson(JSON_TYPE eType, const uint8_t* pValue)
{
    switch (eType) {
    case JSON_TYPE::U8:
        return *pValue;
    case JSON_TYPE::U16:
        return Load<uint16_t>(pValue);
    case JSON_TYPE::U32:
        return Load<uint32_t>(pValue);
    case JSON_TYPE::I16:
        return Load<int16_t>(pValue);
    case JSON_TYPE::I32:
        return Load<int32_t>(pValue);
    case JSON_TYPE::Position:
        return {Load<uint16_t>(pValue), Load<uint16_t>(pValue + 2)};
    case JSON_TYPE::Point:
        return {Load<uint16_t>(pValue), Load<uint16_t>(pValue + 2), Load<uint16_t>(pValue + 4),
                Load<uint16_t>(pValue + 6)};
    case JSON_TYPE::SignedPosition:
        return SignedPosition(pValue);
    case JSON_TYPE::Line:
        return ordered_json::array({SignedPosition(pValue), SignedPosition(pValue + 4)});
    case JSON_TYPE::Record:
        break;
    }
    return nullptr;
}

// A count is a number of the wire and may be any: below 0 it cannot be, since those that are signed are one byte there.
size_t CountOf(const JSON_TABLE& table, const JSON_FIELD& list, const uint8_t* pRecord)
{
    const auto* pEnd = table.fields.data() + table.fields.size();
    const auto* pCount =
        std::find_if(table.fields.data(), pEnd, [&](const JSON_FIELD& field) { return field.name == list.count; });
    if (list.count.empty() || pCount == pEnd)
        return list.nMax;
    return std::min<size_t>(ValueToJson(pCount->eType, pRecord + pCount->nOffset).get<size_t>(), list.nMax);
}

void AddFields(ordered_json& object, const JSON_TABLE& table, const uint8_t* pRecord);

ordered_json ListToJson(const JSON_FIELD& list, const uint8_t* pEntries, size_t nCount)
{
    ordered_json entries = ordered_json::array();
    for (size_t n = 0; n < nCount; ++n) {
        const uint8_t* pEntry = pEntries + n * list.nStride;
        if (list.pEntries == nullptr) {
            entries.push_back(ValueToJson(list.eType, pEntry));
            continue;
        }
        ordered_json entry = ordered_json::object();
        AddFields(entry, *list.pEntries, pEntry);
        entries.push_back(std::move(entry));
    }
    return entries;
}

// The zeros at the end go: they fill fields of one length, and a count tells of the others.
std::string TextOf(const uint8_t* pText, size_t nCount)
{
    while (nCount > 0 && pText[nCount - 1] == 0)
        --nCount;
    return EscapeBytes(std::string(pText, pText + nCount));
}

ordered_json EntriesToJson(const JSON_TABLE& table, const JSON_FIELD& list, const uint8_t* pRecord)
{
    const uint8_t* pEntries = pRecord + list.nOffset;
    if (list.bPointer)
        pEntries = Load<const uint8_t*>(pEntries);
    const size_t nCount = pEntries == nullptr ? 0 : CountOf(table, list, pRecord);
    if (list.eRole == JSON_ROLE::List)
        return ListToJson(list, pEntries, nCount);
    if (pEntries == nullptr)
        return nullptr; // not the same as an empty text: the payload ends in front of it
    return TextOf(pEntries, nCount);
}

void AddFields(ordered_json& object, const JSON_TABLE& table, const uint8_t* pRecord)
{
    for (const JSON_FIELD& field : table.fields) {
        if (field.eRole == JSON_ROLE::Skipped)
            continue;
        const bool bEntries = field.eRole == JSON_ROLE::List || field.eRole == JSON_ROLE::Text;
        object[std::string(field.name)] =
            bEntries ? EntriesToJson(table, field, pRecord) : ValueToJson(field.eType, pRecord + field.nOffset);
    }
}

template <class RECORD>
void AddFields(ordered_json& object, const JSON_TABLE& table, const RECORD& record)
{
    AddFields(object, table, reinterpret_cast<const uint8_t*>(&record));
}

// An array of RECORD, each as an object with the fields of all tables.
template <class RECORD>
ordered_json Records(const void* pRecords, size_t nLen, std::initializer_list<const JSON_TABLE*> tables)
{
    ordered_json list = ordered_json::array();
    const auto* pBegin = static_cast<const RECORD*>(pRecords);
    for (size_t n = 0; n < nLen / sizeof(RECORD); ++n) {
        ordered_json object = ordered_json::object();
        for (const JSON_TABLE* pTable : tables)
            AddFields(object, *pTable, pBegin[n]);
        list.push_back(std::move(object));
    }
    return list;
}

ordered_json AttributesToJson(const KX_IVS_ATTRIBUTE& attributes)
{
    ordered_json list = ordered_json::object();
    for (const JSON_ATTRIBUTE& row : IvsAttributes()) {
        if ((attributes.attrflag >> (row.chType - 0x80) & 1) == 0)
            continue;
        ordered_json attribute = ordered_json::object();
        AddFields(attribute, *row.pFields, reinterpret_cast<const uint8_t*>(&attributes) + row.nOffset);
        list[std::string(row.name)] = std::move(attribute);
    }
    return list;
}

const void* LaneRecord(const KX_IVS_COMMON_OBJ& object)
{
    switch (object.attrUnionflag) {
    case OBJ_ATTR_0x8D:
        return &object.attr.signal_flow;
    case OBJ_ATTR_0x91:
        return &object.attr.arrtibute91;
    case OBJ_ATTR_0x95:
        return object.pArrtibute95;
    case OBJ_ATTR_0x96:
        return object.pArrtibute96;
    default:
        return nullptr;
    }
}

ordered_json LanesToJson(const KX_IVS_COMMON_OBJ& object)
{
    const void* pRecord = LaneRecord(object);
    for (const JSON_LANES& row : IvsLanes()) {
        if (pRecord == nullptr || row.eFlag != object.attrUnionflag)
            continue;
        ordered_json lanes = {{"type", row.name}};
        AddFields(lanes, *row.pFields, static_cast<const uint8_t*>(pRecord));
        return lanes;
    }
    return nullptr;
}

ordered_json CommonObjectToJson(const KX_IVS_COMMON_OBJ& object)
{
    const JSON_OBJECT_KIND& kind = ObjectKindOf(object.objType);
    ordered_json json = ordered_json::object();
    AddFields(json, *kind.pFields, object);
    if (kind.bLanes)
        json["lanes"] = LanesToJson(object);
    else if (!kind.bFace)
        json["attributes"] = AttributesToJson(object.attr.comm);
    return json;
}

void AddGroup(ordered_json& group, const void* pRecords, size_t nLen)
{
    const auto* pObjects = static_cast<const KX_IVS_COMMON_OBJ*>(pRecords);
    const size_t nObjects = nLen / sizeof *pObjects;
    if (nObjects > 0) {
        AddFields(group, gsk_segmentFields, pObjects->segInfo); // the same in all objects
        group["groupID"] = pObjects->groupID;
    }
    group["objects"] = ordered_json::array();
    for (size_t n = 0; n < nObjects; ++n)
        group["objects"].push_back(CommonObjectToJson(pObjects[n]));
}

ordered_json A0ExObjects(const void* pRecords, size_t nLen)
{
    if (nLen < sizeof(KX_IVS_OBJ_ALL))
        return ordered_json::array();
    const auto& all = *static_cast<const KX_IVS_OBJ_ALL*>(pRecords);
    return Records<KX_IVS_OBJ_A0_Ex>(all.ObjUnion.IVSObjA0Ex, all.ObjUnionLen, {&gsk_a0ExFields});
}

ordered_json ElementToJson(const KX_IVS_ZOOP_OBJ_ELEMENT& element)
{
    for (const JSON_ELEMENT& row : IvsElements()) {
        if (row.chType != element.nType || element.pStruct == nullptr)
            continue;
        ordered_json json = {{"type", row.name}};
        AddFields(json, *row.pFields, static_cast<const uint8_t*>(element.pStruct));
        return json;
    }
    return {{"type", element.nType}};
}

void AddDrawing(ordered_json& json, const void* pRecords, size_t nLen)
{
    if (nLen < sizeof(KX_IVS_ZOOP_OBJ))
        return;
    const auto& drawing = *static_cast<const KX_IVS_ZOOP_OBJ*>(pRecords);
    AddFields(json, gsk_overlayHeadFields, drawing);
    json["elements"] = ordered_json::array();
    for (size_t n = 0; drawing.pElement != nullptr && n < drawing.chCount; ++n)
        json["elements"].push_back(ElementToJson(drawing.pElement[n]));
    AddFields(json, gsk_overlayTailFields, drawing);
}

} // namespace

ordered_json IvsRecordsToJson(KX_IVS_PARSE_TYPE eType, const void* pRecords, int nLen)
{
    const size_t nBytes = pRecords == nullptr ? 0 : static_cast<size_t>(std::max(nLen, 0));
    ordered_json json = ordered_json::object();
    if (eType == IVS_TRACK) {
        json["type"] = "track";
        json["objects"] = Records<KX_IVS_OBJ>(pRecords, nBytes, {&gsk_trackFields});
    } else if (eType == IVS_TRACK_EX) {
        json["type"] = "track-ex";
        json["objects"] = Records<KX_IVS_OBJ_EX>(pRecords, nBytes, {&gsk_trackExFields, &gsk_extensionFields});
    } else if (eType == IVS_TRACK_40) {
        json["type"] = "common-objects";
        AddGroup(json, pRecords, nBytes);
    } else if (eType == IVS_TRACK_A1) {
        json["type"] = "a0-objects";
        json["objects"] = Records<KX_IVS_OBJ_A0>(pRecords, nBytes, {&gsk_a0Fields});
    } else if (eType == IVS_TRACK_A1_EX) {
        json["type"] = "a0-ex-objects";
        json["objects"] = A0ExObjects(pRecords, nBytes);
    } else if (eType == IVS_TRACK_EX3) {
        json["type"] = "scene";
        json["points"] = Records<KX_IVS_TRACK_EX3_SCENE_POINTS_INFOR>(pRecords, nBytes, {&gsk_scenePointFields});
    } else if (eType == IVS_TRACK_ZOOP) {
        json["type"] = "overlay";
        AddDrawing(json, pRecords, nBytes);
    } else if (eType == IVS_TRACK_B1) {
        json["type"] = "traffic";
        json["records"] = Records<KX_IVS_TRACK_TRAFFIC_SCENE_POINTS_INFOR>(pRecords, nBytes, {&gsk_trafficFields});
    }
    return json;
}

} // namespace Marvane::FrameSift
