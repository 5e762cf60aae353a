#pragma once

#include "VeskIPC/Wire.h"

// The command line's way to the app: one exchange, and every failure ends the process
// with the exit status of its code.
namespace Connection {

// The app's answer, which holds no error. Launches the app and retries once when
// nobody answers.
Response send(const Request& request, bool json);

// Shows `error` ("vesk: " on standard error, or as JSON on standard output) and ends
// the process with its code's exit status.
[[noreturn]] void fail(const WireError& error, bool json);

}  // namespace Connection
