#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

// A failed decode: what went wrong and where, as a coding path like "reminders[0].style".
struct DecodeError : std::runtime_error {
    DecodeError(const std::string& description, const std::string& codingPath);
    std::string description;
    std::string codingPath;
};

// A position in a JSON document being decoded, with its coding path for errors.
// Every accessor throws DecodeError on a missing key or a value of the wrong type.
class JsonDecoder {
public:
    explicit JsonDecoder(const nlohmann::json& value, std::string codingPath = "");

    const nlohmann::json& json() const { return *value_; }
    const std::string& codingPath() const { return path_; }

    bool isNull() const;
    // Fails unless this is an object.
    void requireObject() const;

    // A required key: missing fails, and so does null unless the caller accepts it.
    JsonDecoder operator[](std::string_view key) const;
    // An optional key: absent and null both give nothing.
    std::optional<JsonDecoder> optional(std::string_view key) const;

    std::string string() const;
    bool boolean() const;
    double number() const;       // any JSON number
    int64_t integer() const;     // a number with an integral value that fits 64 bits
    std::vector<JsonDecoder> elements() const;  // fails unless an array

    // Of the object's keys, the one that is among `cases`. Zero or several fail with
    // "Invalid number of keys found, expected one." Keys that name no case don't count.
    std::string singleCase(std::initializer_list<std::string_view> cases) const;

    [[noreturn]] void fail(const std::string& description) const;

private:
    const nlohmann::json* value_;
    std::string path_;
};
