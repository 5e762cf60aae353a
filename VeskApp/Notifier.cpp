#include "VeskApp/Notifier.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>

#include <systemd/sd-bus.h>

namespace {

const char* const service = "org.freedesktop.Notifications";
const char* const objectPath = "/org/freedesktop/Notifications";

// The urgency hint of a notification: 1 normal, 2 critical.
uint8_t urgency(AlertLevel level) { return level == AlertLevel::notification ? 1 : 2; }

// Whether the bus starts a server on the first call for its name, as it does for the
// servers of many desktops: such a server owns no name until something is shown.
bool startable(sd_bus* bus) {
    sd_bus_message* reply = nullptr;
    char** names = nullptr;
    if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                           "ListActivatableNames", nullptr, &reply, "") >= 0)
        sd_bus_message_read_strv(reply, &names);
    sd_bus_message_unref(reply);
    bool found = false;
    for (char** name = names; name && *name; ++name) {
        found = found || std::strcmp(*name, service) == 0;
        free(*name);
    }
    free(names);
    return found;
}

// A key of each reply in flight, so that the id the server gives comes back to its reminder.
struct Pending {
    Notifier* notifier;
    std::string key;
};

}  // namespace

struct NotifierCallbacks {
    static int onReply(sd_bus_message* message, void* pending, sd_bus_error* error);
    static int onSignal(sd_bus_message* message, void* notifier, sd_bus_error* error);
};

namespace {
const auto onReply = NotifierCallbacks::onReply;
const auto onSignal = NotifierCallbacks::onSignal;
}  // namespace

Notifier::Notifier(OnAction onAction) : onAction_(std::move(onAction)) {}

Notifier::~Notifier() = default;

bool Notifier::connect() {
    if (!bus_.open(Bus::Kind::session)) {
        if (!saidNoBus_) std::cerr << "vesk-app: no session bus, so no desktop notifications\n";
        saidNoBus_ = true;
        return false;
    }
    saidNoBus_ = false;
    sd_bus* bus = bus_.get();
    sd_bus_add_match(bus, nullptr,
                     "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
                     "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='org.freedesktop.Notifications'",
                     onSignal, this);
    sd_bus_match_signal(bus, nullptr, nullptr, objectPath, service, "ActionInvoked", onSignal, this);
    sd_bus_match_signal(bus, nullptr, nullptr, objectPath, service, "NotificationClosed", onSignal, this);

    sd_bus_message* reply = nullptr;
    int has = 0;
    if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                           nullptr, &reply, "s", service) >= 0)
        sd_bus_message_read(reply, "b", &has);
    sd_bus_message_unref(reply);
    serverPresent_ = has != 0 || startable(bus);
    if (!serverPresent_) {
        std::cerr << "vesk-app: no notification server on the session bus yet\n";
        saidMissing_ = true;
    }
    return true;
}

void Notifier::process() {
    if (bus_.isOpen() && !bus_.process()) {
        std::cerr << "vesk-app: the session bus went away\n";
        forget();
    }
}

void Notifier::forget() {
    serverPresent_ = false;
    shown_.clear();
    reminderOf_.clear();
}

void Notifier::withdrawAllBut(const std::set<std::string>& keys) {
    for (auto shown = shown_.begin(); shown != shown_.end();) {
        if (keys.count(shown->first)) {
            ++shown;
            continue;
        }
        if (bus_.isOpen())
            sd_bus_call_method_async(bus_.get(), nullptr, service, objectPath, service, "CloseNotification", nullptr,
                                     nullptr, "u", shown->second);
        reminderOf_.erase(shown->second);
        shown = shown_.erase(shown);
    }
}

void Notifier::show(const PlannedAlert& alert, const std::string& body, const std::string& snoozeLabel) {
    sd_bus* bus = bus_.get();
    if (!bus || (!serverPresent_ && !startable(bus))) {
        if (!saidMissing_) std::cerr << "vesk-app: no notification server; alerts are not shown\n";
        saidMissing_ = true;
        return;
    }
    auto replaces = shown_.find(alert.key);
    sd_bus_message* call = nullptr;
    bool ok = sd_bus_message_new_method_call(bus, &call, service, objectPath, service, "Notify") >= 0 &&
              sd_bus_message_append(call, "susss", "Vesk", replaces == shown_.end() ? 0u : replaces->second, "",
                                    alert.title.c_str(), body.c_str()) >= 0 &&
              sd_bus_message_append(call, "as", 4, "done", "Done", "snooze", snoozeLabel.c_str()) >= 0 &&
              sd_bus_message_open_container(call, 'a', "{sv}") >= 0 &&
              sd_bus_message_append(call, "{sv}", "urgency", "y", urgency(alert.level)) >= 0 &&
              (alert.level != AlertLevel::alarm ||
               sd_bus_message_append(call, "{sv}", "sound-name", "s", "alarm-clock-elapsed") >= 0) &&
              sd_bus_message_close_container(call) >= 0 &&
              // An alarm stays until dealt with; the rest expire as the server likes.
              sd_bus_message_append(call, "i", alert.level == AlertLevel::alarm ? 0 : -1) >= 0;
    if (ok) {
        auto* pending = new Pending{this, alert.key};
        if (sd_bus_call_async(bus, nullptr, call, onReply, pending, 0) < 0) {
            delete pending;
            ok = false;
        }
    }
    sd_bus_message_unref(call);
    if (!ok) std::cerr << "vesk-app: couldn't send a notification\n";
}

int NotifierCallbacks::onReply(sd_bus_message* message, void* data, sd_bus_error*) {
    std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
    uint32_t id = 0;
    if (sd_bus_message_is_method_error(message, nullptr) || sd_bus_message_read(message, "u", &id) < 0) {
        std::cerr << "vesk-app: the notification server refused a notification\n";
        return 0;
    }
    Notifier& self = *pending->notifier;
    auto previous = self.shown_.find(pending->key);
    if (previous != self.shown_.end() && previous->second != id) self.reminderOf_.erase(previous->second);
    self.shown_[pending->key] = id;
    self.reminderOf_[id] = pending->key;
    return 0;
}

int NotifierCallbacks::onSignal(sd_bus_message* message, void* data, sd_bus_error*) {
    Notifier& self = *static_cast<Notifier*>(data);
    if (sd_bus_message_is_signal(message, "org.freedesktop.DBus", "NameOwnerChanged")) {
        const char *name = nullptr, *before = nullptr, *after = nullptr;
        if (sd_bus_message_read(message, "sss", &name, &before, &after) < 0) return 0;
        if (after && *after) {
            self.serverPresent_ = true;
            self.saidMissing_ = false;
        } else {
            // A new server knows nothing of the old one's notifications.
            self.forget();
        }
        return 0;
    }
    uint32_t id = 0;
    if (sd_bus_message_is_signal(message, service, "NotificationClosed")) {
        if (sd_bus_message_read(message, "u", &id) >= 0) {
            auto key = self.reminderOf_.find(id);
            if (key != self.reminderOf_.end()) {
                self.shown_.erase(key->second);
                self.reminderOf_.erase(key);
            }
        }
        return 0;
    }
    const char* action = nullptr;
    if (sd_bus_message_is_signal(message, service, "ActionInvoked") &&
        sd_bus_message_read(message, "us", &id, &action) >= 0) {
        auto key = self.reminderOf_.find(id);
        if (key == self.reminderOf_.end() || !action) return 0;
        std::string reminder = key->second;
        if (std::string(action) == "done") self.onAction_(reminder, Notifier::Action::done);
        if (std::string(action) == "snooze") self.onAction_(reminder, Notifier::Action::snooze);
    }
    return 0;
}
