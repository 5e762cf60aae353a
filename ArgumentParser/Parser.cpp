#include "ArgumentParser/Parser.h"

#include <locale.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "ArgumentParser/Names.h"
#include "ArgumentParser/Split.h"
#include "Platform/Text.h"

namespace ArgumentParser {

namespace {

using Request = std::variant<HelpRequest, DumpRequest, VersionRequest>;

struct RequestRaised {
    Request request;
};

// What one command's lenient reading found for one input.
struct Given {
    std::vector<std::string> texts;
    size_t count = 0;
    Name name;  // as typed, the last time
    bool named = false;
    size_t position = 0;  // of the first time
};

struct Lenient {
    std::vector<Given> given;  // by input
    std::vector<Element> capturedOptions;
};

ParserError error(ParserError::Kind kind) {
    ParserError result;
    result.kind = kind;
    return result;
}

std::optional<size_t> inputNamed(const Command& command, const Name& name) {
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        const Input& input = command.inputs[i];
        if (input.kind == InputKind::positional) continue;
        for (const Name& known : namesOf(input))
            if (known == name) return i;
    }
    return std::nullopt;
}

bool contains(const std::vector<Element>& elements, const Name& name) {
    return std::any_of(elements.begin(), elements.end(),
                       [&](const Element& e) { return e.kind == Element::Kind::option && e.name == name; });
}

// Help, the tool-info dump and the version, in this order, when one is among the elements.
void checkBuiltIns(const std::vector<Element>& elements, const CommandPath& path) {
    for (const Name& name : path.back()->configuration.helpNames)
        if (contains(elements, name)) throw RequestRaised{HelpRequest{path}};
    if (contains(elements, dumpHelpName())) throw RequestRaised{DumpRequest{path}};
    for (auto command = path.rbegin(); command != path.rend(); ++command) {
        const std::string& version = (*command)->configuration.version;
        if (version.empty()) continue;
        if (contains(elements, versionName())) throw RequestRaised{VersionRequest{version}};
        break;
    }
}

// The index of the first element after `element`, in the order of the arguments.
size_t indexAfter(const SplitArguments& split, const Element& element) {
    size_t index = 0;
    while (index < split.elements.size()) {
        const Element& e = split.elements[index];
        if (e.position > element.position || (e.position == element.position && e.part > element.part)) break;
        ++index;
    }
    return index;
}

// The first element of a later argument than `element`.
std::optional<Element> nextArgument(const SplitArguments& split, const Element& element) {
    for (const Element& e : split.elements)
        if (e.position > element.position) return e;
    return std::nullopt;
}

std::vector<std::string> takeValues(const Input& input, const Element& element, SplitArguments& split) {
    if (element.attached) {
        split.remove(element);
        return {*element.attached};
    }
    auto missing = [&] {
        ParserError failure = error(ParserError::Kind::missingValueForOption);
        failure.name = element.name;
        failure.named = true;
        failure.input = &input;
        return failure;
    };
    std::vector<std::string> values;
    switch (input.strategy) {
        case ParsingStrategy::unconditional: {
            if (element.position + 1 >= split.original.size()) throw missing();
            values.push_back(split.original[element.position + 1]);
            split.remove(element);
            split.removePosition(element.position + 1);
            return values;
        }
        case ParsingStrategy::scanningForValue: {
            for (const Element& e : split.elements) {
                if (e.position <= element.position || e.kind != Element::Kind::value) continue;
                values.push_back(split.text(e));
                split.remove(element);
                split.removePosition(e.position);
                return values;
            }
            throw missing();
        }
        case ParsingStrategy::upToNextOption: {
            std::vector<size_t> taken;
            for (const Element& e : split.elements) {
                if (e.position <= element.position) continue;
                if (e.kind != Element::Kind::value) break;
                values.push_back(split.text(e));
                taken.push_back(e.position);
            }
            if (values.empty()) throw missing();
            split.remove(element);
            for (size_t position : taken) split.removePosition(position);
            return values;
        }
        default: {
            auto next = nextArgument(split, element);
            if (!next || next->kind != Element::Kind::value) throw missing();
            values.push_back(split.text(*next));
            split.remove(element);
            split.removePosition(next->position);
            return values;
        }
    }
}

void checkExclusive(const Command& command, const Lenient& parsed, size_t index, const Element& element,
                    const SplitArguments& split) {
    const std::string& group = command.inputs[index].group;
    if (group.empty()) return;
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        if (command.inputs[i].group != group || parsed.given[i].count == 0) continue;
        ParserError failure = error(ParserError::Kind::duplicateExclusiveValues);
        failure.words = {split.text(element), split.original[parsed.given[i].position]};
        throw failure;
    }
}

void readPositionals(const Command& command, Lenient& parsed, SplitArguments& split) {
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        const Input& input = command.inputs[i];
        if (input.kind != InputKind::positional || input.strategy != ParsingStrategy::postTerminator) continue;
        auto terminator = std::find_if(split.elements.begin(), split.elements.end(),
                                       [](const Element& e) { return e.kind == Element::Kind::terminator; });
        if (terminator == split.elements.end()) continue;
        for (auto e = terminator + 1; e != split.elements.end(); ++e) parsed.given[i].texts.push_back(split.text(*e));
        split.elements.erase(terminator, split.elements.end());
    }

    std::vector<Element> words;
    for (const Element& e : split.elements)
        if (e.part == 0) words.push_back(e);
    size_t next = 0;
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        const Input& input = command.inputs[i];
        if (input.kind != InputKind::positional) continue;
        bool anything = input.strategy == ParsingStrategy::allRemainingInput;
        if (input.strategy != ParsingStrategy::defaultStrategy && !anything) continue;
        do {
            if (!anything)
                while (next < words.size() && words[next].kind != Element::Kind::value) ++next;
            if (next >= words.size()) return;
            const Element& word = words[next++];
            parsed.given[i].texts.push_back(split.text(word));
            parsed.given[i].count++;
            split.removePosition(word.position);
        } while (input.isRepeating);
    }
}

void capture(const Command& command, Lenient& parsed, SplitArguments& split) {
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        const Input& input = command.inputs[i];
        if (input.kind != InputKind::positional || input.strategy != ParsingStrategy::allUnrecognized) continue;
        std::optional<size_t> last;
        for (const Element& e : split.elements) {
            if (e.kind == Element::Kind::option) parsed.capturedOptions.push_back(e);
            if (last == e.position) continue;
            last = e.position;
            parsed.given[i].texts.push_back(split.text(e));
        }
        split.elements.clear();
        return;
    }
}

// Reads one command's inputs, leaving in `split` what it doesn't know.
Lenient lenientParse(const Command& command, SplitArguments& split) {
    Lenient parsed;
    parsed.given.resize(command.inputs.size());
    // A list that takes all remaining input takes the options behind its first word too.
    const bool stopAtWord = std::any_of(command.inputs.begin(), command.inputs.end(), [](const Input& input) {
        return input.kind == InputKind::positional && input.strategy == ParsingStrategy::allRemainingInput;
    });
    size_t index = 0;
    while (index < split.elements.size()) {
        const Element element = split.elements[index];
        if (element.kind == Element::Kind::terminator) break;
        if (stopAtWord && element.kind == Element::Kind::value) break;
        auto found = element.kind == Element::Kind::option ? inputNamed(command, element.name) : std::nullopt;
        if (!found) {
            ++index;
            continue;
        }
        const Input& input = command.inputs[*found];
        Given& given = parsed.given[*found];
        if (given.count == 0) given.position = element.position;
        if (input.kind == InputKind::flag) {
            if (element.attached) {
                ParserError failure = error(ParserError::Kind::valueForFlag);
                failure.name = element.name;
                failure.value = *element.attached;
                throw failure;
            }
            checkExclusive(command, parsed, *found, element, split);
            split.remove(element);
        } else {
            for (auto& value : takeValues(input, element, split)) given.texts.push_back(std::move(value));
        }
        given.count++;
        given.name = element.name;
        given.named = true;
        index = indexAfter(split, element);
    }
    readPositionals(command, parsed, split);
    capture(command, parsed, split);
    return parsed;
}

Values::Value convert(const std::string& text, const Input& input, const Given& given) {
    auto invalid = [&] {
        ParserError failure = error(ParserError::Kind::invalidValue);
        failure.value = text;
        failure.input = &input;
        failure.name = given.name;
        failure.named = given.named && input.kind != InputKind::positional;
        return failure;
    };
    switch (input.type) {
        case ValueType::text: return text;
        case ValueType::double64:
            if (auto number = readDouble(text)) return *number;
            throw invalid();
        case ValueType::integer:
            if (auto number = Text::parseInt64(text)) return *number;
            throw invalid();
    }
    return text;
}

void checkGroup(const Command& command, const Lenient& parsed, size_t index) {
    const std::string& group = command.inputs[index].group;
    for (size_t i = 0; i < index; ++i)
        if (command.inputs[i].group == group) return;  // checked at the group's first member
    std::vector<std::string> names;
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        if (command.inputs[i].group != group) continue;
        if (parsed.given[i].count > 0 || command.inputs[i].isOptional) return;
        names.push_back(preferredName(command.inputs[i]).synopsis());
    }
    ParserError failure = error(ParserError::Kind::missingOneOf);
    failure.words = names;
    throw failure;
}

Values decode(const Command& command, const Lenient& parsed) {
    Values values;
    for (size_t i = 0; i < command.inputs.size(); ++i) {
        const Input& input = command.inputs[i];
        const Given& given = parsed.given[i];
        if (!input.group.empty()) checkGroup(command, parsed, i);
        if (input.kind == InputKind::flag) {
            values.values[input.field] = given.count > 0;
        } else if (input.isRepeating) {
            for (const auto& text : given.texts) convert(text, input, given);
            values.values[input.field] = given.texts;
        } else if (!given.texts.empty()) {
            values.values[input.field] = convert(given.texts.back(), input, given);
        } else if (input.defaultValue) {
            values.values[input.field] = convert(*input.defaultValue, input, given);
        } else if (!input.isOptional) {
            ParserError failure = error(ParserError::Kind::missingArgument);
            failure.input = &input;
            throw failure;
        }
    }
    return values;
}

struct Raised {
    ParserError error;
    CommandPath path;
};

// The value of `--generate-completion-script`, looked for before anything else; an inner
// absent value means the shell is to be found from the environment.
std::optional<std::optional<std::string>> completionRequest(const SplitArguments& split) {
    const Name name{Name::Kind::longName, "generate-completion-script"};
    std::optional<std::optional<std::string>> request;
    for (const Element& e : split.elements) {
        if (e.kind == Element::Kind::terminator) break;
        if (e.kind != Element::Kind::option || e.name != name) continue;
        if (e.attached) {
            request = std::optional<std::string>(*e.attached);
        } else if (auto next = nextArgument(split, e); next && next->kind == Element::Kind::value) {
            request = std::optional<std::string>(split.text(*next));
        } else {
            request = std::optional<std::string>();
        }
    }
    return request;
}

// The command that `help` names: its words followed down the tree as far as they match.
CommandPath helpTarget(const Command& root, const std::vector<std::string>& names) {
    CommandPath path{&root};
    for (const auto& name : names) {
        const Command* child = childNamed(path, name);
        if (!child) break;
        path.push_back(child);
    }
    return path;
}

Reading walk(const Command& root, SplitArguments split) {
    CommandPath path{&root};
    Values values;
    while (true) {
        const Command& command = *path.back();
        SplitArguments working = split;
        Lenient parsed;
        try {
            parsed = lenientParse(command, working);
        } catch (const ParserError& failure) {
            throw Raised{failure, path};
        }
        checkBuiltIns(parsed.capturedOptions, path);
        try {
            values = decode(command, parsed);
        } catch (const ParserError& failure) {
            checkBuiltIns(split.elements, path);
            throw Raised{failure, path};
        }
        split = working;

        if (!split.elements.empty() && split.elements.front().kind == Element::Kind::value) {
            const Element next = split.elements.front();
            if (const Command* child = childNamed(path, split.text(next))) {
                split.removePosition(next.position);
                path.push_back(child);
                continue;
            }
        }
        if (split.positionCount() == 1) checkBuiltIns(split.elements, path);
        if (command.defaultSubcommand) {
            auto children = childrenOf(path);
            if (std::find(children.begin(), children.end(), command.defaultSubcommand) == children.end())
                throw Raised{error(ParserError::Kind::invalidState), path};
            path.push_back(command.defaultSubcommand);
            continue;
        }
        break;
    }

    checkBuiltIns(split.elements, path);
    bool leftOver = std::any_of(split.elements.begin(), split.elements.end(),
                                [](const Element& e) { return e.kind != Element::Kind::terminator; });
    if (leftOver) {
        for (const Element& e : split.elements) {
            if (e.kind != Element::Kind::option) continue;
            ParserError failure = error(ParserError::Kind::unknownOption);
            failure.name = e.name;
            throw Raised{failure, path};
        }
        ParserError failure = error(ParserError::Kind::unexpectedArguments);
        for (const Element& e : split.elements)
            if (e.kind == Element::Kind::value) failure.words.push_back(split.text(e));
        throw Raised{failure, path};
    }

    if (path.back() == &helpCommand()) return HelpRequest{helpTarget(root, values.list("subcommands"))};
    if (!childrenOf(path).empty() && !path.back()->run)
        throw Raised{error(ParserError::Kind::missingSubcommand), path};
    return Invocation{path, values};
}

}  // namespace

std::optional<double> readDouble(const std::string& text) {
    if (text.empty() || std::isspace(static_cast<unsigned char>(text.front()))) return std::nullopt;
    // Numbers read the same whatever the process's locale.
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
    char* end = nullptr;
    double number = strtod_l(text.c_str(), &end, plain);
    if (end != text.c_str() + text.size()) return std::nullopt;
    return number;
}

Reading read(const Command& root, const std::vector<std::string>& arguments) {
    SplitArguments split;
    try {
        split = ArgumentParser::split(arguments);
    } catch (const InvalidOption& invalid) {
        ParserError failure = error(ParserError::Kind::invalidOption);
        failure.value = invalid.argument;
        return UsageFailure{failure, {&root}, arguments.empty()};
    }
    if (auto shell = completionRequest(split)) return CompletionRequest{*shell};
    try {
        Reading reading = walk(root, split);
        if (auto invocation = std::get_if<Invocation>(&reading)) invocation->values.arguments = arguments;
        return reading;
    } catch (const RequestRaised& raised) {
        return std::visit([](const auto& request) -> Reading { return request; }, raised.request);
    } catch (const Raised& raised) {
        return UsageFailure{raised.error, raised.path, arguments.empty()};
    }
}

}  // namespace ArgumentParser
