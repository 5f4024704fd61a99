#include "Mux/OldPicture.h"

#include <fmt/format.h>

#include "Io/AppError.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_maxRate = 31;

} // namespace

void RequireOldRate(FRAME_RATE rate, std::string_view family)
{
    if (rate.nValue % rate.nDenominator == 0 && rate.nValue / rate.nDenominator <= sc_maxRate)
        return;
    const std::string told =
        rate.nDenominator == 1 ? fmt::format("{}", rate.nValue) : fmt::format("{}/{}", rate.nValue, rate.nDenominator);
    throw CAppError(EXIT_CODE::Usage, fmt::format("{} pictures in a second cannot be told: the family {} has whole "
                                                  "numbers from 1 to {}; name one with --fps",
                                                  told, family, sc_maxRate));
}

void RequireOldSize(const MediaUnit& unit, uint32_t nStep, PICTURE_SIZE largest, std::string_view family)
{
    const bool bSteps = unit.nWidth % nStep == 0 && unit.nHeight % nStep == 0;
    if (bSteps && unit.nWidth <= largest.nWidth && unit.nHeight <= largest.nHeight)
        return;
    throw CAppError(EXIT_CODE::Usage,
                    fmt::format("a picture of {}x{} cannot be told: the family {} has multiples of "
                                "{}, up to {}x{}; --size names another size",
                                unit.nWidth, unit.nHeight, family, nStep, largest.nWidth, largest.nHeight));
}

} // namespace Marvane::FrameSift
