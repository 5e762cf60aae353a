#include "Process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

std::map<std::string, std::string> testEnvironment() {
    return {
        {"TZ", "Europe/Amsterdam"},
        {"LANG", "en_US.UTF-8"},
        {"PATH", "/usr/local/bin:/usr/bin:/bin"},
        {"COLUMNS", "80"},
    };
}

ProcessResult runProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& environment,
                         const std::string& input) {
    int in[2], out[2], err[2];
    if (pipe(in) || pipe(out) || pipe(err)) throw std::runtime_error("pipe failed");

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) posix_spawn_file_actions_addclose(&actions, fd);

    std::vector<std::string> envStrings;
    for (const auto& [key, value] : environment) envStrings.push_back(key + "=" + value);
    std::vector<char*> args, env;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    for (const auto& e : envStrings) env.push_back(const_cast<char*>(e.c_str()));
    env.push_back(nullptr);

    pid_t pid;
    int spawned = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), env.data());
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    close(err[1]);
    if (spawned != 0) {
        close(in[1]);
        close(out[0]);
        close(err[0]);
        throw std::runtime_error("could not start " + argv[0]);
    }

    ProcessResult result;
    size_t written = 0;
    if (input.empty()) close(in[1]);
    fcntl(in[1], F_SETFL, O_NONBLOCK);
    bool inOpen = !input.empty(), outOpen = true, errOpen = true;
    while (outOpen || errOpen || inOpen) {
        std::vector<pollfd> fds;
        if (outOpen) fds.push_back({out[0], POLLIN, 0});
        if (errOpen) fds.push_back({err[0], POLLIN, 0});
        if (inOpen) fds.push_back({in[1], POLLOUT, 0});
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (const auto& p : fds) {
            if (!p.revents) continue;
            if (p.fd == in[1]) {
                ssize_t n = write(in[1], input.data() + written, input.size() - written);
                if (n > 0) written += n;
                if (n < 0 || written == input.size()) {
                    close(in[1]);
                    inOpen = false;
                }
                continue;
            }
            char buffer[65536];
            ssize_t n = read(p.fd, buffer, sizeof buffer);
            if (n <= 0) {
                close(p.fd);
                (p.fd == out[0] ? outOpen : errOpen) = false;
            } else {
                (p.fd == out[0] ? result.out : result.err).append(buffer, n);
            }
        }
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

ProcessResult runVesk(const std::vector<std::string>& arguments, std::map<std::string, std::string> environment) {
    return runVeskAt(VESK_BINARY, arguments, std::move(environment));
}

ProcessResult runVeskAt(const std::string& binary, const std::vector<std::string>& arguments,
                        std::map<std::string, std::string> environment) {
    if (environment.empty()) environment = testEnvironment();
    std::vector<std::string> argv{"faketime", "-f", "@2026-11-18 10:00:00", binary};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return runProcess(argv, environment);
}
