#include "VeskNag/Delivery.h"

#include <algorithm>
#include <unordered_map>

namespace VeskNag {

namespace {

void sortByDateAndKey(std::vector<PlannedAlert>& alerts) {
    std::stable_sort(alerts.begin(), alerts.end(), [](const PlannedAlert& a, const PlannedAlert& b) {
        if (a.fireDate != b.fireDate) return a.fireDate < b.fireDate;
        return a.key < b.key;
    });
}

void cut(std::vector<PlannedAlert>& alerts, int64_t limit) {
    if (limit < 0) limit = 0;
    if (alerts.size() > static_cast<uint64_t>(limit)) alerts.resize(static_cast<size_t>(limit));
}

}  // namespace

Delivery delivery(const std::vector<PlannedAlert>& alerts, bool alarms, int64_t notificationLimit, int64_t alarmLimit) {
    std::vector<PlannedAlert> sorted = alerts;
    sortByDateAndKey(sorted);
    Delivery result;
    if (!alarms) {
        result.notifications = std::move(sorted);
    } else {
        for (PlannedAlert& alert : sorted)
            (alert.level == AlertLevel::alarm ? result.alarms : result.notifications).push_back(std::move(alert));
    }
    cut(result.notifications, notificationLimit);
    cut(result.alarms, alarmLimit);
    return result;
}

std::vector<PlannedAlert> firing(const std::vector<PlannedAlert>& alerts, Date after, Date through) {
    std::vector<PlannedAlert> latest;
    std::unordered_map<std::string, size_t> slot;  // key -> its alert in `latest`
    for (const PlannedAlert& alert : alerts) {
        if (!(after < alert.fireDate && alert.fireDate <= through)) continue;
        auto [found, isNew] = slot.try_emplace(alert.key, latest.size());
        if (isNew) {
            latest.push_back(alert);
        } else if (alert.fireDate > latest[found->second].fireDate) {
            // Of equal dates the first in the input stays.
            latest[found->second] = alert;
        }
    }
    sortByDateAndKey(latest);
    return latest;
}

}  // namespace VeskNag
