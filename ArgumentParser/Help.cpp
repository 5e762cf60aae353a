#include "ArgumentParser/Help.h"

#include <vector>

#include "ArgumentParser/Names.h"
#include "ArgumentParser/Wrap.h"
#include "Platform/Text.h"

namespace ArgumentParser {

namespace {

struct Element {
    std::string label;
    std::string abstract;
    std::string discussion;
};

struct Section {
    std::string title;
    std::vector<Element> elements;
};

std::string bracketed(const std::string& text, bool optional) { return optional ? "[" + text + "]" : text; }

std::string synopsis(const Input& input) {
    std::string text;
    if (input.kind == InputKind::positional) {
        text = "<" + valueNameOf(input) + ">";
    } else {
        text = preferredName(input).synopsis();
        if (input.kind == InputKind::option) text += " <" + valueNameOf(input) + ">";
    }
    if (input.isRepeating) text += " ...";
    // A flag is never required on its own, only as one of a required group.
    bool optional = input.kind == InputKind::flag ? input.group.empty() || input.isOptional
                                                  : input.isOptional || input.defaultValue.has_value();
    return bracketed(text, optional);
}

std::string joinedNames(const Input& input) {
    std::string text;
    for (const Name& name : namesForHelp(input)) text += (text.empty() ? "" : ", ") + name.synopsis();
    return text;
}

std::string withDefault(const Input& input) {
    if (input.kind == InputKind::flag || !input.defaultValue) return input.help;
    std::string note = "(default: " + *input.defaultValue + ")";
    return input.help.empty() ? note : input.help + " " + note;
}

Element elementFor(const Input& input) {
    std::string label;
    if (input.kind == InputKind::positional) {
        label = "<" + valueNameOf(input) + ">";
    } else {
        label = joinedNames(input);
        if (input.kind == InputKind::option) label += " <" + valueNameOf(input) + ">";
    }
    if (input.isRepeating) label += " ...";
    return {label, withDefault(input), input.discussion};
}

std::vector<Section> sectionsFor(const CommandPath& path) {
    const Command& command = *path.back();
    Section arguments{"ARGUMENTS", {}}, options{"OPTIONS", {}}, subcommands{"SUBCOMMANDS", {}};
    for (const Input& input : command.inputs) {
        if (!input.shouldDisplay) continue;
        (input.kind == InputKind::positional ? arguments : options).elements.push_back(elementFor(input));
    }
    if (!command.configuration.version.empty()) options.elements.push_back({"--version", "Show the version.", ""});
    if (!command.configuration.helpNames.empty()) {
        Input help = flag("help", "Show help information.");
        help.names = command.configuration.helpNames;
        options.elements.push_back(elementFor(help));
    }
    for (const Command* child : childrenOf(path)) {
        if (!child->configuration.shouldDisplay) continue;
        std::string label = child->name();
        for (const auto& alias : child->configuration.aliases) label += ", " + alias;
        if (child == command.defaultSubcommand) label += " (default)";
        subcommands.elements.push_back({label, child->configuration.abstract, ""});
    }
    return {arguments, options, subcommands};
}

std::string rendered(const Element& element, int screenWidth) {
    std::string label = "  " + element.label;
    std::string text = label;
    if (!element.abstract.empty()) {
        std::string abstract = wrapped(element.abstract, screenWidth, labelColumn);
        size_t width = Text::characterCount(label);
        if (width < static_cast<size_t>(labelColumn) && abstract.size() >= width && abstract.compare(0, width, std::string(width, ' ')) == 0)
            text += abstract.substr(width);
        else
            text += "\n" + abstract;
    }
    text += "\n";
    if (!element.discussion.empty()) text += wrapped(element.discussion, screenWidth, labelColumn + 4) + "\n";
    return text;
}

std::string rendered(const Section& section, int screenWidth) {
    if (section.elements.empty()) return "";
    std::string text = section.title + ":\n";
    for (const auto& element : section.elements) text += rendered(element, screenWidth);
    return text;
}

}  // namespace

std::string usageLine(const CommandPath& path) {
    const Command& command = *path.back();
    if (!command.configuration.usage.empty()) return command.configuration.usage;
    std::string line = pathName(path);
    for (const Input& input : command.inputs)
        if (input.shouldDisplay && input.kind != InputKind::positional) line += " " + synopsis(input);
    for (const Input& input : command.inputs)
        if (input.shouldDisplay && input.kind == InputKind::positional) line += " " + synopsis(input);
    if (!childrenOf(path).empty()) line += " <subcommand>";
    return line;
}

std::string helpText(const CommandPath& path, int screenWidth) {
    const Command& command = *path.back();
    const Configuration& configuration = command.configuration;
    std::string text;
    if (!configuration.abstract.empty()) {
        text += wrapped("OVERVIEW: " + configuration.abstract, screenWidth);
        if (!configuration.discussion.empty()) text += "\n\n" + configuration.discussion;
        text += "\n\n";
    } else if (!configuration.discussion.empty()) {
        text += configuration.discussion + "\n\n";
    }
    text += "USAGE: " + hangingIndent(usageLine(path), 7) + "\n\n";

    std::string sections;
    bool hasSubcommands = false;
    for (const auto& section : sectionsFor(path)) {
        std::string block = rendered(section, screenWidth);
        if (block.empty()) continue;
        if (!sections.empty()) sections += "\n";
        sections += block;
        if (section.title == "SUBCOMMANDS") hasSubcommands = true;
    }
    text += sections;
    if (hasSubcommands) {
        std::string names = path.front()->name() + " help";
        for (size_t i = 1; i < path.size(); ++i) names += " " + path[i]->name();
        text += "\n  See '" + names + " <subcommand>' for detailed help.";
    }
    return text;
}

std::string usageText(const CommandPath& path) {
    std::string text = "Usage: " + hangingIndent(usageLine(path), 7);
    const auto& helpNames = path.back()->configuration.helpNames;
    if (helpNames.empty()) return text;
    Name primary = helpNames.front();
    for (const Name& name : helpNames)
        if (name.kind == Name::Kind::longName) {
            primary = name;
            break;
        }
    return text + "\n  See '" + pathName(path) + " " + primary.synopsis() + "' for more information.";
}

}  // namespace ArgumentParser
