// Common objects and their attributes.
#include "Ivs/Json/IvsFields.h"

namespace Marvane::FrameSift {

namespace {

// The writer sets the type and the length of a segment; each of its segments has one group.
constexpr JSON_FIELD sc_segment[] = {
    JSON_VALUE(KX_IVS_SEGMENT_INFO, funcType).As(JSON_ROLE::Computed),
    JsonSkip(1 + 1 + 2),
    JSON_VALUE(KX_IVS_SEGMENT_INFO, groupCount).As(JSON_ROLE::Computed),
    JsonSkip(1 + 7),
    JSON_TEXT(KX_IVS_SEGMENT_INFO, cameraID, ""),
};

using OBJECT = KX_IVS_COMMON_OBJ;

// objType stands in the object's head, with its size, which the writer sees to.
constexpr JSON_FIELD sc_vehicle[] = {
    JSON_VALUE(OBJECT, objType).As(JSON_ROLE::Computed),
    JSON_VALUE(OBJECT, objID),
    JSON_VALUE(OBJECT, trackPoint),
    JSON_VALUE(OBJECT, pointVailed),
    JSON_VALUE(OBJECT, operatorType),
    JsonSkip(2),
};

constexpr JSON_FIELD sc_face[] = {
    JSON_VALUE(OBJECT, objType).As(JSON_ROLE::Computed),
    JSON_VALUE(OBJECT, objID),
    JSON_VALUE(OBJECT, version),
    JsonSkip(3),
};

constexpr JSON_FIELD sc_plain[] = {
    JSON_VALUE(OBJECT, objType).As(JSON_ROLE::Computed),
    JSON_VALUE(OBJECT, objID),
    JSON_VALUE(OBJECT, operatorType),
    JsonSkip(3),
};

constexpr JSON_FIELD sc_80[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, colorVailed),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, carModel),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, color_r),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, color_g),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, color_b),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, color_a),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, brand),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, subbrand),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, year),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, nReliabilityOfVehicleBodyDetection),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_80, windowPosition),
};

constexpr JSON_FIELD sc_81[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_81, mainPosition),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_81, coPosition),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_81, mainSafetyBelt).As(JSON_ROLE::HighBits),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_81, coSafetyBelt).As(JSON_ROLE::LowBits),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_81, mainSunvisor).As(JSON_ROLE::Computed),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_81, coSunvisor).As(JSON_ROLE::Computed),
};

constexpr JSON_FIELD sc_82[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_82, plateEncode),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_82, plateInfoLen),
    JSON_TEXT(KX_IVS_TRAFFIC_ATTRIBUTE_82, plateInfo, "plateInfoLen").Limits(0, 255),
};

constexpr JSON_FIELD sc_83[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_83, colorVailed),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_83, color),
    JSON_TEXT(KX_IVS_TRAFFIC_ATTRIBUTE_83, strCountry, ""),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_83, plateType),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_83, plateWidth),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_83, plateConfidence),
};

constexpr JSON_FIELD sc_84[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_84, fatherCount),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_84, pointCount),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_84, trackType),
    JsonSkip(3),
    JSON_LIST(KX_IVS_TRAFFIC_ATTRIBUTE_84, fatherID, "fatherCount").Limits(0, 255),
    JSON_LIST(KX_IVS_TRAFFIC_ATTRIBUTE_84, trackPoint, "pointCount").Limits(0, 31),
};

constexpr JSON_FIELD sc_mainColor[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_MAINCOLOR, mainColRect),
    JSON_VALUE(KX_IVS_ATTRIBUTE_MAINCOLOR, mainColor),
};
constexpr JSON_TABLE sc_mainColorFields = {sc_mainColor};

constexpr JSON_FIELD sc_85[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_85, colorSpace),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_85, mainColorCount),
    JSON_LIST(KX_IVS_TRAFFIC_ATTRIBUTE_85, color, "mainColorCount").Of(sc_mainColorFields),
};

constexpr JSON_FIELD sc_86[] = {
    JsonSkip(1),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_86, speedType),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_86, speed),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_86, speedX),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_86, speedY),
    JsonSkip(2),
};

constexpr JSON_FIELD sc_87[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_87, staytime),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_87, trackPoint),
};

using PERSON = KX_IVS_TRAFFIC_ATTRIBUTE_88;
constexpr JSON_FIELD sc_88[] = {
    JSON_VALUE(PERSON, age),      JSON_VALUE(PERSON, sex),          JSON_VALUE(PERSON, face),
    JSON_VALUE(PERSON, glass),    JSON_VALUE(PERSON, hat),          JSON_VALUE(PERSON, call),
    JSON_VALUE(PERSON, backPack), JSON_VALUE(PERSON, umbrella),     JSON_VALUE(PERSON, height),
    JSON_VALUE(PERSON, mask),     JSON_LIST(PERSON, coatcolor, ""), JSON_LIST(PERSON, pantscolor, ""),
    JSON_VALUE(PERSON, coattype), JSON_VALUE(PERSON, pantstype),
};

constexpr JSON_FIELD sc_89[] = {
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, yawAngle),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, rollAngle),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, pitchAngle),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, lEyePos),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, rEyePos),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, nosePos),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, lMouthPos),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, rMouthPos),
    JSON_VALUE(KX_IVS_TRAFFIC_ATTRIBUTE_89, posCount),
    JsonSkip(3),
    JSON_LIST(KX_IVS_TRAFFIC_ATTRIBUTE_89, feature, "posCount").Limits(0, 56),
};

using WINDSCREEN = KX_IVS_TRAFFIC_ATTRIBUTE_8C;
constexpr JSON_FIELD sc_8C[] = {
    JsonSkip(1),
    JSON_VALUE(WINDSCREEN, car_hanging_accessoryCount),
    JSON_VALUE(WINDSCREEN, tissue_boxCount),
    JSON_VALUE(WINDSCREEN, sun_visorCount),
    JSON_VALUE(WINDSCREEN, annual_inspection_standardCount),
    JsonSkip(6),
    JSON_LIST(WINDSCREEN, car_hanging_accessoryPos, "car_hanging_accessoryCount"),
    JSON_LIST(WINDSCREEN, tissue_boxPos, "tissue_boxCount"),
    JSON_LIST(WINDSCREEN, sun_visorPos, "sun_visorCount"),
    JSON_LIST(WINDSCREEN, annual_inspection_standardPos, "annual_inspection_standardCount"),
};

constexpr JSON_FIELD sc_8E[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_8E, name_codec_format),
    JSON_VALUE(KX_IVS_ATTRIBUTE_8E, name_lenth),
    JSON_TEXT(KX_IVS_ATTRIBUTE_8E, name, "name_lenth").Limits(0, 255),
};

constexpr JSON_FIELD sc_90[] = {
    JsonSkip(2),
    JSON_VALUE(KX_IVS_ATTRIBUTE_90, m_QueuingTime),
};

constexpr JSON_FIELD sc_92[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_92, vehicles_type),
    JSON_VALUE(KX_IVS_ATTRIBUTE_92, cyclingnumber),
    JSON_LIST(KX_IVS_ATTRIBUTE_92, vehicles_color, ""),
};

constexpr JSON_FIELD sc_93[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_93, ship_length),
    JSON_VALUE(KX_IVS_ATTRIBUTE_93, ship_height),
    JSON_VALUE(KX_IVS_ATTRIBUTE_93, ship_speed),
    JSON_VALUE(KX_IVS_ATTRIBUTE_93, ship_distance),
};

constexpr JSON_FIELD sc_94[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_94, obj_Distance),
    JSON_VALUE(KX_IVS_ATTRIBUTE_94, obj_Angle),
    JSON_VALUE(KX_IVS_ATTRIBUTE_94, obj_Speed),
    JSON_VALUE(KX_IVS_ATTRIBUTE_94, obj_type),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_ATTRIBUTE_94, obj_Id),
};

constexpr JSON_FIELD sc_97[] = {
    JSON_VALUE(KX_IVS_ATTRIBUTE_97, obj_Validity),
    JsonSkip(1),
    JSON_VALUE(KX_IVS_ATTRIBUTE_97, obj_ID),
};

constexpr JSON_TABLE sc_vehicleFields = {sc_vehicle};
constexpr JSON_TABLE sc_faceFields = {sc_face};
constexpr JSON_TABLE sc_plainFields = {sc_plain};

constexpr JSON_OBJECT_KIND sc_vehicleKind = {&sc_vehicleFields, false, false};
constexpr JSON_OBJECT_KIND sc_faceKind = {&sc_faceFields, true, false};
constexpr JSON_OBJECT_KIND sc_lanesKind = {&sc_plainFields, false, true};
constexpr JSON_OBJECT_KIND sc_plainKind = {&sc_plainFields, false, false};

constexpr JSON_TABLE sc_attributeFields[] = {{sc_80}, {sc_81}, {sc_82}, {sc_83}, {sc_84}, {sc_85},
                                             {sc_86}, {sc_87}, {sc_88}, {sc_89}, {sc_8C}, {sc_8E},
                                             {sc_90}, {sc_92}, {sc_93}, {sc_94}, {sc_97}};

constexpr JSON_ATTRIBUTE sc_attributes[] = {
    {"80", &sc_attributeFields[0], offsetof(KX_IVS_ATTRIBUTE, arrtibute80), 0x80},
    {"81", &sc_attributeFields[1], offsetof(KX_IVS_ATTRIBUTE, arrtibute81), 0x81},
    {"82", &sc_attributeFields[2], offsetof(KX_IVS_ATTRIBUTE, arrtibute82), 0x82},
    {"83", &sc_attributeFields[3], offsetof(KX_IVS_ATTRIBUTE, arrtibute83), 0x83},
    {"84", &sc_attributeFields[4], offsetof(KX_IVS_ATTRIBUTE, arrtibute84), 0x84},
    {"85", &sc_attributeFields[5], offsetof(KX_IVS_ATTRIBUTE, arrtibute85), 0x85},
    {"86", &sc_attributeFields[6], offsetof(KX_IVS_ATTRIBUTE, arrtibute86), 0x86},
    {"87", &sc_attributeFields[7], offsetof(KX_IVS_ATTRIBUTE, arrtibute87), 0x87},
    {"88", &sc_attributeFields[8], offsetof(KX_IVS_ATTRIBUTE, arrtibute88), 0x88},
    {"89", &sc_attributeFields[9], offsetof(KX_IVS_ATTRIBUTE, arrtibute89), 0x89},
    {"8C", &sc_attributeFields[10], offsetof(KX_IVS_ATTRIBUTE, arrtibute8C), 0x8C},
    {"8E", &sc_attributeFields[11], offsetof(KX_IVS_ATTRIBUTE, arrtibute8E), 0x8E},
    {"90", &sc_attributeFields[12], offsetof(KX_IVS_ATTRIBUTE, arrtibute90), 0x90},
    {"92", &sc_attributeFields[13], offsetof(KX_IVS_ATTRIBUTE, arrtibute92), 0x92},
    {"93", &sc_attributeFields[14], offsetof(KX_IVS_ATTRIBUTE, arrtibute93), 0x93},
    {"94", &sc_attributeFields[15], offsetof(KX_IVS_ATTRIBUTE, arrtibute94), 0x94},
    {"97", &sc_attributeFields[16], offsetof(KX_IVS_ATTRIBUTE, arrtibute97), 0x97},
};

} // namespace

constexpr JSON_TABLE gsk_segmentFields = {sc_segment};

const JSON_OBJECT_KIND& ObjectKindOf(uint32_t objType)
{
    switch (objType) {
    case 2:
    case 5:
        return sc_vehicleKind;
    case 15:
        return sc_faceKind;
    case 18:
    case 27:
        return sc_lanesKind;
    default:
        return sc_plainKind;
    }
}

std::span<const JSON_ATTRIBUTE> IvsAttributes()
{
    return sc_attributes;
}

} // namespace Marvane::FrameSift
