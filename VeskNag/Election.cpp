#include "VeskNag/Election.h"

#include "Platform/Text.h"

const char* rawValue(Device::Kind kind) { return kind == Device::Kind::phone ? "phone" : "mac"; }

bool PlanContext::isActive(const Device& device, Date date) const {
    if (!device.lastActive) return false;
    return now.timeIntervalSince(*device.lastActive) <= activeWindow &&
           date <= device.lastActive->addingTimeInterval(activeWindow);
}

namespace {

const Device* elected(const PlanContext& context, Date at) {
    const Device* best = nullptr;
    for (const Device& device : context.devices) {
        if (device.relayOnly || !context.isActive(device, at)) continue;
        if (!best || *device.lastActive > *best->lastActive ||
            (*device.lastActive == *best->lastActive && device.id < best->id))
            best = &device;
    }
    return best;
}

}  // namespace

std::optional<Device> PlanContext::activeDevice(Date at) const {
    if (const Device* device = elected(*this, at)) return *device;
    return std::nullopt;
}

namespace VeskNag {

uint64_t stableHash(std::string_view text) { return stableHash(text, 0xcbf29ce484222325); }

uint64_t stableHash(std::string_view text, uint64_t seed) {
    uint64_t hash = seed;
    for (unsigned char byte : text) {
        hash ^= byte;
        hash *= 0x100000001b3;
    }
    return hash;
}

std::optional<Date> activeSince(std::optional<Date> previous, std::optional<Date> lastActive, Date now, double window) {
    if (!lastActive || now.timeIntervalSince(*lastActive) > window) return std::nullopt;
    return previous ? previous : lastActive;
}

bool fallsBackToMe(const PlanContext& context) {
    for (const Device& device : context.devices)
        if (device.kind == Device::Kind::phone && !device.relayOnly) return context.me.kind == Device::Kind::phone;
    return !context.me.relayOnly;
}

bool owns(const std::optional<DeviceGate>& gate, AlertLevel level, Date fireDate, const PlanContext& context) {
    const Device& me = context.me;
    if (me.relayOnly) return false;
    if (!gate) {
        // An alarm never follows the active device.
        if (level == AlertLevel::alarm) return fallsBackToMe(context);
        const Device* active = elected(context, fireDate);
        return active ? active->id == me.id : fallsBackToMe(context);
    }
    switch (gate->kind) {
        case DeviceGate::Case::phone: return me.kind == Device::Kind::phone;
        case DeviceGate::Case::anyMac: return me.kind == Device::Kind::mac && context.isActive(me, fireDate);
        case DeviceGate::Case::named:
            return me.kind == Device::Kind::mac && Text::equalsIgnoringCase(gate->name, me.name) &&
                   context.isActive(me, fireDate);
    }
    return false;
}

bool owns(const PlannedAlert& alert, const PlanContext& context) {
    return owns(alert.deviceGate, alert.level, alert.fireDate, context);
}

}  // namespace VeskNag
