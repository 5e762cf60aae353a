#include "VeskNag/PlaceEvents.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Edge = PlaceTrigger::Edge;

NagItem waiting(const char* place, std::optional<Date> triggeredAt = {}) {
    NagItem result = item(place);
    result.trigger = PlaceTrigger{Edge::arrive, place, 600};
    result.triggeredAt = triggeredAt;
    return result;
}

TEST(PlaceEvents, PlacesNeeded) {
    auto gated = [](const char* place, const char* time) {
        return due(place, time, [](NagItem& i) { i.gate = i.key; });
    };
    NagItem done = waiting("attic"), zoo = waiting("home");
    done.isCompleted = true;
    zoo.gate = "zoo";  // no anchor while its trigger waits
    const std::tuple<const char*, std::vector<NagItem>, const char*, const char*> cases[] = {
        // clang-format off
        {"triggers first, then gates by anchor", {gated("home", "2026-03-15 09:00"), waiting("gym"), gated("office", "12:00")},
         "10:00", "gym, office, home"},
        {"a place once, at its first position", {waiting("home"), waiting("home"), gated("home", "09:00")}, "10:00", "home"},
        {"a gate without an anchor comes last", {zoo, gated("office", "2026-04-01 09:00"), done}, "10:00", "home, office, zoo"},
        {"a fired trigger is watched through its delay", {waiting("home", at("12:00"))}, "12:09:59", "home"},
        {"and no longer", {waiting("home", at("12:00"))}, "12:10", ""},
        // clang-format on
    };
    for (const auto& [what, items, now, expected] : cases) {
        std::string places;
        for (const auto& place : VeskNag::placesNeeded(items, context(at(now))))
            places += (places.empty() ? "" : ", ") + place;
        EXPECT_EQ(places, expected) << what;
    }
}

TEST(PlaceEvents, AnArrivalFiresOrCallsOffATrigger) {
    auto meta = [](Edge edge, std::optional<Date> triggeredAt = {}) {
        ReminderMeta result(Style::once(), false, at("08:00"));
        result.trigger = PlaceTrigger{edge, "home", 600};
        result.triggeredAt = triggeredAt;
        return result;
    };
    // after: the changed record's triggeredAt, "-" cleared, "" unchanged
    const std::tuple<const char*, ReminderMeta, const char*, const char*, const char*> cases[] = {
        // clang-format off
        {"an arrival fires", meta(Edge::arrive), "home", "12:00", "12:00"},
        {"a second arrival moves nothing", meta(Edge::arrive, at("12:00")), "home", "13:00", ""},
        {"turning back within the delay calls it off", meta(Edge::leave, at("12:00")), "home", "12:05", "-"},
        {"once the delay has run out, not", meta(Edge::leave, at("12:00")), "home", "12:10", ""},
        {"places match exactly", meta(Edge::arrive), "Home", "12:00", ""},
        // clang-format on
    };
    for (const auto& [what, before, place, time, after] : cases) {
        const std::map<std::string, ReminderMeta> metas = {{"r", before},
                                                           {"plain", ReminderMeta(Style::once(), false, {})}};
        auto changed = VeskNag::placeEvent(Edge::arrive, place, at(time), metas);
        EXPECT_EQ(changed.empty() ? "" : optionalText(changed.at("r").triggeredAt), after) << what;
        EXPECT_LE(changed.size(), 1u) << what << ": the reminder without a trigger stays";
    }
}

}  // namespace
