// NAL units of H.265: their types, the bytes that the parser reads of one, and the reading itself.
#ifndef FRAMESIFT_SRC_ESPARSE_H265NAL_H
#define FRAMESIFT_SRC_ESPARSE_H265NAL_H

#include <array>
#include <cstdint>

#include "Tools/BitsStream.h"

namespace Marvane::FrameSift {

// ITU-T H.265, table 7-1, those that are told apart here. On the wire, never renumber.
enum H265_NAL : uint8_t
{
    H265_NAL_TRAIL_N = 0,
    H265_NAL_TSA_N = 2,
    H265_NAL_STSA_N = 4,
    H265_NAL_RADL_N = 6,
    H265_NAL_RADL_R = 7,
    H265_NAL_RASL_N = 8,
    H265_NAL_RASL_R = 9,
    H265_NAL_BLA_W_LP = 16,
    H265_NAL_BLA_N_LP = 18,
    H265_NAL_IDR_W_RADL = 19,
    H265_NAL_IDR_N_LP = 20,
    H265_NAL_CRA = 21,
    H265_NAL_LAST_IRAP = 23, // reserved, as 22 is
    H265_NAL_VPS = 32,
    H265_NAL_SPS = 33,
    H265_NAL_PPS = 34,
    H265_NAL_PREFIX_SEI = 39
};

inline constexpr uint32_t gsk_h265NalHeaderLen = 2;

inline constexpr uint8_t H265NalType(uint8_t nHeader)
{
    return nHeader >> 1 & 0x3F;
}

// The head of one NAL unit, copied without emulation prevention. Parameter sets and slice heads are far shorter; a
// parser that looked at whole units would read every payload twice.
class CH265NalHead
{
public:
    static constexpr uint32_t sc_maxLen = 256;

    // pBody: behind the unit's header. nMaxLen: how much of it is kept, at most sc_maxLen. No bytes for a null pointer
    // or a length below 1.
    CH265NalHead(const uint8_t* pBody, int32_t nBodyLen, uint32_t nMaxLen = sc_maxLen);
    CH265NalHead(const CH265NalHead&) = delete;
    CH265NalHead& operator=(const CH265NalHead&) = delete;

    bool IsEmpty() const { return m_nSize == 0; }
    // Valid as long as this object.
    CBitsStream Bits() const;

private:
    std::array<uint8_t, sc_maxLen> m_bytes{};
    uint32_t m_nSize = 0;
};

inline uint32_t GetUe(CBitsStream& bits)
{
    return static_cast<uint32_t>(bits.GetUeGolomb());
}

inline bool GetFlag(CBitsStream& bits)
{
    return bits.GetOneBit() != 0;
}

inline void SkipUe(CBitsStream& bits, int nCount)
{
    for (int n = 0; n < nCount; ++n)
        bits.GetUeGolomb();
}

// Calls pfnStep nCount times and answers the sum, modulo 2^32, of what the calls answered. nCount comes from the stream
// and can be billions: what the calls do behind the end of the bytes is worked out, so that the time depends on the
// bytes alone. A step reads at least one bit.
uint32_t RepeatRead(CBitsStream& bits, uint64_t nCount, uint32_t (*pfnStep)(CBitsStream&));

} // namespace Marvane::FrameSift

#endif
