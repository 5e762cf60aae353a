#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Date.h"
#include "VeskNag/PlannedAlert.h"

namespace VeskNag {

struct Delivery {
    std::vector<PlannedAlert> notifications;
    std::vector<PlannedAlert> alarms;

    bool operator==(const Delivery&) const = default;
};

// A plan divided between notifications and alarms, each cut to its limit (earliest kept).
// Without alarms on this device, an alarm-level alert travels as a notification.
Delivery delivery(const std::vector<PlannedAlert>& alerts, bool alarms, int64_t notificationLimit, int64_t alarmLimit);

// The alerts with `after < fireDate <= through`, only the last of each reminder, earliest first.
std::vector<PlannedAlert> firing(const std::vector<PlannedAlert>& alerts, Date after, Date through);

}  // namespace VeskNag
