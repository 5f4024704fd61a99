// Segments: common objects and A0 objects.
#include <fmt/format.h>

#include <algorithm>

#include "Ivs/Json/IvsWireFields.h"
#include "Ivs/Json/IvsWireFormats.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxObjects = 255;
constexpr size_t sc_maxSize = 65535; // of a segment and of an object: two bytes
constexpr uint8_t sc_commonSegment = 0x40;
constexpr uint8_t sc_a0Segment = 0xA1;
constexpr size_t sc_emptySegmentSize = 36; // a decoder wants more than the 32 bytes of the head
constexpr size_t sc_sizeAt = 2;            // in a segment and in an object
constexpr size_t sc_groupCountAt = 4;

// Sets the size of what began at nBegin, of a segment or an object.
void SetSize(Bytes& wire, size_t nBegin, const CJsonPlace& place)
{
    const size_t nSize = wire.size() - nBegin;
    if (nSize > sc_maxSize)
        place.Fail(fmt::format("{} bytes are too many: at most {}", nSize, sc_maxSize));
    SetLsb(wire, nBegin + sc_sizeAt, nSize, 2);
}

void PutFaceData(Bytes& wire, const CJsonPlace& face)
{
    const size_t nCount = face.Size(sc_maxSize);
    for (size_t n = 0; n < nCount; ++n)
        wire.push_back(static_cast<uint8_t>(face.At(n).Number(0, UINT8_MAX)));
}

void PutCommonObject(Bytes& wire, const CJsonPlace& object)
{
    object.RequireObject();
    const auto objType = static_cast<uint8_t>(object.At("objType").Number(0, UINT8_MAX));
    const JSON_OBJECT_KIND& kind = ObjectKindOf(objType);
    const std::string_view rest = kind.bLanes ? "lanes" : kind.bFace ? "facedata" : "attributes";
    RequireNames(object, {kind.pFields}, {rest, "nStructSize"},
                 fmt::format("an object of objType {} has no such field; its fields go by that", objType));
    const size_t nBegin = wire.size();
    wire.insert(wire.end(), {objType, 0, 0, 0});
    PutFields(wire, *kind.pFields, object);
    if (kind.bLanes)
        PutLanes(wire, object.At(rest));
    else if (kind.bFace)
        PutFaceData(wire, object.At(rest));
    else
        PutAttributes(wire, object.At(rest));
    SetSize(wire, nBegin, object);
}

void PutGroup(Bytes& wire, const CJsonPlace& group)
{
    RequireNames(group, {&gsk_segmentFields}, {"type", "groupID", "objects"});
    const auto funcType = static_cast<uint8_t>(group.At("funcType").Number(0, UINT8_MAX - sc_commonSegment));
    const auto chType = static_cast<uint8_t>(sc_commonSegment + funcType);
    if (chType == sc_a0Segment)
        group.At("funcType").Fail(fmt::format("{} is how A0 objects are told from common ones", funcType));
    const size_t nBegin = wire.size();
    PutFields(wire, gsk_segmentFields, group);
    wire[nBegin] = chType;
    const CJsonPlace objects = group.At("objects");
    const size_t nCount = objects.Size(sc_maxObjects);
    if (nCount == 0) { // no group: one without objects is not handed out
        PadTo(wire, nBegin + sc_emptySegmentSize);
        SetSize(wire, nBegin, group);
        return;
    }
    wire[nBegin + sc_groupCountAt] = 1;
    AppendLsb(wire, static_cast<uint64_t>(group.At("groupID").Number(0, UINT32_MAX)), 4);
    AppendLsb(wire, nCount, 4); // one byte, and three that are not used
    for (size_t n = 0; n < nCount; ++n)
        PutCommonObject(wire, objects.At(n));
    SetSize(wire, nBegin, group);
}

void PutA0Objects(Bytes& wire, const CJsonPlace& record, const JSON_TABLE& table, uint8_t chObjectSize)
{
    RequireNames(record, {}, {"type", "objects"});
    const CJsonPlace objects = record.At("objects");
    const size_t nCount = objects.Size(sc_maxObjects);
    const size_t nBegin = wire.size();
    wire.insert(wire.end(), {sc_a0Segment, 0, 0, 0, static_cast<uint8_t>(nCount), chObjectSize, 0, 0});
    for (size_t n = 0; n < nCount; ++n) {
        RequireNames(objects.At(n), {&table});
        PutFields(wire, table, objects.At(n));
    }
    SetSize(wire, nBegin, record);
}

void PutSegment(Bytes& wire, const CJsonPlace& record)
{
    record.RequireObject();
    record.At("type").RequireGiven();
    const std::string_view type = record.At("type").Text();
    if (type == "common-objects")
        PutGroup(wire, record);
    else if (type == "a0-objects")
        PutA0Objects(wire, record, gsk_a0Fields, sizeof(KX_IVS_OBJ_A0));
    else if (type == "a0-ex-objects")
        PutA0Objects(wire, record, gsk_a0ExFields, sizeof(KX_IVS_OBJ_A0_Ex));
    else
        record.At("type").Fail("only common-objects, a0-objects and a0-ex-objects stand here");
}

} // namespace

Bytes SegmentsPayload(const CJsonPlace& records)
{
    const size_t nCount = records.Size(SIZE_MAX);
    if (nCount == 0)
        records.Fail("there must be one at least");
    Bytes wire;
    for (size_t n = 0; n < nCount; ++n) {
        PutSegment(wire, records.At(n));
        RequireRoom(wire, records.At(n));
    }
    return wire;
}

} // namespace Marvane::FrameSift
