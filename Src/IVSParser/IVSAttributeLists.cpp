// Attributes with lists, texts or rules of their own.
#include <algorithm>
#include <cstring>

#include "IVSParser/IVSAttribute.h"
#include "IVSParser/IVSAttributePoint.h"
#include "IVSParser/IVSField.h"
#include "IVSParser/IVSNumbers.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr IVS_FIELD sc_fields81[] = {
    IVS_POINT_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_81, mainPosition),
    IVS_POINT_OF(8, KX_IVS_TRAFFIC_ATTRIBUTE_81, coPosition),
};
constexpr IVS_FIELD sc_fields82[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_82, plateEncode),
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_82, plateInfoLen),
};
constexpr IVS_FIELD sc_fields84[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_84, fatherCount),
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_84, pointCount),
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_84, trackType),
};
constexpr IVS_FIELD sc_fields85[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_85, colorSpace),
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_85, mainColorCount),
};
constexpr IVS_FIELD sc_fields86[] = {
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_86, speedType),
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_86, speed),
    IVS_FIELD_OF(4, KX_IVS_TRAFFIC_ATTRIBUTE_86, speedX),
    IVS_FIELD_OF(6, KX_IVS_TRAFFIC_ATTRIBUTE_86, speedY),
};
constexpr IVS_FIELD sc_fields88[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_88, age),        IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_88, sex),
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_88, face),       IVS_FIELD_OF(3, KX_IVS_TRAFFIC_ATTRIBUTE_88, glass),
    IVS_FIELD_OF(4, KX_IVS_TRAFFIC_ATTRIBUTE_88, hat),        IVS_FIELD_OF(5, KX_IVS_TRAFFIC_ATTRIBUTE_88, call),
    IVS_FIELD_OF(6, KX_IVS_TRAFFIC_ATTRIBUTE_88, backPack),   IVS_FIELD_OF(7, KX_IVS_TRAFFIC_ATTRIBUTE_88, umbrella),
    IVS_FIELD_OF(8, KX_IVS_TRAFFIC_ATTRIBUTE_88, height),     IVS_FIELD_OF(9, KX_IVS_TRAFFIC_ATTRIBUTE_88, mask),
    IVS_FIELD_OF(10, KX_IVS_TRAFFIC_ATTRIBUTE_88, coatcolor), IVS_FIELD_OF(14, KX_IVS_TRAFFIC_ATTRIBUTE_88, pantscolor),
    IVS_FIELD_OF(18, KX_IVS_TRAFFIC_ATTRIBUTE_88, coattype),  IVS_FIELD_OF(19, KX_IVS_TRAFFIC_ATTRIBUTE_88, pantstype),
};
constexpr IVS_FIELD sc_fields89[] = {
    IVS_FIELD_OF(0, KX_IVS_TRAFFIC_ATTRIBUTE_89, yawAngle),
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_89, rollAngle),
    IVS_FIELD_OF(4, KX_IVS_TRAFFIC_ATTRIBUTE_89, pitchAngle),
    IVS_POSITION_OF(6, KX_IVS_TRAFFIC_ATTRIBUTE_89, lEyePos),
    IVS_POSITION_OF(10, KX_IVS_TRAFFIC_ATTRIBUTE_89, rEyePos),
    IVS_POSITION_OF(14, KX_IVS_TRAFFIC_ATTRIBUTE_89, nosePos),
    IVS_POSITION_OF(18, KX_IVS_TRAFFIC_ATTRIBUTE_89, lMouthPos),
    IVS_POSITION_OF(22, KX_IVS_TRAFFIC_ATTRIBUTE_89, rMouthPos),
    IVS_FIELD_OF(26, KX_IVS_TRAFFIC_ATTRIBUTE_89, posCount),
};
constexpr IVS_FIELD sc_fields8C[] = {
    IVS_FIELD_OF(1, KX_IVS_TRAFFIC_ATTRIBUTE_8C, car_hanging_accessoryCount),
    IVS_FIELD_OF(2, KX_IVS_TRAFFIC_ATTRIBUTE_8C, tissue_boxCount),
    IVS_FIELD_OF(3, KX_IVS_TRAFFIC_ATTRIBUTE_8C, sun_visorCount),
    IVS_FIELD_OF(4, KX_IVS_TRAFFIC_ATTRIBUTE_8C, annual_inspection_standardCount),
};
constexpr IVS_FIELD sc_fields8E[] = {
    IVS_FIELD_OF(0, KX_IVS_ATTRIBUTE_8E, name_codec_format),
    IVS_FIELD_OF(1, KX_IVS_ATTRIBUTE_8E, name_lenth),
};

// Whether nSize bytes remain.
bool Holds(CBufferRead pb, uint32_t nSize)
{
    return pb.Skip(nSize);
}

// A text is taken whole or not at all.
template <size_t nRoom>
void TakeText(CBufferRead& pb, uint32_t nLength, uint8_t (&text)[nRoom])
{
    const uint8_t* pText = nLength <= nRoom ? pb.ReadBuffer(nLength) : nullptr;
    if (pText != nullptr)
        std::memcpy(text, pText, nLength);
}

// A colour that the payload does not hold to its end is opaque black.
void TakeColorOrBlack(const CBufferRead& pb, uint32_t nEnd, uint8_t (&color)[4])
{
    constexpr uint8_t black[] = {0, 0, 0, 255};
    if (!Holds(pb, nEnd))
        std::copy(std::begin(black), std::end(black), color);
}

} // namespace

int ParseAttribute81(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    auto& record = attr.arrtibute81;
    FillFields<sc_fields81>(pb, record);
    uint8_t nBelts = 0;
    if (pb.Skip(17) && pb.ReadUint8(nBelts)) {
        record.mainSafetyBelt = nBelts >> 2 & 3;
        record.coSafetyBelt = nBelts & 3;
        record.mainSunvisor = 0; // never told
        record.coSunvisor = 0;
    }
    return KX_SUCCESS;
}

int ParseAttribute82(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    FillFields<sc_fields82>(pb, attr.arrtibute82);
    if (pb.Skip(2))
        TakeText(pb, attr.arrtibute82.plateInfoLen, attr.arrtibute82.plateInfo);
    return KX_SUCCESS;
}

int ParseAttribute84(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    auto& record = attr.arrtibute84;
    FillFields<sc_fields84>(pb, record);
    if (record.pointCount >= std::size(record.trackPoint)) {
        KX_WRITE_LOG(KX_LOG_LevelInfo, gsk_ivsPath,
                     "[ParseAttribute84] arrtibute84.pointCount is not corret ,attr.arrtibute84.pointCount = %d \n",
                     record.pointCount);
        return KX_ERROR_BAD_FORMATTED;
    }
    if (pb.Skip(6)) {
        TakeCounted<uint32_t>(pb, record.fatherID, record.fatherCount);
        TakeCounted<uint16_t>(pb, record.trackPoint, record.pointCount);
    }
    return KX_SUCCESS;
}

// As many colours are read as attribute 0x84 has places, not as many as are announced: users of the records rely on it.
int ParseAttribute85(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    auto& record = attr.arrtibute85;
    FillFields<sc_fields85>(pb, record);
    if (record.mainColorCount > std::size(record.color)) {
        KX_WRITE_LOG(KX_LOG_LevelInfo, gsk_ivsPath,
                     "[ParseAttribute85] arrtibute85.mainColorCount is not corret ,attr.arrtibute84.pointCount = %d \n",
                     attr.arrtibute84.pointCount);
        return KX_ERROR_BAD_FORMATTED;
    }
    if (!pb.Skip(2))
        return KX_SUCCESS;
    // There may be more places than colours have room for. What is left of them is the last of the payload.
    const size_t nColors = std::min<size_t>(attr.arrtibute84.pointCount, std::size(record.color));
    for (KX_IVS_ATTRIBUTE_MAINCOLOR& color : std::span(record.color).first(nColors)) {
        TakeEach<uint16_t>(pb, color.mainColRect);
        Take(pb, color.mainColor);
    }
    return KX_SUCCESS;
}

int ParseAttribute86(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    FillFields<sc_fields86>(pb, attr.arrtibute86);
    constexpr uint32_t nWithClosingBytes = IvsWireSize(sc_fields86) + 2;
    return Holds(pb, nWithClosingBytes) ? KX_SUCCESS : KX_ERROR_BAD_FORMATTED;
}

int ParseAttribute88(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    FillFields<sc_fields88>(pb, attr.arrtibute88);
    TakeColorOrBlack(pb, 14, attr.arrtibute88.coatcolor);
    TakeColorOrBlack(pb, 18, attr.arrtibute88.pantscolor);
    return KX_SUCCESS;
}

int ParseAttribute89(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    auto& record = attr.arrtibute89;
    FillFields<sc_fields89>(pb, record);
    if (record.posCount >= std::size(record.feature)) {
        KX_WRITE_LOG(KX_LOG_LevelInfo, gsk_ivsPath,
                     "[ParseAttribute84] arrtibute89.posCount is not corret ,attr.arrtibute89.posCount = %d \n",
                     record.posCount);
        return KX_ERROR_BAD_FORMATTED;
    }
    if (pb.Skip(30))
        TakeCounted<uint32_t>(pb, record.feature, record.posCount);
    for (const uint32_t nFeature : std::span(record.feature).first(record.posCount)) {
        KX_WRITE_LOG(KX_LOG_LevelInfo, gsk_ivsPath, "[ParseAttribute89] arrtibute89.feature[i] = %d \n",
                     static_cast<int>(nFeature));
    }
    return KX_SUCCESS;
}

int ParseAttribute8C(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    auto& record = attr.arrtibute8C;
    FillFields<sc_fields8C>(pb, record);
    if (!pb.Skip(1) || record.car_hanging_accessoryCount > std::size(record.car_hanging_accessoryPos) ||
        record.tissue_boxCount > std::size(record.tissue_boxPos) ||
        record.sun_visorCount > std::size(record.sun_visorPos) ||
        record.annual_inspection_standardCount > std::size(record.annual_inspection_standardPos))
        return KX_ERROR_BAD_FORMATTED;
    if (!pb.Skip(10))
        return KX_SUCCESS;
    TakeCounted<uint16_t>(pb, record.car_hanging_accessoryPos, record.car_hanging_accessoryCount);
    TakeCounted<uint16_t>(pb, record.tissue_boxPos, record.tissue_boxCount);
    TakeCounted<uint16_t>(pb, record.sun_visorPos, record.sun_visorCount);
    TakeCounted<uint16_t>(pb, record.annual_inspection_standardPos, record.annual_inspection_standardCount);
    return KX_SUCCESS;
}

int ParseAttribute8E(CBufferRead& pb, KX_IVS_ATTRIBUTE& attr)
{
    FillFields<sc_fields8E>(pb, attr.arrtibute8E);
    if (pb.Skip(2))
        TakeText(pb, attr.arrtibute8E.name_lenth, attr.arrtibute8E.name);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
