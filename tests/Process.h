#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

// Running built programs as child processes, and the files they leave, for tests.
struct ProcessResult {
    std::string out;
    std::string err;
    int status = -1;  // exit status, or 128 + signal
};
using Environment = std::map<std::string, std::string>;

// A small, fixed environment that tests add to or change.
inline Environment testEnvironment() {
    return {
        {"TZ", "Europe/Amsterdam"},
        {"LANG", "en_US.UTF-8"},
        {"PATH", "/usr/local/bin:/usr/bin:/bin"},
        {"COLUMNS", "80"},
        // Never the machine's system bus, with its location service and logind: a test that
        // wants one starts its own.
        {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/vesk-tests/system_bus_socket"},
    };
}

// Starts `argv` (argv[0] a path or a name on PATH) with exactly `environment` and those
// file `actions`; throws when it can't.
inline pid_t spawnProcess(const std::vector<std::string>& argv, const Environment& environment,
                          const posix_spawn_file_actions_t* actions = nullptr) {
    std::vector<std::string> strings;
    for (const auto& [key, value] : environment) strings.push_back(key + "=" + value);
    std::vector<char*> args, env;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    for (const auto& e : strings) env.push_back(const_cast<char*>(e.c_str()));
    args.push_back(nullptr);
    env.push_back(nullptr);
    pid_t pid;
    if (int code = posix_spawnp(&pid, args[0], actions, nullptr, args.data(), env.data()))
        throw std::runtime_error("cannot run " + argv[0] + ": " + std::strerror(code));
    return pid;
}

// Runs `argv` to its end, its standard input empty, and gathers both output streams. They go
// to files rather than pipes: nothing the program leaves running can hold the test up by
// keeping them open.
inline ProcessResult runProcess(const std::vector<std::string>& argv, const Environment& environment) {
    FILE* files[] = {std::tmpfile(), std::tmpfile()};
    if (!files[0] || !files[1]) throw std::runtime_error("cannot make a temporary file");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, fileno(files[0]), 1);
    posix_spawn_file_actions_adddup2(&actions, fileno(files[1]), 2);
    pid_t pid = spawnProcess(argv, environment, &actions);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    std::string texts[2];
    for (int i = 0; i < 2; ++i) {
        std::rewind(files[i]);
        char buffer[65536];
        while (size_t n = std::fread(buffer, 1, sizeof buffer, files[i])) texts[i].append(buffer, n);
        std::fclose(files[i]);
    }
    return {texts[0], texts[1], WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)};
}

// `program` with `arguments` under faketime, its clock starting at `moment` (local time)
// and running on from there.
inline std::vector<std::string> underFaketime(const std::string& moment, const std::string& program,
                                              const std::vector<std::string>& arguments) {
    std::vector<std::string> argv{"faketime", "-f", "@" + moment, program};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return argv;
}

// Runs the built vesk under faketime from 2026-11-18 10:00:00.
inline ProcessResult runVesk(const std::vector<std::string>& arguments,
                             const Environment& environment = testEnvironment()) {
    return runProcess(underFaketime("2026-11-18 10:00:00", VESK_BINARY, arguments), environment);
}

// Sends `signal` to a process, ours or not, and waits until it is gone: SIGKILL after 3 seconds.
inline void endProcess(pid_t pid, int signal) {
    if (kill(pid, signal) != 0) return;
    // Ours is gone once reaped; another's, once no longer there.
    for (int i = 0; i < 300; ++i) {
        pid_t done = waitpid(pid, nullptr, WNOHANG);
        if (done == pid || (done < 0 && kill(pid, 0) != 0)) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

// The processes whose executable is `path`, ours or started by others.
inline std::vector<pid_t> processesOf(const std::string& path) {
    std::vector<pid_t> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::error_code error;
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos &&
            std::filesystem::read_symlink(entry.path() / "exe", error) == path)
            found.push_back(std::stoi(name));
    }
    return found;
}

// Ends every one of them with `signal`, and reaps whatever of ours ended with them: the
// faketime wrappers.
inline void endProcessesOf(const std::string& path, int signal) {
    for (pid_t pid : processesOf(path)) endProcess(pid, signal);
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

// Whether `done` holds within `limit`, asked every 20 ms.
inline bool eventually(const std::function<bool()>& done, std::chrono::milliseconds limit = std::chrono::seconds(8)) {
    for (auto until = std::chrono::steady_clock::now() + limit; !done();) {
        if (std::chrono::steady_clock::now() > until) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

// Puts the program `from` at `to`: a hard link where it can, else a copy with its permissions.
inline void copyExecutable(const std::string& from, const std::string& to) {
    std::error_code error;
    std::filesystem::remove(to, error);
    std::filesystem::create_hard_link(from, to, error);
    if (error) std::filesystem::copy_file(from, to);
}

inline void writeFile(const std::string& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
}

inline std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}
