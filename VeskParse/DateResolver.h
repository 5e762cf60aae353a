#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskModel/NagSettings.h"

// The calendar arithmetic of one parse, relative to `now` in `calendar`.
// A "day" is DateComponents with year, month and day set and nothing else.
struct DateResolver {
    Calendar calendar;
    Date now;

    // The day that many days after today; 0 is today.
    DateComponents day(int64_t offset) const;
    // The day that far from today by the calendar's own arithmetic (month, year, ...).
    DateComponents day(CalendarComponent component, int64_t amount) const;
    // The next date with that day number, today included.
    DateComponents nextDayOfMonth(int64_t dayOfMonth) const;
    // The first of that month, this year or next; the current month is next year.
    DateComponents nextStartOfMonth(int64_t month) const;
    // Which of h:mm and (h+12):mm comes next, for an hour as written from 1 to 11.
    TimeOfDay soonest(TimeOfDay written) const;
    // Today if that time is still to come, else tomorrow.
    DateComponents nextDay(TimeOfDay time) const;
    // The first day of the list (weekday numbers 1-7) that can still be used.
    DateComponents firstDay(const std::vector<int64_t>& weekdays, std::optional<TimeOfDay> time) const;
    // The moment that far from now, with year, month, day, hour and minute set; absent
    // when it lies beyond what the calendar can represent.
    std::optional<DateComponents> adding(double seconds) const;
    // Minutes, hours, days or weeks by the unit word's prefix ("m" but not "mo", "h", "d", "w");
    // absent for any other unit and when the product overflows.
    static std::optional<double> seconds(int64_t amount, std::string_view unit);

    // hour * 60 + minute of now.
    int64_t currentMinute() const;
    // 1 Sunday ... 7 Saturday of today.
    int64_t todayWeekday() const;
    // Days from today to the next day with that weekday number: 0 for today, up to 6.
    int64_t distance(int64_t weekday) const;

    // Year, month and day set, nothing else.
    static DateComponents makeDay(std::optional<int64_t> year, std::optional<int64_t> month, std::optional<int64_t> day);

    static const std::map<std::string, int64_t>& weekdays();  // 17 names, abbreviations included
    static const std::map<std::string, int64_t>& months();    // 24 names
};
