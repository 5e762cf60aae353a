#include "VeskApp/Scheduler.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;

StoreData withReminder(Style style, DateComponents due) {
    StoreData data;
    data.lists["l"] = StoredList{"l", "Reminders", false};
    data.defaultList = "l";
    data.reminders["k"] =
        StoredReminder{"k", "k", due, false, {}, "l", {}, ReminderMeta(style, false, at("2026-11-01 08:00"))};
    return data;
}

TEST(Scheduler, ARoundDeliversWhatCameDueSinceTheLastOne) {
    const Style every15 = Style::repeatUntilDone(900), every5 = Style::repeatUntilDone(300);
    struct Case {
        const char* what;
        StoreData data;
        std::optional<const char*> deliveredUpTo;
        const char *due, *deliveredAfter, *nextWake;
    } cases[] = {
        {"a first run: nothing overdue yet", withReminder(every15, {2026, 11, 18, 9, 0}), std::nullopt, "",
         "2026-11-18 10:00", "2026-11-18 10:15"},
        {"the latest alert since the last round", withReminder(every15, {2026, 11, 18, 9, 0}), "2026-11-18 09:20",
         "2026-11-18 10:00 n4", "2026-11-18 10:00", "2026-11-18 10:15"},
        {"a once missed while stopped, then midnight", withReminder(Style::once(), {2026, 11, 18, 9, 30}),
         "2026-11-18 09:00", "2026-11-18 09:30 n0", "2026-11-18 10:00", "2026-11-19 00:00"},
        {"after a week away, the alert of just now", withReminder(every5, {2026, 11, 1, 9, 0}), "2026-11-11 10:00",
         "2026-11-18 10:00 n4908", "2026-11-18 10:00", "2026-11-18 10:05"},
        {"a clock set back delivers nothing again", withReminder(every15, {2026, 11, 18, 9, 0}), "2026-11-18 11:00", "",
         "2026-11-18 11:00", "2026-11-18 11:15"},
    };
    const Device me = device("me", Device::Kind::mac);
    for (auto& c : cases) {
        if (c.deliveredUpTo) c.data.deliveredUpTo = at(*c.deliveredUpTo);
        auto round = Scheduler::round(c.data, Config{}, me, at("2026-11-18 10:00"), amsterdam());
        EXPECT_EQ(brief(round.due), c.due) << c.what;
        EXPECT_EQ(text(round.deliveredUpTo), c.deliveredAfter) << c.what;
        EXPECT_EQ(text(round.nextWake), c.nextWake) << c.what;
    }
}

}  // namespace
