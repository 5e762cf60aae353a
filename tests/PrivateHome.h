#pragma once

#include <spawn.h>
#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

// A fresh home for one end-to-end test. The first one of the process moves the process
// into a private mount namespace; each mounts an empty temporary directory over the
// user's home directory there, so vesk, the app and the test itself see it as home and
// the real home of whoever runs the tests is never touched. Needs root (or, failing that,
// the right to make a user namespace). Gone when destroyed.
class PrivateHome {
public:
    PrivateHome();
    ~PrivateHome();
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    // The temporary directory with home/ and whatever a harness keeps beside it.
    const std::string& base() const { return base_; }
    const std::string& home() const { return home_; }

private:
    std::string base_;
    std::string home_;
    std::string realHome_;
};

// Starts `argv` (argv[0] a path) with exactly `environment` and those file `actions`; throws
// when it can't.
pid_t spawnProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment,
                   const posix_spawn_file_actions_t* actions = nullptr);
// Ends a process of ours: SIGTERM, and SIGKILL after 3 seconds.
void endProcess(pid_t pid);
// The processes whose executable is `path`, ours or started by others.
std::vector<pid_t> processesOf(const std::string& path);
// Ends every one of them.
void endProcessesOf(const std::string& path);
// Puts the program `from` at `to`: a hard link where it can, else a copy.
void copyExecutable(const std::string& from, const std::string& to);
void writeFile(const std::string& path, const std::string& contents);
std::vector<std::string> readLines(const std::string& path);
