#include "Platform/JsonDecoder.h"

#include <cmath>

#include <nlohmann/json.hpp>

DecodeError::DecodeError(const std::string& description, const std::string& codingPath)
    : std::runtime_error(codingPath.empty() ? description : description + " (at " + codingPath + ")"),
      description(description),
      codingPath(codingPath) {}

JsonDecoder::JsonDecoder(const nlohmann::json& value, std::string codingPath)
    : value_(&value), path_(std::move(codingPath)) {}

bool JsonDecoder::isNull() const { return value_->is_null(); }

void JsonDecoder::requireObject() const {
    if (!value_->is_object()) fail("Expected to decode a dictionary but found something else.");
}

JsonDecoder JsonDecoder::operator[](std::string_view key) const {
    requireObject();
    auto found = value_->find(key);
    std::string path = path_.empty() ? std::string(key) : path_ + "." + std::string(key);
    if (found == value_->end()) throw DecodeError("No value associated with key \"" + std::string(key) + "\".", path);
    return JsonDecoder(*found, path);
}

std::optional<JsonDecoder> JsonDecoder::optional(std::string_view key) const {
    requireObject();
    auto found = value_->find(key);
    if (found == value_->end() || found->is_null()) return std::nullopt;
    return JsonDecoder(*found, path_.empty() ? std::string(key) : path_ + "." + std::string(key));
}

std::string JsonDecoder::string() const {
    if (!value_->is_string()) fail("Expected to decode a string but found something else.");
    return value_->get<std::string>();
}

bool JsonDecoder::boolean() const {
    if (!value_->is_boolean()) fail("Expected to decode a boolean but found something else.");
    return value_->get<bool>();
}

double JsonDecoder::number() const {
    if (!value_->is_number()) fail("Expected to decode a number but found something else.");
    return value_->get<double>();
}

int64_t JsonDecoder::integer() const {
    if (value_->is_number_integer() && !value_->is_number_unsigned()) return value_->get<int64_t>();
    if (value_->is_number_unsigned()) {
        uint64_t value = value_->get<uint64_t>();
        if (value <= static_cast<uint64_t>(INT64_MAX)) return static_cast<int64_t>(value);
    } else if (value_->is_number_float()) {
        double value = value_->get<double>();
        if (std::isfinite(value) && value == std::trunc(value) && value >= -9.223372036854775808e18 &&
            value < 9.223372036854775808e18)
            return static_cast<int64_t>(value);
    } else {
        fail("Expected to decode an integer but found something else.");
    }
    fail("The number does not fit in a 64-bit integer.");
}

std::vector<JsonDecoder> JsonDecoder::elements() const {
    if (!value_->is_array()) fail("Expected to decode an array but found something else.");
    std::vector<JsonDecoder> result;
    result.reserve(value_->size());
    for (size_t i = 0; i < value_->size(); ++i)
        result.emplace_back((*value_)[i], path_ + "[" + std::to_string(i) + "]");
    return result;
}

std::string JsonDecoder::singleCase(std::initializer_list<std::string_view> cases) const {
    requireObject();
    std::string found;
    int count = 0;
    for (std::string_view name : cases) {
        if (value_->contains(name)) {
            found = name;
            ++count;
        }
    }
    if (count != 1) fail("Invalid number of keys found, expected one.");
    return found;
}

void JsonDecoder::fail(const std::string& description) const { throw DecodeError(description, path_); }
