#include "VeskNag/PlaceEvents.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Edge = PlaceTrigger::Edge;

NagItem waiting(const char* place, std::optional<Date> triggeredAt = {}, double delay = 600) {
    NagItem result = item(place);
    result.trigger = PlaceTrigger{Edge::arrive, place, delay};
    result.triggeredAt = triggeredAt;
    return result;
}

NagItem gated(const char* place, const char* due) {
    NagItem result = item(place, Style::repeatUntilDone(), amsterdam().components(at(due)));
    result.gate = place;
    return result;
}

TEST(PlaceEvents, PlacesNeeded) {
    NagItem done = waiting("attic"), zoo = waiting("home");
    done.isCompleted = true;
    zoo.gate = "zoo";  // no anchor while its trigger waits
    struct Case {
        const char* what;
        std::vector<NagItem> items;
        const char *now, *places;
    } cases[] = {
        // clang-format off
        {"triggers first, then gates by anchor", {gated("home", "2026-03-15 09:00"), waiting("gym"), gated("office", "12:00")},
         "10:00", "gym, office, home"},
        {"a place once, at its first position", {waiting("home"), waiting("home"), gated("home", "09:00")}, "10:00", "home"},
        {"a gate without an anchor comes last", {zoo, gated("office", "2026-04-01 09:00"), done}, "10:00", "home, office, zoo"},
        {"a fired trigger is watched through its delay", {waiting("home", at("12:00"))}, "12:09:59", "home"},
        {"and no longer", {waiting("home", at("12:00"))}, "12:10", ""},
        // clang-format on
    };
    for (const auto& c : cases) {
        std::string places;
        for (const auto& place : VeskNag::placesNeeded(c.items, context(at(c.now))))
            places += (places.empty() ? "" : ", ") + place;
        EXPECT_EQ(places, c.places) << c.what;
    }
}

TEST(PlaceEvents, ArrivingAndLeaving) {
    auto meta = [](Edge edge, const char* place, double delay, std::optional<Date> triggeredAt = {}) {
        ReminderMeta result(Style::once(), false, at("08:00"));
        result.trigger = PlaceTrigger{edge, place, delay};
        result.triggeredAt = triggeredAt;
        return result;
    };
    struct Case {
        const char* what;
        ReminderMeta before;
        Edge edge;
        const char *place, *time, *after;  // after: the changed record's triggeredAt, "-" cleared, "" unchanged
    } cases[] = {
        // clang-format off
        {"an arrival fires", meta(Edge::arrive, "home", 0), Edge::arrive, "home", "12:00", "12:00"},
        {"a second arrival moves nothing", meta(Edge::arrive, "home", 0, at("12:00")), Edge::arrive, "home", "13:00", ""},
        {"turning back within the delay calls it off", meta(Edge::leave, "work", 600, at("12:00")), Edge::arrive, "work", "12:05", "-"},
        {"once the delay has run out, not", meta(Edge::leave, "work", 600, at("12:00")), Edge::arrive, "work", "12:10", ""},
        {"without a delay, never", meta(Edge::leave, "work", 0, at("12:00")), Edge::arrive, "work", "12:01", ""},
        {"places match exactly", meta(Edge::arrive, "home", 0), Edge::arrive, "Home", "12:00", ""},
        // clang-format on
    };
    for (const auto& c : cases) {
        const std::map<std::string, ReminderMeta> metas = {{"r", c.before},
                                                           {"plain", ReminderMeta(Style::once(), false, {})}};
        auto changed = VeskNag::placeEvent(c.edge, c.place, at(c.time), metas);
        const std::string after = changed.empty() ? "" : optionalText(changed.at("r").triggeredAt);
        EXPECT_EQ(after, c.after) << c.what;
        EXPECT_LE(changed.size(), 1u) << c.what;
    }
}

}  // namespace
