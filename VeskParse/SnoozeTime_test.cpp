#include "VeskParse/SnoozeTime.h"

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

std::optional<Date> resolve(const std::string& phrase, Date now = wednesday(), int64_t dateOnlyHour = 9) {
    return SnoozeTime::resolve(phrase, now, amsterdam(), {.dateOnlyHour = dateOnlyHour});
}

Date swipe(Date now, int64_t dateOnlyHour = 9) {
    return SnoozeTime::swipe(now, amsterdam(), {.dateOnlyHour = dateOnlyHour});
}

TEST(SnoozeTime, ResolveReadsDurationsAndSentences) {
    const Date now = wednesday();
    const std::pair<std::string, std::optional<Date>> cases[] = {
        // clang-format off
        // A duration is read trimmed and lowercased, as a whole, and counts even when it is no later than now.
        {" 15 M ", now.addingTimeInterval(900)},  {"0m", now},  {"in 2 hrs", now.addingTimeInterval(7200)},
        {"1 day", now.addingTimeInterval(86400)},  {"1w", {}},  {"1.5h", {}},  {"٣m", {}},
        {std::string(400, '9') + "m", {}},
        {std::string(305, '9') + "d", {}},  // a number that reads, but that no unit can multiply
        // A moment already gone; a due date read, but words left unresolved; nothing to read.
        {"today at 9", {}},  {"tomorrow after lunch", {}},  {"banana", {}},
        // clang-format on
    };
    for (const auto& [phrase, expected] : cases) EXPECT_EQ(resolve(phrase), expected) << phrase;

    // A date without an hour comes back at the settings' hour.
    EXPECT_EQ(resolve("friday", now, 7), moment(2026, 11, 20, 7, 0));
    EXPECT_EQ(resolve("the 18th", now, 11), moment(2026, 11, 18, 11, 0));
    // The duration path adds to now as it is; the sentence path works in whole minutes.
    const Date late = now.addingTimeInterval(30);
    EXPECT_EQ(resolve("in 3 hours", late), late.addingTimeInterval(10800));
    EXPECT_EQ(resolve("in an hour", late), moment(2026, 11, 18, 11, 0));
}

TEST(SnoozeTime, SwipeIsEightHoursAtNightElseTomorrow) {
    const std::tuple<Date, Date, bool> cases[] = {
        {moment(2026, 11, 18, 6, 59), moment(2026, 11, 18, 14, 59), false},
        {moment(2026, 11, 18, 7, 0), moment(2026, 11, 19, 9, 0), true},
    };
    for (const auto& [now, expected, tomorrow] : cases) {
        EXPECT_EQ(swipe(now), expected) << now.seconds;
        EXPECT_EQ(SnoozeTime::swipeIsTomorrow(now, amsterdam()), tomorrow) << now.seconds;
    }
}

TEST(SnoozeTime, AcrossClockChanges) {
    // Saturday 28 March 2026, 10:00 CET; clocks go from 02:00 to 03:00 the next night.
    const Date spring = moment(2026, 3, 28, 10, 0);
    EXPECT_EQ(resolve("tomorrow", spring), spring.addingTimeInterval(22 * 3600));
    EXPECT_EQ(resolve("1 day", spring), spring.addingTimeInterval(86400));
    EXPECT_EQ(swipe(spring), spring.addingTimeInterval(22 * 3600));
    // The settings' hour, 02:00, does not exist that night: the next existing time, 03:00 CEST (01:00 UTC).
    EXPECT_EQ(swipe(spring, 2), Date::fromUnix(1774746000));
    // Eight hours from 01:30 CET cross the gap: 10:30 CEST.
    EXPECT_EQ(swipe(moment(2026, 3, 29, 1, 30)), moment(2026, 3, 29, 10, 30));
}

}  // namespace
