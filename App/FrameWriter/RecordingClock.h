// The clock of a recorder: calendar time without a zone.
#ifndef FRAMESIFT_APP_FRAMEWRITER_RECORDINGCLOCK_H
#define FRAMESIFT_APP_FRAMEWRITER_RECORDINGCLOCK_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "framesift/framesift.h"

namespace Marvane::FrameSift {

// Milliseconds since 1970-01-01T00:00:00 on the same clock.
using CLOCK_MS = int64_t;

// The wire has six bits for the year, from 2000 on.
inline constexpr int32_t gsk_firstYear = 2000;
inline constexpr int32_t gsk_lastYear = 2063;

// "2026-01-31T10:00:00" or "2026-01-31T10:00:00.250". Nothing for another form, a day that does not exist or a year
// that the wire cannot carry.
std::optional<CLOCK_MS> ParseClock(std::string_view text);

// Nothing if the year is one that the wire cannot carry.
std::optional<KX_TIME> ClockToTime(CLOCK_MS nClock);

// Whether the fields name a moment that exists. Those of a damaged frame may not.
bool IsCalendarTime(const KX_TIME& time);
CLOCK_MS TimeToClock(const KX_TIME& time); // of a time that exists

} // namespace Marvane::FrameSift

#endif
