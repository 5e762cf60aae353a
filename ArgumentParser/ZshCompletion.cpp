#include "ArgumentParser/Completion.h"

namespace ArgumentParser {

namespace {

// A description inside the brackets of an option's entry.
std::string bracketed(const std::string& help) {
    std::string text;
    for (char c : help) {
        if (c == '\\' || c == '[' || c == ']') text += '\\';
        text += c == '\n' ? ' ' : c;
    }
    return "[" + text + "]";
}

std::string escapedColons(const std::string& text) {
    std::string result;
    for (char c : text) {
        if (c == ':' || c == '\\') result += '\\';
        result += c == '\n' ? ' ' : c;
    }
    return result;
}

// One word of `_arguments` for a flag or an option, one per name.
std::vector<std::string> entries(const CompletionInput& input, bool takesValue) {
    std::string exclusion;
    if (!input.isRepeating) {
        exclusion = "(";
        for (size_t i = 0; i < input.names.size(); ++i) exclusion += (i ? " " : "") + input.names[i].synopsis();
        exclusion += ")";
    } else {
        exclusion = "*";
    }
    std::vector<std::string> result;
    for (const auto& name : input.names) {
        std::string entry = exclusion + name.synopsis();
        if (takesValue && name.kind == Name::Kind::longName) entry += "=";
        entry += bracketed(input.help);
        if (takesValue) entry += ":" + escapedColons(input.valueName) + ": ";
        result.push_back(singleQuoted(entry));
    }
    return result;
}

std::string positional(const CompletionInput& input) {
    std::string name = escapedColons(input.valueName);
    if (input.isRepeating) return singleQuoted("*:" + name + ": ");
    return singleQuoted((input.isOptional ? "::" : ":") + name + ": ");
}

std::string commandFunction(const CompletionCommand& command) {
    const std::string function = functionName(command.path);
    std::string text = function + "() {\n";
    if (command.path.size() == 1) {
        text += "    local -x SAP_SHELL=zsh\n";
        text += "    local -x SAP_SHELL_VERSION=\"$ZSH_VERSION\"\n";
    }
    text += "    local context state state_descr line\n";
    text += "    local -A opt_args\n";
    text += "    local -a args\n";
    text += "    args=(\n";
    for (const auto& input : command.flags)
        for (const auto& entry : entries(input, false)) text += "        " + entry + "\n";
    for (const auto& input : command.options)
        for (const auto& entry : entries(input, true)) text += "        " + entry + "\n";
    for (const auto& input : command.positionals) text += "        " + positional(input) + "\n";
    if (command.subcommands.empty()) {
        text += "    )\n";
        text += "    _arguments -S : \"${args[@]}\"\n";
        text += "}\n";
        return text;
    }
    text += "        '(-): :->command'\n";
    text += "        '(-)*:: :->arg'\n";
    text += "    )\n";
    text += "    _arguments -S : \"${args[@]}\" && return\n";
    text += "    case $state in\n";
    text += "    (command)\n";
    text += "        local -a subcommands\n";
    text += "        subcommands=(\n";
    for (const auto& [name, abstract] : command.subcommands)
        text += "            " + singleQuoted(escapedColons(name) + ":" + abstract) + "\n";
    text += "        )\n";
    text += "        _describe -V subcommand subcommands\n";
    text += "        ;;\n";
    text += "    (arg)\n";
    text += "        case ${words[1]} in\n";
    for (const auto& [name, abstract] : command.subcommands) {
        auto path = command.path;
        path.push_back(name);
        text += "        (" + singleQuoted(name) + ") " + functionName(path) + " ;;\n";
    }
    if (!command.defaultSubcommand.empty()) {
        // Words that name no subcommand belong to the default one.
        auto path = command.path;
        path.push_back(command.defaultSubcommand);
        text += "        (*) words=(" + singleQuoted(command.defaultSubcommand) + " \"${words[@]}\"); (( CURRENT++ )); " +
                functionName(path) + " ;;\n";
    }
    text += "        esac\n";
    text += "        ;;\n";
    text += "    esac\n";
    text += "}\n";
    return text;
}

}  // namespace

std::string zshScript(const Command& root) {
    auto commands = completionCommands(root);
    const std::string name = commands.front().path.front();
    const std::string function = functionName({name});
    std::string text = "#compdef " + name + "\n\n";
    text += "# Completion for " + name + " in zsh: put this file in your fpath as " + function +
            ", or source it after compinit.\n\n";
    for (const auto& command : commands) text += commandFunction(command) + "\n";
    text += "if [[ \"${funcstack[1]}\" == " + function + " ]]; then\n";
    text += "    " + function + " \"$@\"\n";
    text += "else\n";
    text += "    compdef " + function + " " + singleQuoted(name) + "\n";
    text += "fi\n";
    return text;
}

}  // namespace ArgumentParser
