// The sequence parameter set (ITU-T H.264, 7.3.2.1.1), read twice over: ParseSPS takes a unit of its own and reads on
// into the VUI, GetPicSize answers the one question of a size.
#include <algorithm>

#include "ESParse/H264ESParser.h"
#include "ESParse/H264Nal.h"
#include "ESParse/StartCode.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ESParse/H264SPS";

// Why a set is refused, as the log tells it; the empty text goes unsaid. The two readers log it themselves, for the log
// names the function.
constexpr const char* sc_accepted = nullptr;
constexpr const char* sc_refusedSilently = "";

uint32_t GetUe(CBitsStream& bits)
{
    return static_cast<uint32_t>(bits.GetUeGolomb());
}

bool GetFlag(CBitsStream& bits)
{
    return bits.GetOneBit() != 0;
}

void SkipScalingList(CBitsStream& bits, int nEntries)
{
    uint32_t nLast = 8;
    uint32_t nNext = 8;
    // Once the next entry is 0 the list goes on as it is, and nothing more is read.
    for (int n = 0; n < nEntries && nNext != 0; ++n) {
        const auto nDelta = static_cast<uint32_t>(bits.GetSeGolomb());
        // The remainder is C's, negative for a negative sum. The sum wraps.
        nNext = static_cast<uint32_t>(static_cast<int32_t>(nLast + nDelta + 256) % 256);
        nLast = nNext;
    }
}

// Always eight: the standard has twelve for 4:4:4. Kept.
void SkipScalingMatrix(CBitsStream& bits)
{
    constexpr int nLists = 8;
    constexpr int nSmallLists = 6;
    for (int n = 0; n < nLists; ++n) {
        if (GetFlag(bits))
            SkipScalingList(bits, n < nSmallLists ? 16 : 64);
    }
}

bool IsHighProfile(uint32_t nProfile)
{
    constexpr uint32_t profiles[] = {100, 110, 122, 244, 44, 83, 86, 118, 128, 144, 138};
    return std::ranges::find(profiles, nProfile) != std::end(profiles);
}

const char* ReadHighProfile(CBitsStream& bits)
{
    constexpr uint32_t nFullChroma = 3; // 4:4:4
    constexpr uint32_t nDepthMinus8Max = 6;
    const uint32_t nChromaFormat = GetUe(bits);
    if (nChromaFormat > nFullChroma)
        return sc_refusedSilently;
    if (nChromaFormat == nFullChroma)
        bits.Skip(1); // separate_colour_plane_flag
    const uint32_t nLumaDepth = GetUe(bits);
    const uint32_t nChromaDepth = GetUe(bits);
    if (nLumaDepth != nChromaDepth)
        return "Different chroma and luma bit depth.\n";
    if (nLumaDepth > nDepthMinus8Max)
        return "Illagel bit depth.\n";
    bits.Skip(1); // qpprime_y_zero_transform_bypass_flag
    if (GetFlag(bits))
        SkipScalingMatrix(bits);
    return sc_accepted;
}

const char* ReadPicOrder(CBitsStream& bits)
{
    constexpr uint32_t nLog2LsbMinus4Max = 12;
    constexpr uint32_t nCycleMax = 15; // ours; the standard allows 255
    switch (GetUe(bits)) {
    case 0:
        return GetUe(bits) > nLog2LsbMinus4Max ? "Out of range.\n" : sc_accepted;
    case 1: {
        bits.Skip(1);       // delta_pic_order_always_zero_flag
        bits.GetSeGolomb(); // offset_for_non_ref_pic
        bits.GetSeGolomb(); // offset_for_top_to_bottom_field
        const uint32_t nCycle = GetUe(bits);
        if (nCycle > nCycleMax)
            return sc_refusedSilently;
        for (uint32_t n = 0; n < nCycle; ++n)
            bits.GetSeGolomb();
        return sc_accepted;
    }
    case 2:
        return sc_accepted;
    default:
        return sc_refusedSilently;
    }
}

uint32_t ReadFrameRate(CBitsStream& bits)
{
    const uint32_t nUnitsInTick = bits.GetBits(32);
    const auto nTimeScale = static_cast<int32_t>(bits.GetBits(32));
    // A tick is a field's, a frame has two. The product wraps, and is even: it cannot be -1, the one divisor but 0 that
    // would not do.
    const auto nDivisor = static_cast<int32_t>(nUnitsInTick * 2);
    return nDivisor != 0 ? static_cast<uint32_t>(nTimeScale / nDivisor) : 0;
}

// The VUI (ITU-T H.264, E.1.1) up to the timing. Answers the frame rate, 0 if none is told.
uint32_t ReadVui(CBitsStream& bits)
{
    constexpr uint32_t nExtendedSar = 255;
    if (GetFlag(bits) && bits.GetBits(8) == nExtendedSar) {
        bits.Skip(16); // sar_width
        bits.Skip(16); // sar_height
    }
    if (GetFlag(bits))
        bits.Skip(1); // overscan_appropriate_flag
    if (GetFlag(bits)) {
        bits.Skip(3); // video_format
        bits.Skip(1); // video_full_range_flag
        if (GetFlag(bits)) {
            bits.Skip(8); // colour_primaries
            bits.Skip(8); // transfer_characteristics
            bits.Skip(8); // matrix_coefficients
        }
    }
    if (GetFlag(bits)) {
        bits.GetUeGolomb(); // chroma_sample_loc_type_top_field
        bits.GetUeGolomb(); // chroma_sample_loc_type_bottom_field
    }
    return GetFlag(bits) ? ReadFrameRate(bits) : 0;
}

} // namespace

// Up to the cropping. A set that is refused leaves param alone, but may have set m_log2_max_frame_num_minus4.
const char* CH264ESParser::ReadSPS(CBitsStream& bits, h264SPS& param)
{
    constexpr uint32_t nIdMax = 31;
    const uint32_t nProfile = bits.GetBits(8);
    bits.Skip(16); // constraint flags, level
    if (GetUe(bits) > nIdMax)
        return "sps_id out of range\n";
    if (IsHighProfile(nProfile)) {
        const char* pRefusal = ReadHighProfile(bits);
        if (pRefusal != sc_accepted)
            return pRefusal;
    }
    m_log2_max_frame_num_minus4 = bits.GetUeGolomb();
    const char* pRefusal = ReadPicOrder(bits);
    if (pRefusal == sc_accepted)
        ReadPicSize(bits, param);
    return pRefusal;
}

// All products and differences wrap in 32 bits: who uses a size checks it.
void CH264ESParser::ReadPicSize(CBitsStream& bits, h264SPS& param)
{
    constexpr uint32_t nMacroblock = 16; // pixels each way
    bits.GetUeGolomb();                  // max_num_ref_frames
    bits.Skip(1);                        // gaps_in_frame_num_value_allowed_flag
    param.width = (GetUe(bits) + 1) * nMacroblock;
    const uint32_t nMapUnits = GetUe(bits) + 1;
    const uint32_t nFrameMbsOnly = bits.GetOneBit();
    const uint32_t nFieldsPerRow = 2 - nFrameMbsOnly;
    m_frame_mbs_only_flag = static_cast<int32_t>(nFrameMbsOnly);
    param.height = nFieldsPerRow * nMapUnits * nMacroblock;
    param.cropBeforeWidth = static_cast<int32_t>(param.width);
    param.cropBeforeHeight = static_cast<int32_t>(param.height);
    if (nFrameMbsOnly == 0)
        bits.Skip(1); // mb_adaptive_frame_field_flag
    bits.Skip(1);     // direct_8x8_inference_flag
    if (!GetFlag(bits))
        return;
    // The unit is that of 4:2:0 for every chroma format: 4:2:2 and 4:4:4 come out too small. Kept.
    const uint32_t nLeft = GetUe(bits);
    const uint32_t nRight = GetUe(bits);
    const uint32_t nTop = GetUe(bits);
    const uint32_t nBottom = GetUe(bits);
    param.width -= 2 * (nLeft + nRight);
    param.height -= 2 * nFieldsPerRow * (nTop + nBottom);
}

int CH264ESParser::ParseSPS(const uint8_t* pNal, uint32_t nalSize, h264SPS& param)
{
    param = {};
    if (pNal == nullptr)
        return -1;
    const CH264NalHead head(pNal, nalSize);
    CBitsStream bits = head.Bits();
    const char* pRefusal = ReadSPS(bits, param);
    if (pRefusal != sc_accepted) {
        if (*pRefusal != '\0')
            KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "%s", pRefusal);
        return -1;
    }
    if (m_frame_mbs_only_flag == 0)
        param.interlace = 1;
    if (GetFlag(bits))
        param.framerate = ReadVui(bits);
    // Nothing else of it: see TakeIFrame.
    m_prevSPSframeInfo.frameWidth = static_cast<int32_t>(param.width);
    m_prevSPSframeInfo.frameHeight = static_cast<int32_t>(param.height);
    m_prevSPSframeInfo.frameRate = static_cast<int32_t>(param.framerate);
    return 0;
}

// Not as ParseSPS, on purpose: it reads the caller's bytes in place, with their emulation prevention, and what frames
// inherit stays as it was, for it answers of one frame alone.
bool CH264ESParser::GetPicSize(const uint8_t* pESBuffer, uint32_t nESBufferLen, h264SPS& param)
{
    constexpr size_t nHeadLen = gsk_startCodeLen + 1;
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    size_t nPos = FindLegalNal(bytes, 0);
    while (nPos + nHeadLen < bytes.size() && H264NalType(bytes[nPos + gsk_startCodeLen]) != H264_NAL_SPS)
        nPos = FindLegalNal(bytes, nPos + gsk_startCodeLen);
    if (nPos + nHeadLen >= bytes.size())
        return false;
    CBitsStream bits;
    bits.Init(&bytes[nPos + nHeadLen], static_cast<uint32_t>(bytes.size() - nPos - nHeadLen));
    const char* pRefusal = ReadSPS(bits, param);
    if (pRefusal != sc_accepted) {
        if (*pRefusal != '\0')
            KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "%s", pRefusal);
        return false;
    }
    // Kept: the opposite of what ParseSPS says.
    param.interlace = static_cast<uint32_t>(m_frame_mbs_only_flag);
    return true;
}

} // namespace Marvane::FrameSift
