#include "VeskParse/DateResolver.h"

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

TEST(DateResolver, SoonestPicksTheHalfOfTheDayThatComesNext) {
    // Now, the time as written, the soonest.
    const std::tuple<TimeOfDay, TimeOfDay, TimeOfDay> cases[] = {
        // clang-format off
        {{10, 0}, {9, 0}, {21, 0}},    {{8, 0}, {9, 0}, {9, 0}},     {{22, 0}, {9, 0}, {9, 0}},
        {{9, 30}, {9, 30}, {21, 30}},  {{21, 29}, {9, 30}, {21, 30}},  {{21, 30}, {9, 30}, {9, 30}},
        // clang-format on
    };
    for (const auto& [now, written, soonest] : cases) {
        EXPECT_EQ(resolver(wednesday(now.hour, now.minute)).soonest(written), soonest)
            << written.hour << ":" << written.minute << " at " << now.hour << ":" << now.minute;
    }
}

TEST(DateResolver, DayOfMonthSkipsMonthsWithoutIt) {
    const std::tuple<Date, int64_t, DateComponents> cases[] = {
        // clang-format off
        {wednesday(), 17, onDay(2026, 12, 17)},                {moment(2027, 2, 10, 9, 0), 30, onDay(2027, 3, 30)},
        {moment(2028, 2, 10, 9, 0), 29, onDay(2028, 2, 29)},  {moment(2026, 12, 20, 9, 0), 1, onDay(2027, 1, 1)},
        // clang-format on
    };
    for (const auto& [now, day, next] : cases) EXPECT_EQ(resolver(now).nextDayOfMonth(day), next) << day;
}

// Today is Wednesday, weekday 4, at 10:00.
TEST(DateResolver, FirstDayIsTheFirstUsableDayOfTheList) {
    const std::tuple<std::vector<int64_t>, std::optional<TimeOfDay>, DateComponents> cases[] = {
        // clang-format off
        {{4}, TimeOfDay{11, 0}, onDay(2026, 11, 18)},  {{4}, TimeOfDay{9, 0}, onDay(2026, 11, 25)},
        {{4}, TimeOfDay{10, 0}, onDay(2026, 11, 25)},  {{4}, std::nullopt, onDay(2026, 11, 18)},
        {{2, 5}, TimeOfDay{7, 0}, onDay(2026, 11, 19)},  {{}, std::nullopt, onDay(2026, 11, 18)},
        // clang-format on
    };
    for (const auto& [weekdays, time, first] : cases)
        EXPECT_EQ(resolver().firstDay(weekdays, time), first) << testing::PrintToString(weekdays);
}

TEST(DateResolver, SecondsFollowTheUnitsPrefix) {
    const std::tuple<int64_t, const char*, std::optional<double>> cases[] = {
        // clang-format off
        {1, "M", 60},  {2, "hrs", 7200},  {3, "Days", 259200},  {1, "w", 604800},  {2, "months", {}},  {1, "years", {}},
        {INT64_MAX, "m", {}},  {106751991167300, "d", 9223372036854720000.0},
        // clang-format on
    };
    for (const auto& [amount, unit, seconds] : cases)
        EXPECT_EQ(DateResolver::seconds(amount, unit), seconds) << amount << unit;
}

TEST(DateResolver, CalendarArithmeticFallsBackOnNowAndCountsOnTheWallClock) {
    auto r = resolver();
    EXPECT_EQ(r.day(-18), onDay(2026, 10, 31));
    EXPECT_EQ(r.day(INT64_MAX), onDay(2026, 11, 18));
    EXPECT_EQ(r.adding(9.2e18), std::nullopt);
    // Clocks go forward in the night of 28 to 29 March 2026.
    EXPECT_EQ(resolver(moment(2026, 3, 28, 0, 30)).day(2), onDay(2026, 3, 30));
    EXPECT_EQ(resolver(moment(2026, 3, 29, 1, 30)).adding(3600), at(2026, 3, 29, 3, 30));
}
