#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ArgumentParser/Declaration.h"

// The arguments classed, each keeping its position among the process's arguments.
namespace ArgumentParser {

struct Element {
    enum class Kind { value, option, terminator };
    Kind kind = Kind::value;
    size_t position = 0;
    // 0 for the whole argument; 1, 2, ... for the letters of a cluster like "-abc".
    size_t part = 0;
    Name name;                            // of an option
    std::optional<std::string> attached;  // of an option written "--name=value"

    bool operator==(const Element&) const = default;
};

struct SplitArguments {
    std::vector<std::string> original;
    std::vector<Element> elements;

    const std::string& text(const Element& element) const { return original[element.position]; }
    // Removes the element; a used letter of a cluster takes the whole cluster's reading with it.
    void remove(const Element& element);
    void removePosition(size_t position);
    bool containsOption(const Name& name) const;
    // The number of arguments that still have an element.
    size_t positionCount() const;
};

// Thrown when an argument can't be classed at all, "---" and the like.
struct InvalidOption {
    std::string argument;
};

// Classes every argument, left to right. Throws InvalidOption.
SplitArguments split(const std::vector<std::string>& arguments);

}  // namespace ArgumentParser
