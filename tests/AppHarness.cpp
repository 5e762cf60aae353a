#include "AppHarness.h"

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "VeskIPC/Socket.h"

namespace fs = std::filesystem;

AppHarness::AppHarness() : bin_(private_.base() + "/bin") {
    fs::create_directory(bin_);
    copyExecutable(VESK_BINARY, bin_ + "/vesk");
    copyExecutable(VESK_APP_BINARY, bin_ + "/vesk-app");
    environment = testEnvironment();
}

AppHarness::~AppHarness() { stop(); }

std::string AppHarness::dataDirectory() const { return home() + "/.local/share/vesk"; }

std::vector<std::string> AppHarness::underFaketime(const std::string& program,
                                                   const std::vector<std::string>& arguments) const {
    std::vector<std::string> argv{"faketime", "-f", "@" + moment, program};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return argv;
}

void AppHarness::start(const std::vector<std::string>& arguments) {
    pid_t pid = spawnProcess(underFaketime(appPath(), arguments), environment);
    const std::string path = VeskSocket::defaultPath();
    for (int i = 0; i < 1000; ++i) {
        if (SocketClient::isListening(path)) return;
        if (waitpid(pid, nullptr, WNOHANG) == pid) throw std::runtime_error("app harness: vesk-app ended at its start");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    throw std::runtime_error("app harness: vesk-app doesn't listen on " + path);
}

void AppHarness::stop() {
    endProcessesOf(appPath());
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

void AppHarness::kill() {
    // The same search as endProcessesOf, with no time for a goodbye. A killed process lets go
    // of its lock only once its last thread has ended, so wait until it is gone for good:
    // reaped by us (it was put in the background) or by its faketime wrapper.
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::error_code error;
        auto target = fs::read_symlink(entry.path() / "exe", error);
        if (error || target != appPath()) continue;
        pid_t pid = static_cast<pid_t>(std::stol(entry.path().filename()));
        ::kill(pid, SIGKILL);
        for (int i = 0; i < 500 && waitpid(pid, nullptr, WNOHANG) != pid && ::kill(pid, 0) == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    // The faketime wrappers that ended with their app.
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

ProcessResult AppHarness::vesk(const std::vector<std::string>& arguments) const {
    return runProcess(underFaketime(bin_ + "/vesk", arguments), environment);
}

ProcessResult AppHarness::app(const std::vector<std::string>& arguments) const {
    return runProcess(underFaketime(appPath(), arguments), environment);
}
