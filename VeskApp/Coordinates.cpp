#include "VeskApp/Coordinates.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "Platform/Text.h"

namespace {

std::optional<double> decimal(std::string_view text) {
    std::string trimmed = Text::trimBlanks(text);
    if (trimmed.empty() || trimmed.find_first_not_of("+-.0123456789") != std::string::npos) return std::nullopt;
    char* end = nullptr;
    double value = std::strtod(trimmed.c_str(), &end);
    if (end != trimmed.c_str() + trimmed.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

}  // namespace

std::optional<Coordinates> Coordinates::fromText(std::string_view text) {
    size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    auto latitude = decimal(text.substr(0, comma));
    auto longitude = decimal(text.substr(comma + 1));
    if (!latitude || !longitude || std::fabs(*latitude) > 90 || std::fabs(*longitude) > 180) return std::nullopt;
    return Coordinates{*latitude, *longitude};
}
