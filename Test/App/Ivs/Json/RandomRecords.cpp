#include "App/Ivs/Json/RandomRecords.h"

#include <algorithm>

#include "Io/EscapeBytes.h"

namespace Marvane::FrameSift {

using nlohmann::ordered_json;

namespace {

constexpr size_t sc_maxEntries = 12; // more of them would not fit into an attribute

} // namespace

// The limits are what errors are made of, so they come more often.
int64_t CRandomRecords::Between(int64_t nLowest, int64_t nHighest)
{
    switch (m_random() % 8) {
    case 0:
        return nLowest;
    case 1:
        return nHighest;
    default:
        return std::uniform_int_distribution<int64_t>(nLowest, nHighest)(m_random);
    }
}

template <class MAKE>
ordered_json CRandomRecords::List(int64_t nFewest, int64_t nMost, MAKE make)
{
    ordered_json list = ordered_json::array();
    for (int64_t nLeft = Between(nFewest, nMost); nLeft > 0; --nLeft)
        list.push_back(make());
    return list;
}

ordered_json CRandomRecords::Number(uint32_t nBytes, bool bSigned)
{
    const int64_t nHighest = (int64_t{1} << (8 * nBytes - (bSigned ? 1 : 0))) - 1;
    return Between(bSigned ? -nHighest - 1 : 0, nHighest);
}

ordered_json CRandomRecords::Value(const JSON_FIELD& field)
{
    const auto numbers = [this](size_t nCount, bool bSigned) {
        ordered_json list = ordered_json::array();
        while (list.size() < nCount)
            list.push_back(Number(2, bSigned));
        return list;
    };
    if (field.nWire != 0)
        return Number(field.nWire, false);
    switch (field.eType) {
    case JSON_TYPE::U8:
        return Number(1, false);
    case JSON_TYPE::U16:
        return Number(2, false);
    case JSON_TYPE::U32:
        return Number(4, false);
    case JSON_TYPE::I16:
        return Number(2, true);
    case JSON_TYPE::I32:
        return Number(4, true);
    case JSON_TYPE::Point:
        return numbers(4, false);
    case JSON_TYPE::Position:
        return numbers(2, false);
    case JSON_TYPE::SignedPosition:
        return numbers(2, true);
    case JSON_TYPE::Line:
        return ordered_json::array({numbers(2, true), numbers(2, true)});
    case JSON_TYPE::Record:
        break;
    }
    return Record(*field.pEntries);
}

// Not a zero: those at the end of a text are not told from filler.
std::string CRandomRecords::Text(size_t nLength)
{
    std::string bytes;
    while (bytes.size() < nLength)
        bytes += static_cast<char>(Between(1, 255));
    return EscapeBytes(bytes);
}

size_t CRandomRecords::CountFor(const JSON_FIELD& list, COUNTS& counts)
{
    const size_t nMost = list.eRole == JSON_ROLE::Text ? list.nMax : std::min<size_t>(list.nMax, sc_maxEntries);
    if (list.count.empty())
        return list.eRole == JSON_ROLE::Text ? static_cast<size_t>(Between(0, static_cast<int64_t>(nMost))) : list.nMax;
    const auto found = counts.find(list.count);
    if (found != counts.end())
        return found->second;
    const auto nHighest = static_cast<int64_t>(std::min<size_t>({nMost, list.nMaxCount, 40}));
    return counts[list.count] = static_cast<size_t>(Between(list.nMinCount, nHighest));
}

void CRandomRecords::AddField(ordered_json& record, const JSON_TABLE& table, const JSON_FIELD& field, COUNTS& counts)
{
    if (field.eRole == JSON_ROLE::Skipped || field.eRole == JSON_ROLE::Computed)
        return;
    ordered_json& value = record[std::string(field.name)];
    if (field.eRole == JSON_ROLE::State)
        value = Between(0, 1);
    else if (field.eRole == JSON_ROLE::HighBits || field.eRole == JSON_ROLE::LowBits)
        value = Between(0, 3);
    else if (field.eRole == JSON_ROLE::Text)
        value = Text(CountFor(field, counts));
    else if (field.name == "packet_length")
        value = 4 * Between(1, 63);
    else if (field.eRole == JSON_ROLE::List)
        for (value = ordered_json::array(); value.size() < CountFor(field, counts);)
            value.push_back(Value(field));
    else
        value = Value(field);
    for (const JSON_FIELD& list : table.fields) {
        if (list.count == field.name)
            value = CountFor(list, counts);
    }
}

ordered_json CRandomRecords::Record(const JSON_TABLE& table)
{
    ordered_json record = ordered_json::object();
    COUNTS counts;
    for (const JSON_FIELD& field : table.fields)
        AddField(record, table, field, counts);
    return record;
}

ordered_json CRandomRecords::TrackEx()
{
    const auto nColor = Between(0, 255);
    int32_t nNextId = static_cast<int32_t>(Between(-1000, 1000)); // extension records go by the number
    return List(0, 5, [&] {
        ordered_json object = Record(gsk_trackExFields);
        object["obj_id"] = nNextId++;
        object["color"] = nColor;
        if (Between(0, 1) == 0)
            return object;
        object.update(Record(gsk_extensionFields));
        object["ex_info_size"] = Between(28, 40);
        return object;
    });
}

ordered_json CRandomRecords::Attributes()
{
    ordered_json attributes = ordered_json::object();
    for (const JSON_ATTRIBUTE& row : IvsAttributes()) {
        if (m_random() % 3 == 0)
            attributes[std::string(row.name)] = Record(*row.pFields);
    }
    if (!attributes.contains("85"))
        return attributes;
    // Decoders read no more colours than there are places in the track.
    ordered_json& colors = attributes["85"]["color"];
    const size_t nPlaces = attributes.contains("84") ? attributes["84"]["trackPoint"].size() : 0;
    while (colors.size() > nPlaces)
        colors.erase(colors.size() - 1);
    attributes["85"]["mainColorCount"] = colors.size();
    return attributes;
}

ordered_json CRandomRecords::CommonObject()
{
    const int types[] = {2, 5, 15, 18, 27, static_cast<int>(Between(28, 255))};
    const int objType = types[m_random() % std::size(types)];
    const JSON_OBJECT_KIND& kind = ObjectKindOf(static_cast<uint32_t>(objType));
    ordered_json object = {{"objType", objType}};
    object.update(Record(*kind.pFields));
    if (kind.bFace) {
        object["facedata"] = List(0, 9, [this] { return Number(1, false); });
    } else if (kind.bLanes) {
        const JSON_LANES& row = IvsLanes()[m_random() % IvsLanes().size()];
        object["lanes"] = {{"type", row.name}};
        object["lanes"].update(Record(*row.pFields));
    } else {
        object["attributes"] = Attributes();
    }
    return object;
}

ordered_json CRandomRecords::Segment()
{
    if (m_random() % 4 == 0)
        return {{"type", "a0-objects"}, {"objects", List(0, 5, [this] { return Record(gsk_a0Fields); })}};
    if (m_random() % 4 == 0)
        return {{"type", "a0-ex-objects"}, {"objects", List(1, 5, [this] { return Record(gsk_a0ExFields); })}};
    ordered_json group = {{"type", "common-objects"}};
    ordered_json objects = List(0, 3, [this] { return CommonObject(); });
    if (!objects.empty()) {
        group.update(Record(gsk_segmentFields));
        group["funcType"] = Between(0, 96); // 97 is that of A0 objects
        group["groupID"] = Number(4, false);
    }
    group["objects"] = std::move(objects);
    return group;
}

ordered_json CRandomRecords::Drawing()
{
    ordered_json drawing = {{"type", "overlay"}};
    drawing.update(Record(gsk_overlayHeadFields));
    drawing["elements"] = List(0, 6, [this] {
        const JSON_ELEMENT& row = IvsElements()[m_random() % IvsElements().size()];
        ordered_json element = {{"type", row.name}};
        element.update(Record(*row.pFields));
        return element;
    });
    drawing.update(Record(gsk_overlayTailFields));
    return drawing;
}

ordered_json CRandomRecords::Traffic()
{
    const bool bPlans = m_random() % 4 != 0;
    ordered_json records = List(1, 4, [&] {
        ordered_json record = {{"NumberStat", 13}};
        record["plans"] = List(bPlans ? 1 : 0, bPlans ? 32 : 0, [this] { return Record(gsk_trafficPlanFields); });
        return record;
    });
    // Where the next record's type is looked for.
    for (size_t n = 0; bPlans && n + 1 < records.size(); ++n)
        records[n]["plans"][0]["PlanId"] = 13;
    return records;
}

ordered_json CRandomRecords::Make(KX_IVS_PARSE_TYPE eParseType)
{
    const auto one = [](const char* pType, const char* pName, ordered_json list) {
        return ordered_json::array({ordered_json{{"type", pType}, {pName, std::move(list)}}});
    };
    switch (eParseType) {
    case IVS_TRACK:
        return one("track", "objects", List(0, 5, [this] { return Record(gsk_trackFields); }));
    case IVS_TRACK_EX:
        return one("track-ex", "objects", TrackEx());
    case IVS_TRACK_EX3:
        return one("scene", "points", List(1, 5, [this] { return Record(gsk_scenePointFields); }));
    case IVS_TRACK_15:
        return one("traffic", "records", Traffic());
    case IVS_TRACK_ZOOP:
        return List(0, 3, [this] { return Drawing(); });
    default:
        return List(1, 4, [this] { return Segment(); });
    }
}

} // namespace Marvane::FrameSift
