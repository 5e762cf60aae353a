#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

struct FakeGeoClueState;

// GeoClue2 as the app sees it, on a private bus of a test and served from a thread of the
// test, so that no test ever asks a real location service where the machine is.
//
//     PrivateBus system(app.base() + "/system", app.base() + "/shown-system");
//     app.environment["DBUS_SYSTEM_BUS_ADDRESS"] = system.address();
//     FakeGeoClue geoclue(system.address());
//     geoclue.moveTo(52.3731, 4.8922);
//     ... start the app ...
//     ... until geoclue.seen().fixesSent >= 1 ...
//
// Each position becomes a new Location object under the client it is sent to; all of them
// stay readable until the fake ends.
class FakeGeoClue {
public:
    // serves: Start works and clients get positions. refuses: Start fails with AccessDenied,
    // as when the user turned geolocation off.
    enum class Mode { serves, refuses };

    // Connects to the bus at `busAddress`, owns org.freedesktop.GeoClue2 and serves on a
    // thread of its own; throws std::runtime_error when it can't.
    explicit FakeGeoClue(const std::string& busAddress);
    // Stops the thread, releases the name and closes the connection.
    ~FakeGeoClue();
    FakeGeoClue(const FakeGeoClue&) = delete;
    FakeGeoClue& operator=(const FakeGeoClue&) = delete;

    // Where the machine is now: every started client gets a LocationUpdated for it, and
    // clients started later get it on Start.
    void moveTo(double latitude, double longitude, double accuracy = 20);

    std::atomic<Mode> mode{Mode::serves};

    // What the fake has seen of its clients.
    struct Seen {
        int started;             // clients started and not stopped right now
        int fixesSent;           // LocationUpdated signals emitted so far
        std::string desktopId;   // the DesktopId last set by a client
        uint32_t accuracyLevel;  // the RequestedAccuracyLevel last set by a client
    };
    Seen seen() const;

private:
    std::unique_ptr<FakeGeoClueState> state_;
    std::thread thread_;
};
