#include "Ivs/Json/IvsWireFields.h"

#include <fmt/format.h>

#include <algorithm>

namespace Marvane::FrameSift {

namespace {

// State of an object whose track is finished, and one of those of an object that lives.
constexpr uint8_t sc_stateFinished = 3;
constexpr uint8_t sc_stateAlive = 1;

// How a type stands on the wire: numbers of one width, alone or in a list, or in a list of pairs.
struct SHAPE
{
    uint32_t nBytes;
    bool bSigned;
    size_t nNumbers;
};

SHAPE ShapeOf(JSON_TYPE eType)
{
    switch (eType) {
    case JSON_TYPE::U16:
        return {2, false, 1};
    case JSON_TYPE::U32:
        return {4, false, 1};
    case JSON_TYPE::I16:
        return {2, true, 1};
    case JSON_TYPE::I32:
        return {4, true, 1};
    case JSON_TYPE::Position:
        return {2, false, 2};
    case JSON_TYPE::Point:
        return {2, false, 4};
    case JSON_TYPE::SignedPosition:
        return {2, true, 2};
    case JSON_TYPE::U8:
    case JSON_TYPE::Line:
    case JSON_TYPE::Record:
        break;
    }
    return {1, false, 1};
}

void PutNumber(Bytes& wire, const CJsonPlace& place, uint32_t nBytes, bool bSigned)
{
    const int64_t nHighest = (int64_t{1} << (8 * nBytes - (bSigned ? 1 : 0))) - 1;
    const int64_t nValue = place.Number(bSigned ? -nHighest - 1 : 0, nHighest);
    AppendLsb(wire, static_cast<uint64_t>(nValue), nBytes);
}

size_t RequireSize(const CJsonPlace& place, size_t nSize, std::string_view shape)
{
    if (!place.IsMissing() && (!place.Json().is_array() || place.Json().size() != nSize))
        place.Fail(fmt::format("is not of the form {}", shape));
    return nSize;
}

// nBytes: on the wire, if that is not what the type has; 0 if it is.
void PutValue(Bytes& wire, const CJsonPlace& place, JSON_TYPE eType, uint32_t nBytes = 0)
{
    if (eType == JSON_TYPE::Line) {
        for (size_t n = 0; n < RequireSize(place, 2, "[[x, y], [x, y]]"); ++n)
            PutValue(wire, place.At(n), JSON_TYPE::SignedPosition);
        return;
    }
    const SHAPE shape = ShapeOf(eType);
    if (shape.nNumbers == 1)
        return PutNumber(wire, place, nBytes == 0 ? shape.nBytes : nBytes, shape.bSigned && nBytes == 0);
    for (size_t n = 0; n < RequireSize(place, shape.nNumbers, shape.nNumbers == 2 ? "[x, y]" : "[x, y, xSize, ySize]");
         ++n)
        PutNumber(wire, place.At(n), shape.nBytes, shape.bSigned);
}

// Entries that the JSON has.
size_t GivenEntries(const JSON_FIELD& list, const CJsonPlace& record)
{
    const CJsonPlace place = record.At(list.name);
    if (list.eRole == JSON_ROLE::List)
        return place.Size(list.nMax);
    const size_t nLength = place.UnescapedText().size();
    if (nLength > list.nMax)
        place.Fail(fmt::format("{} bytes are too many: at most {}", nLength, list.nMax));
    return nLength;
}

// The count of a list: what the JSON says, else as many as there are in the longest list of that count.
uint32_t CountOf(const JSON_TABLE& table, std::string_view count, const CJsonPlace& record)
{
    uint32_t nCount = 0;
    uint32_t nMin = 0;
    uint32_t nMax = UINT32_MAX;
    for (const JSON_FIELD& list : table.fields) {
        if (list.count != count)
            continue;
        nCount = std::max(nCount, static_cast<uint32_t>(GivenEntries(list, record)));
        nMin = std::max(nMin, list.nMinCount);
        nMax = std::min(nMax, list.nMaxCount);
    }
    const CJsonPlace place = record.At(count);
    const auto* pEnd = table.fields.data() + table.fields.size();
    const auto* pField =
        std::find_if(table.fields.data(), pEnd, [&](const JSON_FIELD& field) { return field.name == count; });
    const bool bGiven = pField != pEnd && pField->eRole == JSON_ROLE::Value && record.Has(count);
    const auto nGiven = bGiven ? static_cast<uint32_t>(place.Number(nMin, nMax)) : nCount;
    if (nGiven < nCount)
        place.Fail(fmt::format("{} is less than the {} entries that there are", nGiven, nCount));
    if (nGiven < nMin || nGiven > nMax)
        place.Fail(fmt::format("{} does not fit: {} to {}", nGiven, nMin, nMax));
    return nGiven;
}

bool IsCount(const JSON_TABLE& table, const JSON_FIELD& field)
{
    return std::any_of(table.fields.begin(), table.fields.end(),
                       [&](const JSON_FIELD& list) { return !list.count.empty() && list.count == field.name; });
}

void PutEntry(Bytes& wire, const JSON_FIELD& list, const CJsonPlace& entry)
{
    if (list.pEntries == nullptr)
        return PutValue(wire, entry, list.eType);
    if (!entry.IsMissing())
        RequireNames(entry, {list.pEntries});
    PutFields(wire, *list.pEntries, entry);
}

size_t EntriesOnWire(const JSON_TABLE& table, const JSON_FIELD& list, const CJsonPlace& record)
{
    const size_t nCount = list.count.empty() ? GivenEntries(list, record) : CountOf(table, list.count, record);
    if (list.eExtent == JSON_EXTENT::Array)
        return list.nMax;
    return list.eExtent == JSON_EXTENT::AtMostArray ? std::min<size_t>(nCount, list.nMax) : nCount;
}

// pNext: the row whose entries take turns with those of this one, or null.
void PutList(Bytes& wire, const JSON_TABLE& table, const JSON_FIELD& list, const JSON_FIELD* pNext,
             const CJsonPlace& record)
{
    const size_t nCount = EntriesOnWire(table, list, record);
    const CJsonPlace place = record.At(list.name);
    if (list.eRole == JSON_ROLE::Text) {
        const std::string text = place.UnescapedText();
        wire.insert(wire.end(), text.begin(), text.end());
        wire.resize(wire.size() + nCount - text.size());
        return;
    }
    for (size_t n = 0; n < nCount; ++n) {
        PutEntry(wire, list, place.At(n));
        if (pNext != nullptr)
            PutEntry(wire, *pNext, record.At(pNext->name).At(n));
    }
}

void PutField(Bytes& wire, const JSON_TABLE& table, const JSON_FIELD& field, const CJsonPlace& record)
{
    const CJsonPlace place = record.At(field.name);
    switch (field.eRole) {
    case JSON_ROLE::Value:
        if (IsCount(table, field))
            AppendLsb(wire, CountOf(table, field.name, record),
                      field.nWire == 0 ? ShapeOf(field.eType).nBytes : field.nWire);
        else
            PutValue(wire, place, field.eType, field.nWire);
        break;
    case JSON_ROLE::Skipped:
        wire.resize(wire.size() + field.nWire);
        break;
    case JSON_ROLE::State:
        wire.push_back(place.Number(0, 1) == 1 ? sc_stateAlive : sc_stateFinished);
        break;
    case JSON_ROLE::HighBits:
        wire.push_back(static_cast<uint8_t>(place.Number(0, 3) << 2));
        break;
    case JSON_ROLE::LowBits:
        wire.back() = static_cast<uint8_t>(wire.back() | place.Number(0, 3));
        break;
    case JSON_ROLE::List:
    case JSON_ROLE::Text:
    case JSON_ROLE::Computed:
        break;
    }
}

} // namespace

void PutFields(Bytes& wire, const JSON_TABLE& table, const CJsonPlace& record)
{
    const size_t nBegin = wire.size();
    for (size_t n = 0; n < table.fields.size(); ++n) {
        const JSON_FIELD& field = table.fields[n];
        if (field.eRole != JSON_ROLE::List && field.eRole != JSON_ROLE::Text) {
            PutField(wire, table, field, record);
            continue;
        }
        PutList(wire, table, field, field.bWithNext ? &table.fields[n + 1] : nullptr, record);
        n += field.bWithNext ? 1 : 0;
    }
    if (table.nLengthAt >= 0)
        SetLsb(wire, nBegin + static_cast<size_t>(table.nLengthAt), wire.size() - nBegin, 2);
}

void RequireNames(const CJsonPlace& record, std::initializer_list<const JSON_TABLE*> tables,
                  std::initializer_list<std::string_view> others, const std::string& unknown)
{
    record.RequireObject();
    for (const auto& item : record.Json().items()) {
        const bool bInTable = std::any_of(tables.begin(), tables.end(), [&](const JSON_TABLE* pTable) {
            return std::any_of(pTable->fields.begin(), pTable->fields.end(),
                               [&](const JSON_FIELD& field) { return field.name == item.key(); });
        });
        if (!bInTable && std::find(others.begin(), others.end(), item.key()) == others.end())
            record.At(item.key()).Fail(unknown);
    }
}

void AppendLsb(Bytes& wire, uint64_t nValue, uint32_t nBytes)
{
    for (uint32_t n = 0; n < nBytes; ++n)
        wire.push_back(static_cast<uint8_t>(nValue >> (8 * n)));
}

void SetLsb(Bytes& wire, size_t nAt, uint64_t nValue, uint32_t nBytes)
{
    for (uint32_t n = 0; n < nBytes; ++n)
        wire[nAt + n] = static_cast<uint8_t>(nValue >> (8 * n));
}

void PadTo(Bytes& wire, size_t nSize)
{
    wire.resize(std::max(wire.size(), nSize));
}

} // namespace Marvane::FrameSift
