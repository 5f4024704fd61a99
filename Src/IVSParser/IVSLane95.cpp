// Lanes with bent edges and virtual loops.
#include "IVSParser/IVSLane.h"
#include "IVSParser/IVSLaneParts.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

int ParseLane(CBufferRead& pb, KX_IVS_ATTRIBUTE_95_LANE_INFO& lane, int nLane)
{
    Take(pb, lane.lane_id);
    Take(pb, lane.left_lane_position_num);
    if (!IsWithin(lane.left_lane_position_num, std::size(lane.left_lane_position))) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseAttribute[95] has error. attr.lane_info[%d]..left_lane_position_num = %d \n", nLane,
                     lane.left_lane_position_num);
        return KX_ERROR_PARAMETER;
    }
    TakeCounted<uint16_t>(pb, lane.left_lane_position, lane.left_lane_position_num);
    const int nResult = TakeRightEdge(pb, lane, nLane);
    if (nResult != KX_SUCCESS)
        return nResult;
    Take(pb, lane.lane_virtual_number);
    if (lane.lane_virtual_number > std::size(lane.virtual_circle)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseAttribute95] has error. lane_virtual_number = %d \n",
                     lane.lane_virtual_number);
        return KX_ERROR_PARAMETER;
    }
    pb.Skip(1);
    for (KX_IVS_VIRTUAL_CIRCLE& circle : std::span(lane.virtual_circle).first(lane.lane_virtual_number))
        TakeCircle(pb, circle);
    return KX_SUCCESS;
}

} // namespace

int ParseAttribute95(CBufferRead& pb, KX_IVS_ATTRIBUTE_95& attr, int /*nLen*/)
{
    Take(pb, attr.packet_length);
    if (!IsLaneLength(attr.packet_length)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseAttribute] attrtype len is wrong. attrtype = 0x95 ,attrtypeDataLen = %d\n",
                     attr.packet_length);
        return KX_ERROR_BAD_FORMATTED;
    }
    Take(pb, attr.lane_number);
    if (!IsWithin(attr.lane_number, std::size(attr.lane_info))) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseAttribute95] has error. arrtibute95.lane_number = %d \n",
                     attr.lane_number);
        return KX_ERROR_PARAMETER;
    }
    pb.Skip(1);
    for (int n = 0; n < attr.lane_number; ++n) {
        const int nResult = ParseLane(pb, attr.lane_info[n], n);
        if (nResult != KX_SUCCESS)
            return nResult;
    }
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
