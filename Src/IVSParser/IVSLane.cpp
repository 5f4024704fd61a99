#include "IVSParser/IVSLane.h"

#include "IVSParser/IVSLaneParts.h"

namespace Marvane::FrameSift {

void TakeCircle(CBufferRead& pb, KX_IVS_VIRTUAL_CIRCLE& circle)
{
    Take(pb, circle.circle_id);
    Take(pb, circle.circle_color);
    TakeEach<uint16_t>(pb, circle.left_lane_position);
    TakeEach<uint16_t>(pb, circle.right_lane_position);
    Take(pb, circle.left_inflection_count);
    Take(pb, circle.right_inflection_count);
    TakeCounted<uint16_t>(pb, circle.left_inflection_position, circle.left_inflection_count);
    TakeCounted<uint16_t>(pb, circle.right_inflection_position, circle.right_inflection_count);
}

} // namespace Marvane::FrameSift
