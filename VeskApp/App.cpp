#include "VeskApp/App.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <thread>

#include <systemd/sd-daemon.h>

#include "Platform/Text.h"
#include "VeskApp/Activity.h"
#include "VeskApp/Handler.h"
#include "VeskApp/Notifier.h"
#include "VeskApp/Planning.h"
#include "VeskApp/Scheduler.h"
#include "VeskApp/Store.h"
#include "VeskIPC/Socket.h"
#include "VeskParse/SnoozeTime.h"

namespace App {

namespace {

// A descriptor closed with its owner.
struct Descriptor {
    int fd = -1;
    explicit Descriptor(int fd) : fd(fd) {}
    ~Descriptor() {
        if (fd >= 0) close(fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
};

std::string hostName() {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0 || !*name) return "this computer";
    return name;
}

// Only one app per user plans and delivers: the lock on a file in the data directory.
// Absent when another instance holds it; a directory that can't be written gives no
// lock and no refusal (the store will say what is wrong).
std::optional<int> takeLock(const Paths& paths, bool& heldElsewhere) {
    std::error_code ignored;
    std::filesystem::create_directories(paths.dataDirectory, ignored);
    int fd = open(paths.lockFile().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) return std::nullopt;
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        heldElsewhere = errno == EWOULDBLOCK;
        close(fd);
        return std::nullopt;
    }
    return fd;
}

// The user's calendar, read again when the system's zone changes.
class UserCalendar {
public:
    UserCalendar() : calendar_(std::make_shared<const Calendar>(Calendar::current())) {}
    Calendar get() const {
        std::lock_guard guard(lock_);
        return *calendar_;
    }
    void reload() {
        auto fresh = std::make_shared<const Calendar>(Calendar::current());
        std::lock_guard guard(lock_);
        calendar_ = fresh;
    }

private:
    mutable std::mutex lock_;
    std::shared_ptr<const Calendar> calendar_;
};

// Counts the requests in flight, so that a stop can wait for them.
class InFlight {
public:
    void enter() {
        std::lock_guard guard(lock_);
        ++count_;
    }
    void leave() {
        std::lock_guard guard(lock_);
        if (--count_ == 0) idle_.notify_all();
    }
    void wait(std::chrono::seconds limit) {
        std::unique_lock guard(lock_);
        idle_.wait_for(guard, limit, [&] { return count_ == 0; });
    }

private:
    std::mutex lock_;
    std::condition_variable idle_;
    int count_ = 0;
};

timespec toTimespec(Date date) {
    double seconds = std::max(date.unixSeconds(), 1.0);
    timespec value{};
    value.tv_sec = static_cast<time_t>(seconds);
    value.tv_nsec = static_cast<long>((seconds - static_cast<double>(value.tv_sec)) * 1e9);
    return value;
}

void add(int epoll, int fd, uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.fd = fd;
    epoll_ctl(epoll, EPOLL_CTL_ADD, fd, &event);
}

}  // namespace

int serve(const Options& options) {
    auto fail = [&](const std::string& reason) {
        if (options.failed) options.failed(reason);
        std::cerr << "vesk-app: " << reason << "\n";
        return 1;
    };
    const Config& config = options.config;

    // Signals arrive through a descriptor of the loop; every thread started later has them blocked.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    signal(SIGPIPE, SIG_IGN);
    Descriptor signalFd(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));

    bool heldElsewhere = false;
    std::optional<int> lock = takeLock(options.paths, heldElsewhere);
    Descriptor lockFd(lock.value_or(-1));
    if (heldElsewhere) return fail("another vesk-app already runs for this user");

    Store store(options.paths.database());
    if (auto failure = store.failure()) std::cerr << "vesk-app: " << *failure << "\n";
    DeviceRecord stored;
    if (!store.failure()) stored = store.data()->device;
    Activity activity(config.deviceName.value_or(hostName()), config.relayOnly, stored);
    UserCalendar calendar;

    Descriptor changed(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    auto signalChange = [fd = changed.fd] { eventfd_write(fd, 1); };
    std::atomic<bool> notificationsAvailable{false};

    Handler handler(store, config, activity,
                    Handler::World{[] { return Date::now(); }, [&] { return calendar.get(); },
                                   [&] { return notificationsAvailable ? "granted" : "unavailable"; }, signalChange});

    InFlight inFlight;
    std::string path = VeskSocket::candidatePaths().front();
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    chmod(std::filesystem::path(path).parent_path().c_str(), 0700);
    SocketServer server(path, [&](const Request& request) {
        inFlight.enter();
        try {
            Response response = handler.answer(request);
            if (options.verbose) std::cerr << "vesk-app: answered a request\n";
            inFlight.leave();
            return response;
        } catch (...) {
            inFlight.leave();
            throw;
        }
    });
    if (auto error = server.start()) {
        if (error->kind == SocketError::Case::inUse) return fail("another vesk-app already serves " + path);
        return fail("can't listen on " + path + ": " + std::strerror(error->code));
    }
    std::cerr << "vesk-app: serving " << path << "\n";
    if (options.ready) options.ready();
    sd_notify(0, "READY=1");

    // Done and Snooze from a notification change the store as `vesk done` and the
    // one-gesture snooze would.
    Notifier notifier([&](const std::string& key, Notifier::Action action) {
        try {
            if (action == Notifier::Action::done) handler.complete(key);
            else handler.snoozeOnce(key);
        } catch (const WireError& error) {
            std::cerr << "vesk-app: " << error.message << "\n";
        }
    });
    notifier.connect();

    Descriptor epoll(epoll_create1(EPOLL_CLOEXEC));
    Descriptor timer(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK));
    Descriptor zone(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    inotify_add_watch(zone.fd, "/etc", IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE | IN_DELETE | IN_ATTRIB);
    add(epoll.fd, signalFd.fd, EPOLLIN);
    add(epoll.fd, changed.fd, EPOLLIN);
    add(epoll.fd, timer.fd, EPOLLIN);
    add(epoll.fd, zone.fd, EPOLLIN);
    int busFd = -1;

    std::optional<Date> armed;  // the moment the timer is set for
    // One round: deliver what came due, remember up to when, and set the timer for the next.
    auto wake = [&](bool timerFired) {
        if (store.failure()) return;
        Date now = Date::now();
        // Woken for a moment, the round covers it, even should the clock read a hair before.
        if (timerFired && armed && *armed > now) now = *armed;
        const Calendar userCalendar = calendar.get();
        auto data = store.data();
        const Device me = activity.me(now);
        Scheduler::Round round = Scheduler::round(*data, config, me, now, userCalendar);
        if (round.deliveredUpTo != data->deliveredUpTo) {
            try {
                // Saved before anything is shown: a crash in between loses an alert, never repeats one.
                data = store.change([&](StoreData& saved) {
                    saved.deliveredUpTo = round.deliveredUpTo;
                    saved.device = activity.record();
                });
            } catch (const WireError& error) {
                std::cerr << "vesk-app: " << error.message << "\n";
                round.due.clear();
            }
        }
        if (!round.due.empty()) {
            auto rows = Planning::rows(*data, config, me, now, userCalendar);
            const std::string snooze =
                SnoozeTime::swipeIsTomorrow(now, userCalendar) ? "Snooze till tomorrow" : "Snooze 8 hours";
            for (const PlannedAlert& alert : round.due) {
                std::string body;
                for (const auto& row : rows)
                    if (row.id == alert.key) body = row.detail;
                notifier.show(alert, body, snooze);
                if (options.verbose) std::cerr << "vesk-app: alert " << alert.id() << "\n";
            }
        }
        itimerspec setting{};
        setting.it_value = toTimespec(round.nextWake);
        timerfd_settime(timer.fd, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &setting, nullptr);
        armed = round.nextWake;
    };

    wake(false);
    for (bool running = true; running;) {
        notifier.process();
        notificationsAvailable = notifier.available();
        if (int fd = notifier.descriptor(); fd != busFd) {
            if (busFd >= 0) epoll_ctl(epoll.fd, EPOLL_CTL_DEL, busFd, nullptr);
            busFd = fd;
            if (busFd >= 0) add(epoll.fd, busFd, EPOLLIN);
        }
        if (busFd >= 0) {
            epoll_event event{};
            event.events = notifier.events();
            event.data.fd = busFd;
            epoll_ctl(epoll.fd, EPOLL_CTL_MOD, busFd, &event);
        }
        int timeout = -1;
        if (uint64_t deadline = notifier.deadline(); deadline != UINT64_MAX) {
            timespec monotonic{};
            clock_gettime(CLOCK_MONOTONIC, &monotonic);
            uint64_t nowUsec = uint64_t(monotonic.tv_sec) * 1000000 + uint64_t(monotonic.tv_nsec) / 1000;
            timeout = deadline <= nowUsec ? 0 : static_cast<int>(std::min<uint64_t>((deadline - nowUsec + 999) / 1000, 60000));
        }

        epoll_event events[8];
        int count = epoll_wait(epoll.fd, events, 8, timeout);
        if (count < 0 && errno != EINTR) return fail(std::string("the loop failed: ") + std::strerror(errno));
        bool replan = false, timerFired = false;
        for (int i = 0; i < count; ++i) {
            int fd = events[i].data.fd;
            if (fd == signalFd.fd) {
                running = false;
            } else if (fd == changed.fd) {
                eventfd_t value;
                eventfd_read(changed.fd, &value);
                replan = true;
            } else if (fd == timer.fd) {
                uint64_t expirations;
                // ECANCELED: the wall clock was set; either way it's time to look again.
                bool fired = read(timer.fd, &expirations, sizeof expirations) == sizeof expirations;
                timerFired = timerFired || fired;
                replan = true;
            } else if (fd == zone.fd) {
                char buffer[4096];
                bool zoneChanged = false;
                for (ssize_t n; (n = read(zone.fd, buffer, sizeof buffer)) > 0;) {
                    for (char* at = buffer; at < buffer + n;) {
                        auto* event = reinterpret_cast<inotify_event*>(at);
                        std::string name = event->len ? event->name : "";
                        if (name == "localtime" || name == "timezone") zoneChanged = true;
                        at += sizeof(inotify_event) + event->len;
                    }
                }
                if (zoneChanged) {
                    calendar.reload();
                    replan = true;
                }
            }
        }
        if (running && replan) wake(timerFired);
    }

    sd_notify(0, "STOPPING=1");
    server.stop();
    inFlight.wait(std::chrono::seconds(10));
    if (!store.failure()) {
        try {
            store.change([&](StoreData& data) { data.device = activity.record(); });
        } catch (const WireError&) {
        }
    }
    std::cerr << "vesk-app: stopped\n";
    return 0;
}

}  // namespace App
