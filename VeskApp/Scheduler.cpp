#include "VeskApp/Scheduler.h"

#include <algorithm>

#include "VeskApp/Planning.h"
#include "VeskNag/Delivery.h"
#include "VeskNag/Series.h"

namespace Scheduler {

namespace {

constexpr int64_t noLimit = int64_t{1} << 40;

// The alerts of (from, through]. A grid holds 500 points from its start, so after a long
// stop the plan from `from` may end before `through`; the plan of the last day adds the
// latest points of every grid with a step above three minutes.
std::vector<PlannedAlert> missed(const StoreData& data, const std::vector<NagItem>& items, const Device& me, Date from,
                                 Date through, const Calendar& calendar) {
    std::vector<Date> starts{from};
    if (through.timeIntervalSince(from) > 86400) starts.push_back(through.addingTimeInterval(-86400));
    std::vector<PlannedAlert> alerts;
    for (Date start : starts) {
        auto context = Planning::context(data, me, start, calendar, through.timeIntervalSince(start), noLimit);
        auto plan = VeskNag::plan(items, context);
        alerts.insert(alerts.end(), plan.begin(), plan.end());
    }
    return VeskNag::firing(alerts, from, through);
}

}  // namespace

std::vector<PlannedAlert> upcoming(const StoreData& data, const Config& config, const Device& me, Date now,
                                   const Calendar& calendar, double horizon) {
    return VeskNag::plan(Planning::items(data, config), Planning::context(data, me, now, calendar, horizon));
}

Round round(const StoreData& data, const Config& config, const Device& me, Date now, const Calendar& calendar) {
    const std::vector<NagItem> items = Planning::items(data, config);
    const Date from = data.deliveredUpTo.value_or(now);
    Round round;
    // A clock set back doesn't deliver again what already went out.
    round.deliveredUpTo = std::max(from, now);
    if (now > from) round.due = missed(data, items, me, from, now, calendar);

    const Date tomorrow = calendar.startOfDay(now).addingTimeInterval(36 * 3600);
    round.nextWake = calendar.startOfDay(tomorrow);
    for (const PlannedAlert& alert : VeskNag::plan(items, Planning::context(data, me, now, calendar))) {
        if (alert.fireDate > round.deliveredUpTo) {
            round.nextWake = std::min(round.nextWake, alert.fireDate);
            break;
        }
    }
    return round;
}

}  // namespace Scheduler
