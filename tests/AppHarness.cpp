#include "AppHarness.h"

#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "VeskIPC/Socket.h"

AppHarness::AppHarness(bool withApp) {
    std::filesystem::create_directory(base() + "/bin");
    copyExecutable(VESK_BINARY, base() + "/bin/vesk");
    if (withApp) copyExecutable(VESK_APP_BINARY, appPath());
}

void AppHarness::start(const std::vector<std::string>& arguments) {
    const std::string socket = VeskSocket::defaultPath();
    pid_t pid = spawnProcess(underFaketime(moment, appPath(), arguments), environment);
    for (int i = 0; i < 1000; ++i) {
        if (SocketClient::isListening(socket)) return;
        if (waitpid(pid, nullptr, WNOHANG) == pid) throw std::runtime_error("vesk-app ended before it listened");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    throw std::runtime_error("nobody listens on " + socket);
}
