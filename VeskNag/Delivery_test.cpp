#include "VeskNag/Delivery.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;

const AlertLevel note = AlertLevel::notification, alarm = AlertLevel::alarm;

PlannedAlert alert(const char* key, const char* time, AlertLevel level = note, int64_t ordinal = 0) {
    return {key, key, at(time), level, ordinal, {}};
}

TEST(Delivery, CutsEachKindToItsLimit) {
    struct Case {
        const char* what;
        std::vector<PlannedAlert> alerts;
        bool alarms;
        int64_t notificationLimit, alarmLimit;
        const char *notifications, *alarmsOut;
    } cases[] = {
        // clang-format off
        {"without alarms, alarms travel as notifications", {alert("c", "09:02", alarm), alert("a", "09:00", alarm),
         alert("b", "09:01", alarm)}, false, 2, 5, "09:00 a0 a, 09:01 a0 b", ""},
        {"one alarm and nothing else", {alert("a", "09:00", alarm)}, true, 5, 5, "", "09:00 a0 a"},
        {"the smaller key first, and it survives a cut", {alert("b", "09:00"), alert("a", "09:00")}, true, 1, 1, "09:00 n0 a", ""},
        {"a cut in one kind makes no room in the other", {alert("a", "09:00"), alert("b", "09:01", alarm),
         alert("c", "09:02"), alert("d", "09:03", alarm)}, true, 1, 1, "09:00 n0 a", "09:01 a0 b"},
        {"limits of 0", {alert("a", "09:00"), alert("b", "09:01", alarm)}, true, 0, 0, "", ""},
        // clang-format on
    };
    for (const auto& c : cases) {
        auto result = VeskNag::delivery(c.alerts, c.alarms, c.notificationLimit, c.alarmLimit);
        EXPECT_EQ(brief(result.notifications, true), c.notifications) << c.what;
        EXPECT_EQ(brief(result.alarms, true), c.alarmsOut) << c.what;
    }
}

TEST(Delivery, FiringGivesTheLastAlertOfEachReminderInTheSpan) {
    const std::vector<PlannedAlert> alerts = {alert("b", "09:05", note, 1),  alert("a", "09:00", note, 0),
                                              alert("a", "09:10", note, 1),  alert("a", "09:20", alarm, 2),
                                              alert("a", "09:20", alarm, 3), alert("c", "09:20", note, 7)};
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"08:00", "10:00", "09:05 n1 b, 09:20 a2 a, 09:20 n7 c"},
        {"09:00", "09:10", "09:05 n1 b, 09:10 n1 a"},
        {"09:10", "09:10", ""},
        {"09:20", "10:00", ""},
    };
    for (const auto& [after, through, fired] : cases)
        EXPECT_EQ(brief(VeskNag::firing(alerts, at(after), at(through)), true), fired) << after << " " << through;
}

TEST(Delivery, AlarmIdsComeFromTheAlertIdAlone) {
    PlannedAlert third{"call-dentist", "Call the dentist", at("09:00"), AlertLevel::alarm, 3, {}};
    EXPECT_EQ(third.id(), "call-dentist#3");
    EXPECT_EQ(third.alarmID().text(), "2b00d674-5b70-8ae1-8f79-efeb47c752a0") << "the same on every device and run";
    PlannedAlert moved = third;
    moved.fireDate = at("10:00"), moved.title = "renamed";
    EXPECT_EQ(moved.alarmID(), third.alarmID());
    // Version 8 and the RFC 4122 variant whatever the hash gives, and one id per ordinal.
    for (int64_t ordinal = 0; ordinal < 64; ++ordinal) {
        moved.ordinal = ordinal;
        const Uuid id = moved.alarmID();
        EXPECT_TRUE(id.bytes[6] >> 4 == 8 && id.bytes[8] >> 6 == 2 && (id == third.alarmID()) == (ordinal == 3))
            << id.text();
    }
}

}  // namespace
