#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/JsonDocument.h"

// A failed decode: what went wrong and where, as a coding path like "reminders[0].style".
struct DecodeError : std::runtime_error {
    DecodeError(const std::string& description, const std::string& codingPath);
    std::string description;
    std::string codingPath;
};

// A position in a JSON document being decoded. Every accessor throws DecodeError on a
// missing key or a value of the wrong type; the coding path is spelled out only then.
// The document must outlive every decoder on it.
class JsonDecoder {
public:
    explicit JsonDecoder(const JsonDocument& document) : document_(&document), index_(document.root()) {}

    // Where this value sits, as "reminders[0].style"; empty at the root.
    std::string codingPath() const;

    bool isNull() const;
    // Fails unless this is an object.
    void requireObject() const;

    // A required key: missing fails, and so does null unless the caller accepts it.
    JsonDecoder operator[](std::string_view key) const;
    // An optional key: absent and null both give nothing.
    std::optional<JsonDecoder> optional(std::string_view key) const;
    // The value of an optional key, when present and not null; a wrong type fails.
    std::optional<std::string> optionalString(std::string_view key) const;
    std::optional<int64_t> optionalInteger(std::string_view key) const;
    // Whether the object has `key` at all, null included.
    bool contains(std::string_view key) const;

    std::string string() const;
    bool boolean() const;
    double number() const;       // any JSON number
    int64_t integer() const;     // a number with an integral value that fits 64 bits
    std::vector<JsonDecoder> elements() const;  // fails unless an array
    std::vector<std::pair<std::string, JsonDecoder>> members() const;  // fails unless an object

    // Of the object's keys, the one that is among `cases`. Zero or several fail with
    // "Invalid number of keys found, expected one." Keys that name no case don't count.
    std::string singleCase(std::initializer_list<std::string_view> cases) const;

    [[noreturn]] void fail(const std::string& description) const;

private:
    JsonDecoder(const JsonDocument* document, JsonDocument::Index index) : document_(document), index_(index) {}
    const JsonDocument::Value& value() const { return (*document_)[index_]; }
    std::optional<JsonDocument::Index> member(std::string_view key) const;

    const JsonDocument* document_;
    JsonDocument::Index index_;
};

// The value `T::fromJson` reads from a JSON text; absent when the text does not parse or
// its value does not decode.
template <class T>
std::optional<T> decodeJson(std::string_view text) {
    const auto document = JsonDocument::parse(text);
    if (!document) return std::nullopt;
    try {
        return T::fromJson(JsonDecoder(*document));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}
