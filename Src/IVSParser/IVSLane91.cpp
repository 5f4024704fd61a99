// Lanes with straight edges, and marks of distance.
#include "IVSParser/IVSLane.h"
#include "IVSParser/IVSLaneParts.h"
#include "IVSParser/IVSParser.h"
#include "Tools/KXLog.h"

namespace Marvane::FrameSift {

namespace {

int ParseLane(CBufferRead& pb, KX_IVS_ATTRIBUTE_91_LANE_INFO& lane)
{
    Take(pb, lane.lane_id);
    Take(pb, lane.lane_type);
    TakeEach<uint16_t>(pb, lane.left_lane_position);
    TakeEach<uint16_t>(pb, lane.right_lane_position);
    TakeName(pb, lane.lane_name);
    pb.Skip(1);
    Take(pb, lane.lane_virtual_number);
    if (lane.lane_virtual_number > std::size(lane.lane_calibration)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseAttribute91] has error. lane_virtual_number = %d \n",
                     lane.lane_virtual_number);
        return KX_ERROR_PARAMETER;
    }
    TakeCounted<uint16_t>(pb, lane.lane_calibration, lane.lane_virtual_number);
    return KX_SUCCESS;
}

} // namespace

int ParseAttribute91(CBufferRead& pb, KX_IVS_ATTRIBUTE_91& attr, int /*nLen*/)
{
    Take(pb, attr.packet_length);
    if (!IsLaneLength(attr.packet_length)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseAttribute] attrtype len is wrong. attrtype = 0x91 ,attrtypeDataLen = %d\n",
                     attr.packet_length);
        return KX_ERROR_BAD_FORMATTED;
    }
    Take(pb, attr.increment_id);
    Take(pb, attr.lane_number);
    if (!IsWithin(attr.lane_number, std::size(attr.lane_info))) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath, "[ParseAttribute91] has error. arrtibute91.lane_number = %d \n",
                     attr.lane_number);
        return KX_ERROR_PARAMETER;
    }
    for (KX_IVS_ATTRIBUTE_91_LANE_INFO& lane : std::span(attr.lane_info).first(attr.lane_number)) {
        const int nResult = ParseLane(pb, lane);
        if (nResult != KX_SUCCESS)
            return nResult;
    }
    Take(pb, attr.mark_number);
    if (attr.mark_number > std::size(attr.mark_position)) {
        KX_WRITE_LOG(KX_LOG_LevelWarn, gsk_ivsPath,
                     "[ParseAttribute91] has error. attr.arrtibute91.mark_number = %d \n", attr.mark_number);
        return KX_ERROR_PARAMETER;
    }
    TakeMarks(pb, attr);
    return KX_SUCCESS;
}

} // namespace Marvane::FrameSift
