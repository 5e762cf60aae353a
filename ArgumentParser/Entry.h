#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ArgumentParser/Declaration.h"

namespace ArgumentParser {

// What the framework reads from the environment, once, at the program's entry.
struct Environment {
    std::optional<std::string> columns;   // COLUMNS
    std::optional<int> terminalWidth;     // of standard output, when it is a terminal
    std::optional<std::string> shell;     // SHELL

    static Environment current();
    int screenWidth() const;  // COLUMNS when it reads as a positive number, else the terminal, else 80
};

// Text to print and the status to end with.
struct Outcome {
    std::string standardOutput;
    std::string standardError;
    int status = 0;
};

// The command to run and its values, with the path of commands from the root to it.
struct Invocation {
    std::vector<const Command*> path;
    Values values;
};

// Reads the arguments (less the program's name) against the tree. Either a command to
// run, or what to print instead (help, version, a completion script, the tool-info dump,
// a usage error) with its status.
std::variant<Invocation, Outcome> parse(const Command& root, const std::vector<std::string>& arguments,
                                        const Environment& environment);

// Runs an invocation's command and turns a thrown ValidationError or ExitCode into an
// Outcome, through the exit routine. Returns status 0 with nothing to print when run returns.
Outcome run(const Command& root, const Invocation& invocation, const Environment& environment);

// The whole entry: parse, run, print, and end the process with the status.
[[noreturn]] void main(const Command& root, int argc, char** argv);

}  // namespace ArgumentParser
