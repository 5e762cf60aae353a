#pragma once

#include <string>

#include "ArgumentParser/Entry.h"
#include "ArgumentParser/Parser.h"

// The exit routine: what a request or a failure prints, where, and the status it ends with.
namespace ArgumentParser {

// A built-in request or a usage failure; never an invocation.
Outcome outcomeFor(const Command& root, const Reading& reading, const Environment& environment);

// A command refused its values: the message and the root's usage, status 64.
Outcome validationFailure(const Command& root, const std::string& message, const Environment& environment);

// "Error: " and the description, status 1.
Outcome otherFailure(const std::string& description);

// The text of a usage failure, without a final line feed.
std::string fullErrorText(const Command& root, const UsageFailure& failure, int screenWidth);

}  // namespace ArgumentParser
