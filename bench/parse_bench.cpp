// Parse throughput of the library over bench/corpus.txt, and the time and peak memory of
// one `vesk parse <sentence>` process.
//
//   build/parse_bench                      both
//   build/parse_bench --benchmark_filter=Library
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Platform/Calendar.h"
#include "VeskParse/Parser.h"

extern char** environ;

namespace {

std::vector<std::string> corpus() {
    std::vector<std::string> sentences;
    std::ifstream file(VESK_SOURCE_DIR "/bench/corpus.txt");
    for (std::string line; std::getline(file, line);) {
        if (!line.empty()) sentences.push_back(line);
    }
    return sentences;
}

void LibraryParse(benchmark::State& state) {
    const auto sentences = corpus();
    if (sentences.empty()) {
        state.SkipWithError("bench/corpus.txt is missing or empty");
        return;
    }
    const Parser parser{Calendar("Europe/Amsterdam", "en_US"), {"gym", "The Office"}, NagSettings{}};
    const Calendar calendar("Europe/Amsterdam", "en_US");
    const Date now = *calendar.date(DateComponents{2026, 11, 18, 10, 0});
    // One round first, so that every pattern is compiled before the clock runs.
    for (const auto& sentence : sentences) benchmark::DoNotOptimize(parser.parse(sentence, now));

    for (auto _ : state) {
        for (const auto& sentence : sentences) benchmark::DoNotOptimize(parser.parse(sentence, now));
    }
    const double parsed = static_cast<double>(state.iterations()) * static_cast<double>(sentences.size());
    state.SetItemsProcessed(static_cast<int64_t>(parsed));
    state.counters["sentences/s"] = benchmark::Counter(parsed, benchmark::Counter::kIsRate);
}
BENCHMARK(LibraryParse)->Unit(benchmark::kMillisecond)->MinTime(2.0);

struct ProcessRun {
    double milliseconds = 0;
    double cpuMilliseconds = 0;  // user and system time of the child: less bent by a busy machine
    long maxRssKilobytes = 0;
    bool ok = false;
};

// Starts `vesk parse` with the sentence's words as arguments, as a shell would pass them,
// and waits for it. Its output goes to /dev/null.
ProcessRun runVesk(const std::string& sentence) {
    std::vector<std::string> words{VESK_BINARY, "parse"};
    std::istringstream split(sentence);
    for (std::string word; split >> word;) words.push_back(word);
    std::vector<char*> argv;
    for (auto& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    ProcessRun run;
    auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    int spawned = posix_spawn(&pid, VESK_BINARY, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) return run;
    int status = 0;
    struct rusage usage {};
    if (wait4(pid, &status, 0, &usage) != pid) return run;
    run.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    auto toMs = [](const timeval& t) { return static_cast<double>(t.tv_sec) * 1000.0 + static_cast<double>(t.tv_usec) / 1000.0; };
    run.cpuMilliseconds = toMs(usage.ru_utime) + toMs(usage.ru_stime);
    run.maxRssKilobytes = usage.ru_maxrss;  // kilobytes on Linux
    run.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return run;
}

void VeskParseProcess(benchmark::State& state) {
    const auto sentences = corpus();
    if (sentences.empty() || access(VESK_BINARY, X_OK) != 0) {
        state.SkipWithError("needs bench/corpus.txt and a built vesk binary");
        return;
    }
    constexpr size_t runs = 101;
    std::vector<double> times;
    std::vector<double> cpuTimes;
    long peak = 0;
    size_t failed = 0;
    for (auto _ : state) {
        for (size_t n = 0; n < runs; ++n) {
            ProcessRun run = runVesk(sentences[n * 7 % sentences.size()]);
            if (!run.ok) ++failed;
            times.push_back(run.milliseconds);
            cpuTimes.push_back(run.cpuMilliseconds);
            peak = std::max(peak, run.maxRssKilobytes);
        }
    }
    if (times.empty()) return;
    std::sort(times.begin(), times.end());
    std::sort(cpuTimes.begin(), cpuTimes.end());
    state.counters["median_ms"] = times[times.size() / 2];
    state.counters["p90_ms"] = times[times.size() * 9 / 10];
    state.counters["median_cpu_ms"] = cpuTimes[cpuTimes.size() / 2];
    state.counters["peak_rss_MB"] = static_cast<double>(peak) / 1024.0;
    state.counters["failed_runs"] = static_cast<double>(failed);
}
BENCHMARK(VeskParseProcess)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
