// NAL units of H.264: their types, and the bytes that the parser reads of one.
#ifndef FRAMESIFT_SRC_ESPARSE_H264NAL_H
#define FRAMESIFT_SRC_ESPARSE_H264NAL_H

#include <array>
#include <cstdint>

#include "Tools/BitsStream.h"

namespace Marvane::FrameSift {

// ITU-T H.264, table 7-1, those that are told apart here. On the wire, never renumber.
enum H264_NAL : uint8_t
{
    H264_NAL_SLICE = 1,
    H264_NAL_IDR_SLICE = 5,
    H264_NAL_SEI = 6,
    H264_NAL_SPS = 7,
    H264_NAL_PPS = 8,
    H264_NAL_DELIMITER = 9,
    H264_NAL_SUBSET_SPS = 15,
    H264_NAL_EXTENSION_SLICE = 20
};

inline constexpr uint8_t H264NalType(uint8_t nHeader)
{
    return nHeader & 0x1F;
}

inline constexpr bool IsH264Slice(uint8_t nHeader)
{
    return H264NalType(nHeader) == H264_NAL_SLICE || H264NalType(nHeader) == H264_NAL_IDR_SLICE;
}

// Only a scalable stream has these.
inline constexpr bool IsH264SvcUnit(uint8_t nHeader)
{
    return H264NalType(nHeader) == H264_NAL_SUBSET_SPS || H264NalType(nHeader) == H264_NAL_EXTENSION_SLICE;
}

// By the forbidden bit, and by what nal_ref_idc has to be for the type.
bool IsLegalH264Nal(uint8_t nHeader);

inline constexpr uint32_t gsk_h264NalHeadLen = 256;

// The head of one NAL unit: at most its first 256 bytes, copied, without start code, header byte and emulation
// prevention. Parameter sets and slice heads are far shorter; a parser that looked at whole units would read every
// payload twice.
class CH264NalHead
{
public:
    // From the start code on, or from a byte or two before it.
    CH264NalHead(const uint8_t* pNal, uint32_t nalSize);
    CH264NalHead(const CH264NalHead&) = delete;
    CH264NalHead& operator=(const CH264NalHead&) = delete;

    uint32_t Size() const { return m_nSize; }
    // Valid as long as this object.
    CBitsStream Bits() const;

private:
    void Unescape();
    void Erase(uint32_t nFirst, uint32_t nEnd);

    std::array<uint8_t, gsk_h264NalHeadLen> m_bytes{};
    uint32_t m_nSize = 0;
};

} // namespace Marvane::FrameSift

#endif
