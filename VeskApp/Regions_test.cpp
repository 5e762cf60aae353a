#include "VeskApp/Regions.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

using Edge = PlaceTrigger::Edge;

constexpr double latitude = 52.37022, longitude = 4.89517;
constexpr double metresPerDegree = 111194.93;  // of latitude, on the mean earth
const Date eight{800000000}, six{800036000};   // 08:00 and 18:00 of one day

Place place(const std::string& name, double metresNorth, double radius) {
    return Place{name, name, latitude + metresNorth / metresPerDegree, longitude, radius, {}};
}
Fix fix(double metresNorth, double accuracy) {
    return Fix{latitude + metresNorth / metresPerDegree, longitude, accuracy};
}

TEST(Regions, DistanceAlongTheEarth) {
    // Amsterdam to Paris, and one point on both sides of the date line.
    EXPECT_NEAR(Regions::distance(52.37022, 4.89517, 48.85661, 2.35222), 430000, 2000);
    EXPECT_NEAR(Regions::distance(0, 180, 0, -180), 0, 1e-6);
}

TEST(Regions, EnteringLeavingAndTheMarginOfAccuracy) {
    enum Before { unknown, outside, inside };
    struct Case {
        const char* what;
        Before before;
        double metres, accuracy;
        std::optional<bool> insideAfter;  // none: nothing known
        std::optional<Edge> crossing;
    };
    const Case cases[] = {
        {"first fix at home is no arrival", unknown, 50, 20, true, {}},
        {"first fix away", unknown, 500, 20, false, {}},
        {"arriving", outside, 90, 20, true, Edge::arrive},
        {"near, not in", outside, 110, 20, false, {}},
        {"a noisy fix just past the edge", inside, 110, 20, true, {}},
        {"beyond the least margin", inside, 130, 5, false, Edge::leave},
        {"within a wide accuracy", inside, 170, 80, true, {}},
        {"beyond a wide accuracy", inside, 190, 80, false, Edge::leave},
        {"too coarse to say: inside stays", inside, 5000, 3000, true, {}},
        {"too coarse, first fix: nothing known", unknown, 0, 3000, {}, {}},
        {"no numbers", inside, NAN, 10, true, {}},
    };
    const std::map<std::string, Place> places{{"home", place("Home", 0, 100)}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        std::map<std::string, Presence> before;
        if (c.before != unknown) before["home"] = Presence{c.before == inside, eight};
        Regions::Update update = Regions::apply(places, before, fix(c.metres, c.accuracy), six);
        std::vector<Crossing> crossings;
        if (c.crossing) crossings.push_back({"home", *c.crossing, six});
        EXPECT_EQ(update.crossings, crossings);
        ASSERT_EQ(update.presence.count("home"), c.insideAfter.has_value() ? 1u : 0u);
        if (!c.insideAfter.has_value()) continue;
        EXPECT_EQ(update.presence["home"], (Presence{*c.insideAfter, c.crossing || c.before == unknown ? six : eight}));
    }
}

TEST(Regions, OverlappingPlacesAreCrossedEachOnItsOwn) {
    const std::map<std::string, Place> places{{"garden", place("Garden", 150, 300)}, {"home", place("Home", 0, 100)}};
    std::map<std::string, Presence> state{{"garden", {true, eight}}, {"home", {false, eight}}};
    auto indoors = Regions::apply(places, state, fix(40, 10), six);
    EXPECT_EQ(indoors.crossings, (std::vector<Crossing>{{"home", Edge::arrive, six}}));
    EXPECT_EQ(indoors.presence["garden"], (Presence{true, eight}));
    const Date later{six.seconds + 60};
    auto away = Regions::apply(places, indoors.presence, fix(-2000, 10), later);
    EXPECT_EQ(away.crossings, (std::vector<Crossing>{{"garden", Edge::leave, later}, {"home", Edge::leave, later}}));
}

TEST(Regions, APlaceRemovedWhileInsideIsForgottenWithoutADeparture) {
    auto update = Regions::apply({{"home", place("Home", 0, 100)}},
                                 {{"home", {true, eight}}, {"office", {true, eight}}}, fix(5000, 10), six);
    EXPECT_EQ(update.presence.count("office"), 0u);
    EXPECT_EQ(update.crossings, (std::vector<Crossing>{{"home", Edge::leave, six}}));
}

}  // namespace
