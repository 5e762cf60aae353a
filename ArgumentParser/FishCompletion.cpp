#include "ArgumentParser/Completion.h"

namespace ArgumentParser {

namespace {

std::string quoted(const std::string& word) {
    std::string text = "'";
    for (char c : word) {
        if (c == '\\' || c == '\'') text += '\\';
        text += c == '\n' ? ' ' : c;
    }
    return text + "'";
}

std::string joined(const std::vector<std::string>& path) {
    std::string text;
    for (const auto& part : path) text += (text.empty() ? "" : " ") + part;
    return text;
}

std::string list(const std::vector<CompletionInput>& inputs, bool repeatingOnly = false) {
    std::string text;
    for (const auto& input : inputs) {
        if (repeatingOnly && !input.isRepeating) continue;
        for (const auto& name : input.names) text += " " + quoted(name.synopsis());
    }
    return text;
}

std::string describe(const std::vector<CompletionCommand>& commands, const std::string& prefix) {
    std::string text = "function " + prefix + "_describe --argument-names path what\n";
    text += "    switch \"$path:$what\"\n";
    for (const auto& command : commands) {
        const std::string path = joined(command.path);
        auto all = command.flags;
        all.insert(all.end(), command.options.begin(), command.options.end());
        std::vector<std::pair<std::string, std::string>> lines{
            {"flags", list(command.flags)},
            {"options", list(command.options)},
            {"repeating", list(all, true)},
        };
        std::string subcommands;
        for (const auto& [name, abstract] : command.subcommands) subcommands += " " + quoted(name);
        lines.push_back({"subcommands", subcommands});
        if (!command.defaultSubcommand.empty()) lines.push_back({"default", " " + quoted(command.defaultSubcommand)});
        for (const auto& [what, words] : lines) {
            if (words.empty()) continue;
            text += "        case " + quoted(path + ":" + what) + "\n";
            text += "            printf '%s\\n'" + words + "\n";
        }
    }
    text += "    end\n";
    text += "end\n";
    return text;
}

std::string nameOptions(const CompletionInput& input) {
    std::string text;
    for (const auto& name : input.names) {
        switch (name.kind) {
            case Name::Kind::shortName: text += " -s " + quoted(name.name); break;
            case Name::Kind::longName: text += " -l " + quoted(name.name); break;
            case Name::Kind::longWithSingleDash: text += " -o " + quoted(name.name); break;
        }
    }
    return text;
}

std::string registration(const std::string& program, const std::string& prefix, const CompletionCommand& command,
                         const CompletionInput& input, bool takesValue) {
    std::string condition = prefix + "_offers " + quoted(joined(command.path)) + " " +
                            (input.isRepeating ? "1" : "0");
    for (const auto& name : input.names) condition += " " + quoted(name.synopsis());
    std::string text = "complete -c " + quoted(program) + " -n " + quoted(condition) + nameOptions(input);
    if (takesValue) text += " -x";
    if (!input.help.empty()) text += " -d " + quoted(input.help);
    return text + "\n";
}

}  // namespace

std::string fishScript(const Command& root) {
    auto commands = completionCommands(root);
    const std::string program = commands.front().path.front();
    const std::string prefix = functionName({program});
    std::string text = "# Completion for " + program + " in fish: put this file in ~/.config/fish/completions as " +
                       program + ".fish, or source it.\n\n";
    text += describe(commands, prefix) + "\n";
    std::string walk = R"(# Follows the words before the cursor down the tree, as the command will read them, and
# prints the command reached, whether a subcommand may still follow, and the names used.
function %F%_walk
    set -lx SAP_SHELL fish
    set -lx SAP_SHELL_VERSION $version
    set -l words (commandline -opc)
    set -e words[1]
    set -l path %NAME%
    set -l descend 1
    set -l used
    set -l flags (%F%_describe $path flags)
    set -l options (%F%_describe $path options)
    set -l subcommands (%F%_describe $path subcommands)
    set -l default (%F%_describe $path default)
    set -l i 1
    while test $i -le (count $words)
        set -l word $words[$i]
        set -l name (string split -m 1 = -- $word)[1]
        if test "$word" = --
            # Behind the terminator everything is a plain word.
            printf '%s\n' $path 0 --
            return
        else if contains -- $name $options
            set -a used $name
            if test "$name" = "$word"
                set i (math $i + 1)
            end
        else if contains -- $word $flags
            set -a used $word
        else if test $descend = 1; and contains -- $word $subcommands
            set path "$path $word"
            set used
            set flags (%F%_describe $path flags)
            set options (%F%_describe $path options)
            set subcommands (%F%_describe $path subcommands)
            set default (%F%_describe $path default)
        else if test $descend = 1; and test -n "$default"
            # Anything else goes to the default subcommand, this word included.
            set path "$path $default"
            set used
            set flags (%F%_describe $path flags)
            set options (%F%_describe $path options)
            set subcommands (%F%_describe $path subcommands)
            set default (%F%_describe $path default)
            continue
        else
            set descend 0
        end
        set i (math $i + 1)
    end
    printf '%s\n' $path $descend $used
end

# Whether the walk ends at the command `path`, and one of `names` may still be given.
function %F%_offers --argument-names path repeating
    set -l state (%F%_walk)
    test "$state[1]" = "$path"; or return 1
    contains -- -- $state[3..-1]; and return 1
    test "$repeating" = 1; and return 0
    for name in $argv[3..-1]
        contains -- $name $state[3..-1]; and return 1
    end
    return 0
end

# Whether the walk ends at the command `path` where a subcommand may still be named.
function %F%_offers_subcommand --argument-names path
    set -l state (%F%_walk)
    test "$state[1]" = "$path"; and test "$state[2]" = 1
end

complete -c %NAME% -f
)";
    text += filledTemplate(walk, prefix, quoted(program));
    for (const auto& command : commands) {
        text += "\n";
        for (const auto& input : command.flags) text += registration(program, prefix, command, input, false);
        for (const auto& input : command.options) text += registration(program, prefix, command, input, true);
        for (const auto& [name, abstract] : command.subcommands) {
            text += "complete -c " + quoted(program) + " -n " +
                    quoted(prefix + "_offers_subcommand " + quoted(joined(command.path))) + " -a " + quoted(name);
            if (!abstract.empty()) text += " -d " + quoted(abstract);
            text += "\n";
        }
    }
    return text;
}

}  // namespace ArgumentParser
