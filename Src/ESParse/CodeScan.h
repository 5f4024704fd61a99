// The walk from start code to start code that the MPEG-2 and MPEG-4 parsers share.
#ifndef FRAMESIFT_SRC_ESPARSE_CODESCAN_H
#define FRAMESIFT_SRC_ESPARSE_CODESCAN_H

#include <cstdint>
#include <optional>

#include "Tools/BitsStream.h"

namespace Marvane::FrameSift {

inline constexpr int gsk_noResult = -1;

// Shows take the 32 bits at each byte that no head has consumed, until it answers a result; gsk_noResult at the end.
// take moves on by 8 bits or more and leaves what it does not know to the scan, which steps over it byte by byte.
template <class Take>
int ScanCodes(const uint8_t* pESBuffer, uint32_t nESBufferLen, Take take)
{
    if (pESBuffer == nullptr || nESBufferLen == 0)
        return gsk_noResult;
    CBitsStream bs;
    bs.Init(pESBuffer, nESBufferLen);
    // Pos runs at a quarter of the true rate, so that it ends none but the shortest buffers: the steps count.
    uint32_t nSteps = 0;
    do {
        bs.ByteAlign();
        const std::optional<int> result = take(bs, bs.ShowBits(32));
        if (result.has_value())
            return *result;
    } while (bs.Pos() >> 3 < bs.Length() && nSteps++ < nESBufferLen);
    return gsk_noResult;
}

} // namespace Marvane::FrameSift

#endif
