#include "ArgumentParser/Completion.h"

namespace ArgumentParser {

namespace {

std::string words(const std::vector<CompletionInput>& inputs, bool repeatingOnly = false) {
    std::string text;
    for (const auto& input : inputs) {
        if (repeatingOnly && !input.isRepeating) continue;
        for (const auto& name : input.names) text += (text.empty() ? "" : " ") + singleQuoted(name.synopsis());
    }
    return text;
}

std::string joined(const std::vector<std::string>& path) {
    std::string text;
    for (const auto& part : path) text += (text.empty() ? "" : " ") + part;
    return text;
}

std::string describe(const std::vector<CompletionCommand>& commands, const std::string& prefix) {
    std::string text = prefix + "_describe() {\n";
    text += "    " + prefix + "_flags=() " + prefix + "_options=() " + prefix + "_repeating=() " + prefix +
            "_subcommands=() " + prefix + "_default=\n";
    text += "    case \"$1\" in\n";
    for (const auto& command : commands) {
        text += "    " + singleQuoted(joined(command.path)) + ")\n";
        text += "        " + prefix + "_flags=(" + words(command.flags) + ")\n";
        if (!command.options.empty()) text += "        " + prefix + "_options=(" + words(command.options) + ")\n";
        std::vector<CompletionInput> all = command.flags;
        all.insert(all.end(), command.options.begin(), command.options.end());
        if (auto repeating = words(all, true); !repeating.empty())
            text += "        " + prefix + "_repeating=(" + repeating + ")\n";
        if (!command.subcommands.empty()) {
            std::string names;
            for (const auto& [name, abstract] : command.subcommands)
                names += (names.empty() ? "" : " ") + singleQuoted(name);
            text += "        " + prefix + "_subcommands=(" + names + ")\n";
        }
        if (!command.defaultSubcommand.empty())
            text += "        " + prefix + "_default=" + singleQuoted(command.defaultSubcommand) + "\n";
        text += "        ;;\n";
    }
    text += "    esac\n}\n";
    return text;
}

}  // namespace

std::string bashScript(const Command& root) {
    auto commands = completionCommands(root);
    const std::string name = commands.front().path.front();
    const std::string prefix = functionName({name});
    std::string text = "#!/bin/bash\n\n";
    text += "# Completion for " + name + " in bash: source this file, or put it where bash-completion looks.\n\n";
    text += describe(commands, prefix);
    text += R"(
%F%_contains() {
    local word="$1" item
    shift
    for item; do
        [[ "$item" == "$word" ]] && return 0
    done
    return 1
}

%F%() {
    local -x SAP_SHELL=bash
    local -x SAP_SHELL_VERSION="${BASH_VERSINFO[0]}.${BASH_VERSINFO[1]}.${BASH_VERSINFO[2]}"
    local cur="${COMP_WORDS[COMP_CWORD]}" path=%NAME% word i=1 descend=1
    local -a %F%_flags %F%_options %F%_repeating %F%_subcommands used candidates
    local %F%_default
    COMPREPLY=()
    %F%_describe "$path"
    # Follow the words before the cursor down the tree, as the command will read them.
    while (( i < COMP_CWORD )); do
        word="${COMP_WORDS[i]}"
        # Behind the terminator everything is a plain word.
        [[ "$word" == -- ]] && return 0
        if %F%_contains "$word" "${%F%_options[@]}"; then
            used+=("$word")
            if [[ "${COMP_WORDS[i+1]}" == = ]]; then (( i += 3 )); else (( i += 2 )); fi
            continue
        fi
        if [[ "$word" == -*=* ]] && %F%_contains "${word%%=*}" "${%F%_options[@]}"; then
            used+=("${word%%=*}")
            (( i += 1 ))
            continue
        fi
        if %F%_contains "$word" "${%F%_flags[@]}"; then
            used+=("$word")
            (( i += 1 ))
            continue
        fi
        if (( descend )) && %F%_contains "$word" "${%F%_subcommands[@]}"; then
            path+=" $word"
            used=()
            %F%_describe "$path"
            (( i += 1 ))
            continue
        fi
        if (( descend )) && [[ -n "$%F%_default" ]]; then
            # Anything else goes to the default subcommand, this word included.
            path+=" $%F%_default"
            used=()
            %F%_describe "$path"
            continue
        fi
        descend=0
        (( i += 1 ))
    done

    # An option's value has no completions of its own; bash may make "=" a word of its own.
    local previous="${COMP_WORDS[COMP_CWORD-1]}"
    [[ "$previous" == = ]] && previous="${COMP_WORDS[COMP_CWORD-2]}"
    if (( COMP_CWORD > 1 )) && %F%_contains "$previous" "${%F%_options[@]}"; then
        return 0
    fi

    for word in "${%F%_flags[@]}" "${%F%_options[@]}"; do
        if ! %F%_contains "$word" "${used[@]}" || %F%_contains "$word" "${%F%_repeating[@]}"; then
            candidates+=("$word")
        fi
    done
    (( descend )) && candidates+=("${%F%_subcommands[@]}")
    COMPREPLY=($(compgen -W "${candidates[*]}" -- "$cur"))
}

complete -o filenames -F %F% %NAME%
)";
    return filledTemplate(text, prefix, singleQuoted(name));
}

}  // namespace ArgumentParser
