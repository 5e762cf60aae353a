#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/Date.h"

#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class Calendar;
class BasicTimeZone;
U_NAMESPACE_END

enum class CalendarComponent { year, month, day, hour, minute, second, weekday, weekOfYear };

// A Gregorian calendar with a time zone and a locale. It is lenient: 31 April is 1 May.
// A value type: copies are independent, and one instance may be used from several
// threads at once.
//
// Wall times that a clock change skips or repeats follow one policy throughout: a skipped
// wall time moves forward by the length of the gap, a repeated one is its first occurrence;
// only `startOfDay` and `settingTime` take the first moment after a gap instead.
class Calendar {
public:
    // `timeZone` is an Olson id such as "Europe/Amsterdam"; an unknown id gives GMT.
    // `locale` is an ICU locale id such as "en_US"; it decides the first weekday.
    Calendar(const std::string& timeZone, const std::string& locale);
    Calendar(const Calendar& other);
    Calendar& operator=(const Calendar& other);
    Calendar(Calendar&& other) noexcept;
    Calendar& operator=(Calendar&& other) noexcept;
    ~Calendar();

    // The user's current calendar: zone from TZ (else the machine's), locale from
    // LC_ALL, LC_TIME or LANG. Only program entries call this.
    static Calendar current();

    std::string timeZoneId() const;
    std::string localeId() const;
    int firstWeekday() const;  // 1 Sunday ... 7 Saturday

    Date startOfDay(Date date) const;

    // Adds `value` of `component` without wrapping: 31 January + 1 month = 28/29 February.
    // Days, weeks, months and years keep the wall clock; hours, minutes and seconds count
    // elapsed time. Absent when the result can't be represented.
    std::optional<Date> adding(CalendarComponent component, int64_t value, Date date) const;

    // year, month, day, hour and minute of `date`.
    DateComponents components(Date date) const;
    // One field: weekday is 1 (Sunday) to 7, month is 1 to 12.
    int64_t component(CalendarComponent component, Date date) const;

    // Lenient: 31 April comes out as 1 May. A missing year, month or day counts as 1, a
    // missing hour or minute as 0. A wall time in a spring-forward gap moves forward by
    // the gap; a repeated wall time takes its first occurrence. Absent when out of range.
    std::optional<Date> date(const DateComponents& components) const;

    struct Interval {
        Date start;
        double duration = 0;
        bool operator==(const Interval&) const = default;
    };
    // The hour, day or week (first weekday of the locale) that contains `date`. An hour is
    // an hour of elapsed time, also the second of two hours with the same wall clock.
    std::optional<Interval> interval(CalendarComponent unit, Date date) const;

    // `hour`:`minute`:`second` on the day of `date`. A time in a gap gives the first
    // moment after it; a repeated time gives its first occurrence. Absent when impossible.
    std::optional<Date> settingTime(int hour, int minute, int second, Date date) const;

    // Whole calendar days from `from` to `to`, as a wall clock counts them: the largest
    // count of days that, added to `from`, doesn't pass `to` (toward zero when negative).
    int64_t daysBetween(Date from, Date to) const;

private:
    // The wall clock at a moment: days since 1970-01-01 and milliseconds into that day.
    struct Wall {
        int64_t day = 0;
        double millisecond = 0;
    };
    // Arithmetic on the zone's offsets serves Gregorian dates from 1583 to 9999; other
    // dates, and wall times in a gap where that needs care, go to the ICU calendar.
    std::optional<Wall> wall(Date date) const;
    std::optional<Date> fromWall(double wallMillisecond, bool nextValidInGap) const;
    // The zone's offset in milliseconds at a moment, from a small cache of the stretches
    // between the zone's transitions that this thread last asked about.
    std::optional<int32_t> offsetAt(double udate) const;

    std::unique_ptr<icu::Calendar> calendar_;
    const icu::BasicTimeZone* zone_ = nullptr;  // owned by calendar_; null when not a BasicTimeZone
    uint64_t zoneKey_ = 0;  // names this zone in the offset cache; copies share it, it is never reused
    std::string locale_;
    mutable std::mutex lock_;  // guards calendar_, whose every operation changes its state
};
