#pragma once

#include <string>
#include <vector>

#include "ArgumentParser/Declaration.h"
#include "ArgumentParser/Tree.h"

// The ways a command line fails to read, and the words for each.
namespace ArgumentParser {

struct ParserError {
    enum class Kind {
        invalidOption,             // value: the argument as typed
        unknownOption,             // name
        unexpectedArguments,       // words
        missingArgument,           // input: a required input that was not given
        missingValueForOption,     // name, input
        invalidValue,              // value, input, name when given by name
        valueForFlag,              // name, value
        duplicateExclusiveValues,  // words: the later argument, then the earlier one
        missingOneOf,              // words: the names of the group
        missingSubcommand,
        invalidState,
    };
    Kind kind = Kind::invalidState;
    Name name;
    bool named = false;
    std::string value;
    const Input* input = nullptr;
    std::vector<std::string> words;
};

// The message behind "Error: ", for a failure in the last command of `path`.
std::string messageFor(const ParserError& error, const CommandPath& path);

// The text behind "Help:  ", or empty when the failure has none.
std::string helpLineFor(const ParserError& error);

// The number of single-character insertions, deletions and substitutions between the two.
size_t editDistance(const std::string& a, const std::string& b);

}  // namespace ArgumentParser
