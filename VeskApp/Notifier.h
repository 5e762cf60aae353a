#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "VeskApp/Bus.h"
#include "VeskNag/PlannedAlert.h"

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
    // is no bus (said once on standard error, however often it is tried).
    bool connect();
    bool connected() const { return bus_.isOpen(); }

    // The connection the loop watches.
    Bus& bus() { return bus_; }
    // Handles everything the bus has for us: replies, actions, the server coming and going.
    void process();

    // Whether a notification server is there to show anything.
    bool available() const { return serverPresent_; }

    // Shows an alert: the title, `body` under it, urgency by level, a sound for alarms, and
    // Done and Snooze (labelled `snoozeLabel`) actions.
    void show(const PlannedAlert& alert, const std::string& body, const std::string& snoozeLabel);

    // Takes away the notifications of every reminder but those of `keys`: the ones done,
    // deleted or put off meanwhile have nothing left to say.
    void withdrawAllBut(const std::set<std::string>& keys);
    bool showsAnything() const { return !shown_.empty(); }

private:
    void forget();

    friend struct NotifierCallbacks;  // the bus's callbacks, in Notifier.cpp

    OnAction onAction_;
    Bus bus_;
    bool serverPresent_ = false;
    bool saidMissing_ = false;
    bool saidNoBus_ = false;
    std::map<std::string, uint32_t> shown_;       // reminder key -> its notification
    std::map<uint32_t, std::string> reminderOf_;  // notification -> reminder key
};
