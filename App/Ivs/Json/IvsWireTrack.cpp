// Tracked objects and the scene.
#include <fmt/format.h>

#include "Ivs/Json/IvsWireFields.h"
#include "Ivs/Json/IvsWireFormats.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxTracks = 255;
constexpr size_t sc_maxExTracks = 200; // a decoder takes no more
constexpr size_t sc_maxScenePoints = 512;
constexpr size_t sc_pointSize = 144; // on the wire
constexpr size_t sc_polygonAt = 80;
constexpr size_t sc_polygonNumAt = 76;
constexpr uint32_t sc_extensionSize = 28;
constexpr size_t sc_operatorTypeAt = 4;
constexpr uint8_t sc_operatorGone = 3; // the lowest that a decoder takes for a finished track

// One that the user asks for by its size or by one of its fields.
uint32_t ExtensionSizeOf(const CJsonPlace& object)
{
    if (object.Has("ex_info_size")) {
        const auto nSize = static_cast<uint32_t>(object.At("ex_info_size").Number(0, UINT16_MAX));
        if (nSize != 0 && nSize < sc_extensionSize)
            object.At("ex_info_size").Fail(fmt::format("{} does not fit: 0, or {} to 65535", nSize, sc_extensionSize));
        return nSize;
    }
    for (const JSON_FIELD& field : gsk_extensionFields.fields) {
        if (!field.name.empty() && object.Has(field.name))
            return sc_extensionSize;
    }
    return 0;
}

void PutTrackEx(Bytes& wire, const CJsonPlace& object)
{
    RequireNames(object, {&gsk_trackExFields, &gsk_extensionFields});
    const size_t nBegin = wire.size();
    PutFields(wire, gsk_trackExFields, object);
    if (!object.Has("operator_type") && object.Has("enable") && object.At("enable").Number(0, 1) == 0)
        wire[nBegin + sc_operatorTypeAt] = sc_operatorGone;
}

void PutExtension(Bytes& wire, const CJsonPlace& object)
{
    const uint32_t nSize = ExtensionSizeOf(object);
    if (nSize == 0)
        return;
    const size_t nBegin = wire.size();
    PutFields(wire, gsk_extensionFields, object);
    SetLsb(wire, nBegin, nSize, 2);
    SetLsb(wire, nBegin + 2, static_cast<uint64_t>(object.At("obj_id").Number(INT32_MIN, INT32_MAX)), 4);
    PadTo(wire, nBegin + nSize);
}

uint8_t ColorOf(const CJsonPlace& objects, size_t nCount)
{
    int64_t nColor = 0;
    for (size_t n = 0; n < nCount; ++n) {
        const CJsonPlace place = objects.At(n).At("color");
        const int64_t nThis = place.Number(0, UINT8_MAX);
        if (n > 0 && nThis != nColor)
            place.Fail(fmt::format("{} differs from the {} of the first object: a payload has one", nThis, nColor));
        nColor = nThis;
    }
    return static_cast<uint8_t>(nColor);
}

// A decoder refuses a scene whose polygons, as they are announced, take more bytes than there are.
void RequireRoomForPolygons(const CJsonPlace& points, const Bytes& wire)
{
    size_t nTotal = 0;
    for (size_t n = 0; n * sc_pointSize < wire.size(); ++n) {
        const uint8_t chCorners = wire[n * sc_pointSize + sc_polygonNumAt];
        nTotal += sc_polygonAt + sizeof(KX_IVS_POSITION) * chCorners;
        if (nTotal > wire.size())
            points.At(n)
                .At("polygon_num")
                .Fail(fmt::format("{} does not fit: the points have {} bytes, and would need {} up to here", chCorners,
                                  wire.size(), nTotal));
    }
}

} // namespace

Bytes TrackPayload(const CJsonPlace& records)
{
    const CJsonPlace record = OnlyRecord(records, "track");
    RequireNames(record, {}, {"type", "objects"});
    const CJsonPlace objects = record.At("objects");
    const size_t nCount = objects.Size(sc_maxTracks);
    Bytes wire = {1, 0, static_cast<uint8_t>(nCount), 0}; // version 1
    for (size_t n = 0; n < nCount; ++n) {
        RequireNames(objects.At(n), {&gsk_trackFields});
        PutFields(wire, gsk_trackFields, objects.At(n));
    }
    return wire;
}

Bytes TrackExPayload(const CJsonPlace& records)
{
    const CJsonPlace record = OnlyRecord(records, "track-ex");
    RequireNames(record, {}, {"type", "objects"});
    const CJsonPlace objects = record.At("objects");
    const size_t nCount = objects.Size(sc_maxExTracks);
    Bytes wire = {1, 0, static_cast<uint8_t>(nCount), 0};
    for (size_t n = 0; n < nCount; ++n)
        PutTrackEx(wire, objects.At(n));
    wire[3] = ColorOf(objects, nCount);
    const size_t nPlain = wire.size();
    for (size_t n = 0; n < nCount; ++n)
        PutExtension(wire, objects.At(n));
    if (wire.size() > nPlain)
        wire[0] = 2; // the version with extension records
    return wire;
}

Bytes ScenePayload(const CJsonPlace& records)
{
    const CJsonPlace record = OnlyRecord(records, "scene");
    RequireNames(record, {}, {"type", "points"});
    const CJsonPlace points = record.At("points");
    const size_t nCount = points.Size(sc_maxScenePoints);
    if (nCount == 0)
        points.Fail("there must be one at least");
    Bytes wire;
    for (size_t n = 0; n < nCount; ++n) {
        RequireNames(points.At(n), {&gsk_scenePointFields});
        PutFields(wire, gsk_scenePointFields, points.At(n));
    }
    RequireRoomForPolygons(points, wire);
    return wire;
}

} // namespace Marvane::FrameSift
