#include "Platform/Regex.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace {

// Bounds the work of one match so that a pathological input can't hang the program;
// the engine counts in steps of roughly a millisecond.
constexpr int32_t matchTimeLimit = 5000;

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

std::vector<std::string> groups(const icu::RegexMatcher& matcher, const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::vector<std::string> result;
    int32_t count = matcher.groupCount();
    for (int32_t group = 0; group <= count; ++group) {
        int32_t start = matcher.start(group, status);
        int32_t end = matcher.end(group, status);
        if (U_FAILURE(status) || start < 0) {
            result.emplace_back();
            status = U_ZERO_ERROR;
            continue;
        }
        result.push_back(utf8(text.tempSubStringBetween(start, end)));
    }
    return result;
}

std::unique_ptr<icu::RegexMatcher> matcher(const icu::RegexPattern& pattern, const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> result(pattern.matcher(text, status));
    if (U_FAILURE(status)) return nullptr;
    result->setTimeLimit(matchTimeLimit, status);
    return result;
}

bool find(icu::RegexMatcher& matcher) {
    UErrorCode status = U_ZERO_ERROR;
    bool found = matcher.find(status);
    return found && U_SUCCESS(status);
}

}  // namespace

std::optional<Regex> Regex::compile(std::string_view pattern, unsigned options) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError error;
    uint32_t flags = (options & caseInsensitive) ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> compiled(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size()))), flags,
        error, status));
    if (U_FAILURE(status) || !compiled) return std::nullopt;
    return Regex(std::shared_ptr<const icu::RegexPattern>(compiled.release()));
}

static icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::optional<std::vector<std::string>> Regex::firstMatch(std::string_view text) const {
    icu::UnicodeString subject = unicode(text);
    auto m = matcher(*pattern_, subject);
    if (!m || !find(*m)) return std::nullopt;
    return groups(*m, subject);
}

std::optional<std::vector<std::string>> Regex::takeFirst(std::string& text, std::string_view replacement) const {
    icu::UnicodeString subject = unicode(text);
    auto m = matcher(*pattern_, subject);
    if (!m || !find(*m)) return std::nullopt;
    auto result = groups(*m, subject);
    UErrorCode status = U_ZERO_ERROR;
    int32_t start = m->start(status), end = m->end(status);
    m.reset();
    subject.replace(start, end - start, unicode(replacement));
    text = utf8(subject);
    return result;
}

std::vector<std::string> Regex::allMatches(std::string_view text) const {
    icu::UnicodeString subject = unicode(text);
    std::vector<std::string> result;
    auto m = matcher(*pattern_, subject);
    if (!m) return result;
    UErrorCode status = U_ZERO_ERROR;
    while (find(*m)) {
        int32_t start = m->start(status), end = m->end(status);
        if (U_FAILURE(status)) break;
        result.push_back(utf8(subject.tempSubStringBetween(start, end)));
    }
    return result;
}

std::string Regex::replaceAll(std::string_view text, std::string_view replacement) const {
    icu::UnicodeString subject = unicode(text);
    auto m = matcher(*pattern_, subject);
    if (!m) return std::string(text);
    // The engine's replacement text gives "$" and "\" a meaning; ours is literal.
    icu::UnicodeString literal = unicode(replacement);
    literal.findAndReplace("\\", "\\\\");
    literal.findAndReplace("$", "\\$");
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString result = m->replaceAll(literal, status);
    if (U_FAILURE(status)) return std::string(text);
    return utf8(result);
}

std::optional<std::vector<std::string>> Regex::wholeMatch(std::string_view text) const {
    icu::UnicodeString subject = unicode(text);
    auto m = matcher(*pattern_, subject);
    if (!m) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    if (!m->matches(status) || U_FAILURE(status)) return std::nullopt;
    return groups(*m, subject);
}

bool Regex::contains(std::string_view text) const {
    icu::UnicodeString subject = unicode(text);
    auto m = matcher(*pattern_, subject);
    return m && find(*m);
}
