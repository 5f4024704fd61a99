// Overlay drawings.
#include <fmt/format.h>

#include <algorithm>

#include "Ivs/Json/IvsWireFields.h"
#include "Ivs/Json/IvsWireFormats.h"

namespace Marvane::FrameSift {

namespace {

constexpr size_t sc_maxElements = 255;

// An element of a type without a name has nothing behind its type.
void PutNamelessElement(Bytes& wire, const CJsonPlace& element)
{
    RequireNames(element, {}, {"type"});
    const CJsonPlace type = element.At("type");
    const auto chType = static_cast<uint8_t>(type.Number(0, UINT8_MAX));
    for (const JSON_ELEMENT& row : IvsElements()) {
        if (row.chType == chType)
            type.Fail(fmt::format("{} has a name: \"{}\"", chType, row.name));
    }
    wire.push_back(chType);
}

void PutElement(Bytes& wire, const CJsonPlace& element)
{
    const CJsonPlace type = element.At("type");
    if (type.Json().is_number())
        return PutNamelessElement(wire, element);
    type.RequireGiven();
    const auto rows = IvsElements();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const JSON_ELEMENT& row) { return row.name == type.Text(); });
    if (found == rows.end())
        type.Fail("is none of circle, line, polygon and text");
    RequireNames(element, {found->pFields}, {"type"});
    wire.push_back(found->chType);
    PutFields(wire, *found->pFields, element);
}

} // namespace

Bytes OverlayPayload(const CJsonPlace& records)
{
    Bytes wire = {1, 0, 0, 0}; // version 1
    for (size_t n = 0; n < records.Size(SIZE_MAX); ++n) {
        const CJsonPlace drawing = records.At(n);
        RequireType(drawing, "overlay");
        RequireNames(drawing, {&gsk_overlayHeadFields, &gsk_overlayTailFields}, {"type", "elements"});
        PutFields(wire, gsk_overlayHeadFields, drawing);
        const CJsonPlace elements = drawing.At("elements");
        const size_t nCount = elements.Size(sc_maxElements);
        wire.push_back(static_cast<uint8_t>(nCount));
        for (size_t nElement = 0; nElement < nCount; ++nElement)
            PutElement(wire, elements.At(nElement));
        PutFields(wire, gsk_overlayTailFields, drawing);
        RequireRoom(wire, drawing);
    }
    return wire;
}

} // namespace Marvane::FrameSift
