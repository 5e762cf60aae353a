#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Platform/Date.h"
#include "Platform/JsonDecoder.h"

// How a reminder nags.
struct Style {
    enum class Case { once, repeatUntilDone, alarm, escalate };
    Case kind = Case::repeatUntilDone;
    std::optional<double> interval;  // seconds; repeatUntilDone only, absent means defaultRepeat

    bool operator==(const Style&) const = default;

    static Style once() { return {Case::once, {}}; }
    static Style repeatUntilDone(std::optional<double> interval = {}) { return {Case::repeatUntilDone, interval}; }
    static Style alarm() { return {Case::alarm, {}}; }
    static Style escalate() { return {Case::escalate, {}}; }

    nlohmann::json toJson() const;
    static Style fromJson(const JsonDecoder& json);
};

// Fires on arriving at or leaving a named place.
struct PlaceTrigger {
    enum class Edge { arrive, leave };
    Edge edge = Edge::arrive;
    std::string place;  // lower case
    double delay = 0;   // seconds after the edge

    bool operator==(const PlaceTrigger&) const = default;

    nlohmann::json toJson() const;
    static PlaceTrigger fromJson(const JsonDecoder& json);
};

// The device on which a reminder applies.
struct DeviceGate {
    enum class Case { anyMac, phone, named };
    Case kind = Case::anyMac;
    std::string name;  // named only

    bool operator==(const DeviceGate&) const = default;

    static DeviceGate anyMac() { return {Case::anyMac, {}}; }
    static DeviceGate phone() { return {Case::phone, {}}; }
    static DeviceGate named(std::string name) { return {Case::named, std::move(name)}; }

    nlohmann::json toJson() const;
    static DeviceGate fromJson(const JsonDecoder& json);
};

// How a reminder repeats.
struct Recurrence {
    enum class Frequency { daily, weekly, monthly, yearly };
    Frequency frequency = Frequency::daily;
    int64_t interval = 1;
    std::vector<int64_t> weekdays;  // 1 Sunday ... 7 Saturday; empty when the rule names none
    bool fromCompletion = false;

    bool operator==(const Recurrence&) const = default;

    nlohmann::json toJson() const;
    static Recurrence fromJson(const JsonDecoder& json);
};

const char* rawValue(PlaceTrigger::Edge edge);            // "arrive", "leave"
const char* rawValue(Recurrence::Frequency frequency);     // "daily" ...
std::optional<Recurrence::Frequency> frequencyFromRaw(std::string_view raw);
std::optional<PlaceTrigger::Edge> edgeFromRaw(std::string_view raw);

// When nagging starts, if earlier than due.
struct StartReminding {
    enum class Case { on, beforeDue };
    Case kind = Case::on;
    DateComponents date;   // on
    double seconds = 0;    // beforeDue

    bool operator==(const StartReminding&) const = default;

    static StartReminding on(DateComponents date) { return {Case::on, date, 0}; }
    static StartReminding beforeDue(double seconds) { return {Case::beforeDue, {}, seconds}; }

    nlohmann::json toJson() const;
    static StartReminding fromJson(const JsonDecoder& json);
};

// What one sentence says.
struct Capture {
    std::string title;
    std::optional<DateComponents> due;
    Style style;
    std::optional<PlaceTrigger> trigger;
    std::optional<std::string> gate;
    std::optional<DeviceGate> deviceGate;
    std::optional<Recurrence> recurrence;
    std::optional<StartReminding> startReminding;
    std::optional<int64_t> hideDaysBefore;
    std::optional<std::string> list;

    bool operator==(const Capture&) const = default;

    nlohmann::json toJson() const;
    static Capture fromJson(const JsonDecoder& json);
};

// DateComponents as JSON: one integer key per set component. Other keys the platform
// writes (calendar, timeZone, second, weekday, ...) are accepted and ignored.
nlohmann::json toJson(const DateComponents& components);
DateComponents dateComponentsFromJson(const JsonDecoder& json);
