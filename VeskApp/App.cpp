#include "VeskApp/App.h"

#include <fcntl.h>
#include <signal.h>
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
#include "VeskApp/GeoClue.h"
#include "VeskApp/Geocoder.h"
#include "VeskApp/Handler.h"
#include "VeskApp/LocalModel.h"
#include "VeskApp/Loop.h"
#include "VeskApp/Nagging.h"
#include "VeskApp/Notifier.h"
#include "VeskApp/PlaceWatch.h"
#include "VeskApp/SessionIdle.h"
#include "VeskApp/Store.h"
#include "VeskApp/UserCalendar.h"
#include "VeskIPC/Socket.h"

namespace App {

namespace {

// How long after a change the app plans again: short beside the minutes alerts are apart.
constexpr long settleNanoseconds = 50'000'000;
// How long `vesk places add --here` waits for a position.
constexpr std::chrono::seconds hereLimit{15};

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

// Whether the events read from `zone` (an inotify watch on /etc) touch the time zone.
bool zoneChanged(int zone) {
    char buffer[4096];
    bool changed = false;
    for (ssize_t n; (n = read(zone, buffer, sizeof buffer)) > 0;) {
        for (char* at = buffer; at < buffer + n;) {
            auto* event = reinterpret_cast<inotify_event*>(at);
            std::string name = event->len ? event->name : "";
            changed = changed || name == "localtime" || name == "timezone";
            at += sizeof(inotify_event) + event->len;
        }
    }
    return changed;
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
    Activity activity(config, stored);
    UserCalendar calendar;

    Descriptor changed(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    auto signalChange = [fd = changed.fd] { eventfd_write(fd, 1); };
    std::atomic<bool> notificationsAvailable{false};

    Handler::World world{.now = [] { return Date::now(); },
                         .calendar = [&] { return calendar.get(); },
                         .notifications = [&] { return notificationsAvailable ? "granted" : "unavailable"; },
                         .changed = signalChange};
    if (config.modelUrl) {
        auto model = std::make_shared<LocalModel>(*config.modelUrl, config.modelName.value_or(""), config.modelTimeout);
        world.model = model;
        world.modelTimeout = std::chrono::milliseconds(static_cast<int64_t>(config.modelTimeout * 1000));
        world.modelStatus = [model] { return model->status(); };
    }
    auto geocoder = std::make_shared<Geocoder>(config.geocoderUrl, config.geocoderTimeout);
    world.geocode = [geocoder](const std::string& search) { return geocoder->search(search); };
    world.here = [] {
        auto located = GeoClue::locate(hereLimit);
        if (auto* problem = std::get_if<GeoClue::Problem>(&located))
            throw WireError{problem->refused ? WireError::Code::permission : WireError::Code::unreachable,
                            problem->message};
        return std::get<Fix>(located);
    };
    Handler handler(store, config, activity, world);

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
        if (error->kind == SocketError::Case::pathTooLong)
            return fail("can't listen on " + path + ": the path is too long for a socket");
        return fail("can't listen on " + path + ": " + std::strerror(error->code));
    }
    std::cerr << "vesk-app: serving " << path << "\n";
    if (options.ready) options.ready();
    sd_notify(0, "READY=1");

    // Done and Snooze from a notification change the store as `vesk done` and the
    // one-gesture snooze would.
    Notifier notifier([&](const std::string& key, Notifier::Action action) {
        try {
            if (action == Notifier::Action::done)
                handler.complete(key);
            else
                handler.snoozeOnce(key);
        } catch (const WireError& error) {
            std::cerr << "vesk-app: " << error.message << "\n";
        }
    });
    notifier.connect();
    SessionIdle idle(signalChange);
    idle.connect();
    Nagging nagging(store, config, activity, calendar, notifier, idle, options.verbose);
    PlaceWatch places(store, config, activity, calendar, signalChange, options.verbose);

    Descriptor timer(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK));
    Descriptor zone(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    inotify_add_watch(zone.fd, "/etc", IN_CLOSE_WRITE | IN_MOVED_TO | IN_CREATE | IN_DELETE | IN_ATTRIB);
    bool running = true, replan = false;
    std::optional<Date> armed, woken;  // the moment the timer is set for; it, once it fired
    Loop loop;
    loop.watch(signalFd.fd, [&] { running = false; });
    // A change is planned for a moment later, together with those that follow it within that
    // moment: under a stream of changes the app plans a few times a second, not once per change.
    Descriptor settle(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
    bool settling = false;
    loop.watch(changed.fd, [&] {
        eventfd_t value;
        eventfd_read(changed.fd, &value);
        if (settling) return;
        itimerspec moment{};
        moment.it_value.tv_nsec = settleNanoseconds;
        timerfd_settime(settle.fd, 0, &moment, nullptr);
        settling = true;
    });
    loop.watch(settle.fd, [&] {
        uint64_t expirations;
        if (read(settle.fd, &expirations, sizeof expirations) != sizeof expirations) return;
        settling = false;
        replan = true;
    });
    loop.watch(timer.fd, [&] {
        uint64_t expirations;
        // ECANCELED instead: the wall clock was set. Either way it's time to look again.
        if (read(timer.fd, &expirations, sizeof expirations) == sizeof expirations) woken = armed;
        replan = true;
    });
    loop.watch(zone.fd, [&] {
        if (!zoneChanged(zone.fd)) return;
        calendar.reload();
        replan = true;
    });
    loop.watch(notifier.bus(), [&] {
        notifier.process();
        notificationsAvailable = notifier.available();
    });
    loop.watch(idle.bus(), [&] { idle.process(); });
    loop.watch(places.bus(), [&] { places.process(); });

    for (replan = true; running;) {
        if (replan) {
            // Between rounds the app sleeps: the one timer is set for the next.
            if (auto next = nagging.round(Date::now(), woken)) {
                itimerspec setting{};
                setting.it_value = toTimespec(*next);
                timerfd_settime(timer.fd, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &setting, nullptr);
                armed = next;
            }
            places.update(Date::now());
            notificationsAvailable = notifier.available();
            replan = false;
            woken.reset();
        }
        if (!loop.runOnce()) return fail(std::string("the loop failed: ") + std::strerror(errno));
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
