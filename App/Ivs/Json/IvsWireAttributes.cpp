// What common objects say of themselves: attributes, or lanes.
#include <fmt/format.h>

#include <algorithm>

#include "Ivs/Json/IvsWireFields.h"
#include "Ivs/Json/IvsWireFormats.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_lengthUnit = 4;
constexpr size_t sc_maxLength = 252; // the highest that one byte holds
constexpr uint8_t sc_lanes8D = 0x8D; // the only ones whose length no field has

size_t RoundedUp(size_t nSize)
{
    return (nSize + sc_lengthUnit - 1) / sc_lengthUnit * sc_lengthUnit;
}

template <class ROWS>
const auto& RowOf(const ROWS& rows, std::string_view name, const CJsonPlace& place)
{
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.name == name; });
    if (found != rows.end())
        return *found;
    std::string names;
    for (const auto& row : rows)
        names.append(names.empty() ? "" : ", ").append(row.name);
    place.Fail(fmt::format("there is no such type; there are {}", names));
}

} // namespace

void PutAttributes(Bytes& wire, const CJsonPlace& attributes)
{
    if (attributes.IsMissing())
        return;
    attributes.RequireObject();
    for (const auto& item : attributes.Json().items()) {
        const CJsonPlace attribute = attributes.At(item.key());
        const JSON_ATTRIBUTE& row = RowOf(IvsAttributes(), item.key(), attribute);
        RequireNames(attribute, {row.pFields});
        const size_t nBegin = wire.size();
        wire.insert(wire.end(), {row.chType, 0});
        PutFields(wire, *row.pFields, attribute);
        const size_t nSize = RoundedUp(wire.size() - nBegin);
        if (nSize > sc_maxLength)
            attribute.Fail(fmt::format("{} bytes are too many: at most {}", nSize, sc_maxLength));
        PadTo(wire, nBegin + nSize);
        wire[nBegin + 1] = static_cast<uint8_t>(nSize);
    }
}

void PutLanes(Bytes& wire, const CJsonPlace& lanes)
{
    lanes.RequireGiven();
    const CJsonPlace type = lanes.At("type");
    type.RequireGiven();
    const JSON_LANES& row = RowOf(IvsLanes(), type.Text(), type);
    RequireNames(lanes, {row.pFields}, {"type"});
    const CJsonPlace length = lanes.At("packet_length");
    if (lanes.Has("packet_length") && (length.Number(0, UINT8_MAX) == 0 || length.Number(0, UINT8_MAX) % 4 != 0))
        length.Fail("is no multiple of 4 above 0");
    const size_t nBegin = wire.size();
    wire.push_back(row.chType);
    if (row.chType == sc_lanes8D)
        wire.push_back(0);
    PutFields(wire, *row.pFields, lanes);
    // Lanes may be longer than their length can say; decoders go by the size of the object.
    if (!lanes.Has("packet_length"))
        wire[nBegin + 1] = static_cast<uint8_t>(std::min(RoundedUp(wire.size() - nBegin), sc_maxLength));
}

} // namespace Marvane::FrameSift
