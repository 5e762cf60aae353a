#pragma once

#include <functional>
#include <string>

#include "VeskApp/Config.h"
#include "VeskApp/Paths.h"

// The daemon: serves the socket, keeps the store and nags on the desktop at the planned
// times, until SIGTERM or SIGINT.
namespace App {

struct Options {
    Paths paths;
    Config config;
    bool verbose = false;
    // Called once the socket listens, or with the reason when the app can't start.
    std::function<void()> ready;
    std::function<void(const std::string& reason)> failed;
};

// Serves; the exit status: 0 after a signal, 1 when it couldn't start.
int serve(const Options& options);

}  // namespace App
