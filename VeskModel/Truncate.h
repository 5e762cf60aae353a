#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

// A number of seconds truncated toward zero, when it is finite and fits 64 bits.
inline std::optional<int64_t> truncatedInt64(double value) {
    if (!std::isfinite(value)) return std::nullopt;
    const double whole = std::trunc(value);
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (whole < -limit || whole >= limit) return std::nullopt;
    return static_cast<int64_t>(whole);
}

// The same, saturating at the ends of the 64-bit range; NaN gives 0.
inline int64_t saturatedInt64(double value) {
    if (auto whole = truncatedInt64(value)) return *whole;
    if (std::isnan(value)) return 0;
    return value > 0 ? std::numeric_limits<int64_t>::max() : std::numeric_limits<int64_t>::min();
}
