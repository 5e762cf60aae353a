#include "ArgumentParser/Split.h"

#include <algorithm>
#include <set>

namespace ArgumentParser {

namespace {

// The letters of a cluster, one per Unicode scalar value.
std::vector<std::string> letters(const std::string& text) {
    std::vector<std::string> result;
    for (size_t i = 0; i < text.size();) {
        auto lead = static_cast<unsigned char>(text[i]);
        size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        length = std::min(length, text.size() - i);
        result.push_back(text.substr(i, length));
        i += length;
    }
    return result;
}

Element option(size_t position, size_t part, Name::Kind kind, std::string name,
               std::optional<std::string> attached = std::nullopt) {
    Element element;
    element.kind = Element::Kind::option;
    element.position = position;
    element.part = part;
    element.name = {kind, std::move(name)};
    element.attached = std::move(attached);
    return element;
}

Element value(size_t position) {
    Element element;
    element.position = position;
    return element;
}

void classSingleDash(const std::string& argument, size_t position, std::vector<Element>& elements) {
    std::string text = argument.substr(1);
    auto equals = text.find('=');
    if (equals != std::string::npos) {
        std::string name = text.substr(0, equals);
        if (name.empty()) throw InvalidOption{argument};
        auto kind = letters(name).size() == 1 ? Name::Kind::shortName : Name::Kind::longWithSingleDash;
        elements.push_back(option(position, 0, kind, name, text.substr(equals + 1)));
        return;
    }
    auto parts = letters(text);
    if (parts.size() == 1) {
        elements.push_back(option(position, 0, Name::Kind::shortName, text));
        return;
    }
    elements.push_back(option(position, 0, Name::Kind::longWithSingleDash, text));
    for (size_t i = 0; i < parts.size(); ++i)
        elements.push_back(option(position, i + 1, Name::Kind::shortName, parts[i]));
}

}  // namespace

SplitArguments split(const std::vector<std::string>& arguments) {
    SplitArguments result;
    result.original = arguments;
    for (size_t position = 0; position < arguments.size(); ++position) {
        const std::string& argument = arguments[position];
        if (argument == "--") {
            Element terminator;
            terminator.kind = Element::Kind::terminator;
            terminator.position = position;
            result.elements.push_back(terminator);
            for (size_t rest = position + 1; rest < arguments.size(); ++rest) result.elements.push_back(value(rest));
            break;
        }
        if (argument.size() < 2 || argument[0] != '-') {
            result.elements.push_back(value(position));
        } else if (argument[1] == '-') {
            if (argument.size() > 2 && argument[2] == '-') throw InvalidOption{argument};
            std::string text = argument.substr(2);
            auto equals = text.find('=');
            if (equals == std::string::npos)
                result.elements.push_back(option(position, 0, Name::Kind::longName, text));
            else
                result.elements.push_back(
                    option(position, 0, Name::Kind::longName, text.substr(0, equals), text.substr(equals + 1)));
        } else {
            classSingleDash(argument, position, result.elements);
        }
    }
    return result;
}

void SplitArguments::remove(const Element& element) {
    if (element.part == 0) {
        removePosition(element.position);
        return;
    }
    std::erase_if(elements, [&](const Element& e) {
        return e.position == element.position && (e.part == element.part || e.part == 0);
    });
}

void SplitArguments::removePosition(size_t position) {
    std::erase_if(elements, [&](const Element& e) { return e.position == position; });
}

bool SplitArguments::containsOption(const Name& name) const {
    return std::any_of(elements.begin(), elements.end(),
                       [&](const Element& e) { return e.kind == Element::Kind::option && e.name == name; });
}

size_t SplitArguments::positionCount() const {
    std::set<size_t> positions;
    for (const auto& e : elements) positions.insert(e.position);
    return positions.size();
}

}  // namespace ArgumentParser
