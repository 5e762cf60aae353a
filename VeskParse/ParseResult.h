#pragma once

#include <string>
#include <vector>

#include "VeskModel/Capture.h"

// What a sentence says, and the words of its title that look like an unread instruction.
struct ParseResult {
    Capture capture;
    std::vector<std::string> unresolved;
    bool readByModel = false;

    bool operator==(const ParseResult&) const = default;

    bool needsModel() const { return !unresolved.empty(); }
};
