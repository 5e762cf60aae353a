#include "AppHarness.h"

#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "VeskIPC/Socket.h"

AppHarness::AppHarness() : bin_(private_.base() + "/bin") {
    std::filesystem::create_directory(bin_);
    copyExecutable(VESK_BINARY, bin_ + "/vesk");
    copyExecutable(VESK_APP_BINARY, appPath());
}

AppHarness::~AppHarness() { stop(); }

std::vector<std::string> AppHarness::underFaketime(const std::string& program,
                                                   const std::vector<std::string>& arguments) const {
    std::vector<std::string> argv{"faketime", "-f", "@" + moment, program};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return argv;
}

void AppHarness::start(const std::vector<std::string>& arguments) {
    awaitListening(spawnProcess(underFaketime(appPath(), arguments), environment), VeskSocket::defaultPath());
}

void AppHarness::stop() {
    endProcessesOf(appPath());
    // The faketime wrappers that ended with their app.
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

void AppHarness::kill() {
    // A killed process lets go of its lock only once its last thread has ended, so wait until
    // it is gone for good: reaped by us (it was put in the background) or by its faketime wrapper.
    for (pid_t pid : processesOf(appPath())) {
        ::kill(pid, SIGKILL);
        for (int i = 0; i < 500 && waitpid(pid, nullptr, WNOHANG) != pid && ::kill(pid, 0) == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}
