#include "Ivs/Json/IvsWire.h"

#include <fmt/format.h>

#include "Ivs/Json/IvsWireFormats.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxFrame = size_t{10} << 20; // readers take a longer one for damage

struct WRITER_ROW
{
    KX_IVS_PARSE_TYPE eParseType;
    Bytes (*pfnWrite)(const CJsonPlace& records);
};

constexpr WRITER_ROW sc_writers[] = {
    {IVS_TRACK, &TrackPayload},     {IVS_TRACK_EX, &TrackExPayload},   {IVS_TRACK_EX2, &SegmentsPayload},
    {IVS_TRACK_EX3, &ScenePayload}, {IVS_TRACK_ZOOP, &OverlayPayload}, {IVS_TRACK_15, &TrafficPayload},
};

} // namespace

std::vector<uint8_t> IvsPayload(const IVS_FORMAT_ROW& format, const nlohmann::ordered_json& records)
{
    const CJsonPlace place(records, "records");
    for (const WRITER_ROW& row : sc_writers) {
        if (row.eParseType == format.eParseType)
            return row.pfnWrite(place);
    }
    place.Fail(fmt::format("the format {} cannot be written", format.name));
}

void RequireType(const CJsonPlace& record, std::string_view type)
{
    record.RequireObject();
    if (record.Has("type") && record.At("type").Text() != type)
        record.At("type").Fail(fmt::format("only {} stands here", type));
}

void RequireRoom(const Bytes& wire, const CJsonPlace& record)
{
    if (wire.size() > sc_maxFrame)
        record.Fail(fmt::format("a payload of {} bytes up to here is too long: at most {}", wire.size(), sc_maxFrame));
}

CJsonPlace OnlyRecord(const CJsonPlace& records, std::string_view type)
{
    if (records.Size(1) == 0)
        records.Fail("there must be one");
    CJsonPlace record = records.At(size_t{0});
    RequireType(record, type);
    return record;
}

} // namespace Marvane::FrameSift
