#include "VeskNag/Series.h"

#include <functional>

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;

NagItem with(std::function<void(NagItem&)> change, Style style = Style::repeatUntilDone()) {
    NagItem result = item("k", style, DateComponents{2026, 3, 14, 9, 0});
    change(result);
    return result;
}

std::string optionalText(std::optional<Date> date) { return date ? text(*date) : "-"; }

TEST(Series, Anchors) {
    struct Case {
        const char* what;
        NagItem item;
        const char* timeAnchor;
        const char* anchor;
    } cases[] = {
        {"a due time", with([](NagItem&) {}), "09:00", "09:00"},
        {"date only: the date-only hour", with([](NagItem& i) { i.due = day(2026, 3, 14); }), "09:00", "09:00"},
        {"no due: first seen on the hour", with([](NagItem& i) { i.due.reset(), i.firstSeen = at("14:00"); }), "14:00",
         "14:00"},
        {"no due: the next hour", with([](NagItem& i) { i.due.reset(), i.firstSeen = at("14:00:01"); }), "15:00",
         "15:00"},
        {"a due date that makes no date", with([](NagItem& i) { i.due->year = int64_t{1} << 40; }), "-", "-"},
        {"an hour before due", with([](NagItem& i) { i.startReminding = StartReminding::beforeDue(3600); }), "08:00",
         "08:00"},
        {"start on an earlier day", with([](NagItem& i) { i.startReminding = StartReminding::on(day(2026, 3, 12)); }),
         "2026-03-12 09:00", "2026-03-12 09:00"},
        {"start on a later day changes nothing", with([](NagItem& i) {
             i.startReminding = StartReminding::on({2026, 3, 15, 7, 30});
         }),
         "09:00", "09:00"},
        {"a trigger that waits", with([](NagItem& i) {
             i.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 0};
         }),
         "-", "-"},
        {"fired before due: due wins", with([](NagItem& i) {
             i.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 600}, i.triggeredAt = at("15:00");
             i.due->hour = 16;
         }),
         "16:00", "16:00"},
        {"fired after due: the trigger wins", with([](NagItem& i) {
             i.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 600}, i.triggeredAt = at("15:00");
         }),
         "15:10", "15:10"},
        {"fired, no due", with([](NagItem& i) {
             i.trigger = PlaceTrigger{PlaceTrigger::Edge::leave, "home", 600}, i.triggeredAt = at("15:00"),
             i.due.reset();
         }),
         "15:10", "15:10"},
        {"a snooze earlier than due", with([](NagItem& i) { i.snoozedUntil = at("07:00"); }), "07:00", "07:00"},
        {"at home since 18:00", with([](NagItem& i) { i.gate = "home"; }), "09:00", "18:00"},
        {"not at the office", with([](NagItem& i) { i.gate = "office"; }), "09:00", "-"},
        {"no word of the gym", with([](NagItem& i) { i.gate = "gym"; }), "09:00", "-"},
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
    NagSettings noNight;
    noNight.nightWindow.reset();
    NagSettings noAlarmRung, noAlarms;
    noAlarmRung.escalation.alarmRepeat = 0;
    noAlarms.alarmRepeat = 0;
    const Style escalate = Style::escalate(), repeat15 = Style::repeatUntilDone(900);
    struct Case {
        const char* what;
        NagItem item;
        const char* now;
        double horizon;
        NagSettings settings;
        const char* alerts;
    } cases[] = {
        {"the grid's first point at or after now",
         with([](NagItem&) {}, repeat15),
         "09:20",
         2400,
         {},
         "09:30 n2, 09:45 n3, 10:00 n4"},
        {"now on the grid", with([](NagItem&) {}, repeat15), "09:30", 1800, {}, "09:30 n2, 09:45 n3, 10:00 n4"},
        {"no interval: the default repeat", with([](NagItem&) {}), "09:00", 7200, {}, "09:00 n0, 10:00 n1, 11:00 n2"},
        {"an interval of 0", with([](NagItem&) {}, Style::repeatUntilDone(0)), "09:00", 7200, {}, ""},
        {"once at now", with([](NagItem&) {}, Style::once()), "09:00", 3600, {}, "09:00 n0"},
        {"once a second ago", with([](NagItem&) {}, Style::once()), "09:00:01", 3600, {}, ""},
        {"once at the end", with([](NagItem&) {}, Style::once()), "08:00", 3600, {}, "09:00 n0"},
        {"once a second past the end", with([](NagItem&) {}, Style::once()), "07:59:59", 3600, {}, ""},
        {"alarms", with([](NagItem&) {}, Style::alarm()), "09:00", 1200, {}, "09:00 a0, 09:09 a1, 09:18 a2"},
        {"alarms without a repeat", with([](NagItem&) {}, Style::alarm()), "09:00", 1200, noAlarms, ""},
        {"the ladder",
         with([](NagItem&) {}, escalate),
         "08:00",
         7200,
         {},
         "09:00 n0, 09:15 t1, 09:30 a2, 09:45 a3, 10:00 a4"},
        {"the ladder into the night",
         with([](NagItem& i) { i.due->hour = 21, i.due->minute = 20; }, escalate),
         "21:00",
         7200,
         {},
         "21:20 n0, 21:35 t1, 21:50 a2, 22:05 t3, 22:20 t4, 22:35 t5, 22:50 t6"},
        {"without a night", with([](NagItem& i) { i.due->hour = 21, i.due->minute = 20; }, escalate), "21:00", 7200,
         noNight, "21:20 n0, 21:35 t1, 21:50 a2, 22:05 a3, 22:20 a4, 22:35 a5, 22:50 a6"},
        {"the ladder out of the night",
         with([](NagItem& i) { i.due->hour = 6; }, escalate),
         "06:00",
         4500,
         {},
         "06:00 n0, 06:15 t1, 06:30 t2, 06:45 t3, 07:00 a4, 07:15 a5"},
        {"the ladder beyond the horizon",
         with([](NagItem& i) { i.due->day = 20; }, escalate),
         "09:00",
         3600,
         {},
         "2026-03-20 09:00 n0"},
        {"past the first rungs", with([](NagItem&) {}, escalate), "09:20", 2400, {}, "09:30 a2, 09:45 a3, 10:00 a4"},
        {"well into the alarms", with([](NagItem&) {}, escalate), "09:40", 1200, {}, "09:45 a3, 10:00 a4"},
        {"a ladder without an alarm rung", with([](NagItem&) {}, escalate), "08:00", 7200, noAlarmRung,
         "09:00 n0, 09:15 t1"},
        {"a style alarm rings through the night",
         with([](NagItem& i) { i.due->hour = 23; }, Style::alarm()),
         "23:00",
         600,
         {},
         "23:00 a0, 23:09 a1"},
    };
    for (const auto& c : cases) {
        PlanContext context = PlanTesting::context(at(c.now), c.horizon);
        context.settings = c.settings;
        EXPECT_EQ(brief(VeskNag::series(c.item, context)), c.alerts) << c.what;
    }
}

TEST(Series, ADeviceGateCountsFromWhenThisDeviceBecameActive) {
    PlanContext context = PlanTesting::context(at("09:00"), 600);
    NagItem overdue =
        with([](NagItem& i) { i.due->day = 13, i.deviceGate = DeviceGate::anyMac(); }, Style::repeatUntilDone(300));
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n0, 09:05 n1, 09:10 n2") << "from now";
    context.me.activeSince = at("08:50");
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n2, 09:05 n3, 09:10 n4") << "from activeSince";

    overdue.style = Style::once();
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "") << "a once that passed";
    context.me.activeSince.reset();
    EXPECT_EQ(brief(VeskNag::series(overdue, context)), "09:00 n0") << "a once goes out now";
}

TEST(Series, AGridHoldsFiveHundredPointsWhateverItsAge) {
    NagItem everyMinute = with([](NagItem& i) { i.due->year = 2016; }, Style::repeatUntilDone(60));
    auto alerts = VeskNag::series(everyMinute, PlanTesting::context(at("09:00"), 86400));
    ASSERT_EQ(alerts.size(), 500u);
    EXPECT_EQ(alerts.front().fireDate, at("09:00"));
    EXPECT_EQ(alerts.back().ordinal - alerts.front().ordinal, 499);
    EXPECT_EQ(alerts.back().fireDate.timeIntervalSince(alerts.front().fireDate), 499 * 60) << "never accumulated";
    EXPECT_EQ(alerts.front().id(), "k#" + std::to_string(alerts.front().ordinal));
}

}  // namespace
