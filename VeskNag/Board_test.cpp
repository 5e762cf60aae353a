#include "VeskNag/Board.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;

// "now: a due 12:00; | soon: b 23:59; | ...", empty sections left out.
std::string render(const Board& board) {
    struct Status {
        std::string operator()(const BoardEntry::Due& s) const { return "due " + text(s.since); }
        std::string operator()(const BoardEntry::WaitingForPlace& s) const {
            return "at " + s.place + " " + text(s.since);
        }
        std::string operator()(const BoardEntry::WaitingForDevice& s) const { return "on device " + text(s.since); }
        std::string operator()(const BoardEntry::Later& s) const { return text(s.date); }
        std::string operator()(const BoardEntry::WaitingForTrigger& s) const { return "when " + s.trigger.place; }
    };
    const std::pair<const char*, const std::vector<BoardEntry>&> sections[] = {
        {"now", board.now},           {"soon", board.soon},   {"tomorrow", board.tomorrow},
        {"thisWeek", board.thisWeek}, {"later", board.later}, {"hidden", board.hidden}};
    std::string result;
    for (const auto& [name, entries] : sections) {
        if (entries.empty()) continue;
        result += std::string(result.empty() ? "" : " | ") + name + ":";
        for (const BoardEntry& entry : entries)
            result += " " + entry.id() + " " + std::visit(Status{}, entry.status) + ";";
    }
    return result;
}

TEST(Board, Sections) {
    auto waitForHome = [](NagItem& i) { i.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 0}; };
    auto hide3 = [](NagItem& i) { i.hideDaysBefore = 3; };
    const std::tuple<const char*, const char*, std::vector<NagItem>, const char*> cases[] = {
        // clang-format off
        {"every boundary", "12:00",
         {due("at-now", "12:00"), due("a-second-later", "12:00", [](NagItem& i) { i.snoozedUntil = at("12:00:01"); }),
          due("last-minute", "23:59"), due("midnight", "2026-03-15 00:00"), due("six-days", "2026-03-20 23:59"),
          due("seven-days", "2026-03-21 00:00"), due("done", "09:00", [](NagItem& i) { i.isCompleted = true; })},
         "now: at-now due 12:00; | soon: a-second-later 12:00:01; last-minute 23:59; | tomorrow: midnight 2026-03-15 00:00; "
         "| thisWeek: six-days 2026-03-20 23:59; | later: seven-days 2026-03-21 00:00;"},
        {"days counted on the wall clock over a clock change", "2026-03-28 23:30",
         {due("fri", "2026-04-03 23:59"), due("sat", "2026-04-04 00:00")},
         "thisWeek: fri 2026-04-03 23:59; | later: sat 2026-04-04 00:00;"},
        {"places and devices hold a due item back, places first", "12:00",
         {due("gym", "09:00", [](NagItem& i) { i.gate = "gym"; }), due("home", "09:00", [](NagItem& i) { i.gate = "home"; }),
          due("both", "09:00", [](NagItem& i) { i.gate = "gym", i.deviceGate = DeviceGate::phone(); }),
          due("mac", "09:00", [](NagItem& i) { i.deviceGate = DeviceGate::anyMac(); }),
          due("phone", "09:00", [](NagItem& i) { i.deviceGate = DeviceGate::phone(); })},
         "now: both at gym 09:00; gym at gym 09:00; phone on device 09:00; mac due 09:00; home due 09:00;"},
        {"trigger-waiting entries come last, by title", "12:00",
         {due("b", "09:00", waitForHome), due("a", "09:00", waitForHome), due("far", "2026-05-01 09:00")},
         "later: far 2026-05-01 09:00; a when home; b when home;"},
        {"hidden until three days before", "2026-03-16 23:59",
         {due("hidden", "2026-03-20 09:00", hide3), due("zero", "2026-03-20 09:00", [](NagItem& i) { i.hideDaysBefore = 0; }),
          due("undated", "2026-03-20 09:00", [](NagItem& i) { i.hideDaysBefore = 3, i.due.reset(); }),
          due("arrived", "2026-03-16 09:00", hide3)},
         "now: arrived due 2026-03-16 09:00; undated due 08:00; | thisWeek: zero 2026-03-20 09:00; | hidden: hidden 2026-03-20 09:00;"},
        {"shown from that day", "2026-03-17 00:00", {due("hidden", "2026-03-20 09:00", hide3)}, "thisWeek: hidden 2026-03-20 09:00;"},
        // clang-format on
    };
    for (const auto& [what, now, items, expected] : cases) {
        PlanContext context = PlanTesting::context(at(now));
        context.inside = {{"home", true}, {"gym", false}};
        context.me = device("Studio", Device::Kind::mac, at(now));
        EXPECT_EQ(render(VeskNag::board(items, context)), expected) << what;
    }
}

TEST(Board, ThisDeviceSatisfiesAGateNow) {
    const Device mac = device("Studio", Device::Kind::mac, at("11:59")),
                 relayMac = device("Studio", Device::Kind::mac, at("11:59"), true),
                 idleMac = device("Studio", Device::Kind::mac),
                 relayPhone = device("Studio", Device::Kind::phone, {}, true);
    const std::tuple<Device, DeviceGate, bool> cases[] = {
        // clang-format off
        {mac, DeviceGate::anyMac(), true}, {relayMac, DeviceGate::anyMac(), false}, {idleMac, DeviceGate::anyMac(), false},
        {mac, DeviceGate::named("studio"), true}, {relayMac, DeviceGate::named("Studio"), false},
        {relayPhone, DeviceGate::phone(), true}, {mac, DeviceGate::phone(), false},
        // clang-format on
    };
    int row = 0;
    for (const auto& [me, gate, satisfied] : cases) {
        PlanContext context = PlanTesting::context(at("12:00"));
        context.me = me;
        EXPECT_EQ(VeskNag::satisfied(gate, context), satisfied) << "row " << row++;
    }
}

TEST(Board, TheNowSectionIsShuffledDaily) {
    std::vector<NagItem> items;
    for (const char* key : {"call", "pay", "water", "buy", "send"}) items.push_back(due(key, "2026-03-13 09:00"));
    auto order = [&](const char* now) { return render(VeskNag::board(items, context(at(now)))); };
    EXPECT_EQ(order("09:00"), order("23:59"));
    EXPECT_NE(order("09:00"), order("2026-03-15 09:00"));
}

}  // namespace
