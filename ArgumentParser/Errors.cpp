#include "ArgumentParser/Errors.h"

#include <algorithm>

#include "ArgumentParser/Names.h"

namespace ArgumentParser {

namespace {

// Names closer than this, counted in edits, are offered as what the user meant.
constexpr size_t similarityFloor = 4;

std::string quoted(const std::string& text) { return "'" + text + "'"; }

std::string unknownOption(const Name& name, const CommandPath& path) {
    std::string message = "Unknown option " + quoted(name.synopsis());
    if (name.kind == Name::Kind::shortName) return message;
    const std::string typed = name.synopsis();
    const Name* best = nullptr;
    size_t bestDistance = similarityFloor;
    std::vector<Name> candidates;
    for (const Input& input : path.back()->inputs) {
        if (input.kind == InputKind::positional) continue;
        for (const Name& known : namesOf(input))
            if (known.kind != Name::Kind::shortName) candidates.push_back(known);
    }
    for (const Name& known : candidates) {
        size_t distance = editDistance(known.synopsis(), typed);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = &known;
        }
    }
    if (best) message += ". Did you mean " + quoted(best->synopsis()) + "?";
    return message;
}

std::string unexpected(const std::vector<std::string>& words) {
    if (words.size() == 1) return "Unexpected argument " + quoted(words.front());
    std::string message = std::to_string(words.size()) + " unexpected arguments: ";
    for (size_t i = 0; i < words.size(); ++i) message += (i ? ", " : "") + quoted(words[i]);
    return message;
}

std::string invalidValue(const ParserError& error) {
    std::string target;
    if (error.named && error.input)
        target = error.name.synopsis() + " <" + valueNameOf(*error.input) + ">";
    else if (error.input)
        target = "<" + valueNameOf(*error.input) + ">";
    else if (error.named)
        target = error.name.synopsis();
    if (target.empty()) return "The value " + quoted(error.value) + " is invalid.";
    return "The value " + quoted(error.value) + " is invalid for " + quoted(target);
}

std::string missingArgument(const Input& input) {
    if (input.kind == InputKind::positional) return "Missing expected argument " + quoted("<" + valueNameOf(input) + ">");
    std::string synopsis = preferredName(input).synopsis();
    if (input.kind == InputKind::option) synopsis += " <" + valueNameOf(input) + ">";
    return "Missing expected argument " + quoted(synopsis);
}

}  // namespace

std::string messageFor(const ParserError& error, const CommandPath& path) {
    using Kind = ParserError::Kind;
    switch (error.kind) {
        case Kind::invalidOption: return "Invalid option: " + error.value;
        case Kind::unknownOption: return unknownOption(error.name, path);
        case Kind::unexpectedArguments: return unexpected(error.words);
        case Kind::missingArgument:
            return error.input ? missingArgument(*error.input) : "Missing expected argument";
        case Kind::missingValueForOption: {
            std::string synopsis = error.name.synopsis();
            if (error.input) synopsis += " <" + valueNameOf(*error.input) + ">";
            return "Missing value for " + quoted(synopsis);
        }
        case Kind::invalidValue: return invalidValue(error);
        case Kind::valueForFlag:
            return "The option " + quoted(error.name.synopsis()) + " does not take any value, but " +
                   quoted(error.value) + " was specified.";
        case Kind::duplicateExclusiveValues:
            return "Value to be set with " + error.words.at(0) + " had already been set with " + error.words.at(1);
        case Kind::missingOneOf: {
            std::string names;
            for (size_t i = 0; i < error.words.size(); ++i) names += (i ? "', '" : "") + error.words[i];
            return "Missing one of: '" + names + "'";
        }
        case Kind::missingSubcommand: return "Missing required subcommand.";
        case Kind::invalidState: break;
    }
    return "Internal error. Invalid state while parsing command-line arguments.";
}

std::string helpLineFor(const ParserError& error) {
    if (error.kind != ParserError::Kind::missingArgument || !error.input || error.input->help.empty()) return "";
    const Input& input = *error.input;
    std::string label = "<" + valueNameOf(input) + ">";
    if (input.kind != InputKind::positional) {
        label = preferredName(input).synopsis();
        if (input.kind == InputKind::option) label += " <" + valueNameOf(input) + ">";
    }
    return label + "  " + input.help;
}

size_t editDistance(const std::string& a, const std::string& b) {
    std::vector<size_t> previous(b.size() + 1), current(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) previous[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + cost});
        }
        std::swap(previous, current);
    }
    return previous[b.size()];
}

}  // namespace ArgumentParser
