// Whole-process time of `vesk now` against a live peer that holds 1,000 reminders.
//
// The peer is a SocketServer in this process, at the default socket path, answering
// every request with the same encoded response. The process first makes itself a private
// home (the tests' PrivateHome), so neither the peer nor vesk touches the real home. Needs root (or
// the right to make a user namespace). Each repetition is one run of vesk, from spawn to
// exit; the median over the repetitions is the figure to read.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "PrivateHome.h"
#include "VeskIPC/Socket.h"

namespace {

constexpr int reminderCount = 1000;

Response heldReminders() {
    Response response;
    response.reminders.emplace();
    for (int i = 1; i <= reminderCount; ++i) {
        ReminderDTO reminder;
        reminder.number = i;
        reminder.id = "x-apple-reminder://4F2A" + std::to_string(100000 + i);
        reminder.title = "Reminder " + std::to_string(i) + ": call the dentist about the appointment";
        reminder.list = i % 3 ? "Inbox" : "Work";
        reminder.section = "now";
        reminder.status = "due";
        char at[32];
        std::snprintf(at, sizeof at, "2026-11-18T%02d:%02d:00Z", 6 + i % 3, i % 60);
        reminder.at = at;
        reminder.due = "2026-11-18T10:00";
        reminder.style = i % 2 ? "repeat" : "once";
        if (i % 2) reminder.repeatIntervalSeconds = 900;
        if (i % 10 == 0) reminder.place = "home";
        if (i % 7 == 0) reminder.device = "mac";
        reminder.detail = std::string("due 2 hours ago · ") + (i % 2 ? "repeat every 15 min until done" : "once");
        response.reminders->push_back(reminder);
    }
    return response;
}

// Runs vesk with `arguments`, its output to the null device; returns its exit status
// and adds the processor time it took (user and system, in ms) to `cpu` and the pages
// it touched first to `faults`.
int runVesk(const std::vector<std::string>& arguments, double& cpu, double& faults) {
    std::vector<std::string> argv{VESK_BINARY};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<char*> args;
    for (auto& a : argv) args.push_back(a.data());
    args.push_back(nullptr);
    char* environment[] = {const_cast<char*>("TZ=Europe/Amsterdam"), const_cast<char*>("LANG=en_US.UTF-8"),
                           const_cast<char*>("PATH=/usr/local/bin:/usr/bin:/bin"), const_cast<char*>("COLUMNS=80"),
                           nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid;
    int spawned = posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environment);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) return -1;
    int status = 0;
    rusage usage{};
    while (wait4(pid, &status, 0, &usage) < 0) {
        if (errno != EINTR) return -1;
    }
    auto ms = [](const timeval& t) { return t.tv_sec * 1e3 + t.tv_usec / 1e3; };
    cpu += ms(usage.ru_utime) + ms(usage.ru_stime);
    faults += static_cast<double>(usage.ru_minflt);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::atomic<int> requests{0};
std::string answer;  // the peer's encoded response

// The share of a run that goes to reading the response, within this process.
void decodeHeldReminders(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(decodeResponse(answer));
    state.counters["bytes"] = static_cast<double>(answer.size());
}

void runs(benchmark::State& state, std::vector<std::string> arguments) {
    double cpu = 0, faults = 0;
    for (auto _ : state) {
        auto begin = std::chrono::steady_clock::now();
        int status = runVesk(arguments, cpu, faults);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        if (status != 0) {
            state.SkipWithError(("vesk exited with status " + std::to_string(status)).c_str());
            break;
        }
    }
    // Less at the mercy of other load on the machine than the wall-clock time.
    state.counters["cpu_ms"] = benchmark::Counter(cpu, benchmark::Counter::kAvgIterations);
    // First touches of a page are dear on a virtual machine: each is a trip through the kernel.
    state.counters["page_faults"] = benchmark::Counter(faults, benchmark::Counter::kAvgIterations);
}

}  // namespace

BENCHMARK(decodeHeldReminders)->Unit(benchmark::kMillisecond);
// The start and end of a vesk process with no exchange at all, to read the others against.
BENCHMARK_CAPTURE(runs, version, std::vector<std::string>{"--version"})
    ->Iterations(1)->Repetitions(200)->ReportAggregatesOnly(true)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(runs, now, std::vector<std::string>{"now"})
    ->Iterations(1)->Repetitions(200)->ReportAggregatesOnly(true)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(runs, now_json, std::vector<std::string>{"now", "--json"})
    ->Iterations(1)->Repetitions(200)->ReportAggregatesOnly(true)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    std::unique_ptr<PrivateHome> home;
    try {
        home = std::make_unique<PrivateHome>();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "now_bench: %s; run as root\n", error.what());
        return 1;
    }
    // Encoded once: the figure is vesk's time, not the peer's encoder.
    answer = encodeWire(heldReminders()).value();
    SocketServer peer(VeskSocket::defaultPath(), SocketServer::RawHandler([](std::string_view) {
                          ++requests;
                          return std::optional<std::string>(answer);
                      }));
    if (auto error = peer.start()) {
        std::fprintf(stderr, "now_bench: the peer cannot listen (errno %d)\n", error->code);
        return 1;
    }

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    peer.stop();
    std::fprintf(stderr, "requests answered: %d\n", requests.load());
    return 0;
}
