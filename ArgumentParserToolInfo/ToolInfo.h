#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Json.h"
#include "Platform/JsonDecoder.h"

// The description of a command tree that `--experimental-dump-help` prints, for tools that
// document or wrap a command, with its JSON form.
namespace ArgumentParserToolInfo {

struct NameInfoV0 {
    enum class KindV0 { longName, shortName, longWithSingleDash };
    KindV0 kind = KindV0::longName;
    std::string name;

    bool operator==(const NameInfoV0&) const = default;
};

// How an argument's values are completed; the case names are the JSON keys.
struct CompletionKindV0 {
    struct List {
        std::vector<std::string> values;
        bool operator==(const List&) const = default;
    };
    struct File {
        std::vector<std::string> extensions;
        bool operator==(const File&) const = default;
    };
    struct Directory {
        bool operator==(const Directory&) const = default;
    };
    struct ShellCommand {
        std::string command;
        bool operator==(const ShellCommand&) const = default;
    };
    struct Custom {
        bool operator==(const Custom&) const = default;
    };
    struct CustomAsync {
        bool operator==(const CustomAsync&) const = default;
    };
    struct CustomDeprecated {
        bool operator==(const CustomDeprecated&) const = default;
    };
    std::variant<List, File, Directory, ShellCommand, Custom, CustomAsync, CustomDeprecated> value;

    bool operator==(const CompletionKindV0&) const = default;
};

struct ArgumentInfoV0 {
    enum class KindV0 { positional, option, flag };
    enum class ParsingStrategyV0 {
        defaultStrategy,
        scanningForValue,
        unconditional,
        upToNextOption,
        allRemainingInput,
        postTerminator,
        allUnrecognized,
    };
    KindV0 kind = KindV0::positional;
    bool shouldDisplay = true;
    std::optional<std::string> sectionTitle;
    bool isOptional = false;
    bool isRepeating = false;
    ParsingStrategyV0 parsingStrategy = ParsingStrategyV0::defaultStrategy;
    std::optional<std::vector<NameInfoV0>> names;
    std::optional<NameInfoV0> preferredName;
    std::optional<std::string> valueName;
    std::optional<std::string> defaultValue;
    std::optional<std::vector<std::string>> allValues;
    std::optional<std::map<std::string, std::string>> allValueDescriptions;
    std::optional<CompletionKindV0> completionKind;
    std::optional<std::string> abstract;
    std::optional<std::string> discussion;

    bool operator==(const ArgumentInfoV0&) const = default;
};

struct CommandInfoV0 {
    std::optional<std::vector<std::string>> superCommands;
    bool shouldDisplay = true;
    std::string commandName;
    std::optional<std::vector<std::string>> aliases;
    std::optional<std::string> abstract;
    std::optional<std::string> discussion;
    std::optional<std::string> defaultSubcommand;
    std::optional<std::vector<CommandInfoV0>> subcommands;
    std::optional<std::vector<ArgumentInfoV0>> arguments;

    bool operator==(const CommandInfoV0&) const = default;
};

struct ToolInfoV0 {
    int64_t serializationVersion = 0;
    CommandInfoV0 command;

    bool operator==(const ToolInfoV0&) const = default;
};

// The version alone, so that a reader can look at it before decoding the rest.
struct ToolInfoHeader {
    int64_t serializationVersion = 0;

    bool operator==(const ToolInfoHeader&) const = default;
};

Json toJson(const NameInfoV0& name);
Json toJson(const CompletionKindV0& kind);
Json toJson(const ArgumentInfoV0& argument);
Json toJson(const CommandInfoV0& command);
Json toJson(const ToolInfoV0& info);
Json toJson(const ToolInfoHeader& header);

// Each throws DecodeError.
NameInfoV0 decodeNameInfo(const JsonDecoder& decoder);
CompletionKindV0 decodeCompletionKind(const JsonDecoder& decoder);
ArgumentInfoV0 decodeArgumentInfo(const JsonDecoder& decoder);
CommandInfoV0 decodeCommandInfo(const JsonDecoder& decoder);
ToolInfoV0 decodeToolInfo(const JsonDecoder& decoder);
ToolInfoHeader decodeToolInfoHeader(const JsonDecoder& decoder);

}  // namespace ArgumentParserToolInfo
