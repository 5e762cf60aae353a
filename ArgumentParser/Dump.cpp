#include "ArgumentParser/Dump.h"

#include <nlohmann/json.hpp>

#include "ArgumentParser/Names.h"
#include "Platform/Json.h"

namespace ArgumentParser {

namespace {

using namespace ArgumentParserToolInfo;

std::optional<std::string> nonEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

template <typename T>
std::optional<std::vector<T>> nonEmpty(std::vector<T> values) {
    return values.empty() ? std::nullopt : std::optional<std::vector<T>>(std::move(values));
}

NameInfoV0 nameInfo(const Name& name) {
    switch (name.kind) {
        case Name::Kind::longName: return {NameInfoV0::KindV0::longName, name.name};
        case Name::Kind::shortName: return {NameInfoV0::KindV0::shortName, name.name};
        case Name::Kind::longWithSingleDash: return {NameInfoV0::KindV0::longWithSingleDash, name.name};
    }
    return {NameInfoV0::KindV0::longName, name.name};
}

ArgumentInfoV0 argumentInfo(const Input& input) {
    ArgumentInfoV0 info;
    switch (input.kind) {
        case InputKind::positional: info.kind = ArgumentInfoV0::KindV0::positional; break;
        case InputKind::option: info.kind = ArgumentInfoV0::KindV0::option; break;
        case InputKind::flag: info.kind = ArgumentInfoV0::KindV0::flag; break;
    }
    info.shouldDisplay = input.shouldDisplay;
    info.isOptional = input.isOptional || input.defaultValue.has_value() || input.kind == InputKind::flag;
    info.isRepeating = input.isRepeating;
    info.parsingStrategy = static_cast<ArgumentInfoV0::ParsingStrategyV0>(input.strategy);
    if (input.kind != InputKind::positional) {
        std::vector<NameInfoV0> names;
        for (const Name& name : namesOf(input)) names.push_back(nameInfo(name));
        info.names = names;
        info.preferredName = nameInfo(preferredName(input));
    }
    info.valueName = valueNameOf(input);
    if (input.kind != InputKind::flag) info.defaultValue = input.defaultValue;
    info.abstract = nonEmpty(input.help);
    info.discussion = nonEmpty(input.discussion);
    return info;
}

CommandInfoV0 commandInfo(const CommandPath& path) {
    const Command& command = *path.back();
    CommandInfoV0 info;
    std::vector<std::string> superCommands;
    for (size_t i = 0; i + 1 < path.size(); ++i) superCommands.push_back(path[i]->name());
    info.superCommands = nonEmpty(superCommands);
    info.shouldDisplay = command.configuration.shouldDisplay;
    info.commandName = command.name();
    info.aliases = nonEmpty(command.configuration.aliases);
    info.abstract = nonEmpty(command.configuration.abstract);
    info.discussion = nonEmpty(command.configuration.discussion);
    if (command.defaultSubcommand) info.defaultSubcommand = command.defaultSubcommand->name();

    std::vector<CommandInfoV0> subcommands;
    for (const Command* child : childrenOf(path)) {
        CommandPath next = path;
        next.push_back(child);
        subcommands.push_back(commandInfo(next));
    }
    info.subcommands = nonEmpty(subcommands);

    std::vector<ArgumentInfoV0> arguments;
    for (const Input& input : command.inputs) arguments.push_back(argumentInfo(input));
    if (!command.configuration.version.empty()) arguments.push_back(argumentInfo(flag("version", "Show the version.")));
    if (!command.configuration.helpNames.empty()) {
        Input help = flag("help", "Show help information.");
        help.names = command.configuration.helpNames;
        arguments.push_back(argumentInfo(help));
    }
    info.arguments = nonEmpty(arguments);
    return info;
}

}  // namespace

ToolInfoV0 toolInfo(const CommandPath& path) { return {0, commandInfo(path)}; }

std::string dumpText(const CommandPath& path) {
    return JsonText::pretty(toJson(toolInfo(path))).value_or("{}");
}

}  // namespace ArgumentParser
