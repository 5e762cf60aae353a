#include "VeskNag/Election.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Kind = Device::Kind;

TEST(Election, StableHashIsFnv1aOverUtf8Bytes) {
    EXPECT_EQ(VeskNag::stableHash("a"), 0xaf63dc4c8601ec8cu);
    EXPECT_EQ(VeskNag::stableHash("\u00e9"), 0x0ac21707b7181e01u) << "two bytes, not one character";
    EXPECT_EQ(VeskNag::stableHash("bc", VeskNag::stableHash("a")), VeskNag::stableHash("abc"));
}

TEST(Election, ActivityReachesAWindowPastTheLastUse) {
    // Used at 12:00 with a window of 300 seconds.
    const Device used = device("m", Kind::mac, at("12:00"));
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"12:05:00", "12:05:00", true}, {"12:05:01", "12:00:00", false}, {"12:01:00", "12:05:01", false}};
    for (const auto& [now, date, active] : cases)
        EXPECT_EQ(context(at(now)).isActive(used, at(date)), active) << now << " " << date;
}

TEST(Election, Ownership) {
    const Device mac = device("mac", Kind::mac, at("12:00")), idle = device("mac", Kind::mac),
                 phone = device("phone", Kind::phone), relayPhone = device("phone", Kind::phone, {}, true),
                 otherMac = device("other", Kind::mac, at("12:00:30")), twin = device("twin", Kind::mac, at("12:00")),
                 relay = device("relay", Kind::phone, at("12:00:45"), true);
    const auto alarm = AlertLevel::alarm, note = AlertLevel::notification;
    const auto anyMac = DeviceGate::anyMac(), onPhone = DeviceGate::phone();
    using Case =
        std::tuple<const char*, Device, std::vector<Device>, std::optional<DeviceGate>, AlertLevel, const char*, bool>;
    const Case cases[] = {
        // clang-format off
        {"the Mac used a minute ago owns the next minutes", mac, {mac, phone}, {}, note, "12:04", true},
        {"later ones fall to the phone", mac, {mac, phone}, {}, note, "12:06", false},
        {"which takes them", phone, {mac, phone}, {}, note, "12:06", true},
        {"an alarm never follows the active device", mac, {mac, phone}, {}, alarm, "12:02", false},
        {"a Mac used later wins", mac, {mac, otherMac}, {}, note, "12:02", false},
        {"equal use: the smaller id wins", mac, {twin, mac}, {}, note, "12:02", true},
        {"a relay is never elected", mac, {mac, relay}, {}, note, "12:02", true},
        {"no phone: every Mac falls back", idle, {idle, otherMac}, {}, alarm, "12:02", true},
        {"a relay-only phone is no phone", idle, {idle, relayPhone}, {}, alarm, "12:02", true},
        {"a relay owns nothing, not even its gate", relayPhone, {relayPhone}, onPhone, alarm, "12:02", false},
        {"phone gate on a phone", phone, {mac, phone}, onPhone, alarm, "12:02", true},
        {"phone gate on a Mac", mac, {mac, phone}, onPhone, alarm, "12:02", false},
        {"any Mac while active", mac, {mac, phone}, anyMac, alarm, "12:05", true},
        {"any Mac past its window", mac, {mac, phone}, anyMac, alarm, "12:06", false},
        {"named, in any case", mac, {}, DeviceGate::named("MAC"), note, "12:02", true},
        {"named never matches a phone", phone, {}, DeviceGate::named("phone"), note, "12:02", false},
        // clang-format on
    };
    for (const auto& [what, me, devices, gate, level, fireDate, owned] : cases) {
        PlanContext context = PlanTesting::context(at("12:01"));
        context.me = me;
        context.devices = devices;
        EXPECT_EQ(VeskNag::owns(PlannedAlert{"k", "t", at(fireDate), level, 0, gate}, context), owned) << what;
    }
}

TEST(Election, ActiveSinceKeepsTheStartOfAStretch) {
    EXPECT_EQ(VeskNag::activeSince({}, at("12:00"), at("12:00"), 300), at("12:00")) << "a new stretch";
    EXPECT_EQ(VeskNag::activeSince(at("11:00"), at("12:00"), at("12:00"), 300), at("11:00")) << "a running one";
    EXPECT_EQ(VeskNag::activeSince(at("11:00"), at("11:54"), at("12:00"), 300), std::nullopt) << "an ended one";
    EXPECT_EQ(VeskNag::activeSince({}, {}, at("12:00"), 300), std::nullopt);
}

}  // namespace
