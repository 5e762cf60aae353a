#include "Platform/Text.h"

#include <cstdarg>
#include <cstdio>
#include <limits>

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

bool isBlank(UChar32 c) { return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR; }

bool isWhitespaceOrNewline(UChar32 c) {
    if (c == '\t' || (c >= 0x0A && c <= 0x0D) || c == 0x85) return true;
    int8_t type = u_charType(c);
    return type == U_SPACE_SEPARATOR || type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR;
}

template <class Predicate>
std::string trim(std::string_view text, Predicate trimmed) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    int32_t length = static_cast<int32_t>(text.size());
    int32_t start = 0;
    while (start < length) {
        int32_t next = start;
        UChar32 c;
        U8_NEXT(bytes, next, length, c);
        if (c < 0 || !trimmed(c)) break;
        start = next;
    }
    int32_t end = length;
    while (end > start) {
        int32_t previous = end;
        UChar32 c;
        U8_PREV(bytes, start, previous, c);
        if (c < 0 || !trimmed(c)) break;
        end = previous;
    }
    return std::string(text.substr(start, end - start));
}

}  // namespace

namespace Text {

std::string trimBlanks(std::string_view text) { return trim(text, isBlank); }

std::string trimWhitespaceAndNewlines(std::string_view text) { return trim(text, isWhitespaceOrNewline); }

std::string lowercased(std::string_view text) {
    bool ascii = true;
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80) ascii = false;
    if (ascii) {
        std::string result(text);
        for (char& c : result)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        return result;
    }
    icu::UnicodeString value = unicode(text);
    value.toLower(icu::Locale::getRoot());
    return utf8(value);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return unicode(a).caseCompare(unicode(b), U_FOLD_CASE_DEFAULT) == 0;
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    icu::UnicodeString haystack = unicode(text), needle = unicode(part);
    haystack.foldCase();
    needle.foldCase();
    return haystack.indexOf(needle) >= 0;
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        pieces.emplace_back(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
        if (end == std::string_view::npos) return pieces;
        start = end + 1;
    }
}

std::optional<int64_t> parseInt64(std::string_view text) {
    size_t i = 0;
    bool negative = false;
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
        negative = text[0] == '-';
        i = 1;
    }
    if (i == text.size()) return std::nullopt;
    // Accumulate toward the sign so that the most negative value reads too.
    int64_t value = 0;
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (c < '0' || c > '9') return std::nullopt;
        int digit = c - '0';
        if (negative) {
            if (value < (std::numeric_limits<int64_t>::min() + digit) / 10) return std::nullopt;
            value = value * 10 - digit;
        } else {
            if (value > (std::numeric_limits<int64_t>::max() - digit) / 10) return std::nullopt;
            value = value * 10 + digit;
        }
    }
    return value;
}

std::string repairUtf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    int32_t length = static_cast<int32_t>(text.size());
    std::string result;
    result.reserve(text.size());
    for (int32_t i = 0; i < length;) {
        int32_t start = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0) {
            result += "\xEF\xBF\xBD";
        } else {
            result.append(text.substr(start, i - start));
        }
    }
    return result;
}

size_t characterCount(std::string_view text) {
    size_t count = 0;
    for (char c : text)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
    return count;
}

void appendNumber(std::string& text, int64_t value, int width) {
    char digits[48];
    char* end = digits + sizeof digits;
    char* at = end;
    uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    do {
        *--at = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude);
    const int sign = value < 0 ? 1 : 0;
    for (int pad = width - static_cast<int>(end - at) - sign; pad > 0 && at > digits + 1; --pad) *--at = '0';
    if (sign) *--at = '-';
    text.append(at, static_cast<size_t>(end - at));
}

std::string format(const char* pattern, ...) {
    va_list args;
    va_start(args, pattern);
    va_list copy;
    va_copy(copy, args);
    int size = std::vsnprintf(nullptr, 0, pattern, copy);
    va_end(copy);
    std::string result(size > 0 ? size : 0, '\0');
    if (size > 0) std::vsnprintf(result.data(), size + 1, pattern, args);
    va_end(args);
    return result;
}

}  // namespace Text
