#include "VeskParse/Work.h"

#include <functional>
#include <map>
#include <mutex>

#include "Platform/Regex.h"

namespace {

// Every pattern that goes through `take`, compiled once per process. The lock guards the
// map alone: it is held while looking up and compiling, never while matching. Patterns
// made of a user's place names change with them, so the map is emptied when it reaches
// `cacheLimit`: the grammar's own patterns, far fewer, are compiled again on their next use.
std::mutex& lock() {
    static std::mutex lock;
    return lock;
}

std::map<std::string, Regex, std::less<>>& compiled() {
    static std::map<std::string, Regex, std::less<>> cache;
    return cache;
}

std::optional<Regex> cachedPattern(std::string_view pattern) {
    std::lock_guard guard(lock());
    auto& cache = compiled();
    if (auto found = cache.find(pattern); found != cache.end()) return found->second;
    auto regex = Regex::compile(pattern, Regex::caseInsensitive);
    if (!regex) return regex;
    if (cache.size() >= Work::cacheLimit) cache.clear();
    cache.emplace(std::string(pattern), *regex);
    return regex;
}

}  // namespace

size_t Work::cachedPatterns() {
    std::lock_guard guard(lock());
    return compiled().size();
}

std::optional<std::vector<std::string>> Work::take(std::string_view pattern) {
    auto regex = cachedPattern(pattern);
    if (!regex) return std::nullopt;
    // A match becomes one blank, so the words on both sides of it stay apart.
    return regex->takeFirst(text, " ");
}
