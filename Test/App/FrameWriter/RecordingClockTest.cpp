#include "FrameWriter/RecordingClock.h"
#include "Support/Testing.h"

namespace Marvane::FrameSift {

TEST(RecordingClock, TextBecomesTimeAndRunsOn)
{
    const auto start = ParseClock("2028-02-28T23:59:59.250");
    ASSERT_TRUE(start);
    const auto later = ClockToTime(*start + 1000);
    ASSERT_TRUE(later);
    EXPECT_EQ((Fields{later->nMonth, later->nDay, later->nHour, later->nSecond, later->nMilliSecond}),
              (Fields{2, 29, 0, 0, 250})); // a leap year
    EXPECT_EQ(ParseClock("1970-01-01T00:00:00"), std::nullopt);
    EXPECT_EQ(ParseClock("2000-01-01T00:00:00"), CLOCK_MS{946684800000});
}

TEST(RecordingClock, WhatTheWireCannotCarryIsRefused)
{
    for (const char* pText :
         {"", "2026", "2026-01-31", "2026-01-31 10:00:00", "2026-01-31T10:00:00Z", "2026-01-31T10:00:00.25",
          "2026-02-29T00:00:00", "2026-13-01T00:00:00", "2026-01-01T24:00:00", "2026-01-01T00:60:00",
          "1999-12-31T23:59:59", "2064-01-01T00:00:00", "2026-01-31T10:00:00.", "2026-01-3aT10:00:00"})
        EXPECT_EQ(ParseClock(pText), std::nullopt) << pText;
    const auto last = ParseClock("2063-12-31T23:59:59.999");
    ASSERT_TRUE(last);
    EXPECT_TRUE(ClockToTime(*last));
    EXPECT_FALSE(ClockToTime(*last + 1));
}

TEST(RecordingClock, FieldsOfADamagedHeadMayNameNoMoment)
{
    EXPECT_TRUE(IsCalendarTime({2026, 1, 31, 10, 0, 0, 0}));
    EXPECT_FALSE(IsCalendarTime({2000, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(IsCalendarTime({2026, 15, 31, 10, 0, 0, 0}));
    EXPECT_FALSE(IsCalendarTime({2026, 1, 31, 31, 63, 63, 0}));
}

} // namespace Marvane::FrameSift
