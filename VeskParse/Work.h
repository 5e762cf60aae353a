#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The remainder of a sentence while the passes take phrases out of it.
struct Work {
    std::string text;

    // Finds the first match of `pattern` (case-insensitive) in `text`, replaces it by one
    // blank and returns the whole match and every group ("" for a group that took no
    // part). Absent when nothing matches or the pattern does not compile. Each pattern is
    // compiled once per process, through a cache shared by all threads.
    std::optional<std::vector<std::string>> take(std::string_view pattern);

    // At most this many compiled patterns are kept; how many are kept now.
    static constexpr size_t cacheLimit = 512;
    static size_t cachedPatterns();
};
