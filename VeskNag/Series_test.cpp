#include "VeskNag/Series.h"

#include <functional>

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Edge = PlaceTrigger::Edge;

NagItem with(std::function<void(NagItem&)> change) {
    NagItem result = item("k", Style::repeatUntilDone(), DateComponents{2026, 3, 14, 9, 0});
    change(result);
    return result;
}

TEST(Series, Anchors) {
    struct Case {
        const char* what;
        NagItem item;
        const char *timeAnchor, *anchor;
    } cases[] = {
        // clang-format off
        {"a due time", with([](NagItem&) {}), "09:00", "09:00"},
        {"date only: the date-only hour", with([](NagItem& i) { i.due = day(2026, 3, 14); }), "09:00", "09:00"},
        {"no due: first seen on the hour", with([](NagItem& i) { i.due.reset(), i.firstSeen = at("14:00"); }), "14:00", "14:00"},
        {"no due: the next hour", with([](NagItem& i) { i.due.reset(), i.firstSeen = at("14:00:01"); }), "15:00", "15:00"},
        {"a due date that makes no date", with([](NagItem& i) { i.due->year = int64_t{1} << 40; }), "-", "-"},
        {"an hour before due", with([](NagItem& i) { i.startReminding = StartReminding::beforeDue(3600); }), "08:00", "08:00"},
        {"start on an earlier day", with([](NagItem& i) { i.startReminding = StartReminding::on(day(2026, 3, 12)); }),
         "2026-03-12 09:00", "2026-03-12 09:00"},
        {"start on a later day: no change", with([](NagItem& i) { i.startReminding = StartReminding::on({2026, 3, 15, 7, 30}); }),
         "09:00", "09:00"},
        {"a trigger that waits", with([](NagItem& i) { i.trigger = PlaceTrigger{Edge::arrive, "home", 0}; }), "-", "-"},
        {"fired before due: due wins", with([](NagItem& i) {
             i.trigger = PlaceTrigger{Edge::arrive, "home", 600}, i.triggeredAt = at("15:00"), i.due->hour = 16; }), "16:00", "16:00"},
        {"fired after due: the trigger", with([](NagItem& i) {
             i.trigger = PlaceTrigger{Edge::arrive, "home", 600}, i.triggeredAt = at("15:00"); }), "15:10", "15:10"},
        {"fired, no due", with([](NagItem& i) {
             i.trigger = PlaceTrigger{Edge::leave, "home", 600}, i.triggeredAt = at("15:00"), i.due.reset(); }), "15:10", "15:10"},
        {"a snooze earlier than due", with([](NagItem& i) { i.snoozedUntil = at("07:00"); }), "07:00", "07:00"},
        {"at home since 18:00", with([](NagItem& i) { i.gate = "home"; }), "09:00", "18:00"},
        {"not at the office", with([](NagItem& i) { i.gate = "office"; }), "09:00", "-"},
        {"no word of the gym", with([](NagItem& i) { i.gate = "gym"; }), "09:00", "-"},
        // clang-format on
    };
    PlanContext context = PlanTesting::context(at("12:00"));
    context.inside = {{"home", true}, {"office", false}};
    context.arrivedAt = {{"home", at("18:00")}, {"office", at("07:00")}};
    for (const auto& c : cases) {
        EXPECT_EQ(optionalText(VeskNag::timeAnchor(c.item, context)), c.timeAnchor) << c.what;
        EXPECT_EQ(optionalText(VeskNag::anchor(c.item, context)), c.anchor) << c.what;
    }
}

TEST(Series, AlertsByStyle) {
    NagSettings night, noNight, noAlarmRung, noAlarms;
    noNight.nightWindow.reset();
    noAlarmRung.escalation.alarmRepeat = 0;
    noAlarms.alarmRepeat = 0;
    const Style once = Style::once(), escalate = Style::escalate(), alarm = Style::alarm(),
                repeat = Style::repeatUntilDone(), repeat15 = Style::repeatUntilDone(900);
    struct Case {
        const char* what;
        Style style;
        const char *due, *now;
        double horizon;
        const NagSettings& settings;
        const char* alerts;
    } cases[] = {
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
        {"alarms without a repeat", alarm, "09:00", "09:00", 1200, noAlarms, ""},
        {"the ladder", escalate, "09:00", "08:00", 7200, night, "09:00 n0, 09:15 t1, 09:30 a2, 09:45 a3, 10:00 a4"},
        {"the ladder into the night", escalate, "21:20", "21:00", 7200, night,
         "21:20 n0, 21:35 t1, 21:50 a2, 22:05 t3, 22:20 t4, 22:35 t5, 22:50 t6"},
        {"without a night", escalate, "21:20", "21:00", 7200, noNight,
         "21:20 n0, 21:35 t1, 21:50 a2, 22:05 a3, 22:20 a4, 22:35 a5, 22:50 a6"},
        {"out of the night", escalate, "06:00", "06:00", 4500, night, "06:00 n0, 06:15 t1, 06:30 t2, 06:45 t3, 07:00 a4, 07:15 a5"},
        {"beyond the horizon", escalate, "2026-03-20 09:00", "09:00", 3600, night, "2026-03-20 09:00 n0"},
        {"past the first rungs", escalate, "09:00", "09:20", 2400, night, "09:30 a2, 09:45 a3, 10:00 a4"},
        {"well into the alarms", escalate, "09:00", "09:40", 1200, night, "09:45 a3, 10:00 a4"},
        {"no alarm rung", escalate, "09:00", "08:00", 7200, noAlarmRung, "09:00 n0, 09:15 t1"},
        // clang-format on
    };
    for (const auto& c : cases) {
        PlanContext context = PlanTesting::context(at(c.now), c.horizon);
        context.settings = c.settings;
        EXPECT_EQ(brief(VeskNag::series(item("k", c.style, amsterdam().components(at(c.due))), context)), c.alerts)
            << c.what;
    }
}

TEST(Series, ADeviceGateCountsFromWhenThisDeviceBecameActive) {
    PlanContext context = PlanTesting::context(at("09:00"), 600);
    NagItem overdue = item("k", Style::repeatUntilDone(300), DateComponents{2026, 3, 13, 9, 0});
    overdue.deviceGate = DeviceGate::anyMac();
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n0, 09:05 n1, 09:10 n2") << "from now";
    context.me.activeSince = at("08:50");
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n2, 09:05 n3, 09:10 n4") << "from activeSince";
    overdue.style = Style::once();
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "") << "a once that passed";
    context.me.activeSince.reset();
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n0") << "a once goes out now";
}

TEST(Series, AGridHoldsFiveHundredPointsWhateverItsAge) {
    NagItem everyMinute = item("k", Style::repeatUntilDone(60), DateComponents{2016, 3, 14, 9, 0});
    auto alerts = VeskNag::series(everyMinute, PlanTesting::context(at("09:00"), 86400));
    ASSERT_EQ(alerts.size(), 500u);
    EXPECT_EQ(alerts.front().fireDate, at("09:00"));
    EXPECT_EQ(alerts.back().ordinal - alerts.front().ordinal, 499);
    EXPECT_EQ(alerts.back().fireDate.timeIntervalSince(alerts.front().fireDate), 499 * 60) << "never accumulated";
}

}  // namespace
