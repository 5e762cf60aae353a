#include "VeskApp/Bus.h"

#include <poll.h>

#include <systemd/sd-bus.h>

Bus::~Bus() { close(); }

bool Bus::open(Kind kind) {
    close();
    int opened = kind == Kind::session ? sd_bus_open_user(&bus_) : sd_bus_open_system(&bus_);
    if (opened < 0) bus_ = nullptr;
    return bus_ != nullptr;
}

void Bus::close() { bus_ = sd_bus_flush_close_unref(bus_); }

int Bus::descriptor() const { return bus_ ? sd_bus_get_fd(bus_) : -1; }

uint32_t Bus::events() const {
    int events = bus_ ? sd_bus_get_events(bus_) : 0;
    return events > 0 ? static_cast<uint32_t>(events) : POLLIN;
}

uint64_t Bus::deadline() const {
    uint64_t usec = UINT64_MAX;
    if (bus_ && sd_bus_get_timeout(bus_, &usec) < 0) usec = UINT64_MAX;
    return usec;
}

bool Bus::process() {
    while (bus_) {
        int processed = sd_bus_process(bus_, nullptr);
        if (processed < 0) {
            close();
            return false;
        }
        if (processed == 0) return true;
    }
    return false;
}
