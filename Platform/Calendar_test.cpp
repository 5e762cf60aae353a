#include "Platform/Calendar.h"

#include <gtest/gtest.h>

namespace {

const Calendar amsterdam("Europe/Amsterdam", "en_US");

Date utc(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0) {
    return *Calendar("UTC", "en_US").date({year, month, day, hour, minute});
}

Date local(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0) {
    return *amsterdam.date({year, month, day, hour, minute});
}

// Amsterdam moves its clocks from 02:00 to 03:00 on 29 March 2026 and from 03:00 back to
// 02:00 on 25 October 2026.
TEST(Calendar, WallTimesAcrossClockChanges) {
    struct Case {
        const char* what;
        std::optional<Date> actual;
        Date expected;
    } cases[] = {
        {"a time in the spring gap moves forward by the gap", local(2026, 3, 29, 2, 30), utc(2026, 3, 29, 1, 30)},
        {"a repeated autumn time is its first occurrence", local(2026, 10, 25, 2, 30), utc(2026, 10, 25, 0, 30)},
        {"setting a time in the gap gives the first moment after it",
         amsterdam.settingTime(2, 30, 0, local(2026, 3, 29, 12)), utc(2026, 3, 29, 1, 0)},
        {"setting a repeated time gives its first occurrence", amsterdam.settingTime(2, 30, 0, local(2026, 10, 25, 12)),
         utc(2026, 10, 25, 0, 30)},
        {"adding a day keeps the wall clock over the spring change",
         amsterdam.adding(CalendarComponent::day, 1, local(2026, 3, 28, 10)), utc(2026, 3, 29, 8)},
        {"adding a day keeps the wall clock over the autumn change",
         amsterdam.adding(CalendarComponent::day, 1, local(2026, 10, 24, 10)), utc(2026, 10, 25, 9)},
        {"adding hours counts elapsed time", amsterdam.adding(CalendarComponent::hour, 2, local(2026, 3, 29, 1)),
         utc(2026, 3, 29, 2)},
        {"start of the spring day", amsterdam.startOfDay(local(2026, 3, 29, 12)), utc(2026, 3, 28, 23)},
        {"start of the autumn day", amsterdam.startOfDay(local(2026, 10, 25, 23)), utc(2026, 10, 24, 22)},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(c.actual.has_value()) << c.what;
        EXPECT_EQ(c.actual->seconds, c.expected.seconds) << c.what;
    }
}

TEST(Calendar, IntervalsAcrossClockChanges) {
    EXPECT_EQ(amsterdam.interval(CalendarComponent::day, local(2026, 3, 29, 12))->duration, 23 * 3600);
    EXPECT_EQ(amsterdam.interval(CalendarComponent::day, local(2026, 10, 25, 12))->duration, 25 * 3600);
    EXPECT_EQ(amsterdam.interval(CalendarComponent::hour, local(2026, 11, 18, 10, 42))->start, local(2026, 11, 18, 10));

    // The week starts on the locale's first weekday.
    auto us = amsterdam.interval(CalendarComponent::weekOfYear, local(2026, 11, 18, 10));
    EXPECT_EQ(us->start, local(2026, 11, 15));
    EXPECT_EQ(us->duration, 7 * 86400);
    Calendar german("Europe/Amsterdam", "de_DE");
    EXPECT_EQ(german.interval(CalendarComponent::weekOfYear, local(2026, 11, 18, 10))->start, local(2026, 11, 16));
    auto overSpring = german.interval(CalendarComponent::weekOfYear, local(2026, 3, 26));
    EXPECT_EQ(overSpring->duration, 7 * 86400 - 3600);
}

TEST(Calendar, LenientArithmetic) {
    EXPECT_EQ(amsterdam.date({2026, 4, 31, {}, {}}), local(2026, 5, 1)) << "31 April is 1 May";
    EXPECT_EQ(amsterdam.date({2026, 13, 1, {}, {}}), local(2027, 1, 1));
    EXPECT_EQ(amsterdam.adding(CalendarComponent::month, 1, local(2026, 1, 31)), local(2026, 2, 28));
    EXPECT_EQ(amsterdam.adding(CalendarComponent::month, 1, local(2028, 1, 31)), local(2028, 2, 29));
    EXPECT_EQ(amsterdam.adding(CalendarComponent::year, 1, local(2028, 2, 29)), local(2029, 2, 28));
    EXPECT_FALSE(amsterdam.date({int64_t{1} << 40, 1, 1, {}, {}}).has_value());
    EXPECT_FALSE(amsterdam.adding(CalendarComponent::day, int64_t{1} << 40, local(2026, 1, 1)).has_value());
    EXPECT_EQ(amsterdam.daysBetween(local(2026, 3, 28), local(2026, 3, 30)), 2);
    EXPECT_EQ(amsterdam.daysBetween(local(2026, 3, 30), local(2026, 3, 28)), -2);
    EXPECT_EQ(amsterdam.daysBetween(local(2026, 3, 28, 12), local(2026, 3, 29, 11)), 0);
}

TEST(Calendar, Components) {
    Date wednesday = local(2026, 11, 18, 10, 5);
    EXPECT_EQ(amsterdam.components(wednesday), (DateComponents{2026, 11, 18, 10, 5}));
    EXPECT_EQ(amsterdam.component(CalendarComponent::weekday, wednesday), 4);
    EXPECT_EQ(amsterdam.component(CalendarComponent::month, wednesday), 11);
    EXPECT_EQ(Calendar("Asia/Tokyo", "ja_JP").components(wednesday).hour, 18);
    EXPECT_EQ(Calendar("No/Such_Zone", "en_US").components(utc(2026, 1, 1, 12)).hour, 12) << "unknown zone is GMT";
}

}  // namespace
