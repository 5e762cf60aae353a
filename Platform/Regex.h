#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class RegexPattern;
U_NAMESPACE_END

// A compiled regular expression over UTF-8 text, matched with ICU's engine: ordered
// alternation, look-ahead and look-behind, positions in UTF-16 units. A compiled
// expression is immutable and may be used from several threads at once.
class Regex {
public:
    enum Options : unsigned { none = 0, caseInsensitive = 1 };

    // Absent when the pattern does not compile.
    static std::optional<Regex> compile(std::string_view pattern, unsigned options = none);

    // The first match in `text`: element 0 is the whole match, element N capture group N;
    // a group that took no part in the match is "". Absent when nothing matches.
    std::optional<std::vector<std::string>> firstMatch(std::string_view text) const;

    // Like firstMatch, and the whole match is replaced in `text` by `replacement`.
    std::optional<std::vector<std::string>> takeFirst(std::string& text, std::string_view replacement) const;

    // Every match, left to right, as the matched text.
    std::vector<std::string> allMatches(std::string_view text) const;

    // Every match replaced by `replacement`, taken literally.
    std::string replaceAll(std::string_view text, std::string_view replacement) const;

    // Whether the whole of `text` matches; the groups when it does.
    std::optional<std::vector<std::string>> wholeMatch(std::string_view text) const;

    // Whether any part of `text` matches.
    bool contains(std::string_view text) const;

private:
    explicit Regex(std::shared_ptr<const icu::RegexPattern> pattern) : pattern_(std::move(pattern)) {}
    std::shared_ptr<const icu::RegexPattern> pattern_;
};
