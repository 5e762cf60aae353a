#pragma once

#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "PrivateHome.h"
#include "Process.h"
#include "VeskIPC/Socket.h"

// End-to-end tests of vesk against the real vesk-app, in a fresh home (PrivateHome).
//
// Copies of vesk and vesk-app stand side by side in a bin/ folder, so that vesk launches
// that vesk-app when nobody answers, as it would once installed. Every process runs
// under faketime, its clock starting at `moment` and running on from there. Every vesk-app
// of the harness, started by it or by vesk, is stopped when it is destroyed.
class AppHarness {
public:
    // Without `withApp`, vesk stands alone in bin/.
    explicit AppHarness(bool withApp = true) {
        std::filesystem::create_directory(base() + "/bin");
        copyExecutable(VESK_BINARY, base() + "/bin/vesk");
        if (withApp) copyExecutable(VESK_APP_BINARY, appPath());
    }
    ~AppHarness() { stop(); }
    AppHarness(const AppHarness&) = delete;
    AppHarness& operator=(const AppHarness&) = delete;

    const std::string& home() const { return private_.home(); }
    // The temporary directory that holds home/ and bin/; a test may keep its own files there.
    const std::string& base() const { return private_.base(); }
    // ~/.local/share/vesk: the store and the lock.
    std::string dataDirectory() const { return home() + "/.local/share/vesk"; }
    std::string appPath() const { return base() + "/bin/vesk-app"; }

    // The local time every process starts at, as faketime reads it.
    std::string moment = "2026-11-18 10:00:00";
    // What vesk and the app run with. Tests may change it.
    Environment environment = testEnvironment();

    // Starts vesk-app in the foreground with `arguments`; returns once it listens. Throws
    // when it doesn't within 10 seconds.
    void start(const std::vector<std::string>& arguments = {}) {
        const std::string socket = VeskSocket::defaultPath();
        pid_t pid = spawnProcess(underFaketime(moment, appPath(), arguments), environment);
        for (int i = 0; i < 1000; ++i) {
            if (SocketClient::isListening(socket)) return;
            if (waitpid(pid, nullptr, WNOHANG) == pid) throw std::runtime_error("vesk-app ended before it listened");
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        throw std::runtime_error("nobody listens on " + socket);
    }
    // Ends every vesk-app of the harness and waits until they are gone: a killed one lets go
    // of its lock only then.
    void stop() { endProcessesOf(appPath(), SIGTERM); }
    void kill() { endProcessesOf(appPath(), SIGKILL); }

    // Runs vesk, or vesk-app to its end.
    ProcessResult vesk(const std::vector<std::string>& arguments) const { return run(base() + "/bin/vesk", arguments); }
    ProcessResult app(const std::vector<std::string>& arguments) const { return run(appPath(), arguments); }

private:
    ProcessResult run(const std::string& program, const std::vector<std::string>& arguments) const {
        return runProcess(underFaketime(moment, program, arguments), environment);
    }

    PrivateHome private_;
};
