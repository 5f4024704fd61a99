// A time that a user names: one of the recording's clock, or seconds from its start.
#ifndef FRAMESIFT_APP_RECORDINGS_TIMEOPTION_H
#define FRAMESIFT_APP_RECORDINGS_TIMEOPTION_H

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Marvane::FrameSift {

struct WANTED_TIME
{
    bool bOfClock = false; // else of the running time
    int64_t nMs = 0;       // CLOCK_MS, or since the start
};

// What the verbs' help says of it.
inline constexpr const char* gsk_timeHelp = "T is a time as the recording's clock says it, 2026-01-31T10:00:00 or "
                                            "2026-01-31T10:00:00.250, or seconds from the\n"
                                            "start, 90 or 90.5 or +90. Times are those of the video frames, or of the "
                                            "audio frames if there is no video. A clock\n"
                                            "can jump: a time of the clock stands for the first place in the file "
                                            "where the clock passes it. Seconds count along\n"
                                            "the running time, in which a jump (back by more than 1 s, ahead by more "
                                            "than 10 s) is but one usual frame interval.\n";

// Nothing for a text of neither form.
std::optional<WANTED_TIME> ParseWantedTime(std::string_view text);
// "2026-01-31T10:00:00.250" or "90.500 s".
std::string WantedTimeText(const WANTED_TIME& wanted);
// Milliseconds as "90.500 s".
std::string SecondsText(int64_t nMs);

// Declares an option of that name, which lands in wanted; a text that is no time is wrong usage.
CLI::Option* AddTimeOption(CLI::App& verb, const std::string& name, std::optional<WANTED_TIME>& wanted,
                           const std::string& help);

} // namespace Marvane::FrameSift

#endif
