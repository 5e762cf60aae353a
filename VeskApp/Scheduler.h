#pragma once

#include <optional>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskApp/Config.h"
#include "VeskApp/Store.h"
#include "VeskNag/PlanContext.h"
#include "VeskNag/PlannedAlert.h"

// What the app delivers when it wakes, and when it wakes next.
namespace Scheduler {

struct Round {
    // The alerts that came due since the last round, the latest of each reminder.
    std::vector<PlannedAlert> due;
    // Alerts up to here have been dealt with; the store keeps it.
    Date deliveredUpTo;
    // The next alert of this device, or the next local midnight when that comes first.
    Date nextWake;
};

// The round at `now`. Alerts from `data.deliveredUpTo` (exclusive) through `now` are due:
// after a suspend or a stop, what came due meanwhile goes out once, and nothing goes out
// twice. Without a `deliveredUpTo`, nothing is overdue yet.
Round round(const StoreData& data, const Config& config, const Device& me, Date now, const Calendar& calendar);

// This device's plan from `now` for `horizon` seconds.
std::vector<PlannedAlert> upcoming(const StoreData& data, const Config& config, const Device& me, Date now,
                                   const Calendar& calendar, double horizon);

}  // namespace Scheduler
