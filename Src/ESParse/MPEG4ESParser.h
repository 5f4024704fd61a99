// What an MPEG-4 Part 2 video payload (ISO/IEC 14496-2) says about itself.
#ifndef FRAMESIFT_SRC_ESPARSE_MPEG4ESPARSER_H
#define FRAMESIFT_SRC_ESPARSE_MPEG4ESPARSER_H

#include <cstdint>
#include <optional>

#include "ESParse/IESParser.h"

namespace Marvane::FrameSift {

class CBitsStream;

// Start codes with their prefix, as 32 bits of the stream. VOP: video object plane, a picture; VOL: video object layer,
// the head that tells the size.
enum MPEG4_START_CODE : uint32_t
{
    MPEG4_FIRST_OBJECT = 0x100,
    MPEG4_LAST_OBJECT = 0x11F,
    MPEG4_FIRST_VOL = 0x120,
    MPEG4_LAST_VOL = 0x12F,
    MPEG4_SEQUENCE = 0x1B0,
    MPEG4_SEQUENCE_END = 0x1B1,
    MPEG4_USER_DATA = 0x1B2,
    MPEG4_GROUP_OF_VOP = 0x1B3,
    MPEG4_VISUAL_OBJECT = 0x1B5,
    MPEG4_VOP = 0x1B6,
    MPEG4_SLICE = 0x1B7,
    MPEG4_EXTENSION = 0x1B8
};

struct MPEG4_INFO
{
    uint32_t nWidth = 0; // in pixels
    uint32_t nHeight = 0;
};

// Once a studio profile was seen, streams of other profiles are refused, for the life of the object.
class CMPEG4ESParser : public CESParser
{
public:
    // 0 if a VOL gave a size, else -1. A VOP in front of it sets frameSubType in both cases, to 0 or 1: a B VOP is told
    // by GetFrameSubType only.
    int Parse(const uint8_t* pESBuffer, uint32_t nESBufferLen, FrameInfo& frameInfo) override;
    // Of the first VOP. -1 if there is none, or if it ends with its start code.
    int GetFrameSubType(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    int GetEncodeType() const override { return KX_ENCODE_VIDEO_MPEG4; }
    // True if a VOP begins anywhere.
    bool IsFullFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;
    // The same, but not if the first VOP is a sprite (S) or ends with its start code.
    bool IsNextFrame(const uint8_t* pESBuffer, uint32_t nESBufferLen) override;

    // Of the first VOL; keeps no state. False leaves mpeg4Info as it is.
    static bool GetPicSize(const uint8_t* pESBuffer, uint32_t nESBufferLen, MPEG4_INFO& mpeg4Info);

    // The frame rate from the VOL behind its start code 00 00 01 20. It reads 20 bytes at most, and none behind nLen;
    // what is missing reads as ones. 0 always; bIsHBE becomes true for a rate of 1 to 30, 50 or 60.
    static int ParseBlock20(const uint8_t* pDataAfter20, uint32_t nLen, FrameInfo& frameInfo, bool& bIsHBE);

private:
    static constexpr int32_t sc_studioProfile = 14;

    std::optional<int> ParseCode(CBitsStream& bs, uint32_t nCode, FrameInfo& frameInfo);
    std::optional<int> ParseSequence(CBitsStream& bs);
    std::optional<int> ParseVisualObject(CBitsStream& bs) const;
    // Behind the code of a sequence. True, with the mark set, if it is of a studio profile.
    static bool ReadProfile(CBitsStream& bs, int32_t& nStudioProfile, int32_t& nProfile, int32_t& nLevel);
    // From the code of a VOL on. False if it gives no size; mpeg4Info is then as it was.
    static bool ParseVol(CBitsStream& bs, int32_t& nStudioProfile, int32_t& nProfile, MPEG4_INFO& mpeg4Info);

    int32_t m_nStudioProfile = 0;
    int32_t m_nProfile = 0;
    int32_t m_nLevel = 0;
};

} // namespace Marvane::FrameSift

#endif
