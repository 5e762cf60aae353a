#pragma once

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
// COLUMNS=80. Tests add or replace variables from here.
std::map<std::string, std::string> testEnvironment();

// Runs `argv` (argv[0] is the program's path) with exactly `environment`, feeds `input`
// to standard input and gathers both output streams.
ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment,
                         const std::string& input = "");

// Runs the built vesk with these arguments under faketime pinned at
// 2026-11-18 10:00:00 local time, with `environment` (testEnvironment() when empty).
ProcessResult runVesk(const std::vector<std::string>& arguments,
                      std::map<std::string, std::string> environment = {});
// The same, for a vesk program at `binary` (a copy of the built one, say).
ProcessResult runVeskAt(const std::string& binary, const std::vector<std::string>& arguments,
                        std::map<std::string, std::string> environment = {});
