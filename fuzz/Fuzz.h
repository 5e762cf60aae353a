#pragma once

// What the fuzz targets share: the input as text, a check that ends the
// run with a report, and the fixed zone and moment every target reads against.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "Platform/Text.h"

namespace Fuzz {

inline std::string_view text(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Aborts, so libFuzzer keeps the input, when what must hold does not.
inline void check(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "fuzz check failed: %s\n", what);
    std::abort();
}

inline bool validUtf8(std::string_view text) { return Text::repairUtf8(text) == text; }

inline const Calendar& amsterdam() {
    static const Calendar calendar("Europe/Amsterdam", "en_US");
    return calendar;
}

// Wednesday 18 November 2026, 10:00 in Amsterdam, the moment the grammar's tests use.
inline Date now() {
    static const Date moment = amsterdam().date({2026, 11, 18, 10, 0}).value();
    return moment;
}

}  // namespace Fuzz
