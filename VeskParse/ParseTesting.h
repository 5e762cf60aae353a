#pragma once

// Shared fixtures of the grammar's tests: Wednesday 18 November 2026, 10:00 in Amsterdam.

#include <cstdint>
#include <optional>
#include <ostream>

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
    return DateResolver::makeDay(year, month, day);
}

inline DateComponents at(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    auto components = onDay(year, month, day);
    components.hour = hour;
    components.minute = minute;
    return components;
}

// A moment on the wall clock of Amsterdam.
inline Date moment(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute) {
    return *amsterdam().date(at(year, month, day, hour, minute));
}

// The reference moment of every table: Wednesday 18 November 2026 at 10:00.
inline Date wednesday(int64_t hour = 10, int64_t minute = 0) { return moment(2026, 11, 18, hour, minute); }

inline Parser parser() { return Parser{amsterdam(), {}, NagSettings{}}; }

inline DateResolver resolver(Date now = wednesday()) { return DateResolver{amsterdam(), now}; }

}  // namespace ParseTesting
