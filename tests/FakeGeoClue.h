#pragma once

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <list>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

// GeoClue2 as the app sees it, on a private bus of a test (the app's system bus) and served
// from a thread of the test, so that no test ever asks a real location service where the
// machine is. Each position becomes a new Location object under the client it is sent to;
// all of them stay readable until the fake ends.
class FakeGeoClue {
public:
    // Connects to the bus at `busAddress`, owns org.freedesktop.GeoClue2 and serves on a
    // thread of its own; throws std::runtime_error when it can't.
    explicit FakeGeoClue(const std::string& busAddress) {
        int r = sd_bus_new(&bus_);
        if (r >= 0) r = sd_bus_set_address(bus_, busAddress.c_str());
        if (r >= 0) r = sd_bus_set_bus_client(bus_, 1);
        if (r >= 0) r = sd_bus_start(bus_);
        if (r >= 0)
            r = sd_bus_add_object_vtable(bus_, nullptr, "/org/freedesktop/GeoClue2/Manager",
                                         "org.freedesktop.GeoClue2.Manager", managerVtable, this);
        if (r >= 0) r = sd_bus_request_name(bus_, service, 0);
        if (r < 0) {
            sd_bus_flush_close_unref(bus_);
            throw std::runtime_error("fake GeoClue2 can't serve on " + busAddress + ": " + std::strerror(-r));
        }
        thread_ = std::thread([this] { serve(); });
    }
    ~FakeGeoClue() {
        {
            std::lock_guard guard(lock_);
            ending_ = true;
        }
        thread_.join();
        sd_bus_release_name(bus_, service);
        clients_.clear();  // their slots hold the bus; the manager's and the locations' go with it
        sd_bus_flush_close_unref(bus_);
    }
    FakeGeoClue(const FakeGeoClue&) = delete;
    FakeGeoClue& operator=(const FakeGeoClue&) = delete;

    // Where the machine is now: every started client gets a LocationUpdated for it, and
    // clients started later get it on Start.
    void moveTo(double latitude, double longitude, double accuracy = 20) {
        std::lock_guard guard(lock_);
        position_ = Fix{latitude, longitude, accuracy};
        located_ = moved_ = true;
    }
    // From now on Start fails with AccessDenied, as when the user turned geolocation off.
    void refuseStarts() {
        std::lock_guard guard(lock_);
        refuses_ = true;
    }

    // What the fake has seen of its clients.
    struct Seen {
        int started = 0;             // clients started and not stopped right now
        int fixesSent = 0;           // LocationUpdated signals emitted so far
        std::string desktopId;       // the DesktopId a client set
        uint32_t accuracyLevel = 0;  // the highest RequestedAccuracyLevel a client asked for
    };
    Seen seen() const {
        std::lock_guard guard(lock_);
        Seen seen;
        seen.fixesSent = fixesSent_;
        for (auto& [path, client] : clients_) {
            seen.started += client.active;
            if (client.desktopId) seen.desktopId = client.desktopId;
            seen.accuracyLevel = std::max(seen.accuracyLevel, client.accuracyLevel);
        }
        return seen;
    }

private:
    static constexpr const char* service = "org.freedesktop.GeoClue2";
    static constexpr const char* clientInterface = "org.freedesktop.GeoClue2.Client";

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
        FakeGeoClue* fake = nullptr;
        char* desktopId = nullptr;
        uint32_t accuracyLevel = 0;
        bool active = false;
        int fixes = 0;  // Location objects made for it so far, which names the next one
        sd_bus_slot* slot = nullptr;
    };

    static std::string locationPath(const std::string& client, int fix) {
        return fix < 0 ? "/" : client + "/Location/" + std::to_string(fix);
    }

    // Puts the current position in a new Location object of the client at `path` and says so.
    void sendFix(const std::string& path, Client& client) {
        const std::string old = locationPath(path, client.fixes - 1), location = locationPath(path, client.fixes);
        Fix& fix = fixes_.emplace_back(position_);
        if (sd_bus_add_object_vtable(bus_, nullptr, location.c_str(), "org.freedesktop.GeoClue2.Location",
                                     locationVtable, &fix) < 0)
            return;
        ++client.fixes;
        ++fixesSent_;
        sd_bus_emit_signal(bus_, path.c_str(), clientInterface, "LocationUpdated", "oo", old.c_str(), location.c_str());
    }

    static int start(sd_bus_message* message, void* userdata, sd_bus_error* error) {
        Client& client = *static_cast<Client*>(userdata);
        if (!client.desktopId || !*client.desktopId)
            return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "'DesktopId' property must be set");
        if (client.fake->refuses_)
            return sd_bus_error_setf(error, SD_BUS_ERROR_ACCESS_DENIED, "Geolocation disabled for UID %u", getuid());
        client.active = true;
        // The reply goes first, so the client knows it started before the position comes.
        int r = sd_bus_reply_method_return(message, "");
        if (r >= 0 && client.fake->located_) client.fake->sendFix(sd_bus_message_get_path(message), client);
        return r;
    }

    static int stop(sd_bus_message* message, void* userdata, sd_bus_error*) {
        static_cast<Client*>(userdata)->active = false;
        return sd_bus_reply_method_return(message, "");
    }

    // Each GetClient makes a client of its own.
    static int getClient(sd_bus_message* message, void* userdata, sd_bus_error*) {
        FakeGeoClue& fake = *static_cast<FakeGeoClue*>(userdata);
        const std::string path = "/org/freedesktop/GeoClue2/Client/" + std::to_string(fake.clients_.size() + 1);
        Client& client = fake.clients_[path];
        client.fake = &fake;
        int r = sd_bus_add_object_vtable(fake.bus_, &client.slot, path.c_str(), clientInterface, clientVtable, &client);
        return r < 0 ? r : sd_bus_reply_method_return(message, "o", path.c_str());
    }

    static inline const sd_bus_vtable locationVtable[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_PROPERTY("Latitude", "d", nullptr, offsetof(Fix, latitude), SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Longitude", "d", nullptr, offsetof(Fix, longitude), SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_PROPERTY("Accuracy", "d", nullptr, offsetof(Fix, accuracy), SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_VTABLE_END,
    };
    static inline const sd_bus_vtable clientVtable[] = {
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
    static inline const sd_bus_vtable managerVtable[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD("GetClient", "", "o", getClient, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END,
    };

    // The bus thread: handles what came in and any new position, then waits a moment for the
    // bus. moveTo only sets fields, so the wait needn't be woken.
    void serve() {
        for (;;) {
            {
                std::lock_guard guard(lock_);
                if (ending_) return;
                int r;
                while ((r = sd_bus_process(bus_, nullptr)) > 0) continue;
                if (r < 0) return;  // the bus went away
                if (moved_)
                    for (auto& [path, client] : clients_)
                        if (client.active) sendFix(path, client);
                moved_ = false;
            }
            sd_bus_wait(bus_, 20'000);
        }
    }

    sd_bus* bus_ = nullptr;
    mutable std::mutex lock_;  // guards what follows, and the bus while the bus thread works it
    bool ending_ = false, moved_ = false, located_ = false, refuses_ = false;
    Fix position_;
    int fixesSent_ = 0;
    std::map<std::string, Client> clients_;  // by path
    std::list<Fix> fixes_;                   // one per Location object, in a list since the objects point into it
    std::thread thread_;
};
