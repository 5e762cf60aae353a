#include "VeskApp/Daemon.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace Daemon {

namespace {

constexpr int readyWithinMilliseconds = 10000;

// What the detached process says on the pipe: "ready", or its reason; until it closes it.
std::string awaitWord(int fd) {
    std::string word;
    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(readyWithinMilliseconds);
    for (;;) {
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return word.empty() ? "the app didn't get ready within 10 seconds" : word;
        pollfd watch{fd, POLLIN, 0};
        if (poll(&watch, 1, static_cast<int>(left.count())) < 0 && errno != EINTR) return "can't wait for the app";
        char buffer[512];
        ssize_t n = read(fd, buffer, sizeof buffer);
        if (n > 0) {
            word.append(buffer, static_cast<size_t>(n));
            if (word.find('\n') != std::string::npos) return word.substr(0, word.find('\n'));
        } else if (n == 0) {
            return word.empty() ? "the app ended before it was ready" : word;
        } else if (errno != EINTR && errno != EAGAIN) {
            return "can't hear from the app";
        }
    }
}

void say(int fd, const std::string& word) {
    std::string line = word + "\n";
    for (size_t at = 0; at < line.size();) {
        ssize_t n = write(fd, line.data() + at, line.size() - at);
        if (n <= 0 && errno != EINTR) return;
        if (n > 0) at += static_cast<size_t>(n);
    }
}

}  // namespace

void background(const std::function<int(Ready ready, Failed failed)>& serve) {
    int word[2];
    if (pipe2(word, O_CLOEXEC) != 0) {
        std::cerr << "vesk-app: can't start in the background: " << std::strerror(errno) << "\n";
        std::exit(1);
    }
    pid_t child = fork();
    if (child < 0) {
        std::cerr << "vesk-app: can't start in the background: " << std::strerror(errno) << "\n";
        std::exit(1);
    }
    if (child > 0) {
        close(word[1]);
        std::string said = awaitWord(word[0]);
        waitpid(child, nullptr, 0);
        if (said == "ready") std::exit(0);
        std::cerr << "vesk-app: " << said << "\n";
        std::exit(1);
    }

    // The first child leads a new session and leaves at once; its child, which can never
    // take a terminal, is the app.
    close(word[0]);
    setsid();
    pid_t app = fork();
    if (app != 0) _exit(app < 0 ? 1 : 0);

    if (chdir("/") != 0) _exit(1);
    umask(077);
    int null = open("/dev/null", O_RDWR);
    for (int fd = 0; fd <= 2; ++fd) dup2(null, fd);
    if (null > 2) close(null);
    // Nothing the caller had open stays open: a caller waiting on a pipe would wait for us.
    if (word[1] > 3) close_range(3, static_cast<unsigned>(word[1]) - 1, 0);
    close_range(static_cast<unsigned>(word[1]) + 1, ~0U, 0);

    bool answered = false;
    int status = serve(
        [&] {
            say(word[1], "ready");
            close(word[1]);
            answered = true;
        },
        [&](const std::string& reason) {
            if (answered) return;
            say(word[1], reason);
            close(word[1]);
            answered = true;
        });
    std::exit(status);
}

}  // namespace Daemon
