// A stand-in for the app, for end-to-end tests: it serves the socket exchange and
// answers from a script.
//
//   vesk-standin [--background] [--path P]
//
// --path P        listen on P instead of the default socket path
// --background    fork; the parent exits 0 at once and the child serves, detached from
//                 the terminal and from the caller's standard streams (the way the
//                 command line starts its companion app)
//
// Environment:
//   STANDIN_SCRIPT    file of answers, one line per request, taken in order; once the
//                     lines run out the last one answers again. A line is sent back as
//                     it stands, except
//                       SILENT   close the connection without an answer
//                       GARBAGE  answer with bytes that are no response
//                     Without a script (or with an empty one) every answer is {"schema":1}.
//   STANDIN_LOG       file to which every request is appended, one per line, before it
//                     is answered
//   STANDIN_PIDS      file to which the serving process appends its process id
//   STANDIN_LIFETIME  seconds after which it stops and exits (default 20); SIGTERM,
//                     SIGINT and SIGHUP stop it sooner
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "VeskIPC/Socket.h"

namespace {

struct Script {
    std::vector<std::string> lines;
    std::string logPath;
    std::mutex lock;  // guards next and the log
    size_t next = 0;

    std::optional<std::string> answer(std::string_view request) {
        std::lock_guard guard(lock);
        if (!logPath.empty()) std::ofstream(logPath, std::ios::app | std::ios::binary) << request << '\n';
        std::string line = lines.empty() ? R"({"schema":1})" : lines[std::min(next, lines.size() - 1)];
        ++next;
        if (line == "SILENT") return std::nullopt;
        if (line == "GARBAGE") return std::string("this is not a response\n");
        return line;
    }
};

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

void detach() {
    pid_t child = fork();
    if (child < 0) {
        std::perror("vesk-standin: fork");
        std::exit(1);
    }
    if (child > 0) _exit(0);
    setsid();
    // Whoever waits for the caller's streams or descriptors to close must not wait for us.
    close_range(3, ~0U, 0);
    int null = open("/dev/null", O_RDWR);
    for (int stream : {0, 1, 2}) dup2(null, stream);
    if (null > 2) close(null);
}

}  // namespace

int main(int argc, char** argv) {
    std::string path;
    bool background = false;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument == "--background") {
            background = true;
        } else if (argument == "--path" && i + 1 < argc) {
            path = argv[++i];
        } else {
            std::fprintf(stderr, "usage: vesk-standin [--background] [--path P]\n");
            return 64;
        }
    }
    if (path.empty()) path = VeskSocket::defaultPath();
    int lifetime = environment("STANDIN_LIFETIME").empty() ? 20 : std::atoi(environment("STANDIN_LIFETIME").c_str());

    if (background) detach();
    if (std::string pids = environment("STANDIN_PIDS"); !pids.empty())
        std::ofstream(pids, std::ios::app) << getpid() << '\n';

    // Blocked here, before any thread exists, so that only the wait below takes them.
    sigset_t stopping;
    sigemptyset(&stopping);
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&stopping, signal);
    sigprocmask(SIG_BLOCK, &stopping, nullptr);

    Script script;
    script.lines = readLines(environment("STANDIN_SCRIPT"));
    script.logPath = environment("STANDIN_LOG");
    SocketServer server(path, SocketServer::RawHandler([&script](std::string_view request) {
                            return script.answer(request);
                        }));
    if (auto error = server.start()) {
        std::fprintf(stderr, "vesk-standin: cannot listen on %s (case %d, errno %d)\n", path.c_str(),
                     static_cast<int>(error->kind), error->code);
        return 1;
    }

    timespec limit{lifetime > 0 ? lifetime : 0, 0};
    while (sigtimedwait(&stopping, nullptr, &limit) < 0 && errno == EINTR) {
    }
    server.stop();
    // Answers under way hold the script; leave without waiting for them.
    _exit(0);
}
