#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ArgumentParser/Entry.h"
#include "ArgumentParser/Errors.h"
#include "ArgumentParser/Tree.h"

// Reading a command line against a command tree: classing, the walk down the tree, the
// lenient reading of each command's inputs, decoding and the built-in requests.
namespace ArgumentParser {

struct HelpRequest {
    CommandPath path;
};
struct DumpRequest {
    CommandPath path;
};
struct VersionRequest {
    std::string version;
};
struct CompletionRequest {
    std::optional<std::string> shell;  // absent: taken from SHELL
};
struct UsageFailure {
    ParserError error;
    CommandPath path;
    bool noArguments = false;  // the command line was empty
};

using Reading = std::variant<Invocation, HelpRequest, DumpRequest, VersionRequest, CompletionRequest, UsageFailure>;

Reading read(const Command& root, const std::vector<std::string>& arguments);

// The platform's reading of a number; absent when the whole text doesn't read.
std::optional<double> readDouble(const std::string& text);

}  // namespace ArgumentParser
