// The lanes of a road, as signal flow objects carry them: one attribute an object, of one of four forms.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSLANE_H
#define FRAMESIFT_SRC_IVSPARSER_IVSLANE_H

#include <cstddef>
#include <cstdint>

#include "Tools/BufferRead.h"
#include "framesift/ivs_lanes.h"
#include "framesift/ivs_objects.h"

namespace Marvane::FrameSift {

// Types of these attributes on the wire.
inline constexpr uint8_t gsk_lanes8D = 0x8D;
inline constexpr uint8_t gsk_lanes91 = 0x91;
inline constexpr uint8_t gsk_lanes95 = 0x95;
inline constexpr uint8_t gsk_lanes96 = 0x96;

// 8D begins at the attribute's type, the others behind it. All take a zeroed record and read one number behind the other
// to the end of the object, whatever length the attribute states; numbers that are not there stay 0, and the counts among
// them are judged as 0. KX_ERROR_BAD_FORMATTED: no length that can be (or, in 8D, number of lanes); KX_ERROR_PARAMETER: no
// number of something that can be.
int ParseSignalFlowAttribute8D(CBufferRead& pb, KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D& attr, int nLen);
int ParseAttribute91(CBufferRead& pb, KX_IVS_ATTRIBUTE_91& attr, int nLen);
int ParseAttribute95(CBufferRead& pb, KX_IVS_ATTRIBUTE_95& attr, int nLen);
int ParseAttribute96(CBufferRead& pb, KX_IVS_ATTRIBUTE_96& attr, int nLen);

// Lengths are counted in words of 4 bytes.
constexpr bool IsLaneLength(uint8_t nLength)
{
    return nLength != 0 && nLength % 4 == 0;
}

constexpr bool IsWithin(uint8_t nNumber, size_t nLast)
{
    return nNumber >= 1 && nNumber <= nLast;
}

} // namespace Marvane::FrameSift

#endif
