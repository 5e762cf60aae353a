#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <variant>

// Finds a place by its address through a service that answers /search as OpenStreetMap's
// Nominatim does. It keeps to that service's rules for everyone's use: it names itself, and
// it asks at most once a second however many ask it at once.
class Geocoder {
public:
    struct Found {
        double latitude = 0;
        double longitude = 0;
        std::string address;  // the service's name for what it found

        bool operator==(const Found&) const = default;
    };

    // `url` is the service's base, like https://nominatim.openstreetmap.org.
    Geocoder(std::string url, double timeoutSeconds);

    // The first result for `search`. Throws WireError: notFound when the service knows no
    // such place, unreachable when it can't be asked or its answer can't be read.
    Found search(const std::string& search, std::stop_token stop = {});

    // The first result of a jsonv2 answer: absent for an empty list, or what is wrong with it.
    static std::variant<std::optional<Found>, std::string> read(std::string_view answer);
    // The form under which two searches count as the same: trimmed and lower-cased.
    static std::string searchKey(std::string_view search);

    static constexpr std::chrono::seconds spacing{1};  // between two requests

private:
    const std::string url_;
    const double timeoutSeconds_;
    std::mutex asking_;  // one request at a time; guards lastAsked_
    std::optional<std::chrono::steady_clock::time_point> lastAsked_;
};
