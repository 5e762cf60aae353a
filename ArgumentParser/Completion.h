#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ArgumentParser/Declaration.h"

// Completion scripts for the shells, built from the same declarations as the help.
namespace ArgumentParser {

enum class Shell { zsh, bash, fish };

// "zsh", "bash", "fish", in this order.
const std::vector<std::string>& shellNames();
std::optional<Shell> shellNamed(std::string_view name);

// What a shell needs to know of one command of the tree.
struct CompletionInput {
    std::vector<Name> names;  // short names first
    std::string help;
    std::string valueName;    // of an option or a positional
    bool isRepeating = false;
    bool isOptional = false;
};

struct CompletionCommand {
    std::vector<std::string> path;  // "vesk", "places", "add"
    std::vector<CompletionInput> flags;  // the help and version flags included
    std::vector<CompletionInput> options;
    std::vector<CompletionInput> positionals;
    std::vector<std::pair<std::string, std::string>> subcommands;  // name, abstract
    std::string defaultSubcommand;
};

// Every command of the tree, parents before their children, `help` included.
std::vector<CompletionCommand> completionCommands(const Command& root);

std::string bashScript(const Command& root);
std::string zshScript(const Command& root);
std::string fishScript(const Command& root);
std::string completionScript(const Command& root, Shell shell);

// A name fit for a shell function: letters, digits and underscores.
std::string functionName(const std::vector<std::string>& path);

// `word` in single quotes as bash and zsh read them.
std::string singleQuoted(const std::string& word);

// A script template with "%F%" replaced by the function prefix and "%NAME%" by the
// program's name as the shell should read it.
std::string filledTemplate(std::string_view text, const std::string& function, const std::string& program);

}  // namespace ArgumentParser
