#include "VeskParse/DateResolver.h"

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

struct SoonestCase {
    int64_t nowHour;
    int64_t nowMinute;
    TimeOfDay written;
    TimeOfDay soonest;
};

class Soonest : public testing::TestWithParam<SoonestCase> {};

TEST_P(Soonest, PicksTheHalfOfTheDayThatComesNext) {
    const auto& c = GetParam();
    EXPECT_EQ(resolver(wednesday(c.nowHour, c.nowMinute)).soonest(c.written), c.soonest);
}

INSTANTIATE_TEST_SUITE_P(
    DateResolver, Soonest,
    testing::Values(SoonestCase{10, 0, {9, 0}, {21, 0}}, SoonestCase{8, 0, {9, 0}, {9, 0}},
                    SoonestCase{22, 0, {9, 0}, {9, 0}}, SoonestCase{16, 0, {3, 0}, {3, 0}},
                    SoonestCase{0, 0, {1, 0}, {1, 0}}, SoonestCase{9, 30, {9, 30}, {21, 30}},
                    SoonestCase{21, 29, {9, 30}, {21, 30}}, SoonestCase{21, 30, {9, 30}, {9, 30}},
                    SoonestCase{12, 59, {11, 59}, {23, 59}}));

TEST(DateResolver, NextDayRollsAtTheCurrentMinute) {
    auto r = resolver(wednesday(10, 0));
    EXPECT_EQ(r.nextDay({10, 1}), onDay(2026, 11, 18));
    EXPECT_EQ(r.nextDay({10, 0}), onDay(2026, 11, 19));
    EXPECT_EQ(r.nextDay({0, 0}), onDay(2026, 11, 19));
}

struct MonthDayCase {
    Date now;
    int64_t day;
    DateComponents next;
};

class MonthDay : public testing::TestWithParam<MonthDayCase> {};

TEST_P(MonthDay, SkipsMonthsWithoutThatDay) {
    EXPECT_EQ(resolver(GetParam().now).nextDayOfMonth(GetParam().day), GetParam().next);
}

INSTANTIATE_TEST_SUITE_P(
    DateResolver, MonthDay,
    testing::Values(MonthDayCase{wednesday(), 18, onDay(2026, 11, 18)}, MonthDayCase{wednesday(), 17, onDay(2026, 12, 17)},
                    MonthDayCase{wednesday(), 31, onDay(2026, 12, 31)}, MonthDayCase{wednesday(), 5, onDay(2026, 12, 5)},
                    MonthDayCase{moment(2027, 2, 10, 9, 0), 30, onDay(2027, 3, 30)},
                    MonthDayCase{moment(2027, 2, 10, 9, 0), 29, onDay(2027, 3, 29)},
                    MonthDayCase{moment(2028, 2, 10, 9, 0), 29, onDay(2028, 2, 29)},
                    MonthDayCase{moment(2026, 12, 20, 9, 0), 1, onDay(2027, 1, 1)}));

TEST(DateResolver, MonthStartsThisYearOrNext) {
    auto r = resolver();
    EXPECT_EQ(r.nextStartOfMonth(12), onDay(2026, 12, 1));
    EXPECT_EQ(r.nextStartOfMonth(11), onDay(2027, 11, 1));
    EXPECT_EQ(r.nextStartOfMonth(3), onDay(2027, 3, 1));
}

struct FirstDayCase {
    std::vector<int64_t> weekdays;
    std::optional<TimeOfDay> time;
    DateComponents first;
};

class FirstDay : public testing::TestWithParam<FirstDayCase> {};

TEST_P(FirstDay, IsTheFirstUsableDayOfTheList) {
    EXPECT_EQ(resolver().firstDay(GetParam().weekdays, GetParam().time), GetParam().first);
}

// Today is Wednesday, weekday 4, at 10:00.
INSTANTIATE_TEST_SUITE_P(
    DateResolver, FirstDay,
    testing::Values(FirstDayCase{{4}, TimeOfDay{11, 0}, onDay(2026, 11, 18)},
                    FirstDayCase{{4}, TimeOfDay{9, 0}, onDay(2026, 11, 25)},
                    FirstDayCase{{4}, TimeOfDay{10, 0}, onDay(2026, 11, 25)},
                    FirstDayCase{{4}, std::nullopt, onDay(2026, 11, 18)},
                    FirstDayCase{{2, 5}, TimeOfDay{7, 0}, onDay(2026, 11, 19)},
                    FirstDayCase{{3}, std::nullopt, onDay(2026, 11, 24)},
                    FirstDayCase{{}, std::nullopt, onDay(2026, 11, 18)},
                    FirstDayCase{{9}, TimeOfDay{7, 0}, onDay(2026, 11, 18)}));

struct SecondsCase {
    int64_t amount;
    const char* unit;
    std::optional<double> seconds;
};

class Seconds : public testing::TestWithParam<SecondsCase> {};

TEST_P(Seconds, FollowTheUnitsPrefix) {
    EXPECT_EQ(DateResolver::seconds(GetParam().amount, GetParam().unit), GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(
    DateResolver, Seconds,
    testing::Values(SecondsCase{15, "minutes", 900}, SecondsCase{1, "M", 60}, SecondsCase{2, "hrs", 7200},
                    SecondsCase{3, "Days", 259200}, SecondsCase{1, "w", 604800}, SecondsCase{-1, "h", -3600},
                    SecondsCase{2, "months", std::nullopt}, SecondsCase{2, "mo", std::nullopt},
                    SecondsCase{1, "years", std::nullopt}, SecondsCase{1, "", std::nullopt},
                    SecondsCase{INT64_MAX, "m", std::nullopt}, SecondsCase{INT64_MIN, "w", std::nullopt},
                    SecondsCase{106751991167300, "d", 9223372036854720000.0}));

TEST(DateResolver, CalendarArithmeticFallsBackOnNow) {
    auto r = resolver();
    EXPECT_EQ(r.day(0), onDay(2026, 11, 18));
    EXPECT_EQ(r.day(-18), onDay(2026, 10, 31));
    EXPECT_EQ(r.day(INT64_MAX), onDay(2026, 11, 18));
    EXPECT_EQ(r.day(CalendarComponent::month, 2), onDay(2027, 1, 18));
    EXPECT_EQ(r.day(CalendarComponent::year, INT64_MIN), onDay(2026, 11, 18));
    // Without wrapping: a month after 31 January is the last day of February.
    EXPECT_EQ(resolver(moment(2027, 1, 31, 12, 0)).day(CalendarComponent::month, 1), onDay(2027, 2, 28));
}

TEST(DateResolver, DaysCountOnTheWallClockAcrossClockChanges) {
    // Clocks go forward in the night of 28 to 29 March 2026.
    auto r = resolver(moment(2026, 3, 28, 0, 30));
    EXPECT_EQ(r.day(1), onDay(2026, 3, 29));
    EXPECT_EQ(r.day(2), onDay(2026, 3, 30));
    EXPECT_EQ(r.adding(3600), at(2026, 3, 28, 1, 30));
    EXPECT_EQ(resolver(moment(2026, 3, 29, 1, 30)).adding(3600), at(2026, 3, 29, 3, 30));
}

TEST(DateResolver, AddingBeyondTheCalendarIsAbsent) {
    auto r = resolver();
    EXPECT_EQ(r.adding(1200), at(2026, 11, 18, 10, 20));
    EXPECT_EQ(r.adding(9.2e18), std::nullopt);
    EXPECT_EQ(r.adding(-9.2e18), std::nullopt);
}

TEST(DateResolver, Tables) {
    EXPECT_EQ(DateResolver::weekdays().size(), 17u);
    EXPECT_EQ(DateResolver::months().size(), 24u);
    EXPECT_EQ(DateResolver::weekdays().at("thurs"), 5);
    EXPECT_EQ(DateResolver::months().at("sept"), 9);
    EXPECT_EQ(DateResolver::months().count("may"), 1u);
    EXPECT_EQ(resolver().todayWeekday(), 4);
    EXPECT_EQ(resolver().distance(4), 0);
    EXPECT_EQ(resolver().distance(3), 6);
}

}  // namespace
