#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "Platform/JsonDecoder.h"

// A time of day. Ordered by its minute count (hour * 60 + minute).
struct TimeOfDay {
    int64_t hour = 0;
    int64_t minute = 0;

    bool operator==(const TimeOfDay&) const = default;
    std::strong_ordering operator<=>(const TimeOfDay& other) const {
        return hour * 60 + minute <=> other.hour * 60 + other.minute;
    }

    std::string text() const;  // "%02d:%02d"
    // Blanks trimmed, "H:M" with an hour 0-23 and a minute 0-59; absent otherwise.
    static std::optional<TimeOfDay> fromText(std::string_view text);

    nlohmann::json toJson() const;
    static TimeOfDay fromJson(const JsonDecoder& json);
};

// The night, in which escalation stops at Time Sensitive. Start inside, end outside.
struct NightWindow {
    TimeOfDay start;
    TimeOfDay end;

    bool operator==(const NightWindow&) const = default;

    std::string text() const;  // "22:00-07:00"
    static std::optional<NightWindow> fromText(std::string_view text);

    bool contains(TimeOfDay time) const;
    bool contains(Date date, const Calendar& calendar) const;

    nlohmann::json toJson() const;
    static NightWindow fromJson(const JsonDecoder& json);
};

struct EscalationLadder {
    double timeSensitiveAfter = 900;
    double alarmAfter = 1800;
    double alarmRepeat = 900;

    bool operator==(const EscalationLadder&) const = default;

    nlohmann::json toJson() const;
    static EscalationLadder fromJson(const JsonDecoder& json);
};

// Ordered by raw value; in JSON the integer.
enum class AlertLevel : int64_t { notification = 0, timeSensitive = 1, alarm = 2 };
// Absent for a raw value that names no level.
std::optional<AlertLevel> alertLevelFromRaw(int64_t raw);

// The settings every device shares. Default-constructed, it holds the defaults,
// among them the night of 22:00 to 07:00.
struct NagSettings {
    double defaultRepeat = 3600;
    double nagInterval = 900;
    double stagger = 600;
    std::optional<NightWindow> nightWindow = NightWindow{{22, 0}, {7, 0}};
    EscalationLadder escalation;
    int64_t dateOnlyHour = 9;
    double alarmRepeat = 540;

    bool operator==(const NagSettings&) const = default;

    enum class Field { repeat, nag, stagger, alarmRepeat, dateOnlyHour };
    static const std::vector<Field>& allFields();
    static const char* rawValue(Field field);                       // "repeat", ..., "date-only-hour"
    static std::optional<Field> fieldFromRaw(std::string_view raw);  // case-sensitive
    static std::pair<int64_t, int64_t> range(Field field);          // inclusive
    static const std::vector<std::string>& settingKeys();           // the five and "night"

    // Minutes (hours for dateOnlyHour) as the user sees them.
    int64_t get(Field field) const;
    // Clamped into the field's range, then stored.
    void put(Field field, int64_t value);

    // A refused change, with the whole sentence to show.
    struct SettingError {
        std::string message;
        bool operator==(const SettingError&) const = default;
    };
    // Changes one setting; on a refusal nothing changes.
    std::optional<SettingError> set(std::string_view key, std::string_view value);

    nlohmann::json toJson() const;
    static NagSettings fromJson(const JsonDecoder& json);
};
