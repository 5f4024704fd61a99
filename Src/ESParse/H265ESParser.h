// What an H.265 byte stream (ITU-T H.265, annex B) says of its pictures, from parameter sets, SEI messages and slice
// heads alone.
#ifndef FRAMESIFT_SRC_ESPARSE_H265ESPARSER_H
#define FRAMESIFT_SRC_ESPARSE_H265ESPARSER_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "ESParse/ESParserInfo.h"
#include "ESParse/IESParser.h"
#include "Tools/BitsStream.h"

namespace Marvane::FrameSift {

// A sequence parameter set. The three marked fields are not filled by ParseSPS: no slice head skips an address or a
// colour plane for them.
struct H265_SPS
{
    uint32_t sps_video_parameter_set_id;
    uint32_t sps_seq_parameter_set_id;
    uint32_t pic_width_in_luam_samples;  // by GetSPSInfo only; cropped
    uint32_t pic_height_in_luma_samples; // by GetSPSInfo only; cropped
    uint32_t log2_min_luma_coding_block_size_minus3;
    uint32_t log2_diff_max_min_luma_coding_block_size;
    uint32_t frame_field_info_present_flag;
    uint32_t bit_depth_luma;
    uint32_t sps_separate_colour_plane_flag; // by nobody
    uint32_t log2_max_pic_order_cnt_lsb;
    uint32_t cropBeforePicwidth_in_luam_samples; // in pixels, as coded
    uint32_t cropBeforePicheight_in_luma_samples;
};

struct H265_PPS
{
    uint32_t pps_pic_parameter_set_id;
    uint32_t pps_seq_parameter_set_id;
    uint32_t dependent_slice_segments_enabled_flag;
    uint32_t output_flag_present_flag;
    uint32_t num_extra_slice_header_bits;
};

// The head of a slice.
struct h265Slice
{
    uint32_t frame_type; // KX_FRAME_SUB_TYPE_VIDEO_*
    uint32_t first_slice_segment_in_pic_flag;
    uint32_t slice_type;        // as coded
    uint32_t frame_num;         // the picture order count, modulo 2^32
    uint32_t picture_structure; // not filled
};

// One object for one stream; a new object is the reset. Only the base layer is seen.
class CH265ESParser : public CESParser
{
public:
    // The subtype is that of the first slice. What is told of the picture is that of the last I frame which brought a
    // sequence parameter set. Answers -1 if there are no bytes.
    int Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo) override;
    int GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    int GetEncodeType() const override;
    bool IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    bool IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    // By the two header bytes: the forbidden bit is clear, and the unit belongs to the base layer.
    bool IsLegalNal(const uint8_t* pNalUintBuffer, uint32_t nNalUintLen) override;

    // Reads up to the first slice. What info holds already is kept where the units say nothing of it. -1 if there are
    // no bytes, else what the slice gave; damaged parameter sets do not stop it.
    int Parse_KX(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info);
    // pESBuffer points at the header of the unit. -1 for a unit that is refused, else 0.
    int ParseNal(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info);

    // For these, pESBuffer points behind the header of the unit. Each answers 0, or -1 for a unit that is refused or
    // empty; what it has read before the fault stays in info.
    int ParseVPS(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info);
    int ParseSPS(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info);
    int ParsePPS(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO& info);
    int ParseSEI(const uint8_t* pESBuffer, int32_t nESBufferLen, uint8_t nalUnitType, ES_PARSER_INFO& info);
    int ParseSlice(const uint8_t* pESBuffer, int32_t nESBufferLen, uint8_t nalUnitType, ES_PARSER_INFO& info);

    // pESBuffer points at the header of the unit. The caller clears slice.
    bool ParseSliceHeader(const uint8_t* pESBuffer, int32_t nESBufferLen, h265Slice& slice);
    // From the first sequence parameter set in the bytes; this object's own stays as it is.
    bool GetSPSInfo(const uint8_t* pESBuffer, uint32_t nESBufferLen, H265_SPS& param);

    // Answers the bytes written; those that find no room are dropped.
    static uint32_t DiscardEmulationByte(const uint8_t* pESBuffer, uint32_t nESBufferLen, uint8_t* pSODB,
                                         uint32_t nSODBSize);
    static int ComputePOC(const H265_SPS* sps, int pocTid0, int poc_lsb, int nal_unit_type);
    static bool IsH265VlcSlice(uint8_t nal_unit_type);

private:
    struct SLICE_HEAD;
    struct SPS_HEAD;
    struct VUI;

    static void ParseProfileTierLevel(CBitsStream& bs, uint8_t profilePresentFlag, uint8_t maxNumSubLayersMinus1);
    static void SkipSubLayerOrdering(CBitsStream& bs, uint32_t maxNumSubLayersMinus1);
    static void ParseScalingListData(CBitsStream& bs);
    static const char* ReadSPSIds(CBitsStream& bs, SPS_HEAD& sps);
    static const char* ReadSPSHead(CBitsStream& bs, SPS_HEAD& sps);
    const char* ReadSPSBlocks(CBitsStream& bs);
    const char* ReadSPSCoding(CBitsStream& bs, const SPS_HEAD& sps);
    VUI ReadVui(CBitsStream& bs);

    void Parse_SEI_Prefix(CBitsStream& bs, ES_PARSER_INFO& info, int type) const;
    static void Parse_SEI_Mastering_Display_Info(CBitsStream& bs, ES_PARSER_INFO& info);
    static void Parse_SEI_Content_Light_Info(CBitsStream& bs, ES_PARSER_INFO& info);
    void Parse_SEI_Pic_Timing(CBitsStream& bs, ES_PARSER_INFO& info) const;

    SLICE_HEAD ReadSliceHead(CBitsStream& bs, uint8_t nalUnitType) const;
    size_t FindLegalNal(std::span<const uint8_t> bytes, size_t nFrom, size_t nBehind);
    bool BeginsPicture(std::span<const uint8_t> nal);

    ES_PARSER_INFO m_nIFrameInfo{.frameSubType = KX_FRAME_SUB_TYPE_DATA_INVALID}; // see Parse
    H265_SPS m_nH265SPS{};                                                        // the last one
    H265_PPS m_nH265PPS{};
    int32_t m_nPocTid0 = 0;        // picture order count of the last picture that others may count from
    int32_t m_nPreNum = -1;        // picture order count where a picture was last found to begin
    bool m_bParseOneFrame = false; // ends Parse_KX: a slice went through ParseNal
};

} // namespace Marvane::FrameSift

#endif
