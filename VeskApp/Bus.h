#pragma once

#include <cstdint>

struct sd_bus;

// One D-Bus connection, watched by the app's loop: it hands the loop a descriptor, the
// events to wait for and a deadline, and handles whatever arrives.
class Bus {
public:
    enum class Kind { session, system };

    Bus() = default;
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    // Connects; false when there is no such bus.
    bool open(Kind kind);
    void close();
    bool isOpen() const { return bus_ != nullptr; }
    sd_bus* get() const { return bus_; }

    int descriptor() const;  // -1 while closed
    uint32_t events() const;
    uint64_t deadline() const;  // CLOCK_MONOTONIC microseconds, UINT64_MAX for none
    // Handles all that has arrived; false (and closed) when the connection is gone.
    bool process();

private:
    sd_bus* bus_ = nullptr;
};
