#include <algorithm>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "VeskNag/Board.h"
#include "VeskNag/PlanTesting.h"
#include "VeskNag/Series.h"

namespace {

using namespace PlanTesting;

TEST(Plan, AlertsOfOneMinuteArriveOneByOneInADailyOrder) {
    const std::tuple<const char*, const char*, double, const char*> cases[] = {
        // A staggered date may lie past the end; nothing trims it.
        {"by day-salted hash", "2026-03-14 09:00", 20, "09:00 n0 water, 09:00:20 n0 call, 09:00:40 n0 pay"},
        {"another day, another order", "2026-03-15 09:00", 20,
         "2026-03-15 09:00 n0 water, 2026-03-15 09:00:20 n0 pay, 2026-03-15 09:00:40 n0 call"},
        {"no stagger: equal dates by key", "2026-03-14 09:00", 0, "09:00 n0 call, 09:00 n0 pay, 09:00 n0 water"},
    };
    for (const auto& [what, now, stagger, plan] : cases) {
        PlanContext context = PlanTesting::context(at(now), 0);
        context.settings.stagger = stagger;
        EXPECT_EQ(brief(VeskNag::plan({due("call", now), due("pay", now), due("water", now)}, context), true), plan)
            << what;
    }
}

TEST(Plan, KeepsThisDevicesEarliestShare) {
    // Alerts are staggered before ownership is decided, so that every device computes the same times.
    const std::vector<NagItem> items = {due("b", "09:30"), due("a", "09:00"),
                                        due("c", "09:00", [](NagItem& i) { i.deviceGate = DeviceGate::phone(); }),
                                        due("d", "09:00", [](NagItem& i) { i.isCompleted = true; })};
    PlanContext context = PlanTesting::context(at("09:00"), 1800);
    EXPECT_EQ(brief(VeskNag::plan(items, context), true), "09:10 n0 a, 09:30 n0 b") << "a after the phone's c";
    context.limit = 1;
    EXPECT_EQ(brief(VeskNag::plan(items, context), true), "09:10 n0 a");
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
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            std::vector<NagItem> shuffled = items;
            std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(t));
            same[t] = VeskNag::plan(shuffled, context) == plan && VeskNag::board(shuffled, context) == board;
        });
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(same, std::vector<int>(4, 1));
}

}  // namespace
