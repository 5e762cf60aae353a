#include "VeskParse/DateResolver.h"

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

TEST(DateResolver, SoonestPicksTheHalfOfTheDayThatComesNext) {
    const struct { int64_t nowHour, nowMinute; TimeOfDay written, soonest; } cases[] = {
        {10, 0, {9, 0}, {21, 0}}, {8, 0, {9, 0}, {9, 0}}, {22, 0, {9, 0}, {9, 0}}, {16, 0, {3, 0}, {3, 0}},
        {0, 0, {1, 0}, {1, 0}}, {9, 30, {9, 30}, {21, 30}}, {21, 29, {9, 30}, {21, 30}}, {21, 30, {9, 30}, {9, 30}},
        {12, 59, {11, 59}, {23, 59}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(resolver(wednesday(c.nowHour, c.nowMinute)).soonest(c.written), c.soonest)
            << c.written.hour << ":" << c.written.minute << " at " << c.nowHour << ":" << c.nowMinute;
    }
}

TEST(DateResolver, DayOfMonthSkipsMonthsWithoutIt) {
    const struct { Date now; int64_t day; DateComponents next; } cases[] = {
        {wednesday(), 17, onDay(2026, 12, 17)}, {moment(2027, 2, 10, 9, 0), 30, onDay(2027, 3, 30)},
        {moment(2027, 2, 10, 9, 0), 29, onDay(2027, 3, 29)}, {moment(2028, 2, 10, 9, 0), 29, onDay(2028, 2, 29)},
        {moment(2026, 12, 20, 9, 0), 1, onDay(2027, 1, 1)},
    };
    for (const auto& c : cases) EXPECT_EQ(resolver(c.now).nextDayOfMonth(c.day), c.next) << c.day;
}

// Today is Wednesday, weekday 4, at 10:00.
TEST(DateResolver, FirstDayIsTheFirstUsableDayOfTheList) {
    const struct { std::vector<int64_t> weekdays; std::optional<TimeOfDay> time; DateComponents first; } cases[] = {
        {{4}, TimeOfDay{11, 0}, onDay(2026, 11, 18)}, {{4}, TimeOfDay{9, 0}, onDay(2026, 11, 25)},
        {{4}, TimeOfDay{10, 0}, onDay(2026, 11, 25)}, {{4}, std::nullopt, onDay(2026, 11, 18)},
        {{2, 5}, TimeOfDay{7, 0}, onDay(2026, 11, 19)}, {{3}, std::nullopt, onDay(2026, 11, 24)},
        {{}, std::nullopt, onDay(2026, 11, 18)}, {{9}, TimeOfDay{7, 0}, onDay(2026, 11, 18)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(resolver().firstDay(c.weekdays, c.time), c.first) << testing::PrintToString(c.weekdays);
    }
}

TEST(DateResolver, SecondsFollowTheUnitsPrefix) {
    const struct { int64_t amount; const char* unit; std::optional<double> seconds; } cases[] = {
        {1, "M", 60}, {2, "hrs", 7200}, {3, "Days", 259200}, {1, "w", 604800}, {-1, "h", -3600},
        {2, "months", std::nullopt}, {1, "years", std::nullopt}, {1, "", std::nullopt}, {INT64_MAX, "m", std::nullopt},
        {INT64_MIN, "w", std::nullopt}, {106751991167300, "d", 9223372036854720000.0},
    };
    for (const auto& c : cases) EXPECT_EQ(DateResolver::seconds(c.amount, c.unit), c.seconds) << c.amount << c.unit;
}

TEST(DateResolver, CalendarArithmeticFallsBackOnNow) {
    auto r = resolver();
    EXPECT_EQ(r.day(-18), onDay(2026, 10, 31));
    EXPECT_EQ(r.day(INT64_MAX), onDay(2026, 11, 18));
    EXPECT_EQ(r.day(CalendarComponent::month, 2), onDay(2027, 1, 18));
    EXPECT_EQ(r.day(CalendarComponent::year, INT64_MIN), onDay(2026, 11, 18));
    // Without wrapping: a month after 31 January is the last day of February.
    EXPECT_EQ(resolver(moment(2027, 1, 31, 12, 0)).day(CalendarComponent::month, 1), onDay(2027, 2, 28));
    EXPECT_EQ(r.adding(1200), at(2026, 11, 18, 10, 20));
    EXPECT_EQ(r.adding(9.2e18), std::nullopt);
    EXPECT_EQ(r.adding(-9.2e18), std::nullopt);
}

TEST(DateResolver, DaysCountOnTheWallClockAcrossClockChanges) {
    // Clocks go forward in the night of 28 to 29 March 2026.
    auto r = resolver(moment(2026, 3, 28, 0, 30));
    EXPECT_EQ(r.day(1), onDay(2026, 3, 29));
    EXPECT_EQ(r.day(2), onDay(2026, 3, 30));
    EXPECT_EQ(r.adding(3600), at(2026, 3, 28, 1, 30));
    EXPECT_EQ(resolver(moment(2026, 3, 29, 1, 30)).adding(3600), at(2026, 3, 29, 3, 30));
}

}  // namespace
