#pragma once

#include <optional>
#include <string>

#include "VeskIPC/Wire.h"

// The shared ways of showing a Response. The *Text forms return what would be printed,
// without the final line feed that printing adds.
namespace Render {

// Two lines per reminder, numbers right-aligned; "Nothing here." with none.
std::string listText(const Response& response);
// Prints the response as JSON with `json`, else its reminders as listText.
void list(const Response& response, bool json);

// "1 Main St (100 m)" or "52.37022, 4.89517 (150 m)".
std::string where(const PlaceDTO& place);

// Six aligned lines of setting, value and what it means; no line feed at the end.
std::string settings(const SettingsDTO& settings);

// One line per place: name, where, and how many reminders wait on it.
std::string places(const std::vector<PlaceDTO>& places);

// The ten lines of `vesk doctor`.
std::string doctor(const DoctorDTO& doctor);

// Pretty-printed JSON with sorted keys, absent when it can't be encoded.
std::optional<std::string> jsonText(const Response& response);
// Prints jsonText, or nothing when it can't be encoded.
void json(const Response& response);

}  // namespace Render
