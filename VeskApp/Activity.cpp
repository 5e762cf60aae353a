#include "VeskApp/Activity.h"

#include <unistd.h>

#include "VeskNag/Election.h"

namespace {

std::string hostName() {
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 && *name ? name : "this computer";
}

}  // namespace

Activity::Activity(std::string name, bool relayOnly, const DeviceRecord& stored)
    : id_(stored.id),
      name_(std::move(name)),
      relayOnly_(relayOnly),
      lastActive_(stored.lastActive),
      activeSince_(stored.activeSince) {}

Activity::Activity(const Config& config, const DeviceRecord& stored)
    : Activity(config.deviceName.value_or(hostName()), config.relayOnly, stored) {}

void Activity::touch(Date now) {
    std::lock_guard guard(lock_);
    const double window = PlanContext::defaultActiveWindow;
    // A stretch that ended before this sign of use doesn't go on: a new one starts now.
    auto running = VeskNag::activeSince(activeSince_, lastActive_, now, window);
    if (!lastActive_ || now > *lastActive_) lastActive_ = now;
    activeSince_ = VeskNag::activeSince(running, lastActive_, now, window);
}

Device Activity::me(Date now) const {
    std::lock_guard guard(lock_);
    return Device{
        .id = id_,
        .kind = Device::Kind::mac,
        .name = name_,
        .relayOnly = relayOnly_,
        .lastActive = lastActive_,
        .places = {},
        .activeSince = VeskNag::activeSince(activeSince_, lastActive_, now, PlanContext::defaultActiveWindow)};
}

DeviceRecord Activity::record() const {
    std::lock_guard guard(lock_);
    return {id_, lastActive_, activeSince_};
}
