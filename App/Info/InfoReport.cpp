#include "Info/InfoReport.h"

namespace Marvane::FrameSift {

uint64_t INFO_REPORT::GoodFrames() const
{
    uint64_t nFrames = 0;
    for (const auto& [nType, nCount] : goodByType)
        nFrames += nCount;
    return nFrames;
}

std::optional<CLOCK_MS> INFO_REPORT::Duration() const
{
    if (!check.earliest)
        return std::nullopt;
    return TimeToClock(*check.latest) - TimeToClock(*check.earliest);
}

std::optional<uint64_t> INFO_REPORT::BitRate(std::optional<int32_t> frameType) const
{
    const CLOCK_MS nDuration = Duration().value_or(0);
    if (nDuration <= 0)
        return std::nullopt;
    uint64_t nBytes = 0;
    for (const auto& [nType, nPayload] : payloadByType)
        nBytes += frameType.value_or(nType) == nType ? nPayload : 0;
    constexpr double sc_bitsAndMilliseconds = 8.0 * 1000.0;
    return static_cast<uint64_t>(static_cast<double>(nBytes) * sc_bitsAndMilliseconds / static_cast<double>(nDuration));
}

} // namespace Marvane::FrameSift
