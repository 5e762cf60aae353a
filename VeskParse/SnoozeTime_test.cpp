#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Platform/Calendar.h"
#include "VeskParse/SnoozeTime.h"

namespace {

Calendar amsterdam() { return Calendar("Europe/Amsterdam", "en_US"); }

Date at(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    return *amsterdam().date(DateComponents{year, month, day, hour, minute});
}

// Wednesday 18 November 2026, 10:00 in Amsterdam.
Date wednesday() { return at(2026, 11, 18, 10, 0); }

NagSettings settings(int64_t dateOnlyHour = 9) {
    NagSettings s;
    s.dateOnlyHour = dateOnlyHour;
    return s;
}

}  // namespace

TEST(SnoozeDuration, ReadsTheWholeTextOnly) {
    struct Case {
        std::string text;
        std::optional<double> seconds;
    };
    const std::vector<Case> cases = {
        {"in 2 hrs", 7200},
        {"90m", 5400},
        {"1 day", 86400},
        {"15m", 900},
        {"in 15 minutes", 900},
        {"in\t15 mins", 900},
        {"3d", 259200},
        {"2hours", 7200},
        {"0m", 0},
        {"1w", std::nullopt},
        {"15 M", std::nullopt},
        {"In 15m", std::nullopt},
        {"in15m", std::nullopt},
        {"15m ", std::nullopt},
        {" 15m", std::nullopt},
        {"1.5h", std::nullopt},
        {"m", std::nullopt},
        {"", std::nullopt},
        {"٣m", std::nullopt},
        {std::string(400, '9') + "m", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(SnoozeTime::duration(c.text), c.seconds);
    }
}

TEST(SnoozeResolve, ReadsDurationsAndSentences) {
    const Date now = wednesday();
    struct Case {
        std::string phrase;
        std::optional<Date> expected;
    };
    const std::vector<Case> cases = {
        {"15m", now.addingTimeInterval(900)},
        {" 15 M ", now.addingTimeInterval(900)},
        {"\tin 15 minutes\t", now.addingTimeInterval(900)},
        {"IN 2 HRS", now.addingTimeInterval(7200)},
        {"0m", now},
        {"friday", at(2026, 11, 20, 9, 0)},
        {"Friday at 3pm", at(2026, 11, 20, 15, 0)},
        {"tomorrow", at(2026, 11, 19, 9, 0)},
        {"tonight", at(2026, 11, 18, 20, 0)},
        {"at 9", at(2026, 11, 18, 21, 0)},
        {"in an hour", at(2026, 11, 18, 11, 0)},
        // A moment already gone.
        {"today at 9", std::nullopt},
        {"today", std::nullopt},
        // Understood only in part: a due date was read, but words are left unresolved.
        {"tomorrow after lunch", std::nullopt},
        {"friday next week", std::nullopt},
        // Nothing to read.
        {"1w", std::nullopt},
        {"banana", std::nullopt},
        {"", std::nullopt},
        {"   ", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.phrase);
        EXPECT_EQ(SnoozeTime::resolve(c.phrase, now, amsterdam(), settings()), c.expected);
    }
}

TEST(SnoozeResolve, DateOnlyComesBackAtTheSettingsHour) {
    EXPECT_EQ(SnoozeTime::resolve("friday", wednesday(), amsterdam(), settings(7)), at(2026, 11, 20, 7, 0));
    EXPECT_EQ(SnoozeTime::resolve("the 18th", wednesday(), amsterdam(), settings(11)), at(2026, 11, 18, 11, 0));
}

TEST(SnoozeResolve, DurationsKeepTheSecondsOfNow) {
    const Date now = wednesday().addingTimeInterval(30);
    // The duration path adds to now as it is; the sentence path works in whole minutes.
    EXPECT_EQ(SnoozeTime::resolve("in 3 hours", now, amsterdam(), settings()), now.addingTimeInterval(10800));
    EXPECT_EQ(SnoozeTime::resolve("in an hour", now, amsterdam(), settings()), at(2026, 11, 18, 11, 0));
}

TEST(SnoozeResolve, AcrossClockChanges) {
    const Calendar calendar = amsterdam();
    // Saturday 28 March 2026, 10:00 CET; clocks go from 02:00 to 03:00 the next night.
    const Date spring = at(2026, 3, 28, 10, 0);
    EXPECT_EQ(SnoozeTime::resolve("tomorrow", spring, calendar, settings()), spring.addingTimeInterval(22 * 3600));
    EXPECT_EQ(SnoozeTime::resolve("1 day", spring, calendar, settings()), spring.addingTimeInterval(86400));
    // 02:30 does not exist that night: the wall clock goes on to 03:30.
    EXPECT_EQ(SnoozeTime::resolve("sunday at 2:30am", spring, calendar, settings()), at(2026, 3, 29, 3, 30));
    EXPECT_EQ(SnoozeTime::resolve("sunday at 2:30am", spring, calendar, settings()), Date::fromUnix(1774747800));

    // Saturday 24 October 2026, 10:00 CEST; clocks go from 03:00 back to 02:00 the next night.
    const Date autumn = at(2026, 10, 24, 10, 0);
    EXPECT_EQ(SnoozeTime::resolve("tomorrow", autumn, calendar, settings()), autumn.addingTimeInterval(24 * 3600));
    // 02:30 comes twice; the first one counts (00:30 UTC).
    EXPECT_EQ(SnoozeTime::resolve("sunday at 2:30am", autumn, calendar, settings()), Date::fromUnix(1792888200));
    EXPECT_EQ(SnoozeTime::resolve("2h", at(2026, 10, 25, 1, 30), calendar, settings()), at(2026, 10, 25, 1, 30).addingTimeInterval(7200));
}

TEST(SnoozeSwipe, EightHoursAtNightElseTomorrow) {
    const Calendar calendar = amsterdam();
    struct Case {
        Date now;
        Date expected;
        bool tomorrow;
    };
    const std::vector<Case> cases = {
        {at(2026, 11, 18, 6, 59), at(2026, 11, 18, 14, 59), false},
        {at(2026, 11, 18, 0, 0), at(2026, 11, 18, 8, 0), false},
        {at(2026, 11, 18, 7, 0), at(2026, 11, 19, 9, 0), true},
        {at(2026, 11, 18, 23, 59), at(2026, 11, 19, 9, 0), true},
        {at(2026, 12, 31, 12, 0), at(2027, 1, 1, 9, 0), true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SnoozeTime::swipe(c.now, calendar, settings()), c.expected);
        EXPECT_EQ(SnoozeTime::swipeIsTomorrow(c.now, calendar), c.tomorrow);
    }
}

TEST(SnoozeSwipe, AcrossClockChanges) {
    const Calendar calendar = amsterdam();
    const Date springEve = at(2026, 3, 28, 10, 0);
    EXPECT_EQ(SnoozeTime::swipe(springEve, calendar, settings()), at(2026, 3, 29, 9, 0));
    EXPECT_EQ(SnoozeTime::swipe(springEve, calendar, settings()), springEve.addingTimeInterval(22 * 3600));
    // 02:00 does not exist on 29 March: the next existing time, 03:00 CEST (01:00 UTC).
    EXPECT_EQ(SnoozeTime::swipe(springEve, calendar, settings(2)), Date::fromUnix(1774746000));
    // Eight hours from 01:30 CET cross the gap: 10:30 CEST.
    EXPECT_EQ(SnoozeTime::swipe(at(2026, 3, 29, 1, 30), calendar, settings()), at(2026, 3, 29, 10, 30));

    const Date autumnEve = at(2026, 10, 24, 10, 0);
    EXPECT_EQ(SnoozeTime::swipe(autumnEve, calendar, settings()), autumnEve.addingTimeInterval(24 * 3600));
    // 02:00 comes twice on 25 October: the first one, 00:00 UTC.
    EXPECT_EQ(SnoozeTime::swipe(autumnEve, calendar, settings(2)), Date::fromUnix(1792886400));
}
