#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// What `vesk add` does before anything is sent.
namespace Add {

// The first words that name a command: a sentence may not start with one of them
// unless it is written after `vesk add`.
const std::set<std::string>& verbs();

// Words joined with single spaces, nothing else changed.
std::string joined(const std::vector<std::string>& words);

// The refusal for a sentence that may not be sent, or absent when it may.
// `arguments` are the process's arguments less the program's name.
std::optional<std::string> refusal(const std::vector<std::string>& words, const std::vector<std::string>& arguments);

// Writes "Error: " + message to standard error and returns status 1 for the caller
// to end with.
int invalid(std::string_view message);

}  // namespace Add
