#pragma once

#include <functional>
#include <optional>
#include <string>

#include "VeskApp/Bus.h"

// Whether the user is at this machine, from logind's idle hint for the user on the system
// bus, where logind runs. Runs on the thread of the app's loop.
class SessionIdle {
public:
    // `changed` is called when the hint changes.
    explicit SessionIdle(std::function<void()> changed);

    // Connects and reads the hint; quietly nothing without a system bus or logind.
    void connect();
    Bus& bus() { return bus_; }
    void process();

    // True while the user is there, false while idle, absent when nobody says.
    std::optional<bool> present() const { return present_; }

private:
    friend struct SessionIdleCallbacks;  // the bus's callback, in SessionIdle.cpp
    void read();

    std::function<void()> changed_;
    Bus bus_;
    std::string user_;  // logind's object for this user
    std::optional<bool> present_;
};
