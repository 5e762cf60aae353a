#include "VeskApp/Regions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Regions {

double distance(double latitude1, double longitude1, double latitude2, double longitude2) {
    constexpr double earthRadius = 6371008.8;  // metres, the mean radius
    constexpr double radians = std::numbers::pi / 180;
    const double dLatitude = (latitude2 - latitude1) * radians, dLongitude = (longitude2 - longitude1) * radians;
    const double a = std::pow(std::sin(dLatitude / 2), 2) + std::cos(latitude1 * radians) *
                                                                std::cos(latitude2 * radians) *
                                                                std::pow(std::sin(dLongitude / 2), 2);
    return 2 * earthRadius * std::asin(std::min(1.0, std::sqrt(a)));
}

Update apply(const std::map<std::string, Place>& places, const std::map<std::string, Presence>& before, const Fix& fix,
             Date at) {
    Update update;
    const bool fixIsNumbers = std::isfinite(fix.latitude) && std::isfinite(fix.longitude) && fix.accuracy >= 0;
    for (const auto& [key, place] : places) {
        auto known = before.find(key);
        if (!fixIsNumbers || fix.accuracy > std::max(coarsest, place.radius)) {
            if (known != before.end()) update.presence.emplace(key, known->second);
            continue;
        }
        const double away = distance(place.latitude, place.longitude, fix.latitude, fix.longitude);
        if (known == before.end()) {
            update.presence.emplace(key, Presence{away <= place.radius, at});
            continue;
        }
        const bool wasInside = known->second.inside;
        const bool inside =
            wasInside ? away <= place.radius + std::max(fix.accuracy, leastMargin) : away <= place.radius;
        if (inside == wasInside) {
            update.presence.emplace(key, known->second);
            continue;
        }
        update.presence.emplace(key, Presence{inside, at});
        update.crossings.push_back({key, inside ? PlaceTrigger::Edge::arrive : PlaceTrigger::Edge::leave, at});
    }
    return update;
}

}  // namespace Regions
