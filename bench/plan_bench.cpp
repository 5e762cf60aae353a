// The planner on generated reminders of mixed styles, dates, recurrences, gates and
// snoozes, at Saturday 14 March 2026 12:00 in Amsterdam, on one core: `plan` with a
// 24-hour horizon and a limit of 500, `board`, and `Listing::reminders` of that board,
// each with the peak heap memory of one call. The Age variants put every due date ten
// years back or on yesterday, to show that an item's cost doesn't grow with its age.
//
//   build/bench/plan_bench
#include <malloc.h>
#include <sched.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include <benchmark/benchmark.h>

#include "VeskIPC/Listing.h"
#include "VeskNag/Board.h"
#include "VeskNag/PlanTesting.h"
#include "VeskNag/Series.h"

// Every allocation is counted, so that a call's peak heap can be read off.
namespace {
std::atomic<size_t> liveBytes{0}, peakBytes{0};

void* counted(size_t size) {
    void* pointer = std::malloc(size ? size : 1);
    if (!pointer) throw std::bad_alloc();
    size_t now = liveBytes += malloc_usable_size(pointer);
    for (size_t peak = peakBytes; now > peak && !peakBytes.compare_exchange_weak(peak, now);) {
    }
    return pointer;
}

void uncounted(void* pointer) {
    if (!pointer) return;
    liveBytes -= malloc_usable_size(pointer);
    std::free(pointer);
}
}  // namespace

void* operator new(size_t size) { return counted(size); }
void* operator new[](size_t size) { return counted(size); }
void operator delete(void* pointer) noexcept { uncounted(pointer); }
void operator delete[](void* pointer) noexcept { uncounted(pointer); }
void operator delete(void* pointer, size_t) noexcept { uncounted(pointer); }
void operator delete[](void* pointer, size_t) noexcept { uncounted(pointer); }

namespace {

using namespace PlanTesting;

PlanContext benchContext() {
    PlanContext context = PlanTesting::context(at("12:00"), 86400, 500);
    context.inside = {{"home", true}, {"gym", false}};
    context.arrivedAt = {{"home", at("08:00")}};
    Device mac = device("mac", Device::Kind::mac, at("11:58"));
    mac.activeSince = at("10:30");
    context.me = mac;
    context.devices = {mac, device("phone", Device::Kind::phone)};
    return context;
}

std::vector<NagItem> items(const benchmark::State& state) {
    std::optional<DateComponents> dueDay;
    if (state.range(1) == 1) dueDay = day(2016, 3, 13);
    if (state.range(1) == 2) dueDay = day(2026, 3, 13);
    return mixedItems(static_cast<size_t>(state.range(0)), at("12:00"), 1, dueDay);
}

// Runs `work` and reports its peak heap above what was live before it, in megabytes.
template <class Work>
void measure(benchmark::State& state, Work work) {
    size_t before = liveBytes;
    peakBytes = before;
    for (auto _ : state) benchmark::DoNotOptimize(work());
    state.counters["peak_MB"] = static_cast<double>(peakBytes - before) / 1e6;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Plan(benchmark::State& state) {
    const PlanContext context = benchContext();
    const auto all = items(state);
    measure(state, [&] { return VeskNag::plan(all, context); });
}

void BoardAndListing(benchmark::State& state) {
    const PlanContext context = benchContext();
    const auto all = items(state);
    const std::map<std::string, std::string> lists = {{"r1", "Errands"}, {"r2", "Work"}};
    measure(state, [&] { return Listing::reminders(VeskNag::board(all, context), lists, context.now, context.calendar); });
}

void BoardAlone(benchmark::State& state) {
    const PlanContext context = benchContext();
    const auto all = items(state);
    measure(state, [&] { return VeskNag::board(all, context); });
}

// Second argument: 0 mixed dates, 1 all due ten years ago, 2 all due yesterday.
void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"items", "age"})->Args({1000, 0})->Args({10000, 0})->Unit(benchmark::kMillisecond);
}
void ages(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"items", "age"})->Args({1000, 1})->Args({1000, 2})->Unit(benchmark::kMillisecond);
}

BENCHMARK(Plan)->Apply(sizes)->Apply(ages);
BENCHMARK(BoardAndListing)->Apply(sizes)->Apply(ages);
BENCHMARK(BoardAlone)->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
    // One core, as the app would give it.
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(0, &one);
    sched_setaffinity(0, sizeof one, &one);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
