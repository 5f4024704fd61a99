#include "Recordings/TimeOption.h"

#include <fmt/format.h>

#include <charconv>

#include "FrameWriter/RecordingClock.h"
#include "Frames/FrameText.h"

namespace Marvane::FrameSift {

namespace {

constexpr std::string_view sc_digits = "0123456789";
constexpr size_t sc_maxSecondDigits = 9; // 31 years
constexpr size_t sc_maxFractionDigits = 3;

bool IsNumber(std::string_view text, size_t nMaxDigits)
{
    return !text.empty() && text.size() <= nMaxDigits && text.find_first_not_of(sc_digits) == std::string_view::npos;
}

int64_t NumberOf(std::string_view digits)
{
    int64_t nNumber = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), nNumber);
    return nNumber;
}

std::optional<int64_t> ParseSeconds(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    const size_t nPoint = text.find('.');
    const std::string_view seconds = text.substr(0, nPoint);
    if (!IsNumber(seconds, sc_maxSecondDigits))
        return std::nullopt;
    if (nPoint == std::string_view::npos)
        return NumberOf(seconds) * 1000;
    std::string fraction(text.substr(nPoint + 1));
    if (!IsNumber(fraction, sc_maxFractionDigits))
        return std::nullopt;
    fraction.resize(sc_maxFractionDigits, '0');
    return NumberOf(seconds) * 1000 + NumberOf(fraction);
}

} // namespace

std::optional<WANTED_TIME> ParseWantedTime(std::string_view text)
{
    if (const auto nClock = ParseClock(text))
        return WANTED_TIME{true, *nClock};
    if (const auto nRunning = ParseSeconds(text))
        return WANTED_TIME{false, *nRunning};
    return std::nullopt;
}

std::string SecondsText(int64_t nMs)
{
    return fmt::format("{}.{:03} s", nMs / 1000, nMs % 1000);
}

std::string WantedTimeText(const WANTED_TIME& wanted)
{
    if (!wanted.bOfClock)
        return SecondsText(wanted.nMs);
    return TimeText(ClockToTime(wanted.nMs).value_or(KX_TIME{}));
}

CLI::Option* AddTimeOption(CLI::App& verb, const std::string& name, std::optional<WANTED_TIME>& wanted,
                           const std::string& help)
{
    return verb
        .add_option_function<std::string>(
            name,
            [name, &wanted](const std::string& text) {
                wanted = ParseWantedTime(text);
                if (!wanted)
                    throw CLI::ValidationError(name, "cannot take \"" + text +
                                                         "\"; allowed: a time of the clock, as 2026-01-31T10:00:00 or "
                                                         "2026-01-31T10:00:00.250, or seconds from the start, as 90.5");
            },
            help)
        ->type_name("T");
}

} // namespace Marvane::FrameSift
