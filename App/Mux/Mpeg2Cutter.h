// MPEG-2 video streams, one unit for each coded picture.
#ifndef FRAMESIFT_APP_MUX_MPEG2CUTTER_H
#define FRAMESIFT_APP_MUX_MPEG2CUTTER_H

#include "Mux/StartCodeCutter.h"

namespace Marvane::FrameSift {

// The sequence and group heads in front of a picture belong to its unit. A key unit is an I picture.
class CMpeg2Cutter : public CStartCodeCutter
{
public:
    CMpeg2Cutter() : CStartCodeCutter(ZERO_BYTE::Stuffing) {}

private:
    void OnElement(uint64_t nStart, std::span<const uint8_t> body) override;
    void OnSequence(std::span<const uint8_t> body);
    void OnExtension(std::span<const uint8_t> body);
    void OnPicture(std::span<const uint8_t> body);

    uint32_t m_nWidth = 0;
    uint32_t m_nHeight = 0;
};

} // namespace Marvane::FrameSift

#endif
