#include <ctime>

#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {

namespace {

constexpr uint32_t sc_from1904To1970 = 2082844800; // seconds

// Records come from damaged streams too: their fields may hold any number, and the sum of two may wrap.
constexpr int32_t Add(int32_t left, int32_t right)
{
    return static_cast<int32_t>(static_cast<uint32_t>(left) + static_cast<uint32_t>(right));
}

constexpr bool IsLeapYear(int32_t nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

constexpr bool HasThirtyOneDays(int32_t nMonth)
{
    return nMonth == 1 || nMonth == 3 || nMonth == 5 || nMonth == 7 || nMonth == 8 || nMonth == 10 || nMonth == 12;
}

constexpr bool HasThirtyDays(int32_t nMonth)
{
    return nMonth == 4 || nMonth == 6 || nMonth == 9 || nMonth == 11;
}

// One step only.
void Carry(int32_t& nField, int32_t nLimit, int32_t& nNext)
{
    if (nField < nLimit)
        return;
    nField -= nLimit;
    nNext = Add(nNext, 1);
}

void ToNextMonth(KX_TIME& time, int32_t nDays)
{
    time.nDay -= nDays;
    time.nMonth = Add(time.nMonth, 1);
}

// At most one month ends here, and the day 31 of a month with 30 days counts as the next month's first.
void CarryDays(KX_TIME& time)
{
    if (time.nDay > 31 && HasThirtyOneDays(time.nMonth))
        ToNextMonth(time, 31);
    if (time.nDay >= 31 && HasThirtyDays(time.nMonth))
        ToNextMonth(time, 30);
    if (time.nMonth == 2) {
        const int32_t nDays = IsLeapYear(time.nYear) ? 29 : 28;
        if (time.nDay > nDays)
            ToNextMonth(time, nDays);
    } else if (time.nMonth > 12) {
        time.nMonth -= 12;
        time.nYear = Add(time.nYear, 1);
    }
}

} // namespace

KX_TIME CKXConvert::UTCToKXTime(int64_t t)
{
    const time_t nSeconds = t;
    tm local = {};
    tzset(); // localtime_r need not look at a changed zone by itself
    if (localtime_r(&nSeconds, &local) == nullptr)
        return {};
    return {.nYear = Add(local.tm_year, 1900),
            .nMonth = local.tm_mon + 1,
            .nDay = local.tm_mday,
            .nHour = local.tm_hour,
            .nMinute = local.tm_min,
            .nSecond = local.tm_sec,
            .nMilliSecond = 0};
}

KX_TIME CKXConvert::Mp4TimeToKXTime(uint32_t t)
{
    return UTCToKXTime(t < sc_from1904To1970 ? t : t - sc_from1904To1970);
}

KX_TIME CKXConvert::DateTimeToKXTime(const KX_DATE_TIME& dateTime)
{
    return {.nYear = static_cast<int32_t>(dateTime.year) + 2000,
            .nMonth = static_cast<int32_t>(dateTime.month),
            .nDay = static_cast<int32_t>(dateTime.day),
            .nHour = static_cast<int32_t>(dateTime.hour),
            .nMinute = static_cast<int32_t>(dateTime.minute),
            .nSecond = static_cast<int32_t>(dateTime.second),
            .nMilliSecond = 0};
}

uint32_t CKXConvert::KXTimeToTimeStamp(const KX_TIME& time)
{
    tm local = {};
    local.tm_year = Add(time.nYear, -1900);
    local.tm_mon = Add(time.nMonth, -1);
    local.tm_mday = time.nDay;
    local.tm_hour = time.nHour;
    local.tm_min = time.nMinute;
    local.tm_sec = time.nSecond;
    return static_cast<uint32_t>(mktime(&local));
}

KX_TIME CKXConvert::Mp4KXTimeToKXTime(uint32_t seconds, KX_TIME base)
{
    base.nDay = Add(base.nDay, static_cast<int32_t>(seconds / 86400));
    base.nHour = Add(base.nHour, static_cast<int32_t>(seconds / 3600 % 24));
    base.nMinute = Add(base.nMinute, static_cast<int32_t>(seconds / 60 % 60));
    base.nSecond = Add(base.nSecond, static_cast<int32_t>(seconds % 60));
    Carry(base.nSecond, 60, base.nMinute);
    Carry(base.nMinute, 60, base.nHour);
    Carry(base.nHour, 24, base.nDay);
    CarryDays(base);
    return base;
}

} // namespace Marvane::FrameSift
