#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

// Running a built program as a child process, for tests.
struct ProcessResult {
    std::string out;
    std::string err;
    int status = -1;  // exit status, or 128 + signal
};

// A small, fixed environment: TZ=Europe/Amsterdam, LANG=en_US.UTF-8, PATH of the system,
// COLUMNS=80, and a system bus that isn't there. Tests add or replace variables from here.
std::map<std::string, std::string> testEnvironment();

// Runs `argv` (argv[0] is the program's path) with exactly `environment`, its standard input
// empty, and gathers both output streams.
ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment);

// Runs vesk (the built one, or a copy at `binary`) under faketime pinned at 2026-11-18
// 10:00:00 local time, with `environment` (testEnvironment() when empty).
ProcessResult runVesk(const std::vector<std::string>& arguments, std::map<std::string, std::string> environment = {},
                      const std::string& binary = VESK_BINARY);

// Returns once something listens on the socket at `path`; throws when process `pid` ends
// first, or after 10 seconds.
void awaitListening(pid_t pid, const std::string& path);
