#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// The app's settings of this machine, from `key = value` lines with `#` comments. The nag
// settings are not here: they live in the store and change through `vesk settings set`.
struct Config {
    std::optional<std::string> deviceName;   // device-name; else the host name
    bool relayOnly = false;                  // relay-only: true or false
    std::optional<std::string> defaultList;  // default-list
    std::vector<std::string> ignoredLists;   // ignored-lists, comma-separated
    std::optional<std::string> modelUrl;     // model-url: a local model server's API base; absent, no model
    std::optional<std::string> modelName;    // model-name: the model the server is asked for
    double modelTimeout = 8;                 // model-timeout: seconds the app waits for a reading
    // geocoder-url: the base of a service that answers /search as OpenStreetMap's Nominatim does.
    std::string geocoderUrl = "https://nominatim.openstreetmap.org";
    double geocoderTimeout = 10;  // geocoder-timeout: seconds an address search may take

    bool operator==(const Config&) const = default;

    // The config a text gives, or "config:LINE: what is wrong" for the first line it can't use.
    static std::variant<Config, std::string> parse(std::string_view text);
    // The file's config; a missing file gives the defaults, an unreadable one an error.
    static std::variant<Config, std::string> load(const std::string& path);
};
