#pragma once

#include <functional>
#include <vector>

#include "VeskApp/Bus.h"

// The app's one place of waiting: descriptors, each with what to do when it is ready, and
// D-Bus connections, which may open, close and change their wishes as they go. It sleeps
// until one of them has something: no polling.
class Loop {
public:
    Loop();
    ~Loop();
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    void watch(int descriptor, std::function<void()> ready);
    // `process` runs after every wait: it hands the bus whatever arrived.
    void watch(Bus& bus, std::function<void()> process);

    // Waits until something is ready and runs what it asks for; false when waiting fails.
    bool runOnce();

private:
    struct Watched {
        Bus* bus;
        std::function<void()> process;
        int descriptor = -1;  // as registered
    };

    int epoll_;
    std::vector<std::pair<int, std::function<void()>>> descriptors_;
    std::vector<Watched> buses_;
};
