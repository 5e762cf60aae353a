#include "Process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "PrivateHome.h"
#include "VeskIPC/Socket.h"

std::map<std::string, std::string> testEnvironment() {
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

ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment) {
    int out[2], err[2];
    if (pipe(out) || pipe(err)) throw std::runtime_error("pipe failed");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    for (int fd : {out[0], out[1], err[0], err[1]}) posix_spawn_file_actions_addclose(&actions, fd);
    pid_t pid = spawnProcess(argv, environment, &actions);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);

    ProcessResult result;
    pollfd fds[] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    std::string* into[] = {&result.out, &result.err};
    for (int open = 2; open > 0;) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (!fds[i].revents) continue;
            char buffer[65536];
            ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0) {
                into[i]->append(buffer, n);
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;  // poll skips it from now on
                --open;
            }
        }
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

ProcessResult runVesk(const std::vector<std::string>& arguments, std::map<std::string, std::string> environment,
                      const std::string& binary) {
    if (environment.empty()) environment = testEnvironment();
    std::vector<std::string> argv{"faketime", "-f", "@2026-11-18 10:00:00", binary};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return runProcess(argv, environment);
}

void awaitListening(pid_t pid, const std::string& path) {
    for (int i = 0; i < 1000; ++i) {
        if (SocketClient::isListening(path)) return;
        if (waitpid(pid, nullptr, WNOHANG) == pid)
            throw std::runtime_error("process " + std::to_string(pid) + " ended before it listened on " + path);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    throw std::runtime_error("nobody listens on " + path);
}
