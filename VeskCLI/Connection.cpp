#include "VeskCLI/Connection.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "Platform/Heap.h"
#include "VeskCLI/Output.h"
#include "VeskCLI/Render.h"
#include "VeskIPC/Socket.h"

extern char** environ;

namespace Connection {

namespace {

constexpr double exchangeTimeout = 60;
constexpr auto launchWait = std::chrono::seconds(15);
constexpr auto pollPause = std::chrono::milliseconds(250);

const char* const appProgram = "vesk-app";

// The directory of the running executable, or absent when it can't be read.
std::optional<std::string> executableDirectory() {
    char buffer[PATH_MAX];
    ssize_t n = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n <= 0) return std::nullopt;
    std::string path(buffer, static_cast<size_t>(n));
    size_t slash = path.rfind('/');
    if (slash == std::string::npos) return std::nullopt;
    return path.substr(0, slash);
}

// Runs the companion program in the background mode with standard error silenced,
// and waits for it. A program that can't be started counts as a failure.
bool runApp(const std::string& program, bool searchPath) {
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return false;
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string argument = "--background";
    char* argv[] = {const_cast<char*>(program.c_str()), argument.data(), nullptr};
    pid_t pid = 0;
    int spawned = searchPath ? posix_spawnp(&pid, program.c_str(), &actions, nullptr, argv, environ)
                             : posix_spawn(&pid, program.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) return false;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Starts the app: first the companion beside this executable, then the one on PATH.
// Reports nothing; whether it helped shows in the retry.
void launchApp() {
    if (auto directory = executableDirectory(); directory && runApp(*directory + "/" + appProgram, false)) return;
    runApp(appProgram, true);
}

SocketResult<Response> deliver(const Request& request, const std::string& path) {
    auto result = SocketClient::send(request, path, exchangeTimeout);
    auto* error = std::get_if<SocketError>(&result);
    if (!error || error->kind != SocketError::Case::unreachable) return result;

    launchApp();
    auto deadline = std::chrono::steady_clock::now() + launchWait;
    while (!SocketClient::isListening(path) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(pollPause);
    }
    return SocketClient::send(request, path, exchangeTimeout);
}

}  // namespace

Response send(const Request& request, bool json) {
    // The command ends with this exchange: memory it frees from here on serves its own
    // next allocations, and the pages for a large answer are mapped in one go.
    Heap::keepFreedMemory();
    std::string path = VeskSocket::defaultPath();
    for (const auto& candidate : VeskSocket::candidatePaths()) {
        if (SocketClient::isListening(candidate)) {
            path = candidate;
            break;
        }
    }

    auto result = deliver(request, path);
    if (auto* error = std::get_if<SocketError>(&result)) {
        if (error->kind == SocketError::Case::noResponse) {
            fail({WireError::Code::partial,
                  "Vesk didn't answer. The request may have been applied; check with `vesk now` before retrying."},
                 json);
        }
        fail({WireError::Code::unreachable, "Couldn't reach the Vesk app. Is it installed on this Mac?"}, json);
    }
    auto& response = std::get<Response>(result);
    if (response.error) fail(*response.error, json);
    return std::move(response);
}

void fail(const WireError& error, bool json) {
    if (json) {
        Response response;
        response.error = error;
        Render::json(response);
    } else {
        Output::writeError("vesk: " + error.message + "\n");
    }
    std::fflush(stdout);
    std::exit(WireError::exitStatus(error.code));
}

}  // namespace Connection
