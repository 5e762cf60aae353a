#pragma once

#include <compare>
#include <cstdint>
#include <optional>

// A moment: seconds since 2001-01-01T00:00:00Z.
struct Date {
    double seconds = 0;

    auto operator<=>(const Date&) const = default;

    Date addingTimeInterval(double interval) const { return Date{seconds + interval}; }
    double timeIntervalSince(Date other) const { return seconds - other.seconds; }

    // Seconds between the Unix epoch and 2001-01-01T00:00:00Z.
    static constexpr double unixEpochOffset = 978307200;

    static Date fromUnix(double unixSeconds) { return Date{unixSeconds - unixEpochOffset}; }
    double unixSeconds() const { return seconds + unixEpochOffset; }

    // The wall clock. Only program entries call this; libraries take `now` as an argument.
    static Date now();

    // Far before and far after any date in use (the years 1 and 4001), for sorting.
    static constexpr Date distantPast() { return Date{-63114076800}; }
    static constexpr Date distantFuture() { return Date{63113904000}; }
};

// Calendar fields without a calendar or a time zone. A due date without `hour` is date-only.
struct DateComponents {
    std::optional<int64_t> year;
    std::optional<int64_t> month;
    std::optional<int64_t> day;
    std::optional<int64_t> hour;
    std::optional<int64_t> minute;

    bool operator==(const DateComponents&) const = default;
};
