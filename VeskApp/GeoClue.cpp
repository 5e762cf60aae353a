#include "VeskApp/GeoClue.h"

#include <cstring>
#include <memory>
#include <optional>

#include <systemd/sd-bus.h>

namespace {

const char* const service = "org.freedesktop.GeoClue2";
const char* const clientInterface = "org.freedesktop.GeoClue2.Client";
const char* const locationInterface = "org.freedesktop.GeoClue2.Location";
const char* const properties = "org.freedesktop.DBus.Properties";
// The name the service knows Vesk by, for its agent to ask the user about.
const char* const desktopId = "vesk";
constexpr uint32_t streetLevel = 6;
constexpr uint64_t callTimeout = 5'000'000;  // microseconds for a call that needs nobody's answer

struct BusError {
    sd_bus_error value = SD_BUS_ERROR_NULL;
    ~BusError() { sd_bus_error_free(&value); }
};

const GeoClue::Problem noBus{false,
                             "Vesk can't reach the system bus, where the location service runs. Give the place "
                             "with --at instead."};

GeoClue::Problem problemOf(const sd_bus_error& error, int code) {
    if (sd_bus_error_has_name(&error, SD_BUS_ERROR_ACCESS_DENIED) || code == -EACCES)
        return {true,
                "The location service doesn't let Vesk know where this computer is. Allow location access in your "
                "desktop's privacy settings (a location agent must run in your session), or give the place with "
                "--at."};
    if (sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) ||
        sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER))
        return {false,
                "The location service (GeoClue) isn't running on this computer. Install geoclue-2.0, or give the "
                "place with --at."};
    const std::string why = error.message ? error.message : std::strerror(-code);
    return {false, "The location service failed (" + why + "). Give the place with --at instead."};
}

// Calls `member` of the service's object at `path` and waits for the reply.
template <class... Arguments>
int call(sd_bus* bus, const char* path, const char* interface, const char* member, sd_bus_error* error,
         sd_bus_message** reply, const char* types, Arguments... arguments) {
    sd_bus_message* message = nullptr;
    int r = sd_bus_message_new_method_call(bus, &message, service, path, interface, member);
    if (r >= 0) r = sd_bus_message_append(message, types, arguments...);
    if (r >= 0) r = sd_bus_call(bus, message, callTimeout, error, reply);
    sd_bus_message_unref(message);
    return r;
}

// Makes a client of the service that asks for street-level fixes as `desktopId`, with
// `onUpdated` on its LocationUpdated signal. Not started yet.
std::optional<GeoClue::Problem> makeClient(sd_bus* bus, std::string& client, sd_bus_message_handler_t onUpdated,
                                           void* data) {
    BusError error;
    sd_bus_message* reply = nullptr;
    const char* path = nullptr;
    int r = call(bus, "/org/freedesktop/GeoClue2/Manager", "org.freedesktop.GeoClue2.Manager", "GetClient",
                 &error.value, &reply, "");
    if (r >= 0) r = sd_bus_message_read(reply, "o", &path);
    if (r >= 0) client = path;
    sd_bus_message_unref(reply);
    if (r >= 0)
        r = call(bus, client.c_str(), properties, "Set", &error.value, nullptr, "ssv", clientInterface, "DesktopId",
                 "s", desktopId);
    if (r >= 0)
        r = call(bus, client.c_str(), properties, "Set", &error.value, nullptr, "ssv", clientInterface,
                 "RequestedAccuracyLevel", "u", streetLevel);
    if (r >= 0)
        r = sd_bus_match_signal(bus, nullptr, service, client.c_str(), clientInterface, "LocationUpdated", onUpdated,
                                data);
    if (r < 0) return problemOf(error.value, r);
    return std::nullopt;
}

std::optional<Fix> readFix(sd_bus* bus, const char* location) {
    Fix fix;
    for (auto [name, value] : {std::pair{"Latitude", &fix.latitude}, std::pair{"Longitude", &fix.longitude},
                               std::pair{"Accuracy", &fix.accuracy}}) {
        if (sd_bus_get_property_trivial(bus, service, location, locationInterface, name, nullptr, 'd', value) < 0)
            return std::nullopt;
    }
    return fix;
}

// The new location's object from a LocationUpdated signal.
const char* newLocation(sd_bus_message* message) {
    const char *old = nullptr, *now = nullptr;
    return sd_bus_message_read(message, "oo", &old, &now) >= 0 ? now : nullptr;
}

int rememberLocation(sd_bus_message* message, void* data, sd_bus_error*) {
    if (const char* location = newLocation(message)) *static_cast<std::optional<std::string>*>(data) = location;
    return 0;
}

}  // namespace

namespace GeoClue {

std::variant<Fix, Problem> locate(std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limit;
    sd_bus* opened = nullptr;
    if (sd_bus_open_system(&opened) < 0) return noBus;
    std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> bus(opened, sd_bus_flush_close_unref);

    std::optional<std::string> location;  // set by the signal
    std::string client;
    if (auto problem = makeClient(bus.get(), client, rememberLocation, &location)) return *problem;
    BusError error;
    if (int r = call(bus.get(), client.c_str(), clientInterface, "Start", &error.value, nullptr, ""); r < 0)
        return problemOf(error.value, r);

    std::optional<Fix> fix;
    while (!fix) {
        const int processed = sd_bus_process(bus.get(), nullptr);
        if (processed < 0) break;
        if (location) {
            fix = readFix(bus.get(), location->c_str());
            location.reset();
            continue;
        }
        if (processed > 0) continue;
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) break;
        sd_bus_wait(bus.get(), static_cast<uint64_t>(left.count()));
    }
    call(bus.get(), client.c_str(), clientInterface, "Stop", nullptr, nullptr, "");
    if (!fix)
        return Problem{false, "No position came from the location service within " +
                                  std::to_string(std::chrono::duration_cast<std::chrono::seconds>(limit).count()) +
                                  " seconds. Try again with Wi-Fi on, or give the place with --at."};
    return *fix;
}

}  // namespace GeoClue

struct FollowerCallbacks {
    static int onUpdated(sd_bus_message* message, void* data, sd_bus_error*) {
        auto& self = *static_cast<GeoClue::Follower*>(data);
        if (const char* location = newLocation(message))
            if (auto fix = readFix(self.bus_.get(), location)) self.fixed_(*fix);
        return 0;
    }
    static int onStarted(sd_bus_message* reply, void* data, sd_bus_error*) {
        auto& self = *static_cast<GeoClue::Follower*>(data);
        if (const sd_bus_error* error = sd_bus_message_get_error(reply))
            self.failure_ = problemOf(*error, -sd_bus_message_get_errno(reply));
        return 0;
    }
    // The service went away or came back: its clients went with it.
    static int onOwnerChanged(sd_bus_message* message, void* data, sd_bus_error*) {
        const char* name = nullptr;
        if (sd_bus_message_read(message, "s", &name) >= 0 && name && std::strcmp(name, service) == 0)
            static_cast<GeoClue::Follower*>(data)->restart_ = true;
        return 0;
    }
};

namespace GeoClue {

Follower::Follower(std::function<void(const Fix&)> fixed, std::function<void(const Problem&)> failed)
    : fixed_(std::move(fixed)), failed_(std::move(failed)) {}

Follower::~Follower() { stop(); }

void Follower::follow() {
    if (bus_.isOpen()) return;
    if (!bus_.open(Bus::Kind::system)) return fail(noBus);
    sd_bus_match_signal(bus_.get(), nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                        "NameOwnerChanged", FollowerCallbacks::onOwnerChanged, this);
    if (auto problem = makeClient(bus_.get(), client_, FollowerCallbacks::onUpdated, this)) return fail(*problem);
    // Started without waiting: the service may first ask the user.
    sd_bus_message* start = nullptr;
    int r = sd_bus_message_new_method_call(bus_.get(), &start, service, client_.c_str(), clientInterface, "Start");
    if (r >= 0) r = sd_bus_call_async(bus_.get(), nullptr, start, FollowerCallbacks::onStarted, this, 0);
    sd_bus_message_unref(start);
    if (r < 0) fail(problemOf(BusError().value, r));
}

void Follower::stop() {
    if (bus_.isOpen() && !client_.empty())
        sd_bus_call_method_async(bus_.get(), nullptr, service, client_.c_str(), clientInterface, "Stop", nullptr,
                                 nullptr, "");
    bus_.close();
    client_.clear();
    failure_.reset();
    restart_ = false;
}

void Follower::fail(const Problem& problem) {
    bus_.close();
    client_.clear();
    if (failed_) failed_(problem);
}

void Follower::process() {
    if (!bus_.isOpen()) return;
    if (!bus_.process()) return fail({false, "The system bus closed the connection."});
    if (failure_) {
        Problem problem = *failure_;
        failure_.reset();
        fail(problem);
    } else if (restart_) {
        stop();
        follow();
    }
}

}  // namespace GeoClue
