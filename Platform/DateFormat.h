#pragma once

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

}  // namespace DateFormat
