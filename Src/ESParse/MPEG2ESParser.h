// What an MPEG-1 or MPEG-2 video payload (ISO/IEC 11172-2, 13818-2) says about itself.
#ifndef FRAMESIFT_SRC_ESPARSE_MPEG2ESPARSER_H
#define FRAMESIFT_SRC_ESPARSE_MPEG2ESPARSER_H

#include <array>
#include <cstdint>
#include <optional>

#include "ESParse/IESParser.h"
#include "Tools/BitsStream.h"

namespace Marvane::FrameSift {

// Start codes with their prefix, as 32 bits of the stream.
enum MPEG2_START_CODE : uint32_t
{
    MPEG2_PICTURE = 0x100,
    MPEG2_FIRST_SLICE = 0x101,
    MPEG2_LAST_SLICE = 0x1AF,
    MPEG2_USER_DATA = 0x1B2,
    MPEG2_SEQUENCE = 0x1B3,
    MPEG2_EXTENSION = 0x1B5,
    MPEG2_SEQUENCE_END = 0x1B7,
    MPEG2_GROUP = 0x1B8
};

// By frame_rate_code: numerators only, so that 24000, 30000 and 60000 stand for rates of a thousandth of that. Kept, as
// is the rest: the codes from 9 on are outside the standard.
inline constexpr std::array<int32_t, 16> ff_mpeg12_frame_rate_tab = {0,  24000, 24, 25, 30000, 30, 50, 60000,
                                                                     60, 15,    5,  10, 12,    15, 0,  0};

// Size and rate of the last sound sequence header hold for the pictures behind it, in later frames too.
class CMPEG2ESParser : public CESParser
{
public:
    // 0 at the first slice. Below 0: -1 no slice, or a sequence header without a size; -2 without an aspect ratio; -3
    // without a known rate; -4 an extension behind a head that it does not belong to. What was filled until then stays.
    int Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo) override;
    // Of the first picture head in front of a slice.
    int GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    int GetEncodeType() const override { return KX_ENCODE_VIDEO_MPEG2; }
    // Both: a picture, its first slice row, a sequence or a group begins, or a sequence ends, anywhere.
    bool IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    bool IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;

    // Nothing in a group head concerns a frame: Parse steps over it like over any unknown code.
    static int ParseGopBlock(CBitsStream& bs, FrameInfo& frameInfo);

private:
    std::optional<int> ParseCode(CBitsStream& bs, uint32_t nCode, uint32_t& nLastBlock, FrameInfo& frameInfo);
    void TakeSequence(FrameInfo& frameInfo) const;
    int ParseSeqBlock(CBitsStream& bs, FrameInfo& frameInfo);
    static int ParseExtBlock(CBitsStream& bs, FrameInfo& frameInfo, uint32_t lastBlock);
    static void mpeg_decode_sequence_extension(CBitsStream& bs, FrameInfo& frameInfo);
    static void mpeg_decode_sequence_display_extension(CBitsStream& bs);
    static void mpeg_decode_picture_coding_extension(CBitsStream& bs, FrameInfo& frameInfo);

    int32_t m_nWidth = 0;
    int32_t m_nHeight = 0;
    int32_t m_nRate = 0;
};

} // namespace Marvane::FrameSift

#endif
