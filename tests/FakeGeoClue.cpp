#include "FakeGeoClue.h"

#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <list>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <systemd/sd-bus.h>

namespace {

const char* const service = "org.freedesktop.GeoClue2";
const char* const managerPath = "/org/freedesktop/GeoClue2/Manager";
const char* const managerInterface = "org.freedesktop.GeoClue2.Manager";
const char* const clientInterface = "org.freedesktop.GeoClue2.Client";
const char* const locationInterface = "org.freedesktop.GeoClue2.Location";

// What a Location object shows.
struct Fix {
    double latitude = 0, longitude = 0, accuracy = 0;
};

// A client object; it stops being served when this goes.
struct Client {
    Client() = default;
    Client(const Client&) = delete;
    ~Client() { sd_bus_slot_unref(slot); }

    std::string path, owner, desktopId, location = "/";
    uint32_t accuracyLevel = 0;
    bool active = false;
    int fixes = 0;  // Location objects made for it so far, which names the next one
    sd_bus_slot* slot = nullptr;
};

}  // namespace

struct FakeGeoClueState {
    explicit FakeGeoClueState(std::atomic<FakeGeoClue::Mode>& mode) : mode(mode) {}
    ~FakeGeoClueState() {
        clients.clear();  // their slots hold the bus; the manager's and the locations' go with it
        sd_bus_flush_close_unref(bus);
    }

    std::atomic<FakeGeoClue::Mode>& mode;
    sd_bus* bus = nullptr;
    std::mutex lock;  // guards what follows, and the bus while the bus thread works it
    bool ending = false, moved = false, located = false;
    Fix position;
    int clientsEver = 0;
    std::map<std::string, Client> clients;  // by path
    // One per Location object, in a list since the objects point into it.
    std::list<Fix> fixes;
    int fixesSent = 0;
    std::string desktopId;
    uint32_t accuracyLevel = 0;
};

namespace {

FakeGeoClueState& stateOf(void* userdata) { return *static_cast<FakeGeoClueState*>(userdata); }

const sd_bus_vtable locationVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Latitude", "d", nullptr, offsetof(Fix, latitude), SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Longitude", "d", nullptr, offsetof(Fix, longitude), SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Accuracy", "d", nullptr, offsetof(Fix, accuracy), SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_VTABLE_END,
};

// Puts the current position in a new Location object of `client` and says so.
void sendFix(FakeGeoClueState& s, Client& client) {
    std::string path = client.path + "/Location/" + std::to_string(client.fixes++);
    Fix& fix = s.fixes.emplace_back(s.position);
    if (sd_bus_add_object_vtable(s.bus, nullptr, path.c_str(), locationInterface, locationVtable, &fix) < 0) return;
    std::string old = std::exchange(client.location, path);
    ++s.fixesSent;
    sd_bus_emit_signal(s.bus, client.path.c_str(), clientInterface, "LocationUpdated", "oo", old.c_str(), path.c_str());
}

int clientProperty(sd_bus*, const char* path, const char*, const char* property, sd_bus_message* reply, void* userdata,
                   sd_bus_error*) {
    Client& c = stateOf(userdata).clients.at(path);
    std::string_view name = property;
    if (name == "Location") return sd_bus_message_append(reply, "o", c.location.c_str());
    if (name == "DesktopId") return sd_bus_message_append(reply, "s", c.desktopId.c_str());
    if (name == "RequestedAccuracyLevel") return sd_bus_message_append(reply, "u", c.accuracyLevel);
    return sd_bus_message_append(reply, "b", c.active);  // Active
}

int setClientProperty(sd_bus*, const char* path, const char*, const char* property, sd_bus_message* value,
                      void* userdata, sd_bus_error*) {
    FakeGeoClueState& s = stateOf(userdata);
    Client& c = s.clients.at(path);
    std::string_view name = property;
    if (name == "DesktopId") {
        const char* id = nullptr;
        int r = sd_bus_message_read(value, "s", &id);
        if (r >= 0) c.desktopId = s.desktopId = id;
        return r;
    }
    uint32_t number = 0;
    int r = sd_bus_message_read(value, "u", &number);
    if (r < 0) return r;
    c.accuracyLevel = s.accuracyLevel = number;  // RequestedAccuracyLevel
    return 0;
}

int start(sd_bus_message* message, void* userdata, sd_bus_error* error) {
    FakeGeoClueState& s = stateOf(userdata);
    Client& client = s.clients.at(sd_bus_message_get_path(message));
    if (client.desktopId.empty())
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "'DesktopId' property must be set");
    if (s.mode == FakeGeoClue::Mode::refuses)
        return sd_bus_error_setf(error, SD_BUS_ERROR_ACCESS_DENIED, "Geolocation disabled for UID %u", getuid());
    client.active = true;
    // The reply goes first, so the client knows it started before the position comes.
    int r = sd_bus_reply_method_return(message, "");
    if (r >= 0 && s.located) sendFix(s, client);
    return r;
}

int stop(sd_bus_message* message, void* userdata, sd_bus_error*) {
    FakeGeoClueState& s = stateOf(userdata);
    Client& client = s.clients.at(sd_bus_message_get_path(message));
    client.active = false;
    return sd_bus_reply_method_return(message, "");
}

const sd_bus_vtable clientVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Location", "o", clientProperty, 0, 0),
    SD_BUS_WRITABLE_PROPERTY("DesktopId", "s", clientProperty, setClientProperty, 0, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_WRITABLE_PROPERTY("RequestedAccuracyLevel", "u", clientProperty, setClientProperty, 0,
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Active", "b", clientProperty, 0, 0),
    SD_BUS_METHOD("Start", "", "", start, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Stop", "", "", stop, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("LocationUpdated", "oo", 0),
    SD_BUS_VTABLE_END,
};

// Each GetClient makes a client of its own.
int getClient(sd_bus_message* message, void* userdata, sd_bus_error*) {
    FakeGeoClueState& s = stateOf(userdata);
    const char* sender = sd_bus_message_get_sender(message);
    std::string path = "/org/freedesktop/GeoClue2/Client/" + std::to_string(++s.clientsEver);
    Client& client = s.clients[path];
    client.path = path;
    client.owner = sender ? sender : "";
    int r = sd_bus_add_object_vtable(s.bus, &client.slot, path.c_str(), clientInterface, clientVtable, &s);
    if (r < 0) s.clients.erase(path);
    return r < 0 ? r : sd_bus_reply_method_return(message, "o", path.c_str());
}

// An app that leaves the bus, even by crashing, leaves no client behind.
int nameOwnerChanged(sd_bus_message* message, void* userdata, sd_bus_error*) {
    FakeGeoClueState& s = stateOf(userdata);
    const char *name = nullptr, *oldOwner = nullptr, *newOwner = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &oldOwner, &newOwner) < 0 || *newOwner) return 0;
    std::erase_if(s.clients, [&](auto& entry) { return entry.second.owner == name; });
    return 0;
}

const sd_bus_vtable managerVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetClient", "", "o", getClient, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

// The bus thread: handles what came in and any new position, then waits a moment for the
// bus. moveTo only sets fields, so the wait needn't be woken.
void serve(FakeGeoClueState& s) {
    for (;;) {
        {
            std::lock_guard guard(s.lock);
            if (s.ending) return;
            int r;
            while ((r = sd_bus_process(s.bus, nullptr)) > 0) continue;
            if (r < 0) return;  // the bus went away
            if (s.moved)
                for (auto& [path, client] : s.clients)
                    if (client.active) sendFix(s, client);
            s.moved = false;
        }
        sd_bus_wait(s.bus, 20'000);
    }
}

}  // namespace

FakeGeoClue::FakeGeoClue(const std::string& busAddress) : state_(std::make_unique<FakeGeoClueState>(mode)) {
    FakeGeoClueState& s = *state_;
    int r = sd_bus_new(&s.bus);
    if (r >= 0) r = sd_bus_set_address(s.bus, busAddress.c_str());
    if (r >= 0) r = sd_bus_set_bus_client(s.bus, 1);
    if (r >= 0) r = sd_bus_start(s.bus);
    if (r >= 0) r = sd_bus_add_object_vtable(s.bus, nullptr, managerPath, managerInterface, managerVtable, &s);
    if (r >= 0)
        r = sd_bus_match_signal(s.bus, nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                "NameOwnerChanged", nameOwnerChanged, &s);
    if (r >= 0) r = sd_bus_request_name(s.bus, service, 0);
    if (r < 0) throw std::runtime_error("fake GeoClue2 can't serve on " + busAddress + ": " + std::strerror(-r));
    thread_ = std::thread(serve, std::ref(s));
}

FakeGeoClue::~FakeGeoClue() {
    {
        std::lock_guard guard(state_->lock);
        state_->ending = true;
    }
    thread_.join();
    sd_bus_release_name(state_->bus, service);
}

void FakeGeoClue::moveTo(double latitude, double longitude, double accuracy) {
    std::lock_guard guard(state_->lock);
    state_->position = Fix{latitude, longitude, accuracy};
    state_->located = state_->moved = true;
}

FakeGeoClue::Seen FakeGeoClue::seen() const {
    std::lock_guard guard(state_->lock);
    Seen seen{0, state_->fixesSent, state_->desktopId, state_->accuracyLevel};
    for (auto& [path, client] : state_->clients) seen.started += client.active;
    return seen;
}
