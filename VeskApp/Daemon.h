#pragma once

#include <functional>
#include <string>

// Starting the app in the background, as `vesk` does when nobody answers.
namespace Daemon {

using Ready = std::function<void()>;
using Failed = std::function<void(const std::string& reason)>;

// Runs `serve` detached from the caller: in a new session, in /, with umask 077, standard
// streams on /dev/null and no inherited descriptor open. This process ends with 0 as soon
// as the detached one calls `ready`, or with 1 and the reason on standard error when it
// fails or doesn't get ready within 10 seconds.
[[noreturn]] void background(const std::function<int(Ready ready, Failed failed)>& serve);

}  // namespace Daemon
