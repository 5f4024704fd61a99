// Lanes with virtual loops and queues.
#include "IVSParser/IVSLane.h"
#include "IVSParser/IVSNumbers.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

void TakeLane(CBufferRead& pb, KX_SIGNAL_FLOW_LANE_INFO& lane)
{
    Take(pb, lane.LaneNum);
    Take(pb, lane.virtualLoopTotalNum);
    Take(pb, lane.firstVirtualLoopStatus);
    Take(pb, lane.secondVirtualLoopStatus);
    Take(pb, lane.queneLenth);
    TakeEach<uint16_t>(pb, lane.ltailCoordinates);
    TakeEach<uint16_t>(pb, lane.rtailCoordinates);
    for (KX_IVS_SIGNAL_FLOW_LANE_8D_POSITION* pCorner :
         {&lane.firstVirtualCoordinates1, &lane.firstVirtualCoordinates2, &lane.firstVirtualCoordinates3,
          &lane.firstVirtualCoordinates4, &lane.secondVirtualCoordinates1, &lane.secondVirtualCoordinates2,
          &lane.secondVirtualCoordinates3, &lane.secondVirtualCoordinates4})
        TakeEach<uint16_t>(pb, *pCorner);
}

} // namespace

int ParseSignalFlowAttribute8D(CBufferRead& pb, KX_IVS_SIGNAL_FLOW_ATTRIBUTE_8D& attr, int /*nLen*/)
{
    const uint8_t nType = pb.ReadInt8();
    if (nType != gsk_lanes8D)
        return KX_ERROR_BAD_FORMATTED;
    const uint8_t nDataLen = pb.ReadInt8();
    if (!IsLaneLength(nDataLen)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseAttribute] attrtype len is wrong. attrtype = %d ,attrtypeDataLen = %d\n", nType, nDataLen);
        return KX_ERROR_BAD_FORMATTED;
    }
    Take(pb, attr.laneCount);
    if (!IsWithin(attr.laneCount, std::size(attr.signal_flow_laneInfo)))
        return KX_ERROR_BAD_FORMATTED;
    pb.Skip(1);
    for (KX_SIGNAL_FLOW_LANE_INFO& lane : std::span(attr.signal_flow_laneInfo).first(attr.laneCount))
        TakeLane(pb, lane);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
