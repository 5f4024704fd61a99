// Supplemental enhancement information (ITU-T H.265, 7.3.5 and annex D): the colour volume of the mastering display,
// content light levels, picture timing.
#include <iterator>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"
#include "Memory/TryAlloc.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ESParse/H265Sei";

// ITU-T H.265, table D.1. On the wire, never renumber.
enum HEVC_SEI_TYPE : uint8_t
{
    HEVC_SEI_TYPE_PICTURE_TIMING = 1,
    HEVC_SEI_TYPE_MASTERING_DISPLAY_INFO = 137,
    HEVC_SEI_TYPE_CONTENT_LIGHT_LEVEL_INFO = 144
};

// A payload type or size: bytes of 255 and a last one below that, summed up. nLeft counts the bytes that remain. False
// if the sum passes nLimit before a byte, or the bytes end first.
bool ReadSum(CBitsStream& bs, uint64_t nLimit, uint64_t& nLeft, uint64_t& nSum)
{
    constexpr uint32_t nMore = 255;
    uint32_t nByte = 0;
    nSum = 0;
    do {
        if (nSum > nLimit || nLeft == 0)
            return false;
        nByte = bs.GetBits(8);
        nSum += nByte;
        --nLeft;
    } while (nByte == nMore);
    return true;
}

// By pic_struct (table D.2); 13 to 15 say nothing.
struct PIC_STRUCT_ROW
{
    PICTURE_STRUCTURE eStructure;
    uint32_t nSourceScanType; // the source_scan_type that agrees with it
    const char* pDisagreement;
};
constexpr PIC_STRUCT_ROW sc_top = {PICTURE_STRUCTURE_TOP_FIELD, 0, "INTERLACED(Top)"};
constexpr PIC_STRUCT_ROW sc_bottom = {PICTURE_STRUCTURE_BOTTOM_FIELD, 0, "INTERLACED(Bottom)"};
constexpr PIC_STRUCT_ROW sc_frame = {PICTURE_STRUCTURE_FRAME, 1, "as FRAME"};
constexpr PIC_STRUCT_ROW sc_picStructs[] = {sc_frame, sc_top,   sc_bottom, sc_frame,  sc_frame, sc_frame, sc_frame,
                                            sc_frame, sc_frame, sc_top,    sc_bottom, sc_top,   sc_bottom};

} // namespace

int CH265ESParser::ParseSEI(const uint8_t* pESBuffer, int32_t nESBufferLen, uint8_t nalUnitType, ES_PARSER_INFO& info)
{
    // A message that begins within the last 8 bytes is not looked at. Mind that Parse_KX hands over a start code behind
    // the unit, which makes up for three of them.
    constexpr uint64_t nMinLeft = 8;
    constexpr uint64_t nTypeLimit = 0x7FFFFF00;
    if (pESBuffer == nullptr || nESBufferLen < 1)
        return -1;
    const auto nSourceLen = static_cast<uint32_t>(nESBufferLen);
    const auto pBytes = TRY_ALLOC_ARRAY<uint8_t>(nSourceLen);
    if (pBytes == nullptr)
        return -1;
    const uint64_t nSize = DiscardEmulationByte(pESBuffer, nSourceLen, pBytes.get(), nSourceLen);
    for (uint64_t nPos = 0; nPos + nMinLeft < nSize;) {
        uint64_t nLeft = nSize - nPos;
        CBitsStream bs;
        bs.Init(pBytes.get() + nPos, static_cast<uint32_t>(nLeft));
        uint64_t nType = 0;
        // A type that the bytes do not end would go on over the ones behind them, and come out over the limit.
        if (!ReadSum(bs, nTypeLimit, nLeft, nType)) {
            KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "Invalid Data");
            return -1;
        }
        uint64_t nPayloadSize = 0;
        // A size that they do not end leaves no payload: no message follows.
        if (!ReadSum(bs, UINT64_MAX, nLeft, nPayloadSize))
            return 0;
        if (nalUnitType == H265_NAL_PREFIX_SEI)
            Parse_SEI_Prefix(bs, info, static_cast<int>(nType));
        nPos = nSize - nLeft + nPayloadSize;
    }
    return 0;
}

// The size of the payload does not bound it: one that is too short takes the rest from what follows.
void CH265ESParser::Parse_SEI_Prefix(CBitsStream& bs, ES_PARSER_INFO& info, int type) const
{
    switch (type) {
    case HEVC_SEI_TYPE_PICTURE_TIMING:
        Parse_SEI_Pic_Timing(bs, info);
        break;
    case HEVC_SEI_TYPE_MASTERING_DISPLAY_INFO:
        Parse_SEI_Mastering_Display_Info(bs, info);
        break;
    case HEVC_SEI_TYPE_CONTENT_LIGHT_LEVEL_INFO:
        Parse_SEI_Content_Light_Info(bs, info);
        break;
    default:
        break;
    }
}

void CH265ESParser::Parse_SEI_Mastering_Display_Info(CBitsStream& bs, ES_PARSER_INFO& info)
{
    for (uint16_t& nPrimary : info.nDisplayPrimaries)
        nPrimary = static_cast<uint16_t>(bs.GetBits(16));
    for (uint16_t& nWhite : info.nWhitePoint)
        nWhite = static_cast<uint16_t>(bs.GetBits(16));
    info.nMaxLuminance = bs.GetBits(32);
    info.nMinLuminance = bs.GetBits(32);
}

void CH265ESParser::Parse_SEI_Content_Light_Info(CBitsStream& bs, ES_PARSER_INFO& info)
{
    info.nMaxContentLightLevel = static_cast<uint16_t>(bs.GetBits(16));
    info.nMaxFrameAverageLightLevel = static_cast<uint16_t>(bs.GetBits(16));
}

void CH265ESParser::Parse_SEI_Pic_Timing(CBitsStream& bs, ES_PARSER_INFO& info) const
{
    if (m_nH265SPS.frame_field_info_present_flag == 0)
        return;
    const uint32_t nPicStruct = bs.GetBits(4);
    const uint32_t nSourceScanType = bs.GetBits(2);
    bs.Skip(1); // duplicate_flag
    if (nPicStruct >= std::size(sc_picStructs))
        return;
    const PIC_STRUCT_ROW& row = sc_picStructs[nPicStruct];
    info.picStruct = row.eStructure;
    if (nSourceScanType != row.nSourceScanType)
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath,
                     "pic_struct %d indicates it's coded %s, but source_scan_type is %d\n",
                     static_cast<int>(nPicStruct), row.pDisagreement, static_cast<int>(nSourceScanType));
}

} // namespace Marvane::FrameSift
