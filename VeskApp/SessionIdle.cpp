#include "VeskApp/SessionIdle.h"

#include <unistd.h>

#include <cstring>

#include <systemd/sd-bus.h>

namespace {

const char* const logind = "org.freedesktop.login1";
const char* const userInterface = "org.freedesktop.login1.User";

}  // namespace

struct SessionIdleCallbacks {
    // Re-reads the hint whenever logind says the user's properties changed.
    static int onChanged(sd_bus_message* message, void* data, sd_bus_error*) {
        auto& self = *static_cast<SessionIdle*>(data);
        const char* interface = nullptr;
        if (sd_bus_message_read(message, "s", &interface) < 0 || !interface || std::strcmp(interface, userInterface))
            return 0;
        std::optional<bool> before = self.present_;
        self.read();
        if (self.present_ != before && self.changed_) self.changed_();
        return 0;
    }
};

SessionIdle::SessionIdle(std::function<void()> changed) : changed_(std::move(changed)) {}

void SessionIdle::connect() {
    if (!bus_.open(Bus::Kind::system)) return;
    sd_bus_message* reply = nullptr;
    const char* path = nullptr;
    if (sd_bus_call_method(bus_.get(), logind, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "GetUser",
                           nullptr, &reply, "u", static_cast<uint32_t>(getuid())) < 0 ||
        sd_bus_message_read(reply, "o", &path) < 0 || !path) {
        sd_bus_message_unref(reply);
        bus_.close();
        return;
    }
    user_ = path;
    sd_bus_message_unref(reply);
    sd_bus_match_signal(bus_.get(), nullptr, logind, user_.c_str(), "org.freedesktop.DBus.Properties",
                        "PropertiesChanged", SessionIdleCallbacks::onChanged, this);
    read();
}

void SessionIdle::read() {
    int idle = 0;
    if (sd_bus_get_property_trivial(bus_.get(), logind, user_.c_str(), userInterface, "IdleHint", nullptr, 'b', &idle) <
        0) {
        present_.reset();
        return;
    }
    present_ = idle == 0;
}

void SessionIdle::process() {
    if (bus_.isOpen() && !bus_.process()) present_.reset();
}
