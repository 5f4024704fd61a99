// The heads in front of the slices of an MPEG-2 picture.
#include "ESParse/MPEG2ESParser.h"

namespace Marvane::FrameSift {

namespace {

constexpr int sc_noSize = -1;
constexpr int sc_noAspectRatio = -2;
constexpr int sc_noRate = -3;
constexpr int sc_misplaced = -4;

// extension_start_code_identifier, ISO/IEC 13818-2, table 6-2
enum EXTENSION_ID : uint32_t
{
    EXTENSION_SEQUENCE = 1,
    EXTENSION_SEQUENCE_DISPLAY = 2,
    EXTENSION_QUANT_MATRIX = 3,
    EXTENSION_PICTURE_DISPLAY = 7,
    EXTENSION_PICTURE_CODING = 8
};

// A caller may hand in any record: the sum must not overflow.
int32_t Sum(int32_t nLeft, uint32_t nRight)
{
    return static_cast<int32_t>(static_cast<uint32_t>(nLeft) + nRight);
}

} // namespace

void CMPEG2ESParser::TakeSequence(FrameInfo& frameInfo) const
{
    frameInfo.width = m_nWidth;
    frameInfo.height = m_nHeight;
    frameInfo.frameRate = m_nRate;
}

int CMPEG2ESParser::ParseSeqBlock(CBitsStream& bs, FrameInfo&)
{
    constexpr uint32_t nFirstRateCode = 1;
    constexpr uint32_t nLastRateCode = 12; // though the table goes on
    const uint32_t nWidth = bs.GetBits(12);
    const uint32_t nHeight = bs.GetBits(12);
    if (nWidth == 0 || nHeight == 0)
        return sc_noSize;
    if (bs.GetBits(4) == 0)
        return sc_noAspectRatio;
    const uint32_t nRateCode = bs.GetBits(4);
    if (nRateCode < nFirstRateCode || nRateCode > nLastRateCode)
        return sc_noRate;
    m_nWidth = static_cast<int32_t>(nWidth);
    m_nHeight = static_cast<int32_t>(nHeight);
    m_nRate = ff_mpeg12_frame_rate_tab[nRateCode];
    return 0;
}

int CMPEG2ESParser::ParseExtBlock(CBitsStream& bs, FrameInfo& frameInfo, uint32_t lastBlock)
{
    switch (bs.GetBits(4)) {
    case EXTENSION_SEQUENCE:
        if (lastBlock != MPEG2_SEQUENCE)
            return sc_misplaced;
        mpeg_decode_sequence_extension(bs, frameInfo);
        break;
    case EXTENSION_SEQUENCE_DISPLAY:
        mpeg_decode_sequence_display_extension(bs);
        break;
    case EXTENSION_QUANT_MATRIX:
    case EXTENSION_PICTURE_DISPLAY:
        bs.Skip(4);
        break;
    case EXTENSION_PICTURE_CODING:
        if (lastBlock != MPEG2_PICTURE)
            return sc_misplaced;
        mpeg_decode_picture_coding_extension(bs, frameInfo);
        break;
    default:
        break;
    }
    return 0;
}

// The two bits are the high ones of a size of 14, but are added as they stand. Kept: the next picture head puts the
// size of the sequence header over the sum, so that a picture of 4096 or more comes out with its low 12 bits.
void CMPEG2ESParser::mpeg_decode_sequence_extension(CBitsStream& bs, FrameInfo& frameInfo)
{
    bs.Skip(11); // profile and level, progressive_sequence, chroma_format
    frameInfo.width = Sum(frameInfo.width, bs.GetBits(2));
    frameInfo.height = Sum(frameInfo.height, bs.GetBits(2));
    bs.Skip(29);
}

void CMPEG2ESParser::mpeg_decode_sequence_display_extension(CBitsStream& bs)
{
    bs.Skip(3);
    if (bs.GetOneBit() != 0)
        bs.Skip(24); // colour description
    bs.GetBits(14);  // display_horizontal_size
    bs.Skip(1);
    bs.GetBits(14); // display_vertical_size
    bs.Skip(3);
}

// An f_code of 15 says that its vectors are not used: neither pair in an I picture, not the backward one in a P picture.
// That tells the type of a picture whose head has none that is known.
void CMPEG2ESParser::mpeg_decode_picture_coding_extension(CBitsStream& bs, FrameInfo& frameInfo)
{
    constexpr uint32_t nPairUnused = 0xFF;
    const uint32_t nForward = bs.GetBits(8);
    const uint32_t nBackward = bs.GetBits(8);
    if (frameInfo.frameSubType == KX_FRAME_SUB_TYPE_DATA_INVALID) {
        if (nBackward != nPairUnused)
            frameInfo.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_B_FRAME;
        else if (nForward != nPairUnused)
            frameInfo.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_P_FRAME;
        else
            frameInfo.frameSubType = KX_FRAME_SUB_TYPE_VIDEO_I_FRAME;
    }
    bs.Skip(2); // intra_dc_precision
    frameInfo.pictrueStructure = static_cast<int32_t>(bs.GetBits(2));
}

int CMPEG2ESParser::ParseGopBlock(CBitsStream& bs, FrameInfo&)
{
    bs.Skip(25); // time_code
    bs.Skip(1);  // closed_gop
    bs.Skip(1);  // broken_link
    return 0;
}

} // namespace Marvane::FrameSift
