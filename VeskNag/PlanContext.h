#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskModel/Capture.h"
#include "VeskModel/NagSettings.h"

// A reminder as the planner sees it. Built with designated initializers; key, title,
// isCompleted, style and firstSeen must be given, everything else may be left absent
// (the `= {}` lets a designated initializer leave it out).
struct NagItem {
    std::string key;  // stable across plans and devices
    std::string title;
    std::optional<DateComponents> due = {};  // date-only without an hour
    bool isCompleted = false;
    Style style;
    std::optional<PlaceTrigger> trigger = {};
    std::optional<Date> triggeredAt = {};
    std::optional<std::string> gate = {};  // place key at which alone it applies
    std::optional<DeviceGate> deviceGate = {};
    std::optional<StartReminding> startReminding = {};
    std::optional<Date> snoozedUntil = {};
    Date firstSeen;
    std::optional<Recurrence> recurrence = {};
    std::optional<int64_t> hideDaysBefore = {};

    bool operator==(const NagItem&) const = default;
};

// One device of the user.
struct Device {
    enum class Kind { phone, mac };

    std::string id;  // breaks ties in the election
    Kind kind = Kind::mac;
    std::string name;        // what a DeviceGate::named is matched against
    bool relayOnly = false;  // takes no part in alerting
    std::optional<Date> lastActive = {};
    std::map<std::string, Date> places = {};  // carried for the app; the planner doesn't read it
    std::optional<Date> activeSince = {};     // start of the current stretch of activity

    bool operator==(const Device&) const = default;
};

const char* rawValue(Device::Kind kind);  // "phone", "mac"

// All inputs of one planning run. No operation of the planner reads a clock, the
// environment or the machine's zone: everything comes in here.
struct PlanContext {
    Date now;
    Calendar calendar;
    NagSettings settings;
    Device me;
    std::vector<Device> devices;         // `me` can be elected only if it is among them
    std::map<std::string, bool> inside;  // by place key; missing is not inside
    std::map<std::string, Date> arrivedAt;
    double horizon;       // seconds past `now` that a plan reaches
    int64_t limit;        // most alerts in a plan
    double activeWindow;  // seconds a device counts as active after its last sign of use

    static constexpr double defaultActiveWindow = 300;

    // Whether `device` is active at `date`: used within the window before `now`, and
    // `date` within the window after that use.
    bool isActive(const Device& device, Date date) const;
    // Of the devices that aren't relay-only and are active at `date`, the one used last;
    // on equal use the smaller id.
    std::optional<Device> activeDevice(Date at) const;
};
