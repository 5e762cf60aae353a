#include "ArgumentParser/Names.h"

#include <algorithm>

namespace ArgumentParser {

namespace {

bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }

}  // namespace

std::string dashCased(std::string_view identifier) {
    std::string result;
    bool separateOnUppercase = true;
    for (size_t i = 0; i < identifier.size(); ++i) {
        char c = identifier[i];
        if (isUpper(c)) {
            if (separateOnUppercase && !result.empty()) result += '-';
            // An acronym ends where a capital is followed by a lower-case letter: "URLSession".
            separateOnUppercase = i + 2 < identifier.size() && isUpper(identifier[i + 1]) && isLower(identifier[i + 2]);
            result += static_cast<char>(c - 'A' + 'a');
        } else {
            separateOnUppercase = c != '-';
            result += c;
        }
    }
    return result;
}

std::vector<Name> namesOf(const Input& input) {
    if (!input.names.empty()) return input.names;
    return {Name{Name::Kind::longName, dashCased(input.field)}};
}

std::vector<Name> namesForHelp(const Input& input) {
    auto names = namesOf(input);
    std::stable_sort(names.begin(), names.end(), [](const Name& a, const Name& b) {
        return a.kind == Name::Kind::shortName && b.kind != Name::Kind::shortName;
    });
    return names;
}

Name preferredName(const Input& input) {
    auto names = namesOf(input);
    for (const auto& name : names)
        if (name.kind == Name::Kind::longName) return name;
    return names.front();
}

std::string valueNameOf(const Input& input) {
    return input.valueName.empty() ? dashCased(input.field) : input.valueName;
}

Name versionName() { return {Name::Kind::longName, "version"}; }
Name dumpHelpName() { return {Name::Kind::longName, "experimental-dump-help"}; }

}  // namespace ArgumentParser
