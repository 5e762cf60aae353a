#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Date.h"
#include "Platform/Uuid.h"
#include "VeskModel/Capture.h"
#include "VeskModel/NagSettings.h"

// One alert of a plan. The ordinal is the alert's place on its series' grid, so an alert
// keeps its id from plan to plan while the anchor stays.
struct PlannedAlert {
    std::string key;
    std::string title;
    Date fireDate;
    AlertLevel level = AlertLevel::notification;
    int64_t ordinal = 0;
    std::optional<DeviceGate> deviceGate;

    bool operator==(const PlannedAlert&) const = default;

    // "call-dentist#3"
    std::string id() const;
    // Derived from `id` alone: the same on every device and in every run.
    Uuid alarmID() const;
};
