#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Calendar.h"
#include "Platform/Date.h"

// Date texts in the calendar's locale and time zone.
namespace DateFormat {

// Reads `text` whole with a fixed pattern ("yyyy-MM-dd'T'HH:mm") in the POSIX locale and
// the calendar's time zone. Absent when the text does not fit the pattern.
std::optional<Date> parse(std::string_view text, std::string_view pattern, const Calendar& calendar);

// Abbreviated weekday, abbreviated month, day, hour with its am/pm mark and minute:
// "Sat, Mar 14 at 9:05 AM" in English; other locales as their own patterns write it.
std::string weekdayMonthDayTime(Date date, const Calendar& calendar);

// Abbreviated weekday, abbreviated month and day: "Sat, Mar 14" in English.
std::string weekdayMonthDay(Date date, const Calendar& calendar);

// The unit a date is told in relative to now, and how many of it: positive ahead, negative
// past. Below a day, elapsed time decides (truncated: 119 minutes are 1 hour); from a day
// up, the calendar does, counted between whole days, weeks, months or years, so 23:00
// tonight seen at 08:00 is 15 hours, and 01:00 tomorrow seen at 23:00 is 2 hours, but
// 09:00 the day after tomorrow seen at 23:00 is 2 days.
struct RelativeOffset {
    enum class Unit { year, month, week, day, hour, minute, second };
    Unit unit = Unit::second;
    int64_t value = 0;

    bool operator==(const RelativeOffset&) const = default;
};
RelativeOffset relativeOffset(Date date, Date now, const Calendar& calendar);

// "in 2 hours", "tomorrow", "5 minutes ago", "now", "next week"; other locales in ICU's
// words for the same offset.
std::string relative(Date date, Date now, const Calendar& calendar);

// ISO 8601 in UTC to the second: "2026-03-14T09:05:00Z".
std::string iso8601(Date date);

}  // namespace DateFormat
