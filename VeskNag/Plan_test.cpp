#include <algorithm>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "VeskNag/Board.h"
#include "VeskNag/PlanTesting.h"
#include "VeskNag/Series.h"

namespace {

using namespace PlanTesting;

std::vector<NagItem> dueAt(const char* time, std::vector<const char*> keys, Style style = Style::once()) {
    std::vector<NagItem> items;
    for (const char* key : keys) items.push_back(item(key, style, amsterdam().components(at(time))));
    return items;
}

TEST(Plan, AlertsOfOneMinuteArriveOneByOneInADailyOrder) {
    const std::vector<NagItem> items = dueAt("2026-03-14 09:00", {"call", "pay", "water"});
    struct Case {
        const char* what;
        std::vector<NagItem> items;
        const char* now;
        double stagger;
        const char* plan;
    } cases[] = {
        // A staggered date may lie past the end; nothing trims it.
        {"by day-salted hash", items, "09:00", 20, "09:00 n0 water, 09:00:20 n0 call, 09:00:40 n0 pay"},
        {"another day, another order", dueAt("2026-03-15 09:00", {"call", "pay", "water"}), "2026-03-15 09:00", 20,
         "2026-03-15 09:00 n0 water, 2026-03-15 09:00:20 n0 pay, 2026-03-15 09:00:40 n0 call"},
        {"no stagger", items, "09:00", 0, "09:00 n0 call, 09:00 n0 pay, 09:00 n0 water"},
        {"alone in its minute", dueAt("09:00", {"call"}), "09:00", 20, "09:00 n0 call"},
    };
    for (const auto& c : cases) {
        PlanContext context = PlanTesting::context(at(c.now), 0);
        context.settings.stagger = c.stagger;
        EXPECT_EQ(brief(VeskNag::plan(c.items, context), true), c.plan) << c.what;
    }
}

TEST(Plan, KeepsThisDevicesEarliestShare) {
    std::vector<NagItem> items = dueAt("09:00", {"a", "b", "c", "d"});
    items[1].due->minute = 30;
    items[2].deviceGate = DeviceGate::phone();
    items[3].isCompleted = true;
    PlanContext context = PlanTesting::context(at("08:00"));
    context.settings.stagger = 0;
    EXPECT_EQ(brief(VeskNag::plan(items, context), true), "09:00 n0 a, 09:30 n0 b");
    context.limit = 1;
    EXPECT_EQ(brief(VeskNag::plan(items, context), true), "09:00 n0 a");
    context.limit = 0;
    EXPECT_TRUE(VeskNag::plan(items, context).empty());
}

// The same items in any order, on any thread, give the same plan and board.
TEST(Plan, OrderAndThreadsChangeNothing) {
    PlanContext context = PlanTesting::context(at("2026-03-28 21:00"), 2 * 86400, 100000);
    context.inside = {{"home", true}, {"gym", false}};
    Device mac = device("mac", Device::Kind::mac, at("2026-03-28 20:58"));
    context.me = device("phone", Device::Kind::phone);
    context.devices = {mac, context.me};
    const std::vector<NagItem> items = mixedItems(400, context.now);
    const auto plan = VeskNag::plan(items, context);
    const Board board = VeskNag::board(items, context);
    ASSERT_GT(plan.size(), 1000u);
    ASSERT_GT(board.now.size() + board.later.size(), 50u);

    std::vector<std::thread> threads;
    std::vector<int> same(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            std::vector<NagItem> shuffled = items;
            std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(t));
            same[t] = VeskNag::plan(shuffled, context) == plan && VeskNag::board(shuffled, context) == board;
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(same, std::vector<int>(4, 1));
}

}  // namespace
