// The real vesk-app holding 1,000 generated reminders, under 100 clients at once, each
// sending 1,000 requests one after another without a pause: mostly lists of now and later,
// and adds, dones, deletes and snoozes of reminders the client added itself, settings and
// setting changes. Every request's latency is kept by kind, and every acknowledged change
// is looked for in the store once the app has stopped: added reminders there, completed
// ones closed, deleted ones gone, snoozes in force, settings as the last change left them,
// and no other reminder beside the initial ones. Prints the errors, the throughput and the
// percentiles; exits 1 when a request failed or a check did.
//
// By default every client sends its next request as soon as the last is answered: the app
// at full stretch, where the latency is mostly the wait behind the others. Given an interval,
// each client sends one request every so many milliseconds, as people and scripts do, and
// the latency is the app's answer under that load.
//
// Needs root (a private mount namespace over the home directory).
//   build/bench/load_bench [clients [requests per client [interval in ms]]]
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <latch>
#include <random>
#include <sstream>
#include <thread>

#include "LoadCheck.h"
#include "PrivateHome.h"
#include "RunningApp.h"

namespace {

using LoadCheck::Added;
using LoadCheck::Clock;

enum Kind { listNow, listLater, add, done, remove, snooze, settings, setSetting, kindCount };
const std::initializer_list<Kind> allKinds = {listNow, listLater, add, done, remove, snooze, settings, setSetting};
const char* const kindNames[kindCount] = {"list now", "list later", "add",      "done",
                                          "delete",   "snooze",     "settings", "setSetting"};
// Of every 100 requests. As many adds as dones and deletes: some 1,000 reminders stay open.
const int weights[kindCount] = {50, 20, 8, 4, 4, 6, 6, 2};
// A client's open reminders at most; beyond, an add becomes a done or a delete.
constexpr size_t ownOpenLimit = 3;
constexpr double timeoutSeconds = 30;
constexpr double snoozeSeconds = 2 * 3600;

std::string socketPath;

class Client {
public:
    explicit Client(size_t number) : number_(number), random_(static_cast<uint32_t>(number) + 1) {}

    void run(size_t requests, std::chrono::milliseconds interval) {
        std::discrete_distribution<int> pick(std::begin(weights), std::end(weights));
        // Clients start spread over one interval, so that they do not all send at once.
        const auto start = Clock::now() + interval * static_cast<int64_t>(random_() % 1000) / 1000;
        for (size_t serial = 0; serial < requests; ++serial) {
            if (interval.count() > 0) std::this_thread::sleep_until(start + interval * static_cast<int64_t>(serial));
            Kind kind = Kind(pick(random_));
            if ((kind == done || kind == remove || kind == snooze) && open_.empty()) kind = add;
            if (kind == add && open_.size() >= ownOpenLimit) kind = serial % 2 ? done : remove;
            switch (kind) {
                case listNow: list(kind, Request::Section::now); break;
                case listLater: list(kind, Request::Section::later); break;
                case add: addOne(serial); break;
                case done:
                case remove: finish(kind); break;
                case snooze: snoozeOne(); break;
                case settings: send(kind, Request{Request::Settings{}}); break;
                case setSetting: changeSetting(); break;
                case kindCount: break;
            }
        }
    }

    std::vector<double> latencies[kindCount];  // milliseconds
    std::vector<Added> added;
    std::vector<LoadCheck::SettingChange> settingChanges;
    std::vector<std::string> errors;

private:
    std::optional<Response> send(Kind kind, const Request& request) {
        auto begin = Clock::now();
        auto answer = SocketClient::send(request, socketPath, timeoutSeconds);
        latencies[kind].push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        if (const auto* error = std::get_if<SocketError>(&answer)) {
            const char* const cases[] = {"system error", "unreachable", "no response", "path too long", "in use"};
            errors.push_back(std::string(kindNames[kind]) + ": no answer (" + cases[int(error->kind)] + ", errno " +
                             std::to_string(error->code) + ")");
            return std::nullopt;
        }
        auto& response = std::get<Response>(answer);
        if (response.error) {
            errors.push_back(std::string(kindNames[kind]) + ": " + WireError::rawValue(response.error->code) + ": " +
                             response.error->message);
            return std::nullopt;
        }
        return std::move(response);
    }

    void list(Kind kind, Request::Section section) {
        auto response = send(kind, Request{Request::List{section}});
        if (response && !response->reminders) errors.push_back(std::string(kindNames[kind]) + ": no reminders");
    }

    void addOne(size_t serial) {
        // Letters and digits run together: a tag the grammar reads as neither a date nor a number.
        const std::string tag = "c" + std::to_string(number_) + "x" + std::to_string(serial);
        const std::string text = "water the plants " + tag + (serial % 2 ? " tomorrow at 9am" : "");
        auto response = send(add, Request{Request::Add{text}});
        if (!response) return;
        if (!response->reminder || response->reminder->title.find(tag) == std::string::npos) {
            errors.push_back("add: acknowledged without the reminder it made, for \u201c" + text + "\u201d");
            return;
        }
        Added reminder;
        reminder.key = response->reminder->id;
        reminder.title = response->reminder->title;
        added.push_back(std::move(reminder));
        open_.push_back(added.size() - 1);
    }

    // A done or a delete of one of this client's open reminders.
    void finish(Kind kind) {
        const size_t slot = random_() % open_.size();
        Added& reminder = added[open_[slot]];
        open_.erase(open_.begin() + static_cast<ptrdiff_t>(slot));
        Request request = kind == done ? Request{Request::Done{reminder.key}} : Request{Request::Delete{reminder.key}};
        if (!send(kind, request))
            reminder.fate = Added::Fate::unknown;
        else
            reminder.fate = kind == done ? Added::Fate::completed : Added::Fate::deleted;
    }

    void snoozeOne() {
        const size_t slot = random_() % open_.size();
        Added& reminder = added[open_[slot]];
        const Date earliest = Date::now().addingTimeInterval(snoozeSeconds);
        if (send(snooze, Request{Request::Snooze{reminder.key, "2h"}})) {
            reminder.snoozedFrom = earliest;
            reminder.snoozedTo = Date::now().addingTimeInterval(snoozeSeconds);
        } else {
            reminder.fate = Added::Fate::unknown;
            open_.erase(open_.begin() + static_cast<ptrdiff_t>(slot));
        }
    }

    void changeSetting() {
        const auto& fields = NagSettings::allFields();
        const NagSettings::Field field = fields[random_() % fields.size()];
        const auto [low, high] = NagSettings::range(field);
        const int64_t value = low + static_cast<int64_t>(random_() % static_cast<uint64_t>(high - low + 1));
        const Clock::time_point sent = Clock::now();
        if (send(setSetting, Request{Request::SetSetting{NagSettings::rawValue(field), std::to_string(value)}}))
            settingChanges.push_back({field, value, sent, Clock::now()});
    }

    size_t number_;
    std::mt19937 random_;
    std::vector<size_t> open_;  // indexes into `added` of those still open
};

// The nearest-rank percentile of sorted milliseconds.
double percentile(const std::vector<double>& sorted, double fraction) {
    if (sorted.empty()) return 0;
    size_t rank = static_cast<size_t>(std::ceil(fraction * static_cast<double>(sorted.size())));
    return sorted[std::clamp<size_t>(rank, 1, sorted.size()) - 1];
}

// The latencies of `kinds` of every client.
std::vector<double> latencies(const std::vector<Client>& clients, std::initializer_list<Kind> kinds) {
    std::vector<double> merged;
    for (const Client& client : clients)
        for (Kind kind : kinds) merged.insert(merged.end(), client.latencies[kind].begin(), client.latencies[kind].end());
    std::sort(merged.begin(), merged.end());
    return merged;
}

void printRow(const char* name, const std::vector<double>& sorted) {
    std::printf("%-12s %8zu %9.2f %9.2f %9.2f %9.2f\n", name, sorted.size(), percentile(sorted, 0.5),
                percentile(sorted, 0.99), percentile(sorted, 0.999), sorted.empty() ? 0 : sorted.back());
}

void printLatencies(const std::vector<Client>& clients) {
    std::printf("%-12s %8s %9s %9s %9s %9s\n", "kind", "count", "p50 ms", "p99 ms", "p99.9 ms", "max ms");
    for (Kind kind : allKinds) printRow(kindNames[kind], latencies(clients, {kind}));
    const auto lists = latencies(clients, {listNow, listLater});
    printRow("list", lists);
    printRow("all", latencies(clients, allKinds));
    std::printf("list p99 %.2f ms against a target of 20 ms: %s\n", percentile(lists, 0.99),
                percentile(lists, 0.99) < 20 ? "met" : "missed");
}

std::string loadAverage() {
    std::ifstream file("/proc/loadavg");
    std::string one, five, fifteen;
    file >> one >> five >> fifteen;
    return one + " " + five + " " + fifteen;
}

// Seconds of CPU the whole machine has been busy for.
double machineBusySeconds() {
    std::ifstream file("/proc/stat");
    std::string cpu;
    double user, nice, system, idle, wait, irq, softirq, steal;
    file >> cpu >> user >> nice >> system >> idle >> wait >> irq >> softirq >> steal;
    return (user + nice + system + irq + softirq + steal) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// Seconds of CPU a process has used, its ended threads included.
double processSeconds(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    std::getline(file, line);
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    std::string skipped;
    for (int field = 3; field < 14; ++field) fields >> skipped;
    double user = 0, system = 0;
    fields >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

void printSome(const char* what, const std::vector<std::string>& lines) {
    std::printf("%s: %zu\n", what, lines.size());
    for (size_t i = 0; i < lines.size() && i < 20; ++i) std::printf("  %s\n", lines[i].c_str());
}

// Runs every client on a thread of its own, all starting at once; the seconds they took.
double runAll(std::vector<Client>& clients, size_t requests, std::chrono::milliseconds interval) {
    std::latch ready(static_cast<ptrdiff_t>(clients.size()) + 1);
    std::vector<std::thread> threads;
    for (Client& client : clients)
        threads.emplace_back([&] {
            ready.arrive_and_wait();
            client.run(requests, interval);
        });
    ready.arrive_and_wait();
    const auto begin = Clock::now();
    for (std::thread& thread : threads) thread.join();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// Stops the app and checks every client's acknowledged changes against its store; the failures.
std::vector<std::string> stopAndCheck(pid_t app, const std::string& database, const std::vector<Client>& clients,
                                      const StoreData& initial) {
    std::vector<std::string> failures;
    if (waitpid(app, nullptr, WNOHANG) != 0) failures.push_back("the app ended during the run");
    const int status = RunningApp::stop(app);
    if (!(WIFEXITED(status) && WEXITSTATUS(status) == 0))
        failures.push_back("the app ended with wait status " + std::to_string(status));
    Store store(database, Database::Mode::readOnly);
    if (store.failure()) {
        failures.push_back(*store.failure());
        return failures;
    }
    const auto saved = store.data();
    std::set<std::string> known;
    std::vector<LoadCheck::SettingChange> changes;
    for (const Client& client : clients) {
        LoadCheck::checkAdded(client.added, *saved, known, failures);
        changes.insert(changes.end(), client.settingChanges.begin(), client.settingChanges.end());
    }
    LoadCheck::checkSettings(changes, initial.settings, saved->settings, failures);
    LoadCheck::checkOthers(initial, *saved, known, failures);
    return failures;
}

}  // namespace

int main(int argc, char** argv) {
    const size_t clientCount = argc > 1 ? std::stoul(argv[1]) : 100;
    const size_t requests = argc > 2 ? std::stoul(argv[2]) : 1000;
    const std::chrono::milliseconds interval(argc > 3 ? std::stoul(argv[3]) : 0);
    std::unique_ptr<PrivateHome> home;
    try {
        home = std::make_unique<PrivateHome>();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "load_bench: %s; run as root\n", error.what());
        return 1;
    }
    const std::string database = RunningApp::databaseIn(home->home());
    const auto initial = Store(database).change([](StoreData& data) {
        RunningApp::fill(data, Date::now(), RunningApp::Holding::aUsersReminders);
    });
    socketPath = VeskSocket::defaultPath();
    const pid_t app = RunningApp::start();

    std::vector<Client> clients;
    for (size_t number = 0; number < clientCount; ++number) clients.emplace_back(number);
    const std::string loadBefore = loadAverage();
    const double busyBefore = machineBusySeconds(), appBefore = processSeconds(app), selfBefore = processSeconds(getpid());
    const double seconds = runAll(clients, requests, interval);
    const double busy = machineBusySeconds() - busyBefore, appBusy = processSeconds(app) - appBefore,
                 selfBusy = processSeconds(getpid()) - selfBefore;
    const std::string loadAfter = loadAverage();
    const auto failures = stopAndCheck(app, database, clients, *initial);
    home.reset();

    std::vector<std::string> errors;
    size_t total = 0, addedCount = 0, settingCount = 0;
    for (const Client& client : clients) {
        errors.insert(errors.end(), client.errors.begin(), client.errors.end());
        for (Kind kind : allKinds) total += client.latencies[kind].size();
        addedCount += client.added.size();
        settingCount += client.settingChanges.size();
    }
    std::printf("%zu clients x %zu requests against vesk-app holding %zu reminders, %s\n", clientCount, requests,
                RunningApp::reminderCount,
                interval.count() ? ("one request every " + std::to_string(interval.count()) + " ms each").c_str()
                                 : "each request as soon as the last is answered");
    std::printf("%zu requests in %.1f s: %.0f requests/s\n", total, seconds, static_cast<double>(total) / seconds);
    std::printf("load average before: %s; after: %s (the clients' own threads count in it)\n", loadBefore.c_str(),
                loadAfter.c_str());
    std::printf("CPU seconds of the %ld cores' %.1f: the app %.1f, the clients %.1f, other processes %.1f\n",
                sysconf(_SC_NPROCESSORS_ONLN), seconds * static_cast<double>(sysconf(_SC_NPROCESSORS_ONLN)), appBusy,
                selfBusy, busy - appBusy - selfBusy);
    printLatencies(clients);
    std::printf("checked %zu added reminders and %zu setting changes against the store\n", addedCount, settingCount);
    printSome("errors", errors);
    printSome("check failures", failures);
    return errors.empty() && failures.empty() ? 0 : 1;
}
