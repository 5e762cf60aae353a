#include "ArgumentParser/Tree.h"

#include <algorithm>

namespace ArgumentParser {

const Command& helpCommand() {
    static const Command command = [] {
        Command help;
        help.typeName = "HelpCommand";
        help.configuration.commandName = "help";
        help.configuration.abstract = "Show subcommand help information.";
        help.configuration.helpNames = {};
        Input names;
        names.kind = InputKind::positional;
        names.field = "subcommands";
        names.isOptional = true;
        names.isRepeating = true;
        // Help requests after `help` are taken silently: `vesk help places -h` is places' help.
        Input quiet = flag("help", "");
        quiet.names = {{Name::Kind::shortName, "h"}, {Name::Kind::longName, "help"},
                       {Name::Kind::longWithSingleDash, "help"}};
        quiet.shouldDisplay = false;
        help.inputs = {names, quiet};
        return help;
    }();
    return command;
}

std::vector<const Command*> childrenOf(const CommandPath& path) {
    std::vector<const Command*> children = path.back()->subcommands;
    if (path.size() == 1 && !children.empty()) children.push_back(&helpCommand());
    return children;
}

const Command* childNamed(const CommandPath& path, std::string_view name) {
    for (const Command* child : childrenOf(path)) {
        if (child->name() == name) return child;
        const auto& aliases = child->configuration.aliases;
        if (std::find(aliases.begin(), aliases.end(), name) != aliases.end()) return child;
    }
    return nullptr;
}

std::string pathName(const CommandPath& path) {
    std::string result;
    for (const Command* command : path) {
        if (!result.empty()) result += ' ';
        result += command->name();
    }
    return result;
}

}  // namespace ArgumentParser
