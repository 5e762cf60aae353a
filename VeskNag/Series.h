#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskNag/PlanContext.h"
#include "VeskNag/PlannedAlert.h"

// When a reminder alerts: its anchor, its series of alerts, the spreading of alerts that
// share a minute, and the plan of one device.
namespace VeskNag {

// The top of the hour after `after`; a date exactly on the hour stays.
Date nextHour(Date after, const Calendar& calendar);

// The moment an item starts to count, from time alone: due date (or the hour after it
// was first seen), an earlier start, a fired place trigger, a snooze. Absent while a
// trigger waits or when the due date makes no date.
std::optional<Date> timeAnchor(const NagItem& item, const PlanContext& context);

// The time anchor held back by a place gate until the user is there, and moved up to
// the arrival when the user came later.
std::optional<Date> anchor(const NagItem& item, const PlanContext& context);

// Every alert of one item from `now` to `now + horizon`, by its style.
std::vector<PlannedAlert> series(const NagItem& item, const PlanContext& context);

// Alerts of several reminders that fall in one minute spread apart by the stagger, in an
// order that changes from day to day. Only dates change; the order of the list stays.
std::vector<PlannedAlert> staggered(std::vector<PlannedAlert> alerts, const PlanContext& context);

// This device's share of all alerts, earliest first, cut to the context's limit.
std::vector<PlannedAlert> plan(const std::vector<NagItem>& items, const PlanContext& context);

// An alert of a series without its item's key and title, which `plan` looks up only for
// the alerts it keeps.
struct SeriesPoint {
    Date fireDate;
    AlertLevel level = AlertLevel::notification;
    int64_t ordinal = 0;
    uint32_t item = 0;  // index into the items being planned
};

void appendSeries(const NagItem& item, const PlanContext& context, std::vector<SeriesPoint>& points);

}  // namespace VeskNag
