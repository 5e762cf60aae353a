#pragma once

// Shared fixtures of the grammar's tests: Wednesday 18 November 2026, 10:00 in Amsterdam.

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskParse/Parser.h"

// Readable failures: "2026-11-18T21:00", "-" for a component that is not set.
inline void PrintTo(const DateComponents& c, std::ostream* out) {
    auto part = [&](const std::optional<int64_t>& value) {
        if (value) *out << *value; else *out << "-";
    };
    part(c.year); *out << "-"; part(c.month); *out << "-"; part(c.day);
    if (c.hour || c.minute) { *out << "T"; part(c.hour); *out << ":"; part(c.minute); }
}

inline void PrintTo(const Capture& capture, std::ostream* out) { *out << capture.toJson().dump(); }

namespace ParseTesting {

inline Calendar amsterdam() { return Calendar("Europe/Amsterdam", "en_US"); }

inline DateComponents onDay(int64_t year, int64_t month, int64_t day) {
    return {year, month, day, std::nullopt, std::nullopt};
}

inline DateComponents at(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    return {year, month, day, hour, minute};
}

// A moment on the wall clock of Amsterdam.
inline Date moment(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    return *amsterdam().date(at(year, month, day, hour, minute));
}

// The reference moment of every table: Wednesday 18 November 2026 at 10:00.
inline Date wednesday(int64_t hour = 10, int64_t minute = 0) { return moment(2026, 11, 18, hour, minute); }

inline Parser parser(std::vector<std::string> places = {"gym", "The Office"}, double nagInterval = 900) {
    NagSettings settings;
    settings.nagInterval = nagInterval;
    return Parser{amsterdam(), std::move(places), settings};
}

inline ParseResult read(const std::string& sentence, Date now = wednesday()) { return parser().parse(sentence, now); }

inline DateResolver resolver(Date now = wednesday()) { return DateResolver{amsterdam(), now}; }

inline Recurrence rule(Recurrence::Frequency frequency, int64_t interval, std::vector<int64_t> weekdays = {},
                       bool fromCompletion = false) {
    return Recurrence{frequency, interval, std::move(weekdays), fromCompletion};
}

using F = Recurrence::Frequency;

inline PlaceTrigger arrive(std::string place, double delay = 0) { return {PlaceTrigger::Edge::arrive, place, delay}; }
inline PlaceTrigger leave(std::string place, double delay = 0) { return {PlaceTrigger::Edge::leave, place, delay}; }

}  // namespace ParseTesting
