#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A parsed JSON text as one flat array of values. The members of an object and the
// elements of an array lie side by side, each value knows its container, and every
// key and string lives in one shared buffer. Reading a large answer this way costs a
// fraction of a tree of maps, and nothing in it recurses, however deep the text.
class JsonDocument {
public:
    enum class Kind : uint8_t { null, boolean, integer, unsignedInteger, floating, string, array, object };

    using Index = uint32_t;
    static constexpr Index none = UINT32_MAX;

    // A run of bytes in the buffer, or of values in the array.
    struct Span {
        uint32_t first, count;
    };

    // 24 bytes: the array is most of the memory a document takes.
    struct Value {
        Kind kind = Kind::null;
        bool boolean = false;
        Index parent = none;
        Span key{};  // the member's key, when the container is an object
        union {
            int64_t integer;
            uint64_t unsignedInteger;
            double floating = 0;
            Span text;     // the bytes of a string
            Span members;  // the members or elements of a container
        };
    };

    // Absent on any syntax error, invalid UTF-8 or a text too large to index. Never throws.
    static std::optional<JsonDocument> parse(std::string_view text);

    Index root() const { return static_cast<Index>(values_.size() - 1); }
    const Value& operator[](Index index) const { return values_[index]; }
    std::string_view key(Index index) const;
    std::string_view text(Index index) const;

    // The member of the object at `object` called `key`; the last one when a key repeats.
    std::optional<Index> member(Index object, std::string_view key) const;

private:
    JsonDocument() = default;  // only `parse` makes one: a document always has its root
    friend struct JsonDocumentBuilder;
    std::vector<Value> values_;
    std::string buffer_;
};
