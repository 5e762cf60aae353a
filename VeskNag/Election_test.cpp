#include "VeskNag/Election.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Kind = Device::Kind;

TEST(Election, StableHashIsFnv1aOverUtf8Bytes) {
    EXPECT_EQ(VeskNag::stableHash(""), 0xcbf29ce484222325u);
    EXPECT_EQ(VeskNag::stableHash("a"), 0xaf63dc4c8601ec8cu);
    EXPECT_EQ(VeskNag::stableHash("\u00e9"), 0x0ac21707b7181e01u) << "two bytes, not one character";
    EXPECT_EQ(VeskNag::stableHash("bc", VeskNag::stableHash("a")), VeskNag::stableHash("abc"));
}

TEST(Election, ActivityReachesAWindowPastTheLastUse) {
    struct Case {
        const char* now;
        const char* date;
        bool active;
    } cases[] = {
        {"12:05:00", "12:05:00", true}, {"12:05:01", "12:00:00", false}, {"12:01:00", "12:04:59", true},
        {"12:01:00", "12:05:00", true}, {"12:01:00", "12:05:01", false},
    };
    for (const auto& c : cases) {
        PlanContext context = PlanTesting::context(at(c.now));
        EXPECT_EQ(context.isActive(device("m", Kind::mac, at("12:00")), at(c.date)), c.active)
            << c.now << " " << c.date;
    }
    EXPECT_FALSE(context(at("12:00")).isActive(device("m", Kind::mac), at("12:00"))) << "never used";
}

TEST(Election, TheLatestUseWinsThenTheSmallerId) {
    PlanContext context = PlanTesting::context(at("12:01"));
    Device a = device("A", Kind::mac, at("12:00")), b = device("B", Kind::mac, at("12:00"));
    for (auto devices : {std::vector{a, b}, std::vector{b, a}}) {
        context.devices = devices;
        EXPECT_EQ(context.activeDevice(at("12:02"))->id, "A");
    }
    context.devices = {a, device("relay", Kind::phone, at("12:01"), true)};
    EXPECT_EQ(context.activeDevice(at("12:02"))->id, "A") << "a relay is never elected";
    EXPECT_FALSE(context.activeDevice(at("12:06"))) << "past everyone's window";
    context.devices.clear();
    EXPECT_FALSE(context.activeDevice(at("12:02")));
}

TEST(Election, Ownership) {
    const Device mac = device("mac", Kind::mac, at("12:00")), idleMac = device("mac", Kind::mac),
                 phone = device("phone", Kind::phone), relayPhone = device("phone", Kind::phone, {}, true),
                 otherMac = device("other", Kind::mac, at("12:00:30"));
    struct Case {
        const char* what;
        Device me;
        std::vector<Device> devices;
        std::optional<DeviceGate> gate;
        AlertLevel level;
        const char* fireDate;
        bool owned;
        bool fallsBack;
    } cases[] = {
        {"the active Mac owns the next minutes", mac, {mac, phone}, {}, AlertLevel::notification, "12:04", true, false},
        {"later ones fall to the phone", mac, {mac, phone}, {}, AlertLevel::notification, "12:06", false, false},
        {"the phone takes them", phone, {mac, phone}, {}, AlertLevel::notification, "12:06", true, true},
        {"an alarm never follows the active device", mac, {mac, phone}, {}, AlertLevel::alarm, "12:02", false, false},
        {"another Mac used later wins", mac, {mac, otherMac}, {}, AlertLevel::notification, "12:02", false, true},
        {"no phone: every Mac falls back", idleMac, {idleMac, otherMac}, {}, AlertLevel::alarm, "12:02", true, true},
        {"a relay-only phone is no phone", idleMac, {idleMac, relayPhone}, {}, AlertLevel::alarm, "12:02", true, true},
        {"no devices at all", idleMac, {}, {}, AlertLevel::notification, "12:02", true, true},
        {"a relay owns nothing, not even its gate",
         relayPhone,
         {relayPhone},
         DeviceGate::phone(),
         AlertLevel::alarm,
         "12:02",
         false,
         false},
        {"phone gate on a phone", phone, {mac, phone}, DeviceGate::phone(), AlertLevel::alarm, "12:02", true, true},
        {"phone gate on a Mac", mac, {mac, phone}, DeviceGate::phone(), AlertLevel::alarm, "12:02", false, false},
        {"any Mac while active", mac, {mac, phone}, DeviceGate::anyMac(), AlertLevel::alarm, "12:05", true, false},
        {"any Mac past its window", mac, {mac, phone}, DeviceGate::anyMac(), AlertLevel::alarm, "12:06", false, false},
        {"named, in any case", mac, {}, DeviceGate::named("MAC"), AlertLevel::notification, "12:02", true, true},
        {"named never matches a phone",
         phone,
         {},
         DeviceGate::named("phone"),
         AlertLevel::notification,
         "12:02",
         false,
         true},
        {"named, another name", mac, {}, DeviceGate::named("Studio"), AlertLevel::notification, "12:02", false, true},
    };
    for (const auto& c : cases) {
        PlanContext context = PlanTesting::context(at("12:01"));
        context.me = c.me;
        context.devices = c.devices;
        PlannedAlert alert{"k", "t", at(c.fireDate), c.level, 0, c.gate};
        EXPECT_EQ(VeskNag::owns(alert, context), c.owned) << c.what;
        EXPECT_EQ(VeskNag::fallsBackToMe(context), c.fallsBack) << c.what;
    }
}

TEST(Election, ActiveSinceKeepsTheStartOfAStretch) {
    struct Case {
        std::optional<Date> previous, lastActive;
        std::optional<Date> expected;
    } cases[] = {
        {{}, at("12:00"), at("12:00")},
        {at("11:00"), at("12:00"), at("11:00")},
        {at("11:00"), at("11:54"), std::nullopt},
        {{}, {}, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(VeskNag::activeSince(c.previous, c.lastActive, at("12:00"), 300), c.expected);
}

}  // namespace
