#include "VeskIPC/Socket.h"

#include <pwd.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "Platform/Heap.h"

namespace VeskSocket {

namespace {

// The longest path that fits, with its terminating zero, in the address of the
// platform the socket was laid out for.
constexpr size_t maxPathBytes = 103;

std::string underHome(const std::string& relative) {
    std::string home = homeDirectory();
    if (home.empty() || home.back() != '/') home += '/';
    return home + relative;
}

}  // namespace

std::string homeDirectory() {
    if (const passwd* entry = getpwuid(getuid()); entry && entry->pw_dir && *entry->pw_dir) return entry->pw_dir;
    // No password entry: the system's notion of this user's home.
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    return "/";
}

std::string defaultPath() {
    return underHome(std::string("Library/Group Containers/") + appGroup + "/vesk.sock");
}

std::vector<std::string> candidatePaths() {
    return {defaultPath(), underHome("Library/Application Support/Vesk/vesk.sock")};
}

std::optional<sockaddr_un> address(const std::string& path) {
    if (path.size() > maxPathBytes) return std::nullopt;
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    std::memcpy(result.sun_path, path.data(), path.size());
    result.sun_path[path.size()] = '\0';
    return result;
}

socklen_t addressLength() {
    return offsetof(sockaddr_un, sun_path) + maxPathBytes + 1;
}

void configure(int descriptor, double timeout) {
    std::signal(SIGPIPE, SIG_IGN);
    timeval value{};
    // Whole seconds, truncated. Zero means no timeout to the system, and so does
    // anything under a second (or not a number) here.
    if (timeout >= 1) value.tv_sec = static_cast<time_t>(std::min(timeout, 1e9));
    setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &value, sizeof value);
    setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &value, sizeof value);
}

std::string readAll(int descriptor) {
    std::string result;
    char buffer[65536];
    for (;;) {
        ssize_t count = read(descriptor, buffer, sizeof buffer);
        if (count > 0) {
            size_t needed = result.size() + static_cast<size_t>(count);
            if (needed > result.capacity()) {
                size_t capacity = std::max(needed, 2 * result.capacity());
                Heap::prepare(capacity);
                result.reserve(capacity);
            }
            result.append(buffer, static_cast<size_t>(count));
        } else if (count < 0 && errno == EINTR) {
            continue;
        } else {
            return result;
        }
    }
}

bool writeAll(int descriptor, const std::string& bytes) {
    size_t written = 0;
    while (written < bytes.size()) {
        ssize_t count = ::send(descriptor, bytes.data() + written, bytes.size() - written, MSG_NOSIGNAL);
        if (count >= 0) {
            written += static_cast<size_t>(count);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

}  // namespace VeskSocket
