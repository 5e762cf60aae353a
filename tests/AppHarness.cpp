#include "AppHarness.h"

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "VeskIPC/Socket.h"

namespace fs = std::filesystem;

namespace {

// A process that has ended and awaits its parent: everything it held is let go.
bool isZombie(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
    size_t close = text.rfind(')');
    return close == std::string::npos || text.size() < close + 3 || text[close + 2] == 'Z';
}

}  // namespace

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

void AppHarness::stop() { endProcessesOf(appPath()); }

void AppHarness::kill() {
    // The same search as endProcessesOf, with no time for a goodbye. The app is the child of
    // its faketime wrapper, not ours: wait until it has let go of everything it held.
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::error_code error;
        auto target = fs::read_symlink(entry.path() / "exe", error);
        if (error || target != appPath()) continue;
        pid_t pid = static_cast<pid_t>(std::stol(entry.path().filename()));
        ::kill(pid, SIGKILL);
        for (int i = 0; i < 300 && ::kill(pid, 0) == 0 && !isZombie(pid); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

ProcessResult AppHarness::vesk(const std::vector<std::string>& arguments) const {
    return runProcess(underFaketime(bin_ + "/vesk", arguments), environment);
}

ProcessResult AppHarness::app(const std::vector<std::string>& arguments) const {
    return runProcess(underFaketime(appPath(), arguments), environment);
}
