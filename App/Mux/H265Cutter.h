// H.265 byte streams, cut into access units by the rules of the standard.
#ifndef FRAMESIFT_APP_MUX_H265CUTTER_H
#define FRAMESIFT_APP_MUX_H265CUTTER_H

#include <map>

#include "Mux/H265ParameterSets.h"
#include "Mux/StartCodeCutter.h"

namespace Marvane::FrameSift {

// A key unit is a random access picture: IDR, CRA or BLA. Where the stream is coded in fields, each field is a unit.
class CH265Cutter : public CStartCodeCutter
{
public:
    CH265Cutter() : CStartCodeCutter(ZERO_BYTE::PartOfStartCode) {}

private:
    void OnElement(uint64_t nStart, std::span<const uint8_t> body) override;
    void OnSlice(uint64_t nStart, std::span<const uint8_t> body);
    void TakeParameterSet(uint8_t nType, std::span<const uint8_t> body);
    void TakeSliceHead(uint8_t nType, std::span<const uint8_t> body);

    std::map<uint32_t, H265_EXACT_SPS> m_spsById;
    std::map<uint32_t, H265_EXACT_PPS> m_ppsById;
};

} // namespace Marvane::FrameSift

#endif
