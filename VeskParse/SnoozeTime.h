#pragma once

#include <optional>
#include <string_view>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskModel/NagSettings.h"

// When a snoozed reminder comes back.
namespace SnoozeTime {

// "15m", "2h", "tonight", "friday at 3pm": the moment, or nothing when it can't be read
// or lies at or before now.
std::optional<Date> resolve(std::string_view phrase, Date now, const Calendar& calendar, const NagSettings& settings);
// The one-gesture snooze: eight hours at night, else dateOnlyHour tomorrow.
Date swipe(Date now, const Calendar& calendar, const NagSettings& settings);
bool swipeIsTomorrow(Date now, const Calendar& calendar);
// "in 2 hrs", "90m", "1 day": seconds.
std::optional<double> duration(std::string_view text);

}  // namespace SnoozeTime
