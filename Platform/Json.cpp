#include "Platform/Json.h"

#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

namespace {

void writeString(std::string& out, std::string_view text) {
    out += '"';
    size_t plain = 0;  // start of the run of characters that need no escape
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c != '"' && c != '\\' && static_cast<unsigned char>(c) >= 0x20) continue;
        out.append(text, plain, i - plain);
        plain = i + 1;
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\b': out += "\\b"; break;
            case '\f': out += "\\f"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default: {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned char>(c));
                out += escaped;
            }
        }
    }
    out.append(text, plain, text.size() - plain);
    out += '"';
}

bool writeDouble(std::string& out, double value) {
    if (!std::isfinite(value)) return false;
    // Integral values below 2^63 in magnitude print as integers: 900.0 is "900".
    if (value == std::trunc(value) && std::fabs(value) < 9.2e18) {
        out += std::to_string(static_cast<int64_t>(value));
        return true;
    }
    char buffer[32];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
    return true;
}

// Writes `value`; `indent` is the indentation of the line the value starts on, or -1
// for the compact form.
bool write(std::string& out, const Json& value, int indent) {
    bool pretty = indent >= 0;
    auto newline = [&](int level) {
        out += '\n';
        out.append(static_cast<size_t>(level), ' ');
    };
    switch (value.type()) {
        case Json::value_t::null: out += "null"; return true;
        case Json::value_t::boolean: out += value.get<bool>() ? "true" : "false"; return true;
        case Json::value_t::number_integer: out += std::to_string(value.get<int64_t>()); return true;
        case Json::value_t::number_unsigned: out += std::to_string(value.get<uint64_t>()); return true;
        case Json::value_t::number_float: return writeDouble(out, value.get<double>());
        case Json::value_t::string: writeString(out, value.get_ref<const std::string&>()); return true;
        case Json::value_t::array:
        case Json::value_t::object: {
            bool object = value.is_object();
            out += object ? '{' : '[';
            if (value.empty() && pretty) {
                out += '\n';
                newline(indent);
            }
            bool first = true;
            for (auto member = value.begin(); member != value.end(); ++member) {
                if (!first) out += ',';
                first = false;
                if (pretty) newline(indent + 2);
                if (object) {
                    writeString(out, member.key());
                    out += pretty ? " : " : ":";
                }
                if (!write(out, member.value(), pretty ? indent + 2 : -1)) return false;
            }
            if (pretty && !value.empty()) newline(indent);
            out += object ? '}' : ']';
            return true;
        }
        default: return false;
    }
}

}  // namespace

namespace JsonText {

void appendString(std::string& out, std::string_view text) { writeString(out, text); }

std::optional<std::string> compact(const Json& value) {
    std::string out;
    if (!write(out, value, -1)) return std::nullopt;
    return out;
}

std::optional<std::string> pretty(const Json& value) {
    std::string out;
    if (!write(out, value, 0)) return std::nullopt;
    return out;
}

}  // namespace JsonText
