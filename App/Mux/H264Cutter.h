// H.264 byte streams, cut into access units by the rules of the standard.
#ifndef FRAMESIFT_APP_MUX_H264CUTTER_H
#define FRAMESIFT_APP_MUX_H264CUTTER_H

#include <optional>

#include "Mux/H264SliceHead.h"
#include "Mux/StartCodeCutter.h"

namespace Marvane::FrameSift {

// A key unit is an IDR picture, a picture of I slices only, or one that a recovery point SEI announces. Where the
// stream is coded in fields, each field is a unit.
class CH264Cutter : public CStartCodeCutter
{
public:
    CH264Cutter() : CStartCodeCutter(ZERO_BYTE::PartOfStartCode) {}

private:
    void OnElement(uint64_t nStart, std::span<const uint8_t> body) override;
    void OnLeader(uint64_t nStart, bool bCertain);
    void OnSlice(uint64_t nStart, std::span<const uint8_t> body);
    void TakeParameterSet(std::span<const uint8_t> body);

    H264_PARAMETER_SETS m_sets;
    H264_SLICE_HEAD m_lastSlice;
    // Where the next unit would begin if the next slice is of another picture.
    std::optional<uint64_t> m_nLeader;
    bool m_bRecoveryPoint = false;
};

} // namespace Marvane::FrameSift

#endif
