#include "VeskNag/Occurrences.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Frequency = Recurrence::Frequency;

// "2026-03-07 09:00, 2026-03-08": a date-only occurrence has no time.
std::string show(const std::vector<DateComponents>& days) {
    std::string result;
    for (const DateComponents& c : days) {
        result +=
            (result.empty() ? "" : ", ") + Text::format("%04d-%02d-%02d", int(*c.year), int(*c.month), int(*c.day));
        if (c.hour) result += Text::format(" %02d:%02d", int(*c.hour), int(*c.minute));
    }
    return result;
}

Recurrence rule(Frequency frequency, int64_t interval = 1, std::vector<int64_t> weekdays = {}, bool fromDone = false) {
    return {frequency, interval, std::move(weekdays), fromDone};
}

TEST(Occurrences, Rules) {
    const Recurrence everyOtherWeek = rule(Frequency::weekly, 2, {1, 2});
    const std::tuple<const char*, Recurrence, DateComponents, const char*, int64_t, const char*> cases[] = {
        // clang-format off
        {"every other day", rule(Frequency::daily, 2), {2026, 3, 1, 9, 0}, "2026-03-10 12:00", 2, "2026-03-11 09:00, 2026-03-13 09:00"},
        {"an interval of 0 is 1", rule(Frequency::daily, 0), {2026, 3, 1, 9, 0}, "2026-03-10 12:00", 2, "2026-03-11 09:00, 2026-03-12 09:00"},
        {"09:00 stays 09:00 over the clock change", rule(Frequency::daily), {2026, 3, 27, 9, {}}, "2026-03-28 10:00", 2,
         "2026-03-29 09:00, 2026-03-30 09:00"},
        {"every other week, weeks from Sunday", everyOtherWeek, day(2026, 3, 8), "2026-03-07 12:00", 4,
         "2026-03-08, 2026-03-09, 2026-03-22, 2026-03-23"},
        {"weekly without weekdays", rule(Frequency::weekly), {2026, 3, 4, 9, 0}, "2026-03-20 12:00", 1, "2026-03-25 09:00"},
        {"the 31st: months that have one", rule(Frequency::monthly), day(2026, 1, 31), "2026-01-30 12:00", 5,
         "2026-01-31, 2026-03-31, 2026-05-31, 2026-07-31, 2026-08-31"},
        {"29 February: leap years", rule(Frequency::yearly), day(2024, 2, 29), "2024-02-29 12:00", 1, "2028-02-29"},
        // The walk starts a period before `after`: not at the due date, nor past an occurrence.
        {"twenty years on, daily", rule(Frequency::daily), {2006, 3, 14, 9, 0}, "2026-03-14 12:00", 1, "2026-03-15 09:00"},
        {"ten years on, monthly", rule(Frequency::monthly), day(2016, 3, 14), "2026-03-14 12:00", 1, "2026-04-14"},
        {"no day, no occurrences", rule(Frequency::daily), {2026, 3, {}, {}, {}}, "2026-03-01 12:00", 3, ""},
        {"a count of 0", rule(Frequency::daily), day(2026, 3, 1), "2026-03-01 12:00", 0, ""},
        // clang-format on
    };
    for (const auto& [what, recurrence, due, after, count, expected] : cases)
        EXPECT_EQ(show(VeskNag::occurrences(recurrence, due, at(after), count, amsterdam())), expected) << what;
    const Calendar mondayFirst("Europe/Amsterdam", "en_GB");
    EXPECT_EQ(show(VeskNag::occurrences(everyOtherWeek, day(2026, 3, 8), at("2026-03-07 12:00"), 4, mondayFirst)),
              "2026-03-08, 2026-03-16, 2026-03-22, 2026-03-30")
        << "weeks from Monday";
}

TEST(Occurrences, NextDue) {
    const std::tuple<const char*, Recurrence, DateComponents, const char*, const char*> cases[] = {
        // clang-format off
        {"early: skips only the one due", rule(Frequency::daily), {2026, 3, 14, 17, 0}, "10:00", "2026-03-15 17:00"},
        {"late: skips all that passed", rule(Frequency::daily), {2026, 3, 11, 9, 0}, "10:00", "2026-03-15 09:00"},
        {"from completion, every other week", rule(Frequency::weekly, 2, {4}, true), {2026, 3, 1, 9, 0}, "2026-03-03 18:00",
         "2026-03-17 09:00"},
        {"from completion on the 31st", rule(Frequency::monthly, 1, {}, true), day(2026, 1, 31), "2026-01-31 20:00", "2026-02-28"},
        {"a due date that makes no date", rule(Frequency::daily), {int64_t{1} << 40, 1, 1, {}, {}}, "10:00", ""},
        // clang-format on
    };
    for (const auto& [what, recurrence, due, completed, expected] : cases) {
        auto next = VeskNag::nextDue(recurrence, due, at(completed), amsterdam());
        EXPECT_EQ(next ? show({*next}) : "", expected) << what;
    }
}

}  // namespace
