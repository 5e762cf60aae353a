#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "VeskNag/PlannedAlert.h"

struct sd_bus;

// Desktop notifications over D-Bus (the freedesktop Notifications interface on the
// session bus). A reminder's new alert replaces its previous notification. Runs on the
// thread of the app's loop, which hands it the bus's descriptor to watch.
class Notifier {
public:
    enum class Action { done, snooze };
    using OnAction = std::function<void(const std::string& key, Action action)>;

    explicit Notifier(OnAction onAction);
    ~Notifier();
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;

    // Connects to the session bus and watches for a notification server; false when there
    // is no bus (said once on standard error).
    bool connect();

    // What the loop watches: the bus's descriptor (-1 without a bus), the poll events it
    // wants, and when (CLOCK_MONOTONIC, microseconds) it wants to be called regardless.
    int descriptor() const;
    uint32_t events() const;
    uint64_t deadline() const;
    // Handles everything the bus has for us: replies, actions, the server coming and going.
    void process();

    // Whether a notification server is there to show anything.
    bool available() const { return serverPresent_; }

    // Shows an alert: the title, `body` under it, urgency by level, a sound for alarms, and
    // Done and Snooze (labelled `snoozeLabel`) actions.
    void show(const PlannedAlert& alert, const std::string& body, const std::string& snoozeLabel);

private:
    friend struct NotifierCallbacks;  // the bus's callbacks, in Notifier.cpp

    OnAction onAction_;
    sd_bus* bus_ = nullptr;
    bool serverPresent_ = false;
    bool saidMissing_ = false;
    std::map<std::string, uint32_t> shown_;       // reminder key -> its notification
    std::map<uint32_t, std::string> reminderOf_;  // notification -> reminder key
};
