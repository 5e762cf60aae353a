#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "Platform/Date.h"
#include "Platform/JsonDecoder.h"
#include "VeskModel/Capture.h"

// The snooze in force on a reminder.
struct Snooze {
    Date until;
    std::optional<DateComponents> dueWhenSnoozed;
    std::optional<DateComponents> originalDue;  // from before any snooze

    bool operator==(const Snooze&) const = default;

    nlohmann::json toJson() const;
    static Snooze fromJson(const JsonDecoder& json);
};

// Where the user was when capturing a reminder.
struct CapturePlace {
    std::optional<std::string> name;
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees

    bool operator==(const CapturePlace&) const = default;

    nlohmann::json toJson() const;
    static CapturePlace fromJson(const JsonDecoder& json);
};

// How a reminder came in.
enum class Source { app, cli, intent };
const char* rawValue(Source source);  // "app", "cli", "intent"
std::optional<Source> sourceFromRaw(std::string_view raw);

// What the system keeps beside a reminder; title, due date, recurrence and list live in the store.
struct ReminderMeta {
    Style style;
    std::optional<PlaceTrigger> trigger;
    std::optional<Date> triggeredAt;
    std::optional<std::string> gate;
    std::optional<DeviceGate> deviceGate;
    std::optional<StartReminding> startReminding;
    std::optional<int64_t> hideDaysBefore;
    bool fromCompletion = false;
    std::optional<Snooze> snooze;
    Date firstSeen;
    std::optional<Source> source;
    std::optional<CapturePlace> capturedAt;

    bool operator==(const ReminderMeta&) const = default;

    // Every field in declaration order; all but style, fromCompletion and firstSeen may be absent.
    ReminderMeta(Style style, std::optional<PlaceTrigger> trigger, std::optional<Date> triggeredAt,
                 std::optional<std::string> gate, std::optional<DeviceGate> deviceGate,
                 std::optional<StartReminding> startReminding, std::optional<int64_t> hideDaysBefore,
                 bool fromCompletion, std::optional<Snooze> snooze, Date firstSeen, std::optional<Source> source,
                 std::optional<CapturePlace> capturedAt);
    ReminderMeta(Style style, bool fromCompletion, Date firstSeen);
    // The record for a new reminder read from `capture`.
    ReminderMeta(const Capture& capture, Date firstSeen, Source source);

    nlohmann::json toJson() const;
    static ReminderMeta fromJson(const JsonDecoder& json);
};

// A named location for triggers and gates.
struct Place {
    std::string id;
    std::string name;
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees
    double radius = 0;     // metres
    std::optional<std::string> address;

    bool operator==(const Place&) const = default;

    static constexpr double defaultRadius = 100;

    // The form under which two place names are the same place: trimmed, lower-cased,
    // and without a leading "the ".
    static std::string key(std::string_view name);

    nlohmann::json toJson() const;
    static Place fromJson(const JsonDecoder& json);
};
