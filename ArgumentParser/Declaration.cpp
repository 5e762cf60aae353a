#include "ArgumentParser/Declaration.h"

#include "ArgumentParser/Names.h"

namespace ArgumentParser {

std::string Name::synopsis() const {
    switch (kind) {
        case Kind::longName: return "--" + name;
        case Kind::shortName: return "-" + name;
        case Kind::longWithSingleDash: return "-" + name;
    }
    return name;
}

namespace {

Input declared(InputKind kind, std::string field, std::string help, bool isOptional) {
    Input input;
    input.kind = kind;
    input.field = std::move(field);
    input.help = std::move(help);
    input.isOptional = isOptional;
    return input;
}

}  // namespace

Input flag(std::string field, std::string help) {
    return declared(InputKind::flag, std::move(field), std::move(help), true);
}

Input option(std::string field, std::string help, ValueType type) {
    Input input = declared(InputKind::option, std::move(field), std::move(help), true);
    input.type = type;
    return input;
}

Input argument(std::string field, std::string help) {
    return declared(InputKind::positional, std::move(field), std::move(help), false);
}

Input capturingList(std::string field, std::string help) {
    Input input = declared(InputKind::positional, std::move(field), std::move(help), true);
    input.isRepeating = true;
    input.strategy = ParsingStrategy::allUnrecognized;
    return input;
}

bool Values::flag(const std::string& field) const {
    auto found = values.find(field);
    if (found == values.end()) return false;
    auto value = std::get_if<bool>(&found->second);
    return value && *value;
}

std::string Values::text(const std::string& field) const { return optionalText(field).value_or(""); }

std::optional<std::string> Values::optionalText(const std::string& field) const {
    auto found = values.find(field);
    if (found == values.end()) return std::nullopt;
    if (auto value = std::get_if<std::string>(&found->second)) return *value;
    return std::nullopt;
}

std::optional<double> Values::optionalDouble(const std::string& field) const {
    auto found = values.find(field);
    if (found == values.end()) return std::nullopt;
    if (auto value = std::get_if<double>(&found->second)) return *value;
    if (auto value = std::get_if<int64_t>(&found->second)) return static_cast<double>(*value);
    return std::nullopt;
}

std::optional<int64_t> Values::optionalInteger(const std::string& field) const {
    auto found = values.find(field);
    if (found == values.end()) return std::nullopt;
    if (auto value = std::get_if<int64_t>(&found->second)) return *value;
    return std::nullopt;
}

std::vector<std::string> Values::list(const std::string& field) const {
    auto found = values.find(field);
    if (found == values.end()) return {};
    if (auto value = std::get_if<std::vector<std::string>>(&found->second)) return *value;
    return {};
}

std::string Command::name() const {
    return configuration.commandName.empty() ? dashCased(typeName) : configuration.commandName;
}

}  // namespace ArgumentParser
