#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskModel/Capture.h"

// The calendar arithmetic of a recurring reminder. Occurrences are components, not
// moments: year, month and day, with the hour and minute of the due date when it has
// them, so a date-only rule stays date-only and 09:00 stays 09:00 across a clock change.
// Day counts are taken between noons, which no clock change can shift.
namespace VeskNag {

// 12:00:00 of the day of `date` (the first moment after it, should a clock change skip it).
Date noon(Date date, const Calendar& calendar);

// Calls `visit` with each occurrence in ascending order, from at most one period before
// `near` (never before `due`), until it returns false or 5000 periods have gone by.
void forEachOccurrence(const Recurrence& rule, const DateComponents& due, Date near, const Calendar& calendar,
                       const std::function<bool(const DateComponents&)>& visit);

// The first `count` occurrences after `after`: strictly after it for a rule with a time,
// after its day for a date-only rule.
std::vector<DateComponents> occurrences(const Recurrence& rule, const DateComponents& due, Date after, int64_t count,
                                        const Calendar& calendar);

// The due date after completing the occurrence due at `due` at `completedAt`.
std::optional<DateComponents> nextDue(const Recurrence& rule, const DateComponents& due, Date completedAt,
                                      const Calendar& calendar);

}  // namespace VeskNag
