#pragma once

// Shared fixtures of the grammar's tests, gtest included: Wednesday 18 November 2026, 10:00 in Amsterdam.

#include <ostream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "VeskParse/Parser.h"

// Captures and settings are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

// Readable failures: "2026-11-18T21:00", "-" for a component that is not set.
inline void PrintTo(const DateComponents& c, std::ostream* out) {
    auto part = [](const std::optional<int64_t>& value) { return value ? std::to_string(*value) : "-"; };
    *out << part(c.year) << "-" << part(c.month) << "-" << part(c.day);
    if (c.hour || c.minute) *out << "T" << part(c.hour) << ":" << part(c.minute);
}

inline void PrintTo(const Capture& capture, std::ostream* out) { *out << capture.toJson().dump(); }
inline void PrintTo(const ParseResult& result, std::ostream* out) {
    *out << result.capture.toJson().dump() << ", unresolved " << testing::PrintToString(result.unresolved)
         << (result.readByModel ? ", read by the model" : "");
}

namespace ParseTesting {

inline Calendar amsterdam() { return Calendar("Europe/Amsterdam", "en_US"); }

inline DateComponents onDay(int64_t year, int64_t month, int64_t day) { return {year, month, day, {}, {}}; }
inline DateComponents at(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    return {year, month, day, hour, minute};
}

// A moment on the wall clock of Amsterdam.
inline Date moment(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    return *amsterdam().date(at(year, month, day, hour, minute));
}

// The reference moment of every table: Wednesday 18 November 2026 at 10:00.
inline Date wednesday(int64_t hour = 10, int64_t minute = 0) { return moment(2026, 11, 18, hour, minute); }

inline Parser parser(std::vector<std::string> places = {"gym", "The Office"}) {
    return Parser{amsterdam(), std::move(places), NagSettings{}};
}

inline ParseResult read(const std::string& sentence, Date now = wednesday()) { return parser().parse(sentence, now); }

inline DateResolver resolver(Date now = wednesday()) { return DateResolver{amsterdam(), now}; }

using F = Recurrence::Frequency;

inline Recurrence rule(F frequency, int64_t interval, std::vector<int64_t> weekdays = {}, bool fromCompletion = false) {
    return Recurrence{frequency, interval, std::move(weekdays), fromCompletion};
}

inline PlaceTrigger arrive(std::string place, double delay = 0) { return {PlaceTrigger::Edge::arrive, place, delay}; }
inline PlaceTrigger leave(std::string place, double delay = 0) { return {PlaceTrigger::Edge::leave, place, delay}; }

}  // namespace ParseTesting
