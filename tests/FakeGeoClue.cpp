#include "FakeGeoClue.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <list>
#include <map>
#include <mutex>
#include <stdexcept>

#include <systemd/sd-bus.h>

namespace {

const char* const service = "org.freedesktop.GeoClue2";
const char* const clientInterface = "org.freedesktop.GeoClue2.Client";

// What a Location object shows.
struct Fix {
    double latitude = 0, longitude = 0, accuracy = 0;
};

// A client object, served while this lives. sd-bus reads and writes its properties itself.
struct Client {
    ~Client() {
        sd_bus_slot_unref(slot);
        free(desktopId);
    }

    FakeGeoClueState* state = nullptr;
    char* desktopId = nullptr;
    uint32_t accuracyLevel = 0;
    bool active = false;
    int fixes = 0;  // Location objects made for it so far, which names the next one
    sd_bus_slot* slot = nullptr;
};

std::string locationPath(const std::string& client, int fix) {
    return fix < 0 ? "/" : client + "/Location/" + std::to_string(fix);
}

}  // namespace

struct FakeGeoClueState {
    ~FakeGeoClueState() {
        clients.clear();  // their slots hold the bus; the manager's and the locations' go with it
        sd_bus_flush_close_unref(bus);
    }

    sd_bus* bus = nullptr;
    std::mutex lock;  // guards what follows, and the bus while the bus thread works it
    bool ending = false, moved = false, located = false, refuses = false;
    Fix position;
    int fixesSent = 0;
    std::map<std::string, Client> clients;  // by path
    std::list<Fix> fixes;                   // one per Location object, in a list since the objects point into it
};

namespace {

const sd_bus_vtable locationVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Latitude", "d", nullptr, offsetof(Fix, latitude), SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Longitude", "d", nullptr, offsetof(Fix, longitude), SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Accuracy", "d", nullptr, offsetof(Fix, accuracy), SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_VTABLE_END,
};

// Puts the current position in a new Location object of the client at `path` and says so.
void sendFix(FakeGeoClueState& s, const std::string& path, Client& client) {
    const std::string old = locationPath(path, client.fixes - 1), location = locationPath(path, client.fixes);
    Fix& fix = s.fixes.emplace_back(s.position);
    if (sd_bus_add_object_vtable(s.bus, nullptr, location.c_str(), "org.freedesktop.GeoClue2.Location", locationVtable,
                                 &fix) < 0)
        return;
    ++client.fixes;
    ++s.fixesSent;
    sd_bus_emit_signal(s.bus, path.c_str(), clientInterface, "LocationUpdated", "oo", old.c_str(), location.c_str());
}

int start(sd_bus_message* message, void* userdata, sd_bus_error* error) {
    Client& client = *static_cast<Client*>(userdata);
    if (!client.desktopId || !*client.desktopId)
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "'DesktopId' property must be set");
    if (client.state->refuses)
        return sd_bus_error_setf(error, SD_BUS_ERROR_ACCESS_DENIED, "Geolocation disabled for UID %u", getuid());
    client.active = true;
    // The reply goes first, so the client knows it started before the position comes.
    int r = sd_bus_reply_method_return(message, "");
    if (r >= 0 && client.state->located) sendFix(*client.state, sd_bus_message_get_path(message), client);
    return r;
}

int stop(sd_bus_message* message, void* userdata, sd_bus_error*) {
    static_cast<Client*>(userdata)->active = false;
    return sd_bus_reply_method_return(message, "");
}

const sd_bus_vtable clientVtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_WRITABLE_PROPERTY("DesktopId", "s", nullptr, nullptr, offsetof(Client, desktopId),
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_WRITABLE_PROPERTY("RequestedAccuracyLevel", "u", nullptr, nullptr, offsetof(Client, accuracyLevel),
                             SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Start", "", "", start, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Stop", "", "", stop, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("LocationUpdated", "oo", 0),
    SD_BUS_VTABLE_END,
};

// Each GetClient makes a client of its own.
int getClient(sd_bus_message* message, void* userdata, sd_bus_error*) {
    FakeGeoClueState& s = *static_cast<FakeGeoClueState*>(userdata);
    const std::string path = "/org/freedesktop/GeoClue2/Client/" + std::to_string(s.clients.size() + 1);
    Client& client = s.clients[path];
    client.state = &s;
    int r = sd_bus_add_object_vtable(s.bus, &client.slot, path.c_str(), clientInterface, clientVtable, &client);
    return r < 0 ? r : sd_bus_reply_method_return(message, "o", path.c_str());
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
                    if (client.active) sendFix(s, path, client);
            s.moved = false;
        }
        sd_bus_wait(s.bus, 20'000);
    }
}

}  // namespace

FakeGeoClue::FakeGeoClue(const std::string& busAddress) : state_(std::make_unique<FakeGeoClueState>()) {
    FakeGeoClueState& s = *state_;
    int r = sd_bus_new(&s.bus);
    if (r >= 0) r = sd_bus_set_address(s.bus, busAddress.c_str());
    if (r >= 0) r = sd_bus_set_bus_client(s.bus, 1);
    if (r >= 0) r = sd_bus_start(s.bus);
    if (r >= 0)
        r = sd_bus_add_object_vtable(s.bus, nullptr, "/org/freedesktop/GeoClue2/Manager",
                                     "org.freedesktop.GeoClue2.Manager", managerVtable, &s);
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

void FakeGeoClue::refuseStarts() {
    std::lock_guard guard(state_->lock);
    state_->refuses = true;
}

FakeGeoClue::Seen FakeGeoClue::seen() const {
    std::lock_guard guard(state_->lock);
    Seen seen{0, state_->fixesSent, "", 0};
    for (auto& [path, client] : state_->clients) {
        seen.started += client.active;
        if (client.desktopId) seen.desktopId = client.desktopId;
        seen.accuracyLevel = std::max(seen.accuracyLevel, client.accuracyLevel);
    }
    return seen;
}
