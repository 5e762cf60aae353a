#pragma once

#include <optional>
#include <string_view>

struct Coordinates {
    double latitude = 0;   // degrees, -90 to 90
    double longitude = 0;  // degrees, -180 to 180

    bool operator==(const Coordinates&) const = default;

    // "52.37022, 4.89517": latitude, a comma, longitude, in decimal degrees, blanks allowed
    // around each. Absent for anything else, or for numbers outside their ranges.
    static std::optional<Coordinates> fromText(std::string_view text);
};
