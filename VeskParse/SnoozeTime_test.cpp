#include "VeskParse/SnoozeTime.h"

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

NagSettings settings(int64_t dateOnlyHour) {
    NagSettings settings;
    settings.dateOnlyHour = dateOnlyHour;
    return settings;
}

std::optional<Date> resolve(const std::string& phrase, Date now = wednesday(), int64_t dateOnlyHour = 9) {
    return SnoozeTime::resolve(phrase, now, amsterdam(), settings(dateOnlyHour));
}

Date swipe(Date now, int64_t dateOnlyHour = 9) { return SnoozeTime::swipe(now, amsterdam(), settings(dateOnlyHour)); }

TEST(SnoozeTime, DurationReadsTheWholeTextOnly) {
    const struct { std::string text; std::optional<double> seconds; } cases[] = {
        {"in 2 hrs", 7200}, {"90m", 5400}, {"1 day", 86400}, {"in\t15 mins", 900}, {"2hours", 7200}, {"0m", 0},
        {"1w", std::nullopt}, {"15 M", std::nullopt}, {"in15m", std::nullopt}, {" 15m", std::nullopt},
        {"1.5h", std::nullopt}, {"", std::nullopt}, {"٣m", std::nullopt}, {std::string(400, '9') + "m", std::nullopt},
        // A number that reads, but that no unit can multiply.
        {std::string(305, '9') + "d", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(SnoozeTime::duration(c.text), c.seconds) << c.text;
}

TEST(SnoozeTime, ResolveReadsDurationsAndSentences) {
    const Date now = wednesday();
    const struct { std::string phrase; std::optional<Date> expected; } cases[] = {
        // A duration is read trimmed and lowercased, and counts even when it is no later than now.
        {" 15 M ", now.addingTimeInterval(900)}, {"0m", now}, {"friday", moment(2026, 11, 20, 9, 0)},
        {"Friday at 3pm", moment(2026, 11, 20, 15, 0)}, {"in an hour", moment(2026, 11, 18, 11, 0)},
        // A moment already gone.
        {"today at 9", std::nullopt}, {"today", std::nullopt},
        // Understood only in part: a due date was read, but words are left unresolved.
        {"tomorrow after lunch", std::nullopt},
        // Nothing to read.
        {"1w", std::nullopt}, {"banana", std::nullopt}, {"   ", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(resolve(c.phrase), c.expected) << c.phrase;

    // A date without an hour comes back at the settings' hour.
    EXPECT_EQ(resolve("friday", now, 7), moment(2026, 11, 20, 7, 0));
    EXPECT_EQ(resolve("the 18th", now, 11), moment(2026, 11, 18, 11, 0));
    // The duration path adds to now as it is; the sentence path works in whole minutes.
    const Date late = now.addingTimeInterval(30);
    EXPECT_EQ(resolve("in 3 hours", late), late.addingTimeInterval(10800));
    EXPECT_EQ(resolve("in an hour", late), moment(2026, 11, 18, 11, 0));
}

TEST(SnoozeTime, SwipeIsEightHoursAtNightElseTomorrow) {
    const struct { Date now; Date expected; bool tomorrow; } cases[] = {
        {moment(2026, 11, 18, 6, 59), moment(2026, 11, 18, 14, 59), false},
        {moment(2026, 11, 18, 0, 0), moment(2026, 11, 18, 8, 0), false},
        {moment(2026, 11, 18, 7, 0), moment(2026, 11, 19, 9, 0), true},
        {moment(2026, 11, 18, 23, 59), moment(2026, 11, 19, 9, 0), true},
        {moment(2026, 12, 31, 12, 0), moment(2027, 1, 1, 9, 0), true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(swipe(c.now), c.expected) << c.now.seconds;
        EXPECT_EQ(SnoozeTime::swipeIsTomorrow(c.now, amsterdam()), c.tomorrow) << c.now.seconds;
    }
}

TEST(SnoozeTime, AcrossClockChanges) {
    // Saturday 28 March 2026, 10:00 CET; clocks go from 02:00 to 03:00 the next night.
    const Date spring = moment(2026, 3, 28, 10, 0);
    EXPECT_EQ(resolve("tomorrow", spring), spring.addingTimeInterval(22 * 3600));
    EXPECT_EQ(resolve("1 day", spring), spring.addingTimeInterval(86400));
    EXPECT_EQ(swipe(spring), spring.addingTimeInterval(22 * 3600));
    // 02:30 does not exist that night: the wall clock goes on to 03:30 CEST.
    EXPECT_EQ(resolve("sunday at 2:30am", spring), Date::fromUnix(1774747800));
    // Nor does 02:00: the next existing time, 03:00 CEST (01:00 UTC).
    EXPECT_EQ(swipe(spring, 2), Date::fromUnix(1774746000));
    // Eight hours from 01:30 CET cross the gap: 10:30 CEST.
    EXPECT_EQ(swipe(moment(2026, 3, 29, 1, 30)), moment(2026, 3, 29, 10, 30));

    // Saturday 24 October 2026, 10:00 CEST; clocks go from 03:00 back to 02:00 the next night.
    const Date autumn = moment(2026, 10, 24, 10, 0);
    EXPECT_EQ(resolve("tomorrow", autumn), autumn.addingTimeInterval(24 * 3600));
    EXPECT_EQ(swipe(autumn), autumn.addingTimeInterval(24 * 3600));
    // 02:30 and 02:00 come twice; the first one counts (00:30 and 00:00 UTC).
    EXPECT_EQ(resolve("sunday at 2:30am", autumn), Date::fromUnix(1792888200));
    EXPECT_EQ(swipe(autumn, 2), Date::fromUnix(1792886400));
    EXPECT_EQ(resolve("2h", moment(2026, 10, 25, 1, 30)), moment(2026, 10, 25, 1, 30).addingTimeInterval(7200));
}

}  // namespace
