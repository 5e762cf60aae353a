#include "ArgumentParser/Completion.h"

#include "ArgumentParser/Names.h"
#include "ArgumentParser/Tree.h"

namespace ArgumentParser {

namespace {

CompletionInput completionInput(const Input& input) {
    return {namesForHelp(input), input.help, valueNameOf(input), input.isRepeating, input.isOptional};
}

void collect(const CommandPath& path, std::vector<CompletionCommand>& commands) {
    const Command& command = *path.back();
    CompletionCommand entry;
    for (const Command* step : path) entry.path.push_back(step->name());
    for (const Input& input : command.inputs) {
        if (!input.shouldDisplay) continue;
        switch (input.kind) {
            case InputKind::flag: entry.flags.push_back(completionInput(input)); break;
            case InputKind::option: entry.options.push_back(completionInput(input)); break;
            case InputKind::positional: entry.positionals.push_back(completionInput(input)); break;
        }
    }
    if (!command.configuration.version.empty())
        entry.flags.push_back({{versionName()}, "Show the version.", "", false, true});
    if (!command.configuration.helpNames.empty()) {
        Input help = flag("help", "Show help information.");
        help.names = command.configuration.helpNames;
        entry.flags.push_back(completionInput(help));
    }
    if (command.defaultSubcommand) entry.defaultSubcommand = command.defaultSubcommand->name();
    auto children = childrenOf(path);
    for (const Command* child : children)
        if (child->configuration.shouldDisplay) entry.subcommands.push_back({child->name(), child->configuration.abstract});
    commands.push_back(std::move(entry));
    for (const Command* child : children) {
        CommandPath next = path;
        next.push_back(child);
        collect(next, commands);
    }
}

}  // namespace

const std::vector<std::string>& shellNames() {
    static const std::vector<std::string> names{"zsh", "bash", "fish"};
    return names;
}

std::optional<Shell> shellNamed(std::string_view name) {
    if (name == "zsh") return Shell::zsh;
    if (name == "bash") return Shell::bash;
    if (name == "fish") return Shell::fish;
    return std::nullopt;
}

std::vector<CompletionCommand> completionCommands(const Command& root) {
    std::vector<CompletionCommand> commands;
    collect({&root}, commands);
    return commands;
}

std::string completionScript(const Command& root, Shell shell) {
    switch (shell) {
        case Shell::zsh: return zshScript(root);
        case Shell::bash: return bashScript(root);
        case Shell::fish: return fishScript(root);
    }
    return "";
}

std::string functionName(const std::vector<std::string>& path) {
    std::string name;
    for (const auto& part : path) {
        name += '_';
        for (char c : part) {
            bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
            name += plain ? c : '_';
        }
    }
    return name;
}

std::string singleQuoted(const std::string& word) {
    std::string text = "'";
    for (char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

std::string filledTemplate(std::string_view text, const std::string& function, const std::string& program) {
    std::string script;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 3, "%F%") == 0) {
            script += function;
            i += 2;
        } else if (text.compare(i, 6, "%NAME%") == 0) {
            script += program;
            i += 5;
        } else {
            script += text[i];
        }
    }
    return script;
}

}  // namespace ArgumentParser
