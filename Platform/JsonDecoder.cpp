#include "Platform/JsonDecoder.h"

#include <cmath>

using Kind = JsonDocument::Kind;
using Index = JsonDocument::Index;

DecodeError::DecodeError(const std::string& description, const std::string& codingPath)
    : std::runtime_error(codingPath.empty() ? description : description + " (at " + codingPath + ")"),
      description(description),
      codingPath(codingPath) {}

std::string JsonDecoder::codingPath() const {
    std::vector<std::string> steps;
    for (Index index = index_; (*document_)[index].parent != JsonDocument::none; index = (*document_)[index].parent) {
        const auto& container = (*document_)[(*document_)[index].parent];
        if (container.kind == Kind::array)
            steps.push_back("[" + std::to_string(index - container.members.first) + "]");
        else
            steps.push_back("." + std::string(document_->key(index)));
    }
    std::string path;
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) path += *step;
    if (!path.empty() && path.front() == '.') path.erase(0, 1);
    return path;
}

bool JsonDecoder::isNull() const { return value().kind == Kind::null; }

void JsonDecoder::requireObject() const {
    if (value().kind != Kind::object) fail("Expected to decode a dictionary but found something else.");
}

std::optional<Index> JsonDecoder::member(std::string_view key) const {
    requireObject();
    return document_->member(index_, key);
}

JsonDecoder JsonDecoder::operator[](std::string_view key) const {
    auto found = member(key);
    if (!found) {
        std::string path = codingPath();
        throw DecodeError("No value associated with key \"" + std::string(key) + "\".",
                          path.empty() ? std::string(key) : path + "." + std::string(key));
    }
    return JsonDecoder(document_, *found);
}

std::optional<JsonDecoder> JsonDecoder::optional(std::string_view key) const {
    auto found = member(key);
    if (!found || (*document_)[*found].kind == Kind::null) return std::nullopt;
    return JsonDecoder(document_, *found);
}

std::optional<std::string> JsonDecoder::optionalString(std::string_view key) const {
    if (auto value = optional(key)) return value->string();
    return std::nullopt;
}

std::optional<int64_t> JsonDecoder::optionalInteger(std::string_view key) const {
    if (auto value = optional(key)) return value->integer();
    return std::nullopt;
}

bool JsonDecoder::contains(std::string_view key) const { return member(key).has_value(); }

std::string JsonDecoder::string() const {
    if (value().kind != Kind::string) fail("Expected to decode a string but found something else.");
    return std::string(document_->text(index_));
}

bool JsonDecoder::boolean() const {
    if (value().kind != Kind::boolean) fail("Expected to decode a boolean but found something else.");
    return value().boolean;
}

double JsonDecoder::number() const {
    switch (value().kind) {
    case Kind::integer: return static_cast<double>(value().integer);
    case Kind::unsignedInteger: return static_cast<double>(value().unsignedInteger);
    case Kind::floating: return value().floating;
    default: fail("Expected to decode a number but found something else.");
    }
}

int64_t JsonDecoder::integer() const {
    switch (value().kind) {
    case Kind::integer: return value().integer;
    case Kind::unsignedInteger:
        if (value().unsignedInteger <= static_cast<uint64_t>(INT64_MAX)) return static_cast<int64_t>(value().unsignedInteger);
        break;
    case Kind::floating: {
        double number = value().floating;
        if (std::isfinite(number) && number == std::trunc(number) && number >= -9.223372036854775808e18 &&
            number < 9.223372036854775808e18)
            return static_cast<int64_t>(number);
        break;
    }
    default: fail("Expected to decode an integer but found something else.");
    }
    fail("The number does not fit in a 64-bit integer.");
}

std::vector<JsonDecoder> JsonDecoder::elements() const {
    if (value().kind != Kind::array) fail("Expected to decode an array but found something else.");
    std::vector<JsonDecoder> result;
    result.reserve(value().members.count);
    for (Index index = value().members.first; index < value().members.first + value().members.count; ++index)
        result.push_back(JsonDecoder(document_, index));
    return result;
}

std::vector<std::pair<std::string, JsonDecoder>> JsonDecoder::members() const {
    requireObject();
    std::vector<std::pair<std::string, JsonDecoder>> result;
    for (Index index = value().members.first; index < value().members.first + value().members.count; ++index)
        result.emplace_back(std::string(document_->key(index)), JsonDecoder(document_, index));
    return result;
}

std::string JsonDecoder::singleCase(std::initializer_list<std::string_view> cases) const {
    requireObject();
    std::string found;
    int count = 0;
    for (std::string_view name : cases) {
        if (document_->member(index_, name)) {
            found = name;
            ++count;
        }
    }
    if (count != 1) fail("Invalid number of keys found, expected one.");
    return found;
}

void JsonDecoder::fail(const std::string& description) const { throw DecodeError(description, codingPath()); }
