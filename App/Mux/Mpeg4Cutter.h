// MPEG-4 Part 2 streams, one unit for each VOP.
#ifndef FRAMESIFT_APP_MUX_MPEG4CUTTER_H
#define FRAMESIFT_APP_MUX_MPEG4CUTTER_H

#include "Mux/Mpeg4Vol.h"
#include "Mux/StartCodeCutter.h"

namespace Marvane::FrameSift {

// The heads in front of a VOP belong to its unit. A key unit is an I VOP; an S VOP counts as P.
class CMpeg4Cutter : public CStartCodeCutter
{
public:
    CMpeg4Cutter() : CStartCodeCutter(ZERO_BYTE::Stuffing) {}

private:
    void OnElement(uint64_t nStart, std::span<const uint8_t> body) override;
    void OnVop(std::span<const uint8_t> body);

    MPEG4_VOL m_vol;
};

} // namespace Marvane::FrameSift

#endif
