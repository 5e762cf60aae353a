#include "VeskNag/Series.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Edge = PlaceTrigger::Edge;

TEST(Series, Anchors) {
    auto with = [](const std::function<void(NagItem&)>& change) { return due("k", "09:00", change); };
    const PlaceTrigger home{Edge::arrive, "home", 600};
    const std::tuple<const char*, NagItem, const char*, const char*> cases[] = {
        // clang-format off
        {"date only: the date-only hour", with([](NagItem& i) { i.due = day(2026, 3, 14); }), "09:00", "09:00"},
        {"no due: first seen on the hour", with([](NagItem& i) { i.due.reset(), i.firstSeen = at("14:00"); }), "14:00", "14:00"},
        {"no due: the next hour", with([](NagItem& i) { i.due.reset(), i.firstSeen = at("14:00:01"); }), "15:00", "15:00"},
        {"a due date that makes no date", with([](NagItem& i) { i.due->year = int64_t{1} << 40; }), "-", "-"},
        {"an hour before due", with([](NagItem& i) { i.startReminding = StartReminding::beforeDue(3600); }), "08:00", "08:00"},
        {"start on an earlier day", with([](NagItem& i) { i.startReminding = StartReminding::on(day(2026, 3, 12)); }),
         "2026-03-12 09:00", "2026-03-12 09:00"},
        {"start on a later day: no change", with([](NagItem& i) { i.startReminding = StartReminding::on(day(2026, 3, 15)); }),
         "09:00", "09:00"},
        {"a trigger that waits", with([&](NagItem& i) { i.trigger = home; }), "-", "-"},
        {"fired before due: due wins", with([&](NagItem& i) { i.trigger = home, i.triggeredAt = at("15:00"), i.due->hour = 16; }),
         "16:00", "16:00"},
        {"fired after due: the trigger", with([&](NagItem& i) { i.trigger = home, i.triggeredAt = at("15:00"); }), "15:10", "15:10"},
        {"fired, no due", with([&](NagItem& i) { i.trigger = home, i.triggeredAt = at("15:00"), i.due.reset(); }), "15:10", "15:10"},
        {"a snooze earlier than due", with([](NagItem& i) { i.snoozedUntil = at("07:00"); }), "07:00", "07:00"},
        {"at home since 18:00", with([](NagItem& i) { i.gate = "home"; }), "09:00", "18:00"},
        {"not at the office", with([](NagItem& i) { i.gate = "office"; }), "09:00", "-"},
        // clang-format on
    };
    PlanContext context = PlanTesting::context(at("12:00"));
    context.inside = {{"home", true}, {"office", false}};
    context.arrivedAt = {{"home", at("18:00")}, {"office", at("07:00")}};
    for (const auto& [what, item, timeAnchor, anchor] : cases) {
        EXPECT_EQ(optionalText(VeskNag::timeAnchor(item, context)), timeAnchor) << what;
        EXPECT_EQ(optionalText(VeskNag::anchor(item, context)), anchor) << what;
    }
}

TEST(Series, AlertsByStyle) {
    const Style once = Style::once(), escalate = Style::escalate(), alarm = Style::alarm(),
                repeat = Style::repeatUntilDone(), repeat15 = Style::repeatUntilDone(900);
    const bool night = true, noNight = false;
    const std::tuple<const char*, Style, const char*, const char*, double, bool, const char*> cases[] = {
        // clang-format off
        {"the grid's first point at or after now", repeat15, "09:00", "09:20", 2400, night, "09:30 n2, 09:45 n3, 10:00 n4"},
        {"now on the grid", repeat15, "09:00", "09:30", 1800, night, "09:30 n2, 09:45 n3, 10:00 n4"},
        {"no interval: the default", repeat, "09:00", "09:00", 7200, night, "09:00 n0, 10:00 n1, 11:00 n2"},
        {"an interval of 0", Style::repeatUntilDone(0), "09:00", "09:00", 7200, night, ""},
        {"once at now", once, "09:00", "09:00", 3600, night, "09:00 n0"},
        {"once a second ago", once, "09:00", "09:00:01", 3600, night, ""},
        {"once at the end", once, "09:00", "08:00", 3600, night, "09:00 n0"},
        {"once a second past the end", once, "09:00", "07:59:59", 3600, night, ""},
        {"alarms", alarm, "09:00", "09:00", 1200, night, "09:00 a0, 09:09 a1, 09:18 a2"},
        {"alarms ring through the night", alarm, "23:00", "23:00", 600, night, "23:00 a0, 23:09 a1"},
        {"the ladder", escalate, "09:00", "08:00", 7200, night, "09:00 n0, 09:15 t1, 09:30 a2, 09:45 a3, 10:00 a4"},
        {"the ladder into the night", escalate, "21:20", "21:00", 7200, night,
         "21:20 n0, 21:35 t1, 21:50 a2, 22:05 t3, 22:20 t4, 22:35 t5, 22:50 t6"},
        {"without a night", escalate, "21:20", "21:00", 7200, noNight,
         "21:20 n0, 21:35 t1, 21:50 a2, 22:05 a3, 22:20 a4, 22:35 a5, 22:50 a6"},
        {"beyond the horizon", escalate, "2026-03-20 09:00", "09:00", 3600, night, "2026-03-20 09:00 n0"},
        {"past the first rungs", escalate, "09:00", "09:20", 2400, night, "09:30 a2, 09:45 a3, 10:00 a4"},
        // clang-format on
    };
    for (const auto& [what, style, due, now, horizon, withNight, alerts] : cases) {
        PlanContext context = PlanTesting::context(at(now), horizon);
        if (!withNight) context.settings.nightWindow.reset();
        EXPECT_EQ(brief(VeskNag::series(item("k", style, amsterdam().components(at(due))), context)), alerts) << what;
    }
}

TEST(Series, ADeviceGateCountsFromWhenThisDeviceBecameActive) {
    PlanContext context = PlanTesting::context(at("09:00"), 600);
    NagItem overdue = item("k", Style::repeatUntilDone(300), DateComponents{2026, 3, 13, 9, 0});
    overdue.deviceGate = DeviceGate::anyMac();
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n0, 09:05 n1, 09:10 n2") << "from now";
    context.me.activeSince = at("08:50");
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n2, 09:05 n3, 09:10 n4") << "from activeSince";
}

TEST(Series, AGridHoldsFiveHundredPointsWhateverItsAge) {
    NagItem everyMinute = item("k", Style::repeatUntilDone(60), DateComponents{2016, 3, 14, 9, 0});
    auto alerts = VeskNag::series(everyMinute, PlanTesting::context(at("09:00"), 86400));
    ASSERT_EQ(alerts.size(), 500u);
    EXPECT_EQ(alerts.front().fireDate, at("09:00"));
    EXPECT_EQ(alerts.back().fireDate, at("17:19"));
}

}  // namespace
