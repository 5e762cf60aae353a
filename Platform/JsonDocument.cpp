#include "Platform/JsonDocument.h"

#include <unordered_map>

#include <nlohmann/json.hpp>

using Index = JsonDocument::Index;
using Kind = JsonDocument::Kind;
using Value = JsonDocument::Value;

// Receives the parser's events. A value waits in `pending` until its container closes;
// then the container's members move to the document side by side. Parents are set at
// the end, when every value has its final place.
struct JsonDocumentBuilder {
    using json = nlohmann::json;

    explicit JsonDocumentBuilder(JsonDocument& document) : document(document) {}

    JsonDocument& document;
    std::vector<Value> pending;
    std::vector<size_t> opened;  // where in `pending` the members of each open container begin
    JsonDocument::Span pendingKey{};
    std::unordered_map<std::string, JsonDocument::Span> keys;  // each key text is stored once

    bool fits(size_t size) const { return size < JsonDocument::none; }

    bool add(Value value) {
        if (!opened.empty() && pending[opened.back() - 1].kind == Kind::object) {
            value.key = pendingKey;
        }
        pending.push_back(value);
        return true;
    }

    bool null() { return add({}); }

    bool boolean(bool flag) {
        Value value;
        value.kind = Kind::boolean;
        value.boolean = flag;
        return add(value);
    }

    bool number_integer(json::number_integer_t number) {
        Value value;
        value.kind = Kind::integer;
        value.integer = number;
        return add(value);
    }

    bool number_unsigned(json::number_unsigned_t number) {
        Value value;
        value.kind = Kind::unsignedInteger;
        value.unsignedInteger = number;
        return add(value);
    }

    bool number_float(json::number_float_t number, const json::string_t&) {
        Value value;
        value.kind = Kind::floating;
        value.floating = number;
        return add(value);
    }

    bool string(json::string_t& text) {
        auto& buffer = document.buffer_;
        if (!fits(buffer.size() + text.size())) return false;
        Value value;
        value.kind = Kind::string;
        value.text = {static_cast<uint32_t>(buffer.size()), static_cast<uint32_t>(text.size())};
        buffer += text;
        return add(value);
    }

    bool binary(json::binary_t&) { return false; }

    bool key(json::string_t& text) {
        if (auto known = keys.find(text); known != keys.end()) {
            pendingKey = known->second;
            return true;
        }
        auto& buffer = document.buffer_;
        if (!fits(buffer.size() + text.size())) return false;
        pendingKey = {static_cast<uint32_t>(buffer.size()), static_cast<uint32_t>(text.size())};
        buffer += text;
        keys.emplace(text, pendingKey);
        return true;
    }

    bool open(Kind kind) {
        Value value;
        value.kind = kind;
        add(value);
        opened.push_back(pending.size());
        return true;
    }

    bool close() {
        size_t begin = opened.back();
        opened.pop_back();
        auto& values = document.values_;
        if (!fits(values.size() + pending.size() - begin)) return false;
        Value& container = pending[begin - 1];
        container.members = {static_cast<Index>(values.size()), static_cast<Index>(pending.size() - begin)};
        values.insert(values.end(), pending.begin() + static_cast<std::ptrdiff_t>(begin), pending.end());
        pending.resize(begin);
        return true;
    }

    bool start_object(std::size_t) { return open(Kind::object); }
    bool end_object() { return close(); }
    bool start_array(std::size_t) { return open(Kind::array); }
    bool end_array() { return close(); }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) { return false; }

    // The root goes last; then every member learns its container.
    bool finish() {
        auto& values = document.values_;
        if (pending.size() != 1 || !fits(values.size() + 1)) return false;
        values.push_back(pending.front());
        for (Index index = 0; index < values.size(); ++index) {
            const Value& value = values[index];
            if (value.kind != Kind::array && value.kind != Kind::object) continue;
            for (Index member = value.members.first; member < value.members.first + value.members.count; ++member)
                values[member].parent = index;
        }
        return true;
    }
};

std::optional<JsonDocument> JsonDocument::parse(std::string_view text) {
    if (text.size() >= none) return std::nullopt;
    JsonDocument document;
    // Room for what records of short strings take: their strings fill half the text, and
    // there is a value to every 16 bytes of it. More grows as usual.
    document.buffer_.reserve(text.size() / 2);
    document.values_.reserve(text.size() / 16 + 1);
    JsonDocumentBuilder builder(document);
    try {
        if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) return std::nullopt;
    } catch (const std::exception&) {
        return std::nullopt;
    }
    if (!builder.finish()) return std::nullopt;
    return document;
}

std::string_view JsonDocument::key(Index index) const {
    const Value& value = values_[index];
    return std::string_view(buffer_).substr(value.key.first, value.key.count);
}

std::string_view JsonDocument::text(Index index) const {
    const Value& value = values_[index];
    return std::string_view(buffer_).substr(value.text.first, value.text.count);
}

std::optional<Index> JsonDocument::member(Index object, std::string_view key) const {
    const Value& value = values_[object];
    for (Index index = value.members.first + value.members.count; index-- > value.members.first;) {
        if (this->key(index) == key) return index;
    }
    return std::nullopt;
}
