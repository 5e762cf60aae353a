#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <thread>

struct FakeGeoClueState;

// GeoClue2 as the app sees it, on a private bus of a test (the app's system bus) and served
// from a thread of the test, so that no test ever asks a real location service where the
// machine is. Each position becomes a new Location object under the client it is sent to;
// all of them stay readable until the fake ends.
class FakeGeoClue {
public:
    // Connects to the bus at `busAddress`, owns org.freedesktop.GeoClue2 and serves on a
    // thread of its own; throws std::runtime_error when it can't.
    explicit FakeGeoClue(const std::string& busAddress);
    ~FakeGeoClue();
    FakeGeoClue(const FakeGeoClue&) = delete;
    FakeGeoClue& operator=(const FakeGeoClue&) = delete;

    // Where the machine is now: every started client gets a LocationUpdated for it, and
    // clients started later get it on Start.
    void moveTo(double latitude, double longitude, double accuracy = 20);
    // From now on Start fails with AccessDenied, as when the user turned geolocation off.
    void refuseStarts();

    // What the fake has seen of its clients.
    struct Seen {
        int started;             // clients started and not stopped right now
        int fixesSent;           // LocationUpdated signals emitted so far
        std::string desktopId;   // the DesktopId a client set
        uint32_t accuracyLevel;  // the highest RequestedAccuracyLevel a client asked for
    };
    Seen seen() const;

private:
    std::unique_ptr<FakeGeoClueState> state_;
    std::thread thread_;
};
