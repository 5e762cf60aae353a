#include "PrivateHome.h"

#include <dirent.h>
#include <pwd.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace {

[[noreturn]] void failWith(const std::string& what) {
    throw std::runtime_error("private home: " + what + ": " + std::strerror(errno));
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
// alone. The process also becomes the reaper of its orphans, so that programs that put
// themselves in the background can be waited for.
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
    if (!entry || !entry->pw_dir || !*entry->pw_dir) throw std::runtime_error("private home: no home directory");
    return entry->pw_dir;
}

}  // namespace

PrivateHome::PrivateHome() {
    enterPrivateNamespace();
    realHome_ = passwordHome();
    char name[] = "/tmp/vesk-e2e-XXXXXX";
    if (!mkdtemp(name)) failWith("cannot make a temporary directory");
    base_ = name;
    home_ = base_ + "/home";
    fs::create_directory(home_);
    if (mount(home_.c_str(), realHome_.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        int code = errno;
        fs::remove_all(base_);
        errno = code;
        failWith("cannot mount " + home_ + " over " + realHome_);
    }
}

PrivateHome::~PrivateHome() {
    umount2(realHome_.c_str(), MNT_DETACH);
    std::error_code ignored;
    fs::remove_all(base_, ignored);
}

pid_t spawnProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment,
                   const posix_spawn_file_actions_t* actions) {
    std::vector<std::string> strings;
    for (const auto& [key, value] : environment) strings.push_back(key + "=" + value);
    std::vector<char*> args, env;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    for (const auto& e : strings) env.push_back(const_cast<char*>(e.c_str()));
    env.push_back(nullptr);
    pid_t pid;
    if (int code = posix_spawnp(&pid, args[0], actions, nullptr, args.data(), env.data())) {
        errno = code;
        failWith("cannot run " + argv[0]);
    }
    return pid;
}

void endProcess(pid_t pid) {
    if (kill(pid, SIGTERM) != 0) return;
    for (int i = 0; i < 300; ++i) {
        pid_t done = waitpid(pid, nullptr, WNOHANG);
        if (done == pid || (done < 0 && errno == ECHILD)) {
            // Not ours to wait for: wait until it is gone.
            if (done < 0) {
                for (int j = 0; j < 300 && kill(pid, 0) == 0; ++j)
                    std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

std::vector<pid_t> processesOf(const std::string& path) {
    std::vector<pid_t> found;
    if (DIR* proc = opendir("/proc")) {
        while (dirent* entry = readdir(proc)) {
            char* end = nullptr;
            long pid = std::strtol(entry->d_name, &end, 10);
            if (*end || pid <= 0) continue;
            char target[PATH_MAX];
            std::string link = std::string("/proc/") + entry->d_name + "/exe";
            ssize_t n = readlink(link.c_str(), target, sizeof target - 1);
            if (n > 0 && std::string(target, static_cast<size_t>(n)) == path) found.push_back(static_cast<pid_t>(pid));
        }
        closedir(proc);
    }
    return found;
}

void endProcessesOf(const std::string& path) {
    for (pid_t pid : processesOf(path)) endProcess(pid);
}

void copyExecutable(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::remove(to, error);
    // A second name for the same file is as good as a copy, and costs nothing.
    fs::create_hard_link(from, to, error);
    if (!error) return;
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    fs::permissions(to, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec | fs::perms::others_read |
                            fs::perms::others_exec);
}

void writeFile(const std::string& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
}

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}
