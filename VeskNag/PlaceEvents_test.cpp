#include "VeskNag/PlaceEvents.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;
using Edge = PlaceTrigger::Edge;

std::string joined(const std::vector<std::string>& places) {
    std::string result;
    for (const auto& place : places) result += (result.empty() ? "" : ", ") + place;
    return result;
}

TEST(PlaceEvents, PlacesNeeded) {
    auto waiting = [](const char* key, const char* place, std::optional<Date> triggeredAt = {}, double delay = 600) {
        NagItem result = item(key);
        result.trigger = PlaceTrigger{Edge::arrive, place, delay};
        result.triggeredAt = triggeredAt;
        return result;
    };
    auto gated = [](const char* key, const char* place, const char* due) {
        NagItem result = item(key, Style::repeatUntilDone(), amsterdam().components(at(due)));
        result.gate = place;
        return result;
    };
    NagItem done = waiting("done", "attic");
    done.isCompleted = true;
    NagItem zoo = waiting("zoo", "home");
    zoo.gate = "zoo";
    struct Case {
        const char* what;
        std::vector<NagItem> items;
        const char* now;
        const char* places;
    } cases[] = {
        {"triggers first, then gates by anchor",
         {gated("h", "home", "2026-03-15 09:00"), waiting("g", "gym"), gated("o", "office", "12:00")},
         "10:00",
         "gym, office, home"},
        {"a place once, at its first position",
         {waiting("a", "home"), waiting("b", "home"), gated("c", "home", "09:00")},
         "10:00",
         "home"},
        {"a gate without an anchor comes last",
         {zoo, gated("o", "office", "2026-04-01 09:00"), done},
         "10:00",
         "home, office, zoo"},
        {"a fired trigger is watched through its delay", {waiting("a", "home", at("12:00"))}, "12:09:59", "home"},
        {"and no longer", {waiting("a", "home", at("12:00"))}, "12:10", ""},
        {"without a delay, not once fired", {waiting("a", "home", at("12:00"), 0)}, "12:00", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(joined(VeskNag::placesNeeded(c.items, context(at(c.now)))), c.places) << c.what;
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
        const char* place;
        const char* time;
        std::optional<Date> after;  // triggeredAt of the changed record; unset: no change
        bool changed;
    } cases[] = {
        {"an arrival fires", meta(Edge::arrive, "home", 0), Edge::arrive, "home", "12:00", at("12:00"), true},
        {"a second arrival moves nothing",
         meta(Edge::arrive, "home", 0, at("12:00")),
         Edge::arrive,
         "home",
         "13:00",
         {},
         false},
        {"turning back within the delay calls it off", meta(Edge::leave, "work", 600, at("12:00")), Edge::arrive,
         "work", "12:05", std::nullopt, true},
        {"once the delay has run out, not",
         meta(Edge::leave, "work", 600, at("12:00")),
         Edge::arrive,
         "work",
         "12:10",
         {},
         false},
        {"without a delay, never", meta(Edge::leave, "work", 0, at("12:00")), Edge::arrive, "work", "12:01", {}, false},
        {"another place", meta(Edge::arrive, "home", 0), Edge::arrive, "gym", "12:00", {}, false},
        {"places match exactly", meta(Edge::arrive, "home", 0), Edge::arrive, "Home", "12:00", {}, false},
    };
    for (const auto& c : cases) {
        const std::map<std::string, ReminderMeta> metas = {{"r", c.before},
                                                           {"plain", ReminderMeta(Style::once(), false, {})}};
        auto changed = VeskNag::placeEvent(c.edge, c.place, at(c.time), metas);
        ASSERT_EQ(changed.size(), c.changed ? 1u : 0u) << c.what;
        if (c.changed) {
            EXPECT_EQ(changed.at("r").triggeredAt, c.after) << c.what;
        }
    }
}

}  // namespace
