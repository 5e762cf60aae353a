#include "StandInHarness.h"

#include <fcntl.h>
#include <pwd.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <spawn.h>
#include <stdexcept>
#include <thread>

#include "VeskIPC/Socket.h"

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failWith(const std::string& what) {
    throw std::runtime_error("stand-in harness: " + what + ": " + std::strerror(errno));
}

void writeFile(const std::string& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
}

// Root may make a mount namespace as it is; anyone else first makes a user namespace in
// which the same user id owns it.
void unshareMounts() {
    if (unshare(CLONE_NEWNS) == 0) return;
    uid_t uid = getuid();
    gid_t gid = getgid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) failWith("cannot make a private mount namespace");
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", std::to_string(uid) + " " + std::to_string(uid) + " 1");
    writeFile("/proc/self/gid_map", std::to_string(gid) + " " + std::to_string(gid) + " 1");
}

// Once per process: mounts made from here on are seen by this process and its children
// alone. The process also becomes the reaper of its orphans, so that stand-ins that
// vesk put in the background can be waited for.
void enterPrivateNamespace() {
    static std::once_flag once;
    std::call_once(once, [] {
        unshareMounts();
        if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) failWith("cannot make / private");
        prctl(PR_SET_CHILD_SUBREAPER, 1);
    });
}

std::string passwordHome() {
    const passwd* entry = getpwuid(getuid());
    if (!entry || !entry->pw_dir || !*entry->pw_dir) throw std::runtime_error("stand-in harness: no home directory");
    return entry->pw_dir;
}

pid_t spawn(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment) {
    std::vector<std::string> strings;
    for (const auto& [key, value] : environment) strings.push_back(key + "=" + value);
    std::vector<char*> args, env;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    for (const auto& e : strings) env.push_back(const_cast<char*>(e.c_str()));
    env.push_back(nullptr);
    pid_t pid;
    if (int code = posix_spawn(&pid, args[0], nullptr, nullptr, args.data(), env.data())) {
        errno = code;
        failWith("cannot run " + argv[0]);
    }
    return pid;
}

// Ends a process of ours: politely, then for sure.
void end(pid_t pid) {
    if (kill(pid, SIGTERM) != 0) return;
    for (int i = 0; i < 300; ++i) {
        pid_t done = waitpid(pid, nullptr, WNOHANG);
        if (done == pid || (done < 0 && errno == ECHILD)) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

void copyExecutable(const std::string& from, const std::string& to) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    fs::permissions(to, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                            fs::perms::others_read | fs::perms::others_exec);
}

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

}  // namespace

std::string StandInHarness::line(const Response& response) { return encodeWire(response).value(); }

StandInHarness::StandInHarness() {
    enterPrivateNamespace();
    realHome_ = passwordHome();
    char name[] = "/tmp/vesk-e2e-XXXXXX";
    if (!mkdtemp(name)) failWith("cannot make a temporary directory");
    base_ = name;
    home_ = base_ + "/home";
    for (const char* dir : {"/home", "/bin", "/path"}) fs::create_directory(base_ + dir);
    if (mount(home_.c_str(), realHome_.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        int code = errno;
        fs::remove_all(base_);
        errno = code;
        failWith("cannot mount " + home_ + " over " + realHome_);
    }

    environment = testEnvironment();
    environment["STANDIN_SCRIPT"] = base_ + "/script";
    environment["STANDIN_LOG"] = base_ + "/requests";
    environment["STANDIN_PIDS"] = base_ + "/pids";
    environment["STANDIN_LIFETIME"] = "20";
}

StandInHarness::~StandInHarness() {
    stop();
    umount2(realHome_.c_str(), MNT_DETACH);
    std::error_code ignored;
    fs::remove_all(base_, ignored);
}

void StandInHarness::script(const std::vector<std::string>& lines) {
    std::string contents;
    for (const auto& line : lines) contents += line + "\n";
    writeFile(environment.at("STANDIN_SCRIPT"), contents);
}

void StandInHarness::start(const std::vector<std::string>& lines, const std::string& path) {
    script(lines);
    std::string where = path.empty() ? VeskSocket::defaultPath() : path;
    started_.push_back(spawn({STANDIN_BINARY, "--path", where}, environment));
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
    for (pid_t pid : pids) end(pid);
    started_.clear();
    writeFile(environment.at("STANDIN_PIDS"), "");
}

std::vector<std::string> StandInHarness::requests() const { return readLines(environment.at("STANDIN_LOG")); }

ProcessResult StandInHarness::vesk(const std::vector<std::string>& arguments) const {
    return runVeskAt(vesk_, arguments, environment);
}

void StandInHarness::installBesideVesk() {
    vesk_ = base_ + "/bin/vesk";
    copyExecutable(VESK_BINARY, vesk_);
    copyExecutable(STANDIN_BINARY, base_ + "/bin/vesk-app");
}

void StandInHarness::installOnPath() {
    copyExecutable(STANDIN_BINARY, base_ + "/path/vesk-app");
    environment["PATH"] = base_ + "/path:" + environment.at("PATH");
}
