#pragma once

#include <map>
#include <string>
#include <vector>

#include "Platform/Date.h"
#include "VeskApp/Store.h"
#include "VeskModel/Capture.h"

// A position from the location service.
struct Fix {
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees
    double accuracy = 0;   // metres: the true position lies within this distance

    bool operator==(const Fix&) const = default;
};

// The user crossing the edge of a place.
struct Crossing {
    std::string place;  // the place's key
    PlaceTrigger::Edge edge = PlaceTrigger::Edge::arrive;
    Date at;

    bool operator==(const Crossing&) const = default;
};

// Which places a position lies in, with enough hysteresis that a fix wandering around the
// edge of a place doesn't count as arriving and leaving over and over.
namespace Regions {

// Metres along the surface of the earth between two points, in degrees.
double distance(double latitude1, double longitude1, double latitude2, double longitude2);

// A fix less accurate than this (or than the place's radius, if that is larger) says
// nothing about the place: an estimate from the network address puts anyone anywhere in town.
constexpr double coarsest = 1000;
// The least margin by which a fix must lie outside a place for the user to have left it.
constexpr double leastMargin = 25;

struct Update {
    std::map<std::string, Presence> presence;  // by place key, for every place the fix says something of
    std::vector<Crossing> crossings;           // in the order of the place keys
};

// What a fix at `at` says of `places` (by key), after `before`:
// - inside means at most the radius from the centre; once inside, the user leaves only when
//   the fix lies beyond the radius by its accuracy (at least `leastMargin`), so that even its
//   nearest possible point is outside;
// - a place with no state yet takes the fix's answer without a crossing: being at home when
//   home is first watched isn't arriving there;
// - a change of state is a crossing at `at`;
// - a fix too coarse for a place leaves its state as it was;
// - the state of a place that is gone is dropped, with no crossing.
Update apply(const std::map<std::string, Place>& places, const std::map<std::string, Presence>& before, const Fix& fix,
             Date at);

}  // namespace Regions
