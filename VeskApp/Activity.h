#pragma once

#include <mutex>
#include <optional>
#include <string>

#include "Platform/Date.h"
#include "VeskApp/Config.h"
#include "VeskApp/Store.h"
#include "VeskNag/PlanContext.h"

// This device and its signs of use: every request from `vesk`, and the desktop session
// when it says the user is there.
class Activity {
public:
    Activity(std::string name, bool relayOnly, const DeviceRecord& stored);
    // Named by the config, else by the host.
    Activity(const Config& config, const DeviceRecord& stored);

    // A sign of use at `now`.
    void touch(Date now);
    // This device as the planner sees it at `now`.
    Device me(Date now) const;
    // The record to keep in the store.
    DeviceRecord record() const;

private:
    const std::string id_;
    const std::string name_;
    const bool relayOnly_;
    mutable std::mutex lock_;
    std::optional<Date> lastActive_;
    std::optional<Date> activeSince_;
};
