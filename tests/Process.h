#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

// Running built programs as child processes, and the files they leave, for tests.
struct ProcessResult {
    std::string out;
    std::string err;
    int status = -1;  // exit status, or 128 + signal
};
using Environment = std::map<std::string, std::string>;

// A small, fixed environment: TZ=Europe/Amsterdam, LANG=en_US.UTF-8, PATH of the system,
// COLUMNS=80, and a system bus that isn't there. Tests add or replace variables from here.
Environment testEnvironment();

// Starts `argv` (argv[0] a path or a name on PATH) with exactly `environment` and those
// file `actions`; throws when it can't.
pid_t spawnProcess(const std::vector<std::string>& argv, const Environment& environment,
                   const posix_spawn_file_actions_t* actions = nullptr);
// Runs `argv` to its end, its standard input empty, and gathers both output streams.
ProcessResult runProcess(const std::vector<std::string>& argv, const Environment& environment);
// `program` with `arguments` under faketime, its clock starting at `moment` (local time)
// and running on from there.
std::vector<std::string> underFaketime(const std::string& moment, const std::string& program,
                                       const std::vector<std::string>& arguments);
// Runs the built vesk under faketime from 2026-11-18 10:00:00.
ProcessResult runVesk(const std::vector<std::string>& arguments, const Environment& environment = testEnvironment());

// Sends `signal` to a process, ours or not, and waits until it is gone: SIGKILL after 3 seconds.
void endProcess(pid_t pid, int signal);
// The processes whose executable is `path`, ours or started by others.
std::vector<pid_t> processesOf(const std::string& path);
// Ends every one of them with `signal`, and reaps whatever of ours ended with them.
void endProcessesOf(const std::string& path, int signal);

// Whether `done` holds within `limit`, asked every 20 ms.
bool eventually(const std::function<bool()>& done, std::chrono::milliseconds limit = std::chrono::seconds(8));

// Puts the program `from` at `to`: a hard link where it can, else a copy.
void copyExecutable(const std::string& from, const std::string& to);
void writeFile(const std::string& path, const std::string& contents);
std::vector<std::string> readLines(const std::string& path);
