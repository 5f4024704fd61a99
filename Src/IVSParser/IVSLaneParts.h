// Pieces that several forms of lanes share.
#ifndef FRAMESIFT_SRC_IVSPARSER_IVSLANEPARTS_H
#define FRAMESIFT_SRC_IVSPARSER_IVSLANEPARTS_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

#include "IVSParser/IVSLane.h"
#include "IVSParser/IVSNumbers.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"
#include "framesift/ivs_lanes.h"

namespace Marvane::FrameSift {

// All of its bytes, or none of them.
template <size_t nSize>
void TakeName(CBufferRead& pb, uint8_t (&name)[nSize])
{
    if (const uint8_t* pName = pb.ReadBuffer(nSize))
        std::memcpy(name, pName, nSize);
}

// A virtual loop. Any number of bends is read, as many are kept as there is room for.
void TakeCircle(CBufferRead& pb, KX_IVS_VIRTUAL_CIRCLE& circle);

// The right edge of lane number nLane, in 95 and 96 alike; so the one text for both, which names 96.
template <class LANE>
int TakeRightEdge(CBufferRead& pb, LANE& lane, int nLane)
{
    Take(pb, lane.right_lane_position_num);
    if (!IsWithin(lane.right_lane_position_num, std::size(lane.right_lane_position))) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseAttribute96] has error. attr.lane_info[%d]..right_lane_position_num = %d \n", nLane,
                     lane.right_lane_position_num);
        return KX_ERROR_PARAMETER;
    }
    pb.Skip(1);
    TakeCounted<uint16_t>(pb, lane.right_lane_position, lane.right_lane_position_num);
    return KX_SUCCESS;
}

// The marks that stand behind the lanes, from behind mark_number on, which the caller has judged.
template <class ATTRIBUTE>
void TakeMarks(CBufferRead& pb, ATTRIBUTE& attr)
{
    pb.Skip(1);
    const size_t nMarks = std::min<size_t>(attr.mark_number, std::size(attr.mark_position));
    for (size_t n = 0; n < nMarks; ++n) {
        TakeEach<uint16_t>(pb, attr.mark_position[n]);
        Take(pb, attr.mark_value[n]);
    }
}

} // namespace Marvane::FrameSift

#endif
