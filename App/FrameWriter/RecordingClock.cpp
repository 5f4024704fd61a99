#include "FrameWriter/RecordingClock.h"

#include <charconv>
#include <chrono>

namespace Marvane::FrameSift {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

std::chrono::year_month_day DateOf(const KX_TIME& time)
{
    return {std::chrono::year(time.nYear), std::chrono::month(static_cast<unsigned>(time.nMonth)),
            std::chrono::day(static_cast<unsigned>(time.nDay))};
}

bool IsWithin(int32_t nValue, int32_t nLowest, int32_t nHighest)
{
    return nValue >= nLowest && nValue <= nHighest;
}

// Takes nDigits digits and the character behind them from the front; chEnd 0 stands for the end of the text.
bool TakeField(std::string_view& text, size_t nDigits, char chEnd, int32_t& nValue)
{
    if (text.size() < nDigits || text.find_first_not_of("0123456789") < nDigits)
        return false;
    std::from_chars(text.data(), text.data() + nDigits, nValue);
    text.remove_prefix(nDigits);
    if (chEnd == 0)
        return text.empty();
    if (text.empty() || text.front() != chEnd)
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

std::optional<CLOCK_MS> ParseClock(std::string_view text)
{
    KX_TIME time = {};
    const bool bFraction = text.find('.') != std::string_view::npos;
    if (!TakeField(text, 4, '-', time.nYear) || !TakeField(text, 2, '-', time.nMonth) ||
        !TakeField(text, 2, 'T', time.nDay) || !TakeField(text, 2, ':', time.nHour) ||
        !TakeField(text, 2, ':', time.nMinute) || !TakeField(text, 2, bFraction ? '.' : '\0', time.nSecond))
        return std::nullopt;
    if (bFraction && !TakeField(text, 3, '\0', time.nMilliSecond))
        return std::nullopt;
    if (!IsCalendarTime(time) || !IsWithin(time.nYear, gsk_firstYear, gsk_lastYear))
        return std::nullopt;
    return TimeToClock(time);
}

std::optional<KX_TIME> ClockToTime(CLOCK_MS nClock)
{
    const std::chrono::sys_time<milliseconds> moment{milliseconds(nClock)};
    const auto day = std::chrono::floor<days>(moment);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss<milliseconds> clock(moment - day);
    KX_TIME time = {};
    time.nYear = static_cast<int>(date.year());
    time.nMonth = static_cast<int32_t>(static_cast<unsigned>(date.month()));
    time.nDay = static_cast<int32_t>(static_cast<unsigned>(date.day()));
    time.nHour = static_cast<int32_t>(clock.hours().count());
    time.nMinute = static_cast<int32_t>(clock.minutes().count());
    time.nSecond = static_cast<int32_t>(clock.seconds().count());
    time.nMilliSecond = static_cast<int32_t>(clock.subseconds().count());
    if (!IsWithin(time.nYear, gsk_firstYear, gsk_lastYear))
        return std::nullopt;
    return time;
}

bool IsCalendarTime(const KX_TIME& time)
{
    return IsWithin(time.nYear, 0, 9999) && IsWithin(time.nMonth, 1, 12) && IsWithin(time.nDay, 1, 31) &&
           DateOf(time).ok() && IsWithin(time.nHour, 0, 23) && IsWithin(time.nMinute, 0, 59) &&
           IsWithin(time.nSecond, 0, 59) && IsWithin(time.nMilliSecond, 0, 999);
}

CLOCK_MS TimeToClock(const KX_TIME& time)
{
    const auto moment = std::chrono::sys_days(DateOf(time)) + hours(time.nHour) + minutes(time.nMinute) +
                        seconds(time.nSecond) + milliseconds(time.nMilliSecond);
    return std::chrono::duration_cast<milliseconds>(moment.time_since_epoch()).count();
}

} // namespace Marvane::FrameSift
