#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Text helpers over UTF-8.
namespace Text {

// Trims blanks (space separators and tab, not line feeds) from both ends.
std::string trimBlanks(std::string_view text);

// Trims whitespace and newlines from both ends.
std::string trimWhitespaceAndNewlines(std::string_view text);

// Unicode lower-casing, independent of the locale.
std::string lowercased(std::string_view text);

// Case-insensitive equality, by Unicode case folding.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

// Whether `text` contains `part`, ignoring case (and the user's locale's case rules).
bool containsIgnoringCase(std::string_view text, std::string_view part);

// A strict base-10 signed 64-bit integer: an optional "+" or "-", then ASCII digits only,
// nothing else, no overflow.
std::optional<int64_t> parseInt64(std::string_view text);

// The pieces of `text` between the separators, empty ones kept: "a,,b" gives "a", "", "b".
std::vector<std::string> split(std::string_view text, char separator);

// `text` with every invalid UTF-8 sequence replaced by U+FFFD.
std::string repairUtf8(std::string_view text);

// Number of Unicode scalar values (what a user counts as characters in our texts).
size_t characterCount(std::string_view text);

// Appends `value` in decimal, zero-padded to `width` characters with the sign counted, as
// printf's "%0*lld" writes it, without printf's cost.
void appendNumber(std::string& text, int64_t value, int width);

// printf into a std::string.
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Text
