// Attributes that are nothing but fields at fixed places.
#include "IVSParser/IVSAttribute.h"
#include "IVSParser/IVSAttributePoint.h"
#include "IVSParser/IVSField.h"
#include "framesift/result.h"

namespace Marvane::FrameSift {

namespace {

constexpr IVS_FIELD sc_fields80[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_80, colorVailed),
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_80, carModel),
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_80, color_r),
    IVS_FIELD_OF(3, KX_IVS_TRAFFIC_ATTRIBUTE_80, color_g),
    IVS_FIELD_OF(4, KX_IVS_TRAFFIC_ATTRIBUTE_80, color_b),
    IVS_FIELD_OF(5, KX_IVS_TRAFFIC_ATTRIBUTE_80, color_a),
    IVS_FIELD_OF(6, KX_IVS_TRAFFIC_ATTRIBUTE_80, brand),
    IVS_FIELD_OF(8, KX_IVS_TRAFFIC_ATTRIBUTE_80, subbrand),
    IVS_FIELD_OF(10, KX_IVS_TRAFFIC_ATTRIBUTE_80, year),
    IVS_FIELD_OF(12, KX_IVS_TRAFFIC_ATTRIBUTE_80, nReliabilityOfVehicleBodyDetection),
    IVS_POINT_OF(14, KX_IVS_TRAFFIC_ATTRIBUTE_80, windowPosition),
};
constexpr IVS_FIELD sc_fields83[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_83, colorVailed),
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_83, color),
    IVS_FIELD_OF(5, KX_IVS_TRAFFIC_ATTRIBUTE_83, strCountry),
    IVS_FIELD_OF(9, KX_IVS_TRAFFIC_ATTRIBUTE_83, plateType),
    IVS_FIELD_OF(12, KX_IVS_TRAFFIC_ATTRIBUTE_83, plateWidth),
    IVS_FIELD_OF(14, KX_IVS_TRAFFIC_ATTRIBUTE_83, plateConfidence),
};
constexpr IVS_FIELD sc_fields87[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_87, staytime),
    IVS_POINT_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_87, trackPoint),
};
constexpr IVS_FIELD sc_fields90[] = {
    IVS_FIELD_OF(2, KX_IVS_ATTRIBUTE_90, m_QueuingTime),
};
constexpr IVS_FIELD sc_fields92[] = {
    IVS_FIELD_OF(0, KX_IVS_ATTRIBUTE_92, vehicles_type),
    IVS_FIELD_OF(1, KX_IVS_ATTRIBUTE_92, cyclingnumber),
    IVS_FIELD_OF(2, KX_IVS_ATTRIBUTE_92, vehicles_color),
};
constexpr IVS_FIELD sc_fields93[] = {
    IVS_FIELD_OF(0, KX_IVS_ATTRIBUTE_93, ship_length),
    IVS_FIELD_OF(2, KX_IVS_ATTRIBUTE_93, ship_height),
    IVS_FIELD_OF(3, KX_IVS_ATTRIBUTE_93, ship_speed),
    IVS_FIELD_OF(4, KX_IVS_ATTRIBUTE_93, ship_distance),
};
constexpr IVS_FIELD sc_fields94[] = {
    IVS_FIELD_OF(0, KX_IVS_ATTRIBUTE_94, obj_Distance), IVS_FIELD_OF(2, KX_IVS_ATTRIBUTE_94, obj_Angle),
    IVS_FIELD_OF(4, KX_IVS_ATTRIBUTE_94, obj_Speed),    IVS_FIELD_OF(6, KX_IVS_ATTRIBUTE_94, obj_type),
    IVS_FIELD_OF(8, KX_IVS_ATTRIBUTE_94, obj_Id),
};
constexpr IVS_FIELD sc_fields97[] = {
    IVS_FIELD_OF(0, KX_IVS_ATTRIBUTE_97, obj_Validity),
    IVS_FIELD_OF(2, KX_IVS_ATTRIBUTE_97, obj_ID),
};

template <const auto& fields, class RECORD>
int ParseFields(const CBufferRead& pb, RECORD& record)
{
    FillFields<fields>(pb, record);
    return KX_SUCCESS;
}

} // namespace

int ParseAttribute80(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields80>(pb, attr.arrtibute80);
}

int ParseAttribute83(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields83>(pb, attr.arrtibute83);
}

int ParseAttribute87(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields87>(pb, attr.arrtibute87);
}

int ParseAttribute90(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields90>(pb, attr.arrtibute90);
}

int ParseAttribute92(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields92>(pb, attr.arrtibute92);
}

int ParseAttribute93(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields93>(pb, attr.arrtibute93);
}

int ParseAttribute94(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields94>(pb, attr.arrtibute94);
}

int ParseAttribute97(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    return ParseFields<sc_fields97>(pb, attr.arrtibute97);
}

} // namespace Marvane::FrameSift
