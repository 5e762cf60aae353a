#include "StandInHarness.h"

#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "VeskIPC/Socket.h"

namespace fs = std::filesystem;

std::string StandInHarness::line(const Response& response) { return encodeWire(response).value(); }

StandInHarness::StandInHarness() : base_(private_.base()), home_(private_.home()) {
    for (const char* dir : {"/bin", "/path"}) fs::create_directory(base_ + dir);
    // vesk runs from a folder of its own, so that no vesk-app of the build stands beside it.
    copyExecutable(VESK_BINARY, vesk_);
    environment = testEnvironment();
    environment["STANDIN_SCRIPT"] = base_ + "/script";
    environment["STANDIN_LOG"] = base_ + "/requests";
    environment["STANDIN_PIDS"] = base_ + "/pids";
    environment["STANDIN_LIFETIME"] = "20";
}

StandInHarness::~StandInHarness() { stop(); }

void StandInHarness::script(const std::vector<std::string>& lines) {
    std::string contents;
    for (const auto& line : lines) contents += line + "\n";
    writeFile(environment.at("STANDIN_SCRIPT"), contents);
}

void StandInHarness::start(const std::vector<std::string>& lines, const std::string& path) {
    script(lines);
    std::string where = path.empty() ? VeskSocket::defaultPath() : path;
    started_.push_back(spawnProcess({STANDIN_BINARY, "--path", where}, environment));
    for (int i = 0; i < 500; ++i) {
        if (SocketClient::isListening(where)) return;
        if (waitpid(started_.back(), nullptr, WNOHANG) == started_.back()) {
            started_.pop_back();
            throw std::runtime_error("stand-in harness: the stand-in ended before it listened on " + where);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    throw std::runtime_error("stand-in harness: the stand-in doesn't listen on " + where);
}

void StandInHarness::stop() {
    std::vector<pid_t> pids = started_;
    for (const auto& line : readLines(environment.at("STANDIN_PIDS"))) pids.push_back(std::stoi(line));
    std::sort(pids.begin(), pids.end());
    pids.erase(std::unique(pids.begin(), pids.end()), pids.end());
    for (pid_t pid : pids) endProcess(pid);
    started_.clear();
    writeFile(environment.at("STANDIN_PIDS"), "");
}

std::vector<std::string> StandInHarness::requests() const { return readLines(environment.at("STANDIN_LOG")); }

ProcessResult StandInHarness::vesk(const std::vector<std::string>& arguments) const {
    return runVeskAt(vesk_, arguments, environment);
}

void StandInHarness::installBesideVesk() {
    copyExecutable(STANDIN_BINARY, base_ + "/bin/vesk-app");
}

void StandInHarness::installOnPath() {
    copyExecutable(STANDIN_BINARY, base_ + "/path/vesk-app");
    environment["PATH"] = base_ + "/path:" + environment.at("PATH");
}
