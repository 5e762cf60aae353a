#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

using Json = nlohmann::json;

// Writing JSON in exactly our two layouts. Reading goes through JsonDocument.
namespace JsonText {

// The wire form: no blanks at all. Keys in the order of the value (sorted).
// Absent when a number is not finite. Slashes are not escaped, non-ASCII is written as is.
std::optional<std::string> compact(const Json& value);

// The printed form: two-space indentation, " : " between key and value, keys sorted at
// every level, one member or element per line, an empty array or object as its opening
// bracket, an empty line and its closing bracket at the same indentation. A double with
// an integral value is written without a fraction, other doubles in their shortest
// round-trip form. No line feed at the end. Absent when a number is not finite.
std::optional<std::string> pretty(const Json& value);

// Appends `text` as a JSON string, escaped as both forms escape it; for writers that
// write a large message straight into its text.
void appendString(std::string& out, std::string_view text);

}  // namespace JsonText
