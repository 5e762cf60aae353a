#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Platform/JsonDecoder.h"
#include "VeskModel/Capture.h"
#include "VeskParse/ParseResult.h"

// The printable form of a ParseResult: strings and integers only.
struct ParseOutput {
    struct Trigger {
        std::string edge;
        std::string place;
        int64_t delaySeconds = 0;
        bool operator==(const Trigger&) const = default;
    };
    struct Repeat {
        std::string frequency;
        int64_t interval = 0;
        std::optional<std::vector<int64_t>> weekdays;  // absent rather than empty
        bool fromCompletion = false;
        bool operator==(const Repeat&) const = default;
    };

    std::string title;
    std::optional<std::string> due;
    std::string style;
    std::optional<int64_t> repeatIntervalSeconds;
    std::optional<Trigger> trigger;
    std::optional<std::string> gate;
    std::optional<std::string> device;
    std::optional<Repeat> recurrence;
    std::optional<std::string> startReminding;
    std::optional<int64_t> hideDaysBefore;
    std::optional<std::string> list;
    std::vector<std::string> unresolved;
    bool needsModel = false;
    bool readByModel = false;

    bool operator==(const ParseOutput&) const = default;

    explicit ParseOutput(const ParseResult& result);
    ParseOutput() = default;

    // The name and repeat interval of a style: ("repeat", 900) and the like. (Named apart
    // from the field `style`, which C++ won't let a static member share.)
    static std::pair<std::string, std::optional<int64_t>> styleOf(const Style& style);
    // "repeat every 15 min until done", "repeat until done", or the name itself.
    static std::string describe(const std::string& style, std::optional<int64_t> repeatIntervalSeconds);
    // "mac", "phone", or the device's name.
    static std::string deviceOf(const DeviceGate& gate);
    // "2026-03-14" or "2026-03-14T09:05"; absent without year, month and day.
    static std::optional<std::string> format(const std::optional<DateComponents>& components);

    nlohmann::json toJson() const;
    static ParseOutput fromJson(const JsonDecoder& json);
};
