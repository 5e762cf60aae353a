// The real vesk-app holding 1,000 generated reminders of every kind, in a private home:
//
// - ListHandling: the app's own work for one `list` request in this process (the board,
//   the listing and the encoding of the answer), without the socket;
// - runs/version and runs/now: whole `vesk --version` and `vesk now` processes against the
//   running app holding a user's 1,000 reminders (some fifty due now), one per repetition;
//   read the medians against each other; runs/now_halfOverdue: the same with five hundred due;
// - Idle: the app's resident memory, and its wake-ups over 60 seconds (the context switches
//   of all its threads) while the next alert is more than an hour away.
//
// Needs root (a private mount namespace over the home directory).
//   build/bench/app_bench
//   build/bench/app_bench --benchmark_filter=ListHandling
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>

#include <benchmark/benchmark.h>

#include "PrivateHome.h"
#include "RunningApp.h"
#include "VeskApp/Activity.h"
#include "VeskApp/Handler.h"

namespace {

namespace fs = std::filesystem;

using RunningApp::Holding;

Date benchNow() { return *PlanTesting::amsterdam().date({2026, 11, 18, 10, 0}); }

void ListHandling(benchmark::State& state) {
    char name[] = "/tmp/vesk-app-bench-XXXXXX";
    if (!mkdtemp(name)) return state.SkipWithError("no temporary directory");
    {
        Store store(std::string(name) + "/vesk.db");
        store.change([&](StoreData& data) { RunningApp::fill(data, benchNow(), Holding(state.range(0))); });
        Activity activity("bench", false, store.data()->device);
        Handler handler(store, Config{}, activity,
                        Handler::World{benchNow, [] { return PlanTesting::amsterdam(); }, [] { return "granted"; }, {},
                                       nullptr, {}, {}, {}, {}});
        const Request request{Request::List{Request::Section::now}};
        size_t rows = 0, bytes = 0;
        for (auto _ : state) {
            Response response = handler.answer(request);
            std::string encoded = encodeWire(response).value();
            rows = response.reminders->size();
            bytes = encoded.size();
        }
        state.counters["rows"] = static_cast<double>(rows);
        state.counters["bytes"] = static_cast<double>(bytes);
    }
    fs::remove_all(name);
}
BENCHMARK(ListHandling)->ArgName("halfOverdue")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

std::unique_ptr<PrivateHome> home;
pid_t app = -1;

int run(const std::vector<std::string>& argv) {
    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    pid_t pid = fork();
    if (pid == 0) {
        auto env = RunningApp::environmentBlock();
        freopen("/dev/null", "w", stdout);
        freopen("/dev/null", "w", stderr);
        execve(args[0], args.data(), env.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void runs(benchmark::State& state, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), VESK_BINARY);
    for (auto _ : state) {
        auto begin = std::chrono::steady_clock::now();
        int status = run(arguments);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        if (status != 0) return state.SkipWithError(("vesk exited with status " + std::to_string(status)).c_str());
    }
}

// The sum of a /proc status field over all threads of a process.
double threadsSum(pid_t pid, const std::string& field) {
    double total = 0;
    for (const auto& task : fs::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.rfind(field + ":", 0) == 0) total += std::stod(line.substr(field.size() + 1));
    }
    return total;
}

double residentMegabytes(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::stod(line.substr(6)) / 1024;
    return 0;
}

// Gives the app other reminders to hold, and starts it afresh.
void holding(Holding what) {
    RunningApp::stop(app);
    Store(RunningApp::databaseIn(home->home())).change([&](StoreData& data) {
        data.reminders.clear();
        RunningApp::fill(data, Date::now(), what);
    });
    app = RunningApp::start();
}

void Refill(benchmark::State& state) {
    for (auto _ : state) holding(Holding::halfOverdue);
    state.counters["resident_MB"] = residentMegabytes(app);
}

void Idle(benchmark::State& state) {
    for (auto _ : state) {
        double resident = residentMegabytes(app);
        holding(Holding::nothingSoon);
        std::this_thread::sleep_for(std::chrono::seconds(2));
        auto switches = [] {
            return threadsSum(app, "voluntary_ctxt_switches") + threadsSum(app, "nonvoluntary_ctxt_switches");
        };
        double before = switches();
        std::this_thread::sleep_for(std::chrono::seconds(60));
        state.counters["wakeups_60s"] = switches() - before;
        state.counters["resident_MB"] = resident;
    }
}

// One `list now` exchange with the running app over its socket, from this process.
void Exchange(benchmark::State& state) {
    const Request request{Request::List{Request::Section::now}};
    for (auto _ : state) {
        auto answer = SocketClient::send(request, VeskSocket::defaultPath(), 5);
        if (!std::holds_alternative<Response>(answer)) return state.SkipWithError("no answer");
    }
}
BENCHMARK(Exchange)->Unit(benchmark::kMillisecond);

BENCHMARK_CAPTURE(runs, version, std::vector<std::string>{"--version"})
    ->Iterations(1)->Repetitions(100)->ReportAggregatesOnly(true)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(runs, now, std::vector<std::string>{"now"})
    ->Iterations(1)->Repetitions(100)->ReportAggregatesOnly(true)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Refill)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(runs, now_halfOverdue, std::vector<std::string>{"now"})
    ->Iterations(1)->Repetitions(100)->ReportAggregatesOnly(true)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Idle)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

int main(int argc, char** argv) {
    try {
        home = std::make_unique<PrivateHome>();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "app_bench: %s; run as root\n", error.what());
        return 1;
    }
    Store(RunningApp::databaseIn(home->home())).change([](StoreData& data) {
        RunningApp::fill(data, Date::now(), Holding::aUsersReminders);
    });
    app = RunningApp::start();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    RunningApp::stop(app);
    home.reset();
    return 0;
}
