#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// How a command declares itself: its configuration, its inputs and its children, as data.
namespace ArgumentParser {

struct Name {
    enum class Kind { longName, shortName, longWithSingleDash };
    Kind kind = Kind::longName;
    std::string name;  // without dashes

    bool operator==(const Name&) const = default;
    std::string synopsis() const;  // "--name", "-n", "-name"
};

enum class InputKind { positional, option, flag };

enum class ParsingStrategy {
    defaultStrategy,   // "default"
    scanningForValue,
    unconditional,
    upToNextOption,
    allRemainingInput,
    postTerminator,
    allUnrecognized,
};

enum class ValueType { text, double64, integer };

struct Input {
    InputKind kind = InputKind::positional;
    std::string field;            // "dryRun"; the default long name is "dry-run"
    std::vector<Name> names;      // flags and options; empty gives the default long name
    std::string valueName;        // empty gives the field's name
    std::string help;
    std::string discussion;
    bool isOptional = false;
    bool isRepeating = false;
    ParsingStrategy strategy = ParsingStrategy::defaultStrategy;
    ValueType type = ValueType::text;
    std::optional<std::string> defaultValue;  // shown as "(default: x)"
    bool shouldDisplay = true;
    // Flags that share a group are alternatives: at most one of them may be given, and when
    // none of them is optional one of them must be.
    std::string group;
};

// Shorthands for the inputs vesk declares.
Input flag(std::string field, std::string help);                                     // --field, false unless given
Input option(std::string field, std::string help, ValueType type = ValueType::text);  // --field <field>, optional
Input argument(std::string field, std::string help);                                 // required positional
Input capturingList(std::string field, std::string help);  // repeating, allUnrecognized

struct Configuration {
    std::string commandName;  // empty: the type name lower-cased, words joined by dashes
    std::string abstract;
    std::string usage;        // empty: generated
    std::string discussion;
    std::string version;
    bool shouldDisplay = true;
    std::vector<std::string> aliases;
    std::vector<Name> helpNames{{Name::Kind::shortName, "h"}, {Name::Kind::longName, "help"}};
};

// The decoded values of one command's inputs, by field name. A field that was not given
// and has no default is absent.
class Values {
public:
    using Value = std::variant<bool, std::string, double, int64_t, std::vector<std::string>>;

    bool flag(const std::string& field) const;                          // false when absent
    std::string text(const std::string& field) const;                   // "" when absent
    std::optional<std::string> optionalText(const std::string& field) const;
    std::optional<double> optionalDouble(const std::string& field) const;
    std::optional<int64_t> optionalInteger(const std::string& field) const;
    std::vector<std::string> list(const std::string& field) const;      // empty when absent

    std::map<std::string, Value> values;
    // The process's arguments less the program's name, as typed.
    std::vector<std::string> arguments;
};

// Thrown by a command's run: reported like a usage error, with the root's usage, status 64.
struct ValidationError {
    std::string message;
};

// Thrown by a command's run: ends the process with this status and prints nothing more.
struct ExitCode {
    int status = 0;
};

struct Command {
    std::string typeName;  // "SettingsCommand", "PlacesList"
    Configuration configuration;
    std::vector<Input> inputs;  // option groups are spliced in where they are embedded
    std::vector<const Command*> subcommands;
    const Command* defaultSubcommand = nullptr;
    // Runs the command; may throw ValidationError or ExitCode, or end the process itself.
    std::function<void(const Values&)> run;

    std::string name() const;  // commandName, or the type name converted
};

}  // namespace ArgumentParser
