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
    const std::tuple<const char*, std::vector<PlannedAlert>, bool, int, int, const char*, const char*> cases[] = {
        // clang-format off
        {"without alarms, alarms travel as notifications", {alert("c", "09:02", alarm), alert("a", "09:00", alarm),
         alert("b", "09:01", alarm)}, false, 2, 5, "09:00 a0 a, 09:01 a0 b", ""},
        {"a cut in one kind makes no room in the other", {alert("a", "09:00"), alert("b", "09:01", alarm),
         alert("c", "09:02"), alert("d", "09:03", alarm)}, true, 1, 1, "09:00 n0 a", "09:01 a0 b"},
        // clang-format on
    };
    for (const auto& [what, alerts, alarms, notificationLimit, alarmLimit, notifications, alarmsOut] : cases) {
        auto result = VeskNag::delivery(alerts, alarms, notificationLimit, alarmLimit);
        EXPECT_EQ(brief(result.notifications, true), notifications) << what;
        EXPECT_EQ(brief(result.alarms, true), alarmsOut) << what;
    }
}

TEST(Delivery, FiringGivesTheLastAlertOfEachReminderInTheSpan) {
    const std::vector<PlannedAlert> alerts = {alert("b", "09:05", note, 1),  alert("a", "09:00", note, 0),
                                              alert("a", "09:10", note, 1),  alert("a", "09:20", alarm, 2),
                                              alert("a", "09:20", alarm, 3), alert("c", "09:20", note, 7)};
    // The span is open at its start and closed at its end; of equal dates the first in the input wins.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"08:00", "10:00", "09:05 n1 b, 09:20 a2 a, 09:20 n7 c"}, {"09:00", "09:10", "09:05 n1 b, 09:10 n1 a"}};
    for (const auto& [after, through, fired] : cases)
        EXPECT_EQ(brief(VeskNag::firing(alerts, at(after), at(through)), true), fired) << after << " " << through;
}

TEST(Delivery, AlarmIdsComeFromTheAlertIdAlone) {
    PlannedAlert alert{"call-dentist", "Call the dentist", at("09:00"), AlertLevel::alarm, 3, {}};
    EXPECT_EQ(alert.id(), "call-dentist#3");
    const Uuid third = alert.alarmID();
    EXPECT_EQ(third.text(), "2b00d674-5b70-8ae1-8f79-efeb47c752a0") << "the same on every device and run";
    // Version 8 and the RFC 4122 variant whatever the hash gives, and one id per ordinal.
    for (alert.ordinal = 0; alert.ordinal < 64; ++alert.ordinal) {
        const Uuid id = alert.alarmID();
        EXPECT_TRUE(id.bytes[6] >> 4 == 8 && id.bytes[8] >> 6 == 2 && (id == third) == (alert.ordinal == 3))
            << id.text();
    }
}

}  // namespace
