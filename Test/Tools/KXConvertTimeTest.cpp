#include <stdlib.h>

#include <climits>
#include <ctime>

#include "Support/Testing.h"
#include "Tools/KXConvert.h"

namespace Marvane::FrameSift {
namespace {

std::string Text(const KX_TIME& time)
{
    std::string text;
    for (const int32_t n : {time.nYear, time.nMonth, time.nDay, time.nHour, time.nMinute, time.nSecond})
        text += std::to_string(n) + " ";
    return text + std::to_string(time.nMilliSecond);
}

// Five and a half hours east of UTC, so that a mix-up of local time and UTC shows.
class KXConvertTime : public testing::Test
{
protected:
    KXConvertTime()
    {
        if (const char* pZone = getenv("TZ"))
            m_oldZone = pZone;
        setenv("TZ", "XST-5:30", 1);
        tzset();
    }
    ~KXConvertTime() override
    {
        if (m_oldZone.empty())
            unsetenv("TZ");
        else
            setenv("TZ", m_oldZone.c_str(), 1);
        tzset();
    }

private:
    std::string m_oldZone;
};

TEST_F(KXConvertTime, SecondsToLocalTime)
{
    EXPECT_EQ(Text(CKXConvert::UTCToKXTime(0)), "1970 1 1 5 30 0 0");
    EXPECT_EQ(Text(CKXConvert::UTCToKXTime(1709231399)), "2024 2 29 23 59 59 0");
    EXPECT_EQ(Text(CKXConvert::UTCToKXTime(INT64_MAX)), "0 0 0 0 0 0 0");
    // The last year that the calendar of the system reaches; the sum of its fields wraps.
    CKXConvert::UTCToKXTime(67768036191676799 - 20000);

    EXPECT_EQ(Text(CKXConvert::Mp4TimeToKXTime(2082844800U)), "1970 1 1 5 30 0 0");
    EXPECT_EQ(Text(CKXConvert::Mp4TimeToKXTime(2082844799U)), Text(CKXConvert::UTCToKXTime(2082844799)));
    EXPECT_EQ(Text(CKXConvert::Mp4TimeToKXTime(UINT32_MAX)), Text(CKXConvert::UTCToKXTime(2212122495)));
}

TEST_F(KXConvertTime, LocalTimeToSeconds)
{
    for (const uint32_t nSeconds : {0U, 1709231399U, 4102444800U})
        EXPECT_EQ(CKXConvert::KXTimeToTimeStamp(CKXConvert::UTCToKXTime(nSeconds)), nSeconds);
    EXPECT_EQ(CKXConvert::KXTimeToTimeStamp({2024, 2, 30, 5, 30, 0, 999}), 1709251200U); // 1 March
    EXPECT_EQ(CKXConvert::KXTimeToTimeStamp({1900, 0, 0, 0, 0, 0, 0}), static_cast<uint32_t>(-2209008600 - 32 * 86400));
    CKXConvert::KXTimeToTimeStamp({INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, 0}); // from a damaged head
}

TEST(DateTime, FieldsFromTheLowEnd)
{
    // 2031-04-09 10:31:02: 31<<26 | 4<<22 | 9<<17 | 10<<12 | 31<<6 | 2
    const uint8_t wire[] = {0xC2, 0xA7, 0x12, 0x7D};
    KX_DATE_TIME dateTime;
    std::memcpy(&dateTime, wire, sizeof dateTime);
    EXPECT_EQ(Text(CKXConvert::DateTimeToKXTime(dateTime)), "2031 4 9 10 31 2 0");
    std::memset(&dateTime, 0xFF, sizeof dateTime);
    EXPECT_EQ(Text(CKXConvert::DateTimeToKXTime(dateTime)), "2063 15 31 31 63 63 0");
}

TEST(Mp4KXTimeToKXTime, CarriesOneStep)
{
    for (const auto& [seconds, base, pExpected] : Rows<uint32_t, KX_TIME, const char*>{
             {1, {2023, 12, 31, 23, 59, 59, 5}, "2024 1 1 0 0 0 5"},
             {1, {2024, 2, 28, 23, 59, 59, 0}, "2024 2 29 0 0 0 0"},
             {1, {2100, 2, 28, 23, 59, 59, 0}, "2100 3 1 0 0 0 0"},
             {1, {2024, 4, 30, 23, 59, 59, 0}, "2024 5 1 0 0 0 0"},
             {86400 * 2 + 3661, {2024, 1, 30, 22, 58, 59, 0}, "2024 2 2 0 0 0 0"},
             {86400 * 35, {2024, 1, 31, 0, 0, 0, 0}, "2024 3 6 0 0 0 0"},  // 66 - 31 = 35 February, less 29
             {86400 * 70, {2024, 3, 31, 0, 0, 0, 0}, "2024 5 40 0 0 0 0"}, // no third month
             {0, {2024, 6, 31, 0, 0, 0, 0}, "2024 7 1 0 0 0 0"}}) {
        EXPECT_EQ(Text(CKXConvert::Mp4KXTimeToKXTime(seconds, base)), pExpected) << Text(base);
    }
    // Numbers from a damaged record: each field wraps, none overflows.
    CKXConvert::Mp4KXTimeToKXTime(UINT32_MAX, {INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0});
}

} // namespace
} // namespace Marvane::FrameSift
