#include "ArgumentParserToolInfo/ToolInfo.h"

#include <array>
#include <utility>

#include <nlohmann/json.hpp>

namespace ArgumentParserToolInfo {

namespace {

constexpr std::array nameKinds{
    std::pair{NameInfoV0::KindV0::longName, "long"},
    std::pair{NameInfoV0::KindV0::shortName, "short"},
    std::pair{NameInfoV0::KindV0::longWithSingleDash, "longWithSingleDash"},
};

constexpr std::array argumentKinds{
    std::pair{ArgumentInfoV0::KindV0::positional, "positional"},
    std::pair{ArgumentInfoV0::KindV0::option, "option"},
    std::pair{ArgumentInfoV0::KindV0::flag, "flag"},
};

using Strategy = ArgumentInfoV0::ParsingStrategyV0;
constexpr std::array strategies{
    std::pair{Strategy::defaultStrategy, "default"},
    std::pair{Strategy::scanningForValue, "scanningForValue"},
    std::pair{Strategy::unconditional, "unconditional"},
    std::pair{Strategy::upToNextOption, "upToNextOption"},
    std::pair{Strategy::allRemainingInput, "allRemainingInput"},
    std::pair{Strategy::postTerminator, "postTerminator"},
    std::pair{Strategy::allUnrecognized, "allUnrecognized"},
};

template <typename Enum, size_t N>
const char* rawValue(const std::array<std::pair<Enum, const char*>, N>& table, Enum value) {
    for (const auto& [known, raw] : table)
        if (known == value) return raw;
    return table.front().second;
}

template <typename Enum, size_t N>
Enum decodeRaw(const std::array<std::pair<Enum, const char*>, N>& table, const JsonDecoder& decoder,
               const char* type) {
    std::string raw = decoder.string();
    for (const auto& [known, text] : table)
        if (raw == text) return known;
    decoder.fail(std::string("Cannot initialize ") + type + " from invalid String value " + raw);
}

template <typename T>
void put(Json& object, const char* key, const std::optional<T>& value) {
    if (value) object[key] = *value;
}

template <typename T, typename Encode>
void putArray(Json& object, const char* key, const std::optional<std::vector<T>>& values, Encode encode) {
    if (!values) return;
    Json array = Json::array();
    for (const auto& value : *values) array.push_back(encode(value));
    object[key] = array;
}

std::vector<std::string> strings(const JsonDecoder& decoder) {
    std::vector<std::string> result;
    for (const auto& element : decoder.elements()) result.push_back(element.string());
    return result;
}

std::optional<std::string> optionalString(const JsonDecoder& decoder, const char* key) {
    if (auto value = decoder.optional(key)) return value->string();
    return std::nullopt;
}

std::optional<std::vector<std::string>> optionalStrings(const JsonDecoder& decoder, const char* key) {
    if (auto value = decoder.optional(key)) return strings(*value);
    return std::nullopt;
}

template <typename T, typename Decode>
std::optional<std::vector<T>> optionalArray(const JsonDecoder& decoder, const char* key, Decode decode) {
    auto value = decoder.optional(key);
    if (!value) return std::nullopt;
    std::vector<T> result;
    for (const auto& element : value->elements()) result.push_back(decode(element));
    return result;
}

}  // namespace

Json toJson(const NameInfoV0& name) {
    return Json{{"kind", rawValue(nameKinds, name.kind)}, {"name", name.name}};
}

Json toJson(const CompletionKindV0& kind) {
    struct Encode {
        Json operator()(const CompletionKindV0::List& c) const { return {{"list", {{"values", c.values}}}}; }
        Json operator()(const CompletionKindV0::File& c) const { return {{"file", {{"extensions", c.extensions}}}}; }
        Json operator()(const CompletionKindV0::Directory&) const { return {{"directory", Json::object()}}; }
        Json operator()(const CompletionKindV0::ShellCommand& c) const {
            return {{"shellCommand", {{"command", c.command}}}};
        }
        Json operator()(const CompletionKindV0::Custom&) const { return {{"custom", Json::object()}}; }
        Json operator()(const CompletionKindV0::CustomAsync&) const { return {{"customAsync", Json::object()}}; }
        Json operator()(const CompletionKindV0::CustomDeprecated&) const {
            return {{"customDeprecated", Json::object()}};
        }
    };
    return std::visit(Encode{}, kind.value);
}

Json toJson(const ArgumentInfoV0& argument) {
    Json object = Json::object();
    object["kind"] = rawValue(argumentKinds, argument.kind);
    object["shouldDisplay"] = argument.shouldDisplay;
    put(object, "sectionTitle", argument.sectionTitle);
    object["isOptional"] = argument.isOptional;
    object["isRepeating"] = argument.isRepeating;
    object["parsingStrategy"] = rawValue(strategies, argument.parsingStrategy);
    putArray(object, "names", argument.names, [](const NameInfoV0& name) { return toJson(name); });
    if (argument.preferredName) object["preferredName"] = toJson(*argument.preferredName);
    put(object, "valueName", argument.valueName);
    put(object, "defaultValue", argument.defaultValue);
    put(object, "allValues", argument.allValues);
    if (argument.allValueDescriptions) {
        Json descriptions = Json::object();
        for (const auto& [value, description] : *argument.allValueDescriptions) descriptions[value] = description;
        object["allValueDescriptions"] = descriptions;
    }
    if (argument.completionKind) object["completionKind"] = toJson(*argument.completionKind);
    put(object, "abstract", argument.abstract);
    put(object, "discussion", argument.discussion);
    return object;
}

Json toJson(const CommandInfoV0& command) {
    Json object = Json::object();
    put(object, "superCommands", command.superCommands);
    object["shouldDisplay"] = command.shouldDisplay;
    object["commandName"] = command.commandName;
    put(object, "aliases", command.aliases);
    put(object, "abstract", command.abstract);
    put(object, "discussion", command.discussion);
    put(object, "defaultSubcommand", command.defaultSubcommand);
    putArray(object, "subcommands", command.subcommands, [](const CommandInfoV0& c) { return toJson(c); });
    putArray(object, "arguments", command.arguments, [](const ArgumentInfoV0& a) { return toJson(a); });
    return object;
}

Json toJson(const ToolInfoV0& info) {
    return Json{{"serializationVersion", info.serializationVersion}, {"command", toJson(info.command)}};
}

Json toJson(const ToolInfoHeader& header) { return Json{{"serializationVersion", header.serializationVersion}}; }

NameInfoV0 decodeNameInfo(const JsonDecoder& decoder) {
    decoder.requireObject();
    return {decodeRaw(nameKinds, decoder["kind"], "KindV0"), decoder["name"].string()};
}

CompletionKindV0 decodeCompletionKind(const JsonDecoder& decoder) {
    decoder.requireObject();
    std::string kind = decoder.singleCase(
        {"list", "file", "directory", "shellCommand", "custom", "customAsync", "customDeprecated"});
    JsonDecoder payload = decoder[kind];
    payload.requireObject();
    if (kind == "list") return {CompletionKindV0::List{strings(payload["values"])}};
    if (kind == "file") return {CompletionKindV0::File{strings(payload["extensions"])}};
    if (kind == "directory") return {CompletionKindV0::Directory{}};
    if (kind == "shellCommand") return {CompletionKindV0::ShellCommand{payload["command"].string()}};
    if (kind == "custom") return {CompletionKindV0::Custom{}};
    if (kind == "customAsync") return {CompletionKindV0::CustomAsync{}};
    return {CompletionKindV0::CustomDeprecated{}};
}

ArgumentInfoV0 decodeArgumentInfo(const JsonDecoder& decoder) {
    decoder.requireObject();
    ArgumentInfoV0 argument;
    argument.kind = decodeRaw(argumentKinds, decoder["kind"], "KindV0");
    argument.shouldDisplay = decoder["shouldDisplay"].boolean();
    argument.sectionTitle = optionalString(decoder, "sectionTitle");
    argument.isOptional = decoder["isOptional"].boolean();
    argument.isRepeating = decoder["isRepeating"].boolean();
    argument.parsingStrategy = decodeRaw(strategies, decoder["parsingStrategy"], "ParsingStrategyV0");
    argument.names = optionalArray<NameInfoV0>(decoder, "names", decodeNameInfo);
    if (auto preferred = decoder.optional("preferredName")) argument.preferredName = decodeNameInfo(*preferred);
    argument.valueName = optionalString(decoder, "valueName");
    argument.defaultValue = optionalString(decoder, "defaultValue");
    argument.allValues = optionalStrings(decoder, "allValues");
    if (auto descriptions = decoder.optional("allValueDescriptions")) {
        descriptions->requireObject();
        std::map<std::string, std::string> map;
        for (const auto& [key, value] : descriptions->members()) map[key] = value.string();
        argument.allValueDescriptions = map;
    }
    if (auto completion = decoder.optional("completionKind")) argument.completionKind = decodeCompletionKind(*completion);
    argument.abstract = optionalString(decoder, "abstract");
    argument.discussion = optionalString(decoder, "discussion");
    return argument;
}

CommandInfoV0 decodeCommandInfo(const JsonDecoder& decoder) {
    decoder.requireObject();
    CommandInfoV0 command;
    command.superCommands = optionalStrings(decoder, "superCommands");
    command.shouldDisplay = decoder["shouldDisplay"].boolean();
    command.commandName = decoder["commandName"].string();
    command.aliases = optionalStrings(decoder, "aliases");
    command.abstract = optionalString(decoder, "abstract");
    command.discussion = optionalString(decoder, "discussion");
    command.defaultSubcommand = optionalString(decoder, "defaultSubcommand");
    command.subcommands = optionalArray<CommandInfoV0>(decoder, "subcommands", decodeCommandInfo);
    command.arguments = optionalArray<ArgumentInfoV0>(decoder, "arguments", decodeArgumentInfo);
    return command;
}

ToolInfoV0 decodeToolInfo(const JsonDecoder& decoder) {
    decoder.requireObject();
    return {decoder["serializationVersion"].integer(), decodeCommandInfo(decoder["command"])};
}

ToolInfoHeader decodeToolInfoHeader(const JsonDecoder& decoder) {
    decoder.requireObject();
    return {decoder["serializationVersion"].integer()};
}

}  // namespace ArgumentParserToolInfo
