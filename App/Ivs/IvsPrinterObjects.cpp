#include <fmt/format.h>

#include "Check/FindingText.h"
#include "Ivs/IvsPrinterLines.h"
#include "Ivs/IvsRecords.h"
#include "Ivs/IvsText.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint8_t sc_face = 15;

struct ATTRIBUTE_ROW
{
    uint32_t nFlag;
    std::string (*pfnText)(const KX_IVS_ATTRIBUTE& all);
};

// Of each what a reader looks for; all of it is in the JSON.
constexpr ATTRIBUTE_ROW sc_attributes[] = {
    {0x1,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& body = all.arrtibute80;
         return fmt::format("body model {} brand {}", body.carModel, body.brand);
     }},
    {0x2,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& seats = all.arrtibute81;
         return fmt::format("seats with belts {} and {}", seats.mainSafetyBelt, seats.coSafetyBelt);
     }},
    {0x4,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& plate = all.arrtibute82;
         return fmt::format("plate \"{}\"", CameraText(Front(plate.plateInfo, plate.plateInfoLen)));
     }},
    {0x8,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& plate = all.arrtibute83;
         return fmt::format("plate of kind {} from \"{}\"", plate.plateType, CameraText(plate.strCountry));
     }},
    {0x10,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& track = all.arrtibute84;
         std::string text = fmt::format("track of {}", track.pointCount);
         for (const uint32_t nId : Front(track.fatherID, track.fatherCount))
             text += fmt::format("{} {}", text.find("from") == std::string::npos ? " from objects" : "", nId);
         return text;
     }},
    {0x20,
     [](const KX_IVS_ATTRIBUTE& all) {
         const std::string text = Counted(all.arrtibute85.mainColorCount, "main colour");
         const uint32_t nRead = all.arrtibute84.pointCount; // there are as many colours as places
         return nRead >= all.arrtibute85.mainColorCount ? text : fmt::format("{} announced, {} read", text, nRead);
     }},
    {0x40,
     [](const KX_IVS_ATTRIBUTE& all) {
         return fmt::format("speed {} (unit {})", all.arrtibute86.speed, all.arrtibute86.speedType);
     }},
    {0x80, [](const KX_IVS_ATTRIBUTE& all) { return fmt::format("stayed {}", all.arrtibute87.staytime); }},
    {0x100,
     [](const KX_IVS_ATTRIBUTE& all) {
         return fmt::format("person of age {} sex {}", all.arrtibute88.age, all.arrtibute88.sex);
     }},
    {0x200,
     [](const KX_IVS_ATTRIBUTE& all) {
         return fmt::format("face, nose at {},{}", all.arrtibute89.nosePos.x, all.arrtibute89.nosePos.y);
     }},
    {0x1000,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& things = all.arrtibute8C;
         return Counted(uint64_t{things.car_hanging_accessoryCount} + things.tissue_boxCount + things.sun_visorCount +
                            things.annual_inspection_standardCount,
                        "thing") +
                " behind the windscreen";
     }},
    {0x4000,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& name = all.arrtibute8E;
         return fmt::format("name \"{}\"", CameraText(Front(name.name, name.name_lenth)));
     }},
    {0x10000, [](const KX_IVS_ATTRIBUTE& all) { return fmt::format("queued {}", all.arrtibute90.m_QueuingTime); }},
    {0x40000,
     [](const KX_IVS_ATTRIBUTE& all) {
         return fmt::format("cycle of kind {} with {} on it", all.arrtibute92.vehicles_type,
                            all.arrtibute92.cyclingnumber);
     }},
    {0x80000,
     [](const KX_IVS_ATTRIBUTE& all) {
         return fmt::format("ship of length {}, distance {}", all.arrtibute93.ship_length,
                            all.arrtibute93.ship_distance);
     }},
    {0x100000,
     [](const KX_IVS_ATTRIBUTE& all) {
         const auto& seen = all.arrtibute94;
         return fmt::format("radar: distance {} angle {} speed {}", seen.obj_Distance, seen.obj_Angle, seen.obj_Speed);
     }},
    {0x800000, [](const KX_IVS_ATTRIBUTE& all) { return fmt::format("other number {}", all.arrtibute97.obj_ID); }},
};

} // namespace

std::string AttributesText(const KX_IVS_ATTRIBUTE& attributes)
{
    std::string text;
    for (const ATTRIBUTE_ROW& row : sc_attributes) {
        if ((attributes.attrflag & row.nFlag) != 0)
            text.append(", ").append(row.pfnText(attributes));
    }
    return text;
}

std::string LinesOf(const KX_IVS_COMMON_OBJ& object)
{
    std::string line = fmt::format("  object {} class {}", object.objID, object.objType);
    if (object.pointVailed != 0)
        line.append(" ").append(PlaceText(object.trackPoint));
    const std::string camera = CameraText(object.segInfo.cameraID);
    line += fmt::format(", segment {} group {}", object.segInfo.funcType, object.groupID);
    if (!camera.empty())
        line += fmt::format(" camera \"{}\"", camera);
    if (object.objType == sc_face)
        return line + fmt::format(", a face (version {}){}\n", object.version,
                                  object.facedata == nullptr ? ", its data is cut off" : "");
    line += fmt::format(", state {}", object.operatorType);
    if (object.attrUnionflag == OBJ_ATTR_COMM)
        return line + AttributesText(object.attr.comm) + "\n";
    return line + LanesText(object) + "\n" + LaneLines(object);
}

} // namespace Marvane::FrameSift
