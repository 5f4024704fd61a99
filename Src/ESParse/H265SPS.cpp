// The sequence parameter set (ITU-T H.265, 7.3.2.2), read twice over: ParseSPS takes a unit of its own and reads on
// into the VUI, GetSPSInfo answers the one question of a size.
#include <algorithm>

#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"
#include "ESParse/StartCode.h"
#include "Tools/KXConvert.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

constexpr auto sc_sourcePath = "Src/ESParse/H265SPS";

// Why a set is refused, as the log tells it; the empty text goes unsaid. The two readers log it themselves, for the log
// names the function.
constexpr const char* sc_accepted = nullptr;
constexpr const char* sc_refusedSilently = "";

constexpr uint32_t sc_chroma444 = 3;
// Pixels to a unit of the conformance window, by chroma_format_idc.
constexpr uint32_t H265_SUB_WIDTH[] = {1, 2, 2, 1};
constexpr uint32_t H265_SUB_HEIGHT[] = {1, 2, 1, 1};

uint32_t SkipRefPic(CBitsStream& bs)
{
    bs.GetUeGolomb(); // delta_poc_minus1
    bs.Skip(1);       // used_by_curr_pic_flag
    return 0;
}

// 1 for a picture of the former set that stays in this one.
uint32_t CountInheritedPic(CBitsStream& bs)
{
    const bool bUsed = GetFlag(bs);
    return bUsed || GetFlag(bs) ? 1 : 0; // used_by_curr_pic_flag, use_delta_flag
}

uint32_t SkipLongTermPic(CBitsStream& bs)
{
    bs.GetUeGolomb(); // lt_ref_pic_poc_lsb_sps: in the standard of a fixed length. Deliberate.
    bs.Skip(1);       // used_by_curr_pic_lt_sps_flag
    return 0;
}

// False if there are too many.
bool SkipShortTermSets(CBitsStream& bs)
{
    constexpr uint32_t nMaxSets = 64;
    const uint32_t nSets = GetUe(bs);
    if (nSets > nMaxSets)
        return false;
    uint32_t nPics = 0; // of the set before
    for (uint32_t nSet = 0; nSet < nSets; ++nSet) {
        // The standard has this flag from the second set on. Here the first has it too, without an effect: deliberate.
        const bool bInherits = GetFlag(bs);
        if (bInherits && nSet > 0) {
            bs.Skip(1);       // delta_rps_sign
            bs.GetUeGolomb(); // abs_delta_rps_minus1
            nPics = RepeatRead(bs, uint64_t{nPics} + 1, &CountInheritedPic);
        } else {
            const uint32_t nNegative = GetUe(bs);
            const uint32_t nPositive = GetUe(bs);
            nPics = nNegative + nPositive;
            RepeatRead(bs, uint64_t{nNegative} + nPositive, &SkipRefPic);
        }
    }
    return true;
}

} // namespace

struct CH265ESParser::SPS_HEAD
{
    uint32_t nVpsId = 0;
    uint32_t nMaxSubLayersMinus1 = 0;
    uint32_t nSpsId = 0;
    uint32_t nChromaFormat = 0; // 0 for separate colour planes too
    bool bSizeRead = false;
    uint32_t nCodedWidth = 0;
    uint32_t nCodedHeight = 0;
    uint32_t nWidth = 0; // cropped; a window too large wraps
    uint32_t nHeight = 0;
    uint32_t nLumaDepth = 0;
    uint32_t nChromaDepth = 0;
};

struct CH265ESParser::VUI
{
    // Code points of ITU-T H.273.
    uint8_t nPrimaries = HXXX_PRIMARIES_UNSPECIFIED;
    uint8_t nTransfer = HXXX_TRANSFER_UNSPECIFIED;
    uint8_t nMatrix = HXXX_MATRIX_UNSPECIFIED;
    uint32_t nFrameRate = 0; // 0: not told
};

void CH265ESParser::ParseScalingListData(CBitsStream& bs)
{
    constexpr int nSizes = 4;
    constexpr int nMatrices = 6;
    constexpr int nMaxCoefficients = 64;
    for (int nSizeId = 0; nSizeId < nSizes; ++nSizeId) {
        for (int nMatrixId = 0; nMatrixId < nMatrices; nMatrixId += nSizeId == 3 ? 3 : 1) {
            if (!GetFlag(bs)) {
                bs.GetUeGolomb(); // scaling_list_pred_matrix_id_delta
                continue;
            }
            if (nSizeId > 1)
                bs.GetSeGolomb(); // scaling_list_dc_coef_minus8
            const int nCoefficients = nSizeId == 0 ? 16 : nMaxCoefficients;
            for (int n = 0; n < nCoefficients; ++n)
                bs.GetSeGolomb();
        }
    }
}

const char* CH265ESParser::ReadSPSIds(CBitsStream& bs, SPS_HEAD& sps)
{
    constexpr uint32_t nMaxId = 15;
    constexpr uint32_t nMaxSubLayers = 7;
    sps.nVpsId = bs.GetBits(4);
    // Four bits cannot; here so that all the limits stand together.
    if (sps.nVpsId > nMaxId)
        return "sps video parameter set id is out of range.\n";
    sps.nMaxSubLayersMinus1 = bs.GetBits(3);
    if (sps.nMaxSubLayersMinus1 + 1 > nMaxSubLayers)
        return "sps max_sub_layer  is out of range.\n";
    bs.Skip(1); // sps_temporal_id_nesting_flag
    ParseProfileTierLevel(bs, 1, static_cast<uint8_t>(sps.nMaxSubLayersMinus1));
    sps.nSpsId = GetUe(bs);
    if (sps.nSpsId > nMaxId)
        return "sps id  is out of range.\n";
    sps.nChromaFormat = GetUe(bs);
    if (sps.nChromaFormat > sc_chroma444)
        return "chroma_format_idc is invalid.\n";
    if (sps.nChromaFormat == sc_chroma444 && GetFlag(bs)) // separate_colour_plane_flag
        sps.nChromaFormat = 0;
    return sc_accepted;
}

// Up to the bit depths: what both readers have in common.
const char* CH265ESParser::ReadSPSHead(CBitsStream& bs, SPS_HEAD& sps)
{
    const char* pRefusal = ReadSPSIds(bs, sps);
    if (pRefusal != sc_accepted)
        return pRefusal;
    sps.nWidth = sps.nCodedWidth = GetUe(bs);
    sps.nHeight = sps.nCodedHeight = GetUe(bs);
    if (GetFlag(bs)) { // conformance_window_flag
        const uint32_t nLeft = GetUe(bs);
        const uint32_t nRight = GetUe(bs);
        const uint32_t nTop = GetUe(bs);
        const uint32_t nBottom = GetUe(bs);
        sps.nWidth -= H265_SUB_WIDTH[sps.nChromaFormat] * (nLeft + nRight);
        sps.nHeight -= H265_SUB_HEIGHT[sps.nChromaFormat] * (nTop + nBottom);
    }
    sps.bSizeRead = true;
    sps.nLumaDepth = GetUe(bs) + 8;
    sps.nChromaDepth = GetUe(bs) + 8;
    const bool bHasChroma = sps.nChromaFormat != 0;
    return sps.nLumaDepth != sps.nChromaDepth && bHasChroma ? "bit_depth_luma not equal bit_depth_chroma.\n"
                                                            : sc_accepted;
}

const char* CH265ESParser::ReadSPSBlocks(CBitsStream& bs)
{
    const uint32_t nMinCodingMinus3 = GetUe(bs);
    const uint32_t nCodingRange = GetUe(bs);
    const uint32_t nMinTransformMinus2 = GetUe(bs);
    const uint32_t nTransformRange = GetUe(bs);
    m_nH265SPS.log2_min_luma_coding_block_size_minus3 = nMinCodingMinus3;
    m_nH265SPS.log2_diff_max_min_luma_coding_block_size = nCodingRange;
    if (nMinCodingMinus3 >= 28)
        return "log2_min_luma_coding_block_size Invalid.\n";
    if (nCodingRange >= 31)
        return "log2_diff_max_min_luma_coding_block_size Invalid.\n";
    if (uint64_t{nMinTransformMinus2} + 2 >= nMinCodingMinus3 + 3)
        return "log2_min_luma_transform_block_size Invalid.\n";
    if (nTransformRange >= 31)
        return "log2_diff_max_min_luma_transform_block_size Invalid.\n";
    return sc_accepted;
}

// Between the bit depths and the VUI. A set that is refused leaves what was read of it.
const char* CH265ESParser::ReadSPSCoding(CBitsStream& bs, const SPS_HEAD& sps)
{
    constexpr uint32_t nMaxLog2PocLsb = 16;
    m_nH265SPS.log2_max_pic_order_cnt_lsb = GetUe(bs) + 4;
    if (m_nH265SPS.log2_max_pic_order_cnt_lsb > nMaxLog2PocLsb)
        return "pic_order_cnt_lsb out range.\n";
    SkipSubLayerOrdering(bs, sps.nMaxSubLayersMinus1);
    const char* pRefusal = ReadSPSBlocks(bs);
    if (pRefusal != sc_accepted)
        return pRefusal;
    SkipUe(bs, 2); // max_transform_hierarchy_depth_inter and _intra
    const bool bScalingLists = GetFlag(bs);
    if (bScalingLists && GetFlag(bs)) // sps_scaling_list_data_present_flag
        ParseScalingListData(bs);
    bs.Skip(1);        // amp_enabled_flag
    bs.Skip(1);        // sample_adaptive_offset_enabled_flag
    if (GetFlag(bs)) { // pcm_enabled_flag
        bs.Skip(4);    // pcm_sample_bit_depth_luma_minus1
        bs.Skip(4);    // pcm_sample_bit_depth_chroma_minus1
        SkipUe(bs, 2); // block sizes
        bs.Skip(1);    // pcm_loop_filter_disabled_flag
    }
    if (!SkipShortTermSets(bs))
        return sc_refusedSilently;
    if (GetFlag(bs)) // long_term_ref_pics_present_flag
        RepeatRead(bs, GetUe(bs), &SkipLongTermPic);
    bs.Skip(1); // sps_temporal_mvp_enabled_flag
    bs.Skip(1); // strong_intra_smoothing_enabled_flag
    return sc_accepted;
}

// ITU-T H.265, E.2.1, up to the timing. A set without a VUI leaves frame_field_info_present_flag as it was.
CH265ESParser::VUI CH265ESParser::ReadVui(CBitsStream& bs)
{
    constexpr uint32_t nExtendedSar = 255;
    VUI vui;
    if (GetFlag(bs) && bs.GetBits(8) == nExtendedSar) { // aspect_ratio_info_present_flag
        bs.Skip(16);                                    // sar_width
        bs.Skip(16);                                    // sar_height
    }
    if (GetFlag(bs)) // overscan_info_present_flag
        bs.Skip(1);
    if (GetFlag(bs)) {     // video_signal_type_present_flag
        bs.Skip(3);        // video_format
        bs.Skip(1);        // video_full_range_flag
        if (GetFlag(bs)) { // colour_description_present_flag
            vui.nPrimaries = static_cast<uint8_t>(bs.GetBits(8));
            vui.nTransfer = static_cast<uint8_t>(bs.GetBits(8));
            vui.nMatrix = static_cast<uint8_t>(bs.GetBits(8));
        }
    }
    if (GetFlag(bs)) // chroma_loc_info_present_flag
        SkipUe(bs, 2);
    bs.Skip(1); // neutral_chroma_indication_flag
    bs.Skip(1); // field_seq_flag
    m_nH265SPS.frame_field_info_present_flag = bs.GetOneBit();
    if (GetFlag(bs)) // default_display_window_flag
        SkipUe(bs, 4);
    if (GetFlag(bs)) { // vui_timing_info_present_flag
        const uint32_t nUnitsInTick = bs.GetBits(32);
        const uint32_t nTimeScale = bs.GetBits(32);
        if (nUnitsInTick != 0)
            vui.nFrameRate = nTimeScale / nUnitsInTick;
    }
    return vui;
}

int CH265ESParser::ParseSPS(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info)
{
    constexpr int32_t nDefaultFrameRate = 25;
    const CH265NalHead head(pESBuffer, nESBufferLen);
    if (head.IsEmpty())
        return -1;
    CBitsStream bs = head.Bits();
    SPS_HEAD sps;
    const char* pRefusal = ReadSPSHead(bs, sps);
    m_nH265SPS.sps_video_parameter_set_id = sps.nVpsId;
    m_nH265SPS.sps_seq_parameter_set_id = sps.nSpsId;
    // A set that is refused behind its size has told the size.
    if (sps.bSizeRead) {
        m_nH265SPS.cropBeforePicwidth_in_luam_samples = sps.nCodedWidth;
        m_nH265SPS.cropBeforePicheight_in_luma_samples = sps.nCodedHeight;
        info.frameCropBeforeWidth = static_cast<int32_t>(sps.nCodedWidth);
        info.frameCropBeforeHeight = static_cast<int32_t>(sps.nCodedHeight);
        info.frameWidth = static_cast<int32_t>(sps.nWidth);
        info.frameHeight = static_cast<int32_t>(sps.nHeight);
    }
    if (pRefusal == sc_accepted) {
        m_nH265SPS.bit_depth_luma = sps.nLumaDepth;
        info.bitDepth = static_cast<int32_t>(sps.nLumaDepth);
        pRefusal = ReadSPSCoding(bs, sps);
    }
    if (pRefusal != sc_accepted) {
        if (*pRefusal != '\0')
            KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "%s", pRefusal);
        return -1;
    }
    const VUI vui = GetFlag(bs) ? ReadVui(bs) : VUI();
    const auto nVuiRate = static_cast<int32_t>(vui.nFrameRate);
    if (nVuiRate != 0) {
        if (info.frameRate != 0 && info.frameRate != nVuiRate)
            KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "Rate is not same in VPS and VUI, prior to use VUI\n");
        info.frameRate = nVuiRate;
    }
    info.nColorPrimaries = CKXConvert::ConvertHxxxColourPrimaries(vui.nPrimaries);
    info.nColorTransfer = CKXConvert::ConvertHxxxTransferCharacteristics(vui.nTransfer);
    info.nColorSpace = CKXConvert::ConvertHxxxMatrixCoeffs(vui.nMatrix);
    if (info.frameRate == 0)
        info.frameRate = nDefaultFrameRate;
    return 0;
}

bool CH265ESParser::GetSPSInfo(const uint8_t* pESBuffer, uint32_t nESBufferLen, H265_SPS& param)
{
    constexpr size_t nHeadLen = gsk_startCodeLen + gsk_h265NalHeaderLen;
    constexpr size_t nBehind = gsk_h265NalHeaderLen + 1;
    if (pESBuffer == nullptr)
        return false;
    const std::span bytes(pESBuffer, nESBufferLen);
    size_t nPos = FindLegalNal(bytes, 0, nBehind);
    while (nPos < bytes.size() && H265NalType(bytes[nPos + gsk_startCodeLen]) != H265_NAL_SPS)
        nPos = FindLegalNal(bytes, nPos + gsk_startCodeLen, nBehind);
    if (nPos >= bytes.size())
        return false;
    const auto body = bytes.subspan(nPos + nHeadLen);
    const CH265NalHead head(body.data(), static_cast<int32_t>(std::min<size_t>(body.size(), INT32_MAX)));
    CBitsStream bs = head.Bits();
    SPS_HEAD sps;
    const char* pRefusal = ReadSPSHead(bs, sps);
    if (sps.bSizeRead) {
        param.cropBeforePicwidth_in_luam_samples = sps.nCodedWidth;
        param.cropBeforePicheight_in_luma_samples = sps.nCodedHeight;
        param.pic_width_in_luam_samples = sps.nWidth;
        param.pic_height_in_luma_samples = sps.nHeight;
    }
    if (pRefusal != sc_accepted) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, sc_sourcePath, "%s", pRefusal);
        return false;
    }
    // Not as ParseSPS: without chroma the depths may differ, and then none is told.
    if (sps.nLumaDepth == sps.nChromaDepth)
        param.bit_depth_luma = sps.nLumaDepth;
    return true;
}

} // namespace Marvane::FrameSift
