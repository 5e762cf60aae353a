#include "Platform/Calendar.h"

#include <atomic>
#include <random>
#include <thread>

#include <gtest/gtest.h>
#include <unicode/gregocal.h>
#include <unicode/timezone.h>

namespace {

const Calendar amsterdam("Europe/Amsterdam", "en_US");

Date utc(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0) {
    return *Calendar("UTC", "en_US").date({year, month, day, hour, minute});
}

Date local(int64_t year, int64_t month, int64_t day, int64_t hour = 0, int64_t minute = 0) {
    return *amsterdam.date({year, month, day, hour, minute});
}

// Amsterdam moves its clocks from 02:00 to 03:00 on 29 March 2026 and from 03:00 back to
// 02:00 on 25 October 2026. Where `settingTime` and `startOfDay` land at such changes is
// compared with ICU below.
TEST(Calendar, WallTimesAcrossClockChanges) {
    const std::tuple<const char*, std::optional<Date>, Date> cases[] = {
        {"a time in the spring gap moves forward by the gap", local(2026, 3, 29, 2, 30), utc(2026, 3, 29, 1, 30)},
        {"a repeated autumn time is its first occurrence", local(2026, 10, 25, 2, 30), utc(2026, 10, 25, 0, 30)},
        {"adding a day keeps the wall clock over the spring change",
         amsterdam.adding(CalendarComponent::day, 1, local(2026, 3, 28, 10)), utc(2026, 3, 29, 8)},
        {"adding a day keeps the wall clock over the autumn change",
         amsterdam.adding(CalendarComponent::day, 1, local(2026, 10, 24, 10)), utc(2026, 10, 25, 9)},
        {"adding hours counts elapsed time", amsterdam.adding(CalendarComponent::hour, 2, local(2026, 3, 29, 1)),
         utc(2026, 3, 29, 2)},
        {"31 January and a month is the last of February",
         amsterdam.adding(CalendarComponent::month, 1, local(2026, 1, 31)), local(2026, 2, 28)},
    };
    for (const auto& [what, actual, expected] : cases) EXPECT_EQ(actual, expected) << what;
}

TEST(Calendar, IntervalsAcrossClockChanges) {
    EXPECT_EQ(amsterdam.interval(CalendarComponent::day, local(2026, 3, 29, 12))->duration, 23 * 3600);
    EXPECT_EQ(amsterdam.interval(CalendarComponent::day, local(2026, 10, 25, 12))->duration, 25 * 3600);
    // The second 02:30 of the autumn night (01:30 UTC) lies in an hour that starts at 01:00 UTC.
    EXPECT_EQ(amsterdam.interval(CalendarComponent::hour, utc(2026, 10, 25, 1, 30))->start, utc(2026, 10, 25, 1, 0));

    // The week starts on the locale's first weekday.
    EXPECT_EQ(amsterdam.interval(CalendarComponent::weekOfYear, local(2026, 11, 18, 10))->start, local(2026, 11, 15));
    Calendar german("Europe/Amsterdam", "de_DE");
    EXPECT_EQ(german.interval(CalendarComponent::weekOfYear, local(2026, 11, 18, 10))->start, local(2026, 11, 16));
    EXPECT_EQ(german.interval(CalendarComponent::weekOfYear, local(2026, 3, 26))->duration, 7 * 86400 - 3600);
}

TEST(Calendar, OutOfRangeAndUnknownZone) {
    EXPECT_FALSE(amsterdam.date({int64_t{1} << 40, 1, 1, {}, {}}).has_value());
    EXPECT_FALSE(amsterdam.adding(CalendarComponent::day, int64_t{1} << 40, local(2026, 1, 1)).has_value());
    EXPECT_EQ(Calendar("No/Such_Zone", "en_US").components(utc(2026, 1, 1, 12)).hour, 12) << "unknown zone is GMT";
}

// The calendar answers most questions by arithmetic on the zone's offsets; ICU's own
// lenient calendar, with the same wall-time policies, is the reference it must agree with:
// lenient dates (months 0 and 13, days -1 to 31, hours to 25), components, weekdays, day
// counts, and the clock changes of Amsterdam at 02:00 and of Santiago and São Paulo at midnight.
TEST(Calendar, AgreesWithIcuAcrossZonesAndCenturies) {
    std::mt19937_64 random(7);
    for (const char* zone : {"Europe/Amsterdam", "America/Santiago", "Asia/Kolkata", "Australia/Lord_Howe",
                             "America/Sao_Paulo", "Pacific/Apia", "UTC"}) {
        Calendar calendar(zone, "en_US");
        UErrorCode status = U_ZERO_ERROR;
        icu::GregorianCalendar icu(icu::TimeZone::createTimeZone(zone), icu::Locale("en_US"), status);
        icu.setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
        auto icuMillis = [](Date date) { return (date.seconds + Date::unixEpochOffset) * 1000; };
        auto icuSeconds = [&] { return icu.getTime(status) / 1000 - Date::unixEpochOffset; };
        for (int i = 0; i < 4000; ++i) {
            // Mostly the years around now, some far away; minutes near midnight and clock changes often.
            int64_t year = i % 10 == 0 ? 1500 + int64_t(random() % 9000) : 1990 + int64_t(random() % 60);
            DateComponents wall{year, int64_t(random() % 14), int64_t(random() % 33) - 1, int64_t(random() % 26),
                                int64_t(random() % 4) * 15 + int64_t(random() % 2) * 59};
            icu.clear();
            icu.setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
            icu.set(year, *wall.month - 1, *wall.day, *wall.hour, *wall.minute, 0);
            ASSERT_EQ(calendar.date(wall)->seconds, icuSeconds())
                << zone << " " << year << "-" << *wall.month << "-" << *wall.day << " " << *wall.hour << ":"
                << *wall.minute;
            Date moment{double(int64_t(random() % 2000000000)) - 400000000 + (i % 7) * 0.25};
            if (i % 10 == 0) moment.seconds -= 12e9;
            icu.setTime(icuMillis(moment), status);
            DateComponents expected{icu.get(UCAL_YEAR, status), icu.get(UCAL_MONTH, status) + 1,
                                    icu.get(UCAL_DATE, status), icu.get(UCAL_HOUR_OF_DAY, status),
                                    icu.get(UCAL_MINUTE, status)};
            ASSERT_EQ(calendar.components(moment), expected) << zone << " " << moment.seconds;
            ASSERT_EQ(calendar.component(CalendarComponent::weekday, moment), icu.get(UCAL_DAY_OF_WEEK, status));
            Date later{moment.seconds + double(int64_t(random() % 40000000)) - 20000000};
            // Apia skipped 30 December 2011 whole, a day that ICU's day count doesn't see.
            if (std::string(zone) != "Pacific/Apia") {
                ASSERT_EQ(calendar.daysBetween(moment, later), icu.fieldDifference(icuMillis(later), UCAL_DATE, status))
                    << zone << " " << moment.seconds << " " << later.seconds;
            }
            icu.setSkippedWallTimeOption(UCAL_WALLTIME_NEXT_VALID);
            for (int hour : {0, 2, 12}) {
                icu.setTime(icuMillis(moment), status);
                icu.set(UCAL_HOUR_OF_DAY, hour);
                icu.set(UCAL_MINUTE, 0);
                icu.set(UCAL_SECOND, 0);
                icu.set(UCAL_MILLISECOND, 0);
                const double expected = icuSeconds();
                ASSERT_EQ(calendar.settingTime(hour, 0, 0, moment)->seconds, expected) << zone << " " << moment.seconds;
                if (hour == 0) {
                    ASSERT_EQ(calendar.startOfDay(moment).seconds, expected) << zone << " " << moment.seconds;
                }
            }
        }
        ASSERT_TRUE(U_SUCCESS(status));
    }
}

// ICU builds a zone's transition rules on first use. Threads that all ask a fresh calendar at
// once must get what one thread alone gets; without the calendar's lock this crashes.
TEST(Calendar, AFreshCalendarAnswersManyThreadsAtOnce) {
    auto moment = [](int i) { return Date{1.3e9 + i * 3.1e6}; };
    std::vector<DateComponents> expected;
    for (int i = 0; i < 1000; ++i) expected.push_back(amsterdam.components(moment(i)));
    for (int round = 0; round < 20; ++round) {
        const Calendar fresh("Europe/Amsterdam", "en_US");
        std::atomic<int> wrong = 0, ready = 0;
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t)
            threads.emplace_back([&, t] {
                // All start together, so that they build the rules at the same time.
                for (++ready; ready < 8;) std::this_thread::yield();
                for (int i = t; i < 1000; i += 8) wrong += fresh.components(moment(i)) != expected[i];
            });
        for (auto& thread : threads) thread.join();
        ASSERT_EQ(wrong, 0) << "round " << round;
    }
}

}  // namespace
