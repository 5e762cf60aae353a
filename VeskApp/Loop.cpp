#include "VeskApp/Loop.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace {

void control(int epoll, int operation, int descriptor, uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.fd = descriptor;
    epoll_ctl(epoll, operation, descriptor, &event);
}

// Milliseconds until a CLOCK_MONOTONIC deadline in microseconds; -1 for none.
int millisecondsUntil(uint64_t deadline) {
    if (deadline == UINT64_MAX) return -1;
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    uint64_t nowUsec = uint64_t(now.tv_sec) * 1000000 + uint64_t(now.tv_nsec) / 1000;
    if (deadline <= nowUsec) return 0;
    return static_cast<int>(std::min<uint64_t>((deadline - nowUsec + 999) / 1000, 60000));
}

}  // namespace

Loop::Loop() : epoll_(epoll_create1(EPOLL_CLOEXEC)) {}

Loop::~Loop() { close(epoll_); }

void Loop::watch(int descriptor, std::function<void()> ready) {
    control(epoll_, EPOLL_CTL_ADD, descriptor, EPOLLIN);
    descriptors_.emplace_back(descriptor, std::move(ready));
}

void Loop::watch(Bus& bus, std::function<void()> process) { buses_.push_back({&bus, std::move(process), -1}); }

bool Loop::runOnce() {
    int timeout = -1;
    for (Watched& watched : buses_) {
        int descriptor = watched.bus->descriptor();
        if (descriptor != watched.descriptor) {
            if (watched.descriptor >= 0) epoll_ctl(epoll_, EPOLL_CTL_DEL, watched.descriptor, nullptr);
            if (descriptor >= 0) control(epoll_, EPOLL_CTL_ADD, descriptor, EPOLLIN);
            watched.descriptor = descriptor;
        }
        if (descriptor < 0) continue;
        control(epoll_, EPOLL_CTL_MOD, descriptor, watched.bus->events());
        int until = millisecondsUntil(watched.bus->deadline());
        if (until >= 0 && (timeout < 0 || until < timeout)) timeout = until;
    }

    epoll_event events[16];
    int count = epoll_wait(epoll_, events, 16, timeout);
    if (count < 0) return errno == EINTR;
    for (int i = 0; i < count; ++i) {
        for (auto& [descriptor, ready] : descriptors_)
            if (descriptor == events[i].data.fd) ready();
    }
    for (Watched& watched : buses_) watched.process();
    return true;
}
