// Writes frames of the ZOAV family: sound ones for recordings, and damaged ones for tests.
#ifndef FRAMESIFT_APP_FRAMEWRITER_ZOAVFRAMEWRITER_H
#define FRAMESIFT_APP_FRAMEWRITER_ZOAVFRAMEWRITER_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

using Bytes = std::vector<uint8_t>;

Bytes operator+(Bytes left, const Bytes& right);

enum class ZOAV_FAMILY : uint8_t
{
    ZOAV,
    MYAV,
    LXAV,
    WMAV
};

// Values of chType, on the wire.
enum class ZOAV_FRAME : uint8_t
{
    I = 0xFD,
    P = 0xFC,
    B = 0xFE,
    Jpeg = 0xFB,
    Audio = 0xF0,
    Data = 0xF1
};

// One frame. Every setter answers the writer itself, so that a frame reads as one expression:
// ZoavFrame().Type(ZOAV_FRAME::P).Seq(2).Payload(bytes).Build()
class ZoavFrame
{
public:
    ZoavFrame& Family(ZOAV_FAMILY eFamily);
    ZoavFrame& Type(ZOAV_FRAME eType, uint8_t chSubType = 0);
    ZoavFrame& RawType(uint8_t chType, uint8_t chSubType = 0);
    ZoavFrame& Seq(uint32_t dwSeq);
    ZoavFrame& Time(const KX_TIME& time); // to the second; years 2000 to 2063
    ZoavFrame& TimeStamp(uint16_t nTimeStamp);
    // Appends a whole extension head, tag byte first. All heads of a frame together have at most 255 bytes.
    ZoavFrame& ExtHead(std::span<const uint8_t> head);
    ZoavFrame& ExtHead(std::initializer_list<uint8_t> head);
    ZoavFrame& Payload(std::span<const uint8_t> payload);

    // Defects. All else of the frame stays sound.
    ZoavFrame& WrongSum();
    ZoavFrame& WrongTailMagic();
    ZoavFrame& WrongTailLength();
    ZoavFrame& TailFamily(ZOAV_FAMILY eFamily);
    ZoavFrame& ClaimLength(uint32_t dwFrameLen);     // in the head, under a correct sum; the tail keeps the real length
    ZoavFrame& ClaimExtLength(uint8_t nExtFrameLen); // in the head, under a correct sum

    ZoavFrame& DamagedPayload(size_t nOffset); // one bit of that byte is flipped, whatever a sum in a head says

    Bytes Build() const;
    operator Bytes() const { return Build(); }

private:
    Bytes BuildHead(uint32_t dwFrameLen) const;
    Bytes BuildTail(uint32_t dwFrameLen) const;

    ZOAV_FAMILY m_eFamily = ZOAV_FAMILY::ZOAV;
    std::optional<ZOAV_FAMILY> m_eTailFamily;
    uint8_t m_chType = static_cast<uint8_t>(ZOAV_FRAME::I);
    uint8_t m_chSubType = 0;
    uint32_t m_dwSeq = 1;
    uint32_t m_dateTime = 0x50443105; // 2020-01-02 03:04:05
    uint16_t m_nTimeStamp = 0;
    Bytes m_extHeads;
    Bytes m_payload;
    std::optional<uint32_t> m_claimedLength;
    std::optional<uint8_t> m_claimedExtLength;
    std::optional<size_t> m_damagedOffset;
    bool m_bWrongSum = false;
    bool m_bWrongTailMagic = false;
    bool m_bWrongTailLength = false;
};

} // namespace Marvane::FrameSift

#endif
