#include "VeskParse/Parser.h"

#include <algorithm>

#include "Platform/Regex.h"
#include "Platform/Text.h"

namespace {

constexpr std::string_view straightQuote = "\"";
constexpr std::string_view openingQuote = "“";
constexpr std::string_view closingQuote = "”";

// Straight and curly double quotes trimmed at both ends.
std::string unquoted(std::string_view value) {
    auto quoteAtStart = [&]() -> size_t {
        for (auto quote : {straightQuote, openingQuote, closingQuote}) {
            if (value.starts_with(quote)) return quote.size();
        }
        return 0;
    };
    auto quoteAtEnd = [&]() -> size_t {
        for (auto quote : {straightQuote, openingQuote, closingQuote}) {
            if (value.ends_with(quote)) return quote.size();
        }
        return 0;
    };
    while (size_t size = quoteAtStart()) value.remove_prefix(size);
    while (size_t size = quoteAtEnd()) value.remove_suffix(size);
    return std::string(value);
}

// The pieces between separators, empty ones left out.
std::vector<std::string_view> pieces(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> result;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find_first_of(separators, start);
        if (end == std::string_view::npos) end = text.size();
        if (end > start) result.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return result;
}

// The place and what follows the first "+" behind it; a leading "+" does not count.
std::vector<std::string_view> placeAndDelay(std::string_view value) {
    size_t start = value.find_first_not_of('+');
    if (start == std::string_view::npos) return {};
    value.remove_prefix(start);
    size_t plus = value.find('+');
    if (plus == std::string_view::npos) return {value};
    auto rest = value.substr(plus + 1);
    if (rest.empty()) return {value.substr(0, plus)};
    return {value.substr(0, plus), rest};
}

void applyStart(const std::string& value, Parser::State& state, const DateResolver& resolver) {
    auto lowered = Text::lowercased(value);
    if (lowered.starts_with("due-")) {
        if (auto seconds = Parser::duration(std::string_view(lowered).substr(4))) {
            state.capture.startReminding = StartReminding::beforeDue(*seconds);
            return;
        }
    }
    // Only the date counts: a time in the value has no effect.
    Parser::State scratch;
    Parser::applyDueToken(value, scratch, resolver);
    if (scratch.day) state.capture.startReminding = StartReminding::on(*scratch.day);
}

void applyStyle(const std::string& value, Parser::State& state) {
    auto lowered = Text::lowercased(value);
    if (lowered == "once") state.capture.style = Style::once();
    if (lowered == "repeat") state.capture.style = Style::repeatUntilDone();
    if (lowered == "alarm") state.capture.style = Style::alarm();
    if (lowered == "escalate") state.capture.style = Style::escalate();
}

void applyTrigger(PlaceTrigger::Edge edge, const std::string& value, Parser::State& state) {
    auto parts = placeAndDelay(value);
    // A value with no place in it says nothing.
    if (parts.empty()) return;
    double delay = 0;
    if (parts.size() > 1) delay = Parser::duration(parts[1]).value_or(0);
    state.capture.trigger = PlaceTrigger{edge, Text::lowercased(parts[0]), delay};
}

void applyDeviceGate(const std::string& value, Parser::State& state) {
    auto lowered = Text::lowercased(value);
    if (lowered == "mac") {
        state.capture.deviceGate = DeviceGate::anyMac();
    } else if (lowered == "phone") {
        state.capture.deviceGate = DeviceGate::phone();
    } else {
        state.capture.deviceGate = DeviceGate::named(value);
    }
}

// "3", "3d" and "2w": days, weeks counting seven.
void applyHide(const std::string& value, Parser::State& state) {
    auto lowered = Text::lowercased(value);
    std::string_view digits = lowered;
    size_t first = digits.find_first_not_of("dw");
    if (first == std::string_view::npos) return;
    digits = digits.substr(first, digits.find_last_not_of("dw") - first + 1);
    auto days = Text::parseInt64(digits);
    if (!days) return;
    if (lowered.ends_with("w") && __builtin_mul_overflow(*days, 7, &*days)) return;
    state.capture.hideDaysBefore = days;
}

}  // namespace

void Parser::takeTokens(Work& work, State& state, const DateResolver& resolver) {
    // A token starts the text or follows whitespace, so "overdue:friday" holds none. A
    // quoted value may hold blanks and ends at the quote of its own kind.
    while (auto match = work.take(
               R"((?<!\S)(due|start|nag|style|arrive|leave|gate|on|every|hide|list):("[^"]*"|“[^”]*”|\S+))")) {
        auto key = Text::lowercased((*match)[1]);
        auto value = unquoted((*match)[2]);
        if (key == "due") {
            applyDueToken(value, state, resolver);
        } else if (key == "start") {
            applyStart(value, state, resolver);
        } else if (key == "nag") {
            if (auto seconds = duration(value)) state.capture.style = Style::repeatUntilDone(*seconds);
        } else if (key == "style") {
            applyStyle(value, state);
        } else if (key == "arrive") {
            applyTrigger(PlaceTrigger::Edge::arrive, value, state);
        } else if (key == "leave") {
            applyTrigger(PlaceTrigger::Edge::leave, value, state);
        } else if (key == "gate") {
            state.capture.gate = Text::lowercased(value);
        } else if (key == "on") {
            applyDeviceGate(value, state);
        } else if (key == "every") {
            // Assigned also when unreadable, which clears an earlier every: token.
            state.capture.recurrence = recurrenceToken(value);
        } else if (key == "hide") {
            applyHide(value, state);
        } else if (key == "list") {
            state.capture.list = value;
        }
    }
}

void Parser::applyDueToken(std::string_view value, State& state, const DateResolver& resolver) {
    for (auto piece : pieces(value, "@,")) {
        auto weekday = DateResolver::weekdays().find(Text::lowercased(piece));
        if (weekday != DateResolver::weekdays().end()) {
            int64_t distance = resolver.distance(weekday->second);
            state.day = resolver.day(distance == 0 ? 7 : distance);
            continue;
        }

        Work work{" " + std::string(piece) + " "};
        takeDates(work, state, resolver);
        takeTimes(work, state);

        // A bare hour: 1 to 6 are afternoon hours.
        if (state.time) continue;
        auto hour = Text::parseInt64(piece);
        if (!hour || *hour < 0 || *hour > 23) continue;
        state.time = TimeOfDay{*hour >= 1 && *hour <= 6 ? *hour + 12 : *hour, 0};
        state.clock = TimeOfDay{*hour, 0};
    }
}

std::optional<double> Parser::duration(std::string_view text) {
    static const auto pattern = Regex::compile(R"(^(\d+)\s*([a-z]+)$)", Regex::caseInsensitive);
    if (!pattern) return std::nullopt;
    auto match = pattern->firstMatch(text);
    if (!match) return std::nullopt;
    auto amount = Text::parseInt64((*match)[1]);
    if (!amount) return std::nullopt;
    return DateResolver::seconds(*amount, (*match)[2]);
}

std::optional<Recurrence> Parser::recurrenceToken(std::string_view text) {
    using Frequency = Recurrence::Frequency;
    auto lowered = Text::lowercased(text);
    if (lowered == "day" || lowered == "daily") return Recurrence{Frequency::daily, 1, {}, false};
    if (lowered == "weekday" || lowered == "weekdays") return Recurrence{Frequency::weekly, 1, {2, 3, 4, 5, 6}, false};
    if (lowered == "week" || lowered == "weekly") return Recurrence{Frequency::weekly, 1, {}, false};
    if (lowered == "month" || lowered == "monthly") return Recurrence{Frequency::monthly, 1, {}, false};
    if (lowered == "year" || lowered == "yearly") return Recurrence{Frequency::yearly, 1, {}, false};

    // "mon,wed": repeats stay.
    std::vector<int64_t> days;
    for (auto piece : pieces(lowered, ",")) {
        auto found = DateResolver::weekdays().find(std::string(piece));
        if (found != DateResolver::weekdays().end()) days.push_back(found->second);
    }
    if (!days.empty()) {
        std::sort(days.begin(), days.end());
        return Recurrence{Frequency::weekly, 1, days, false};
    }

    // "2w", "3d".
    static const auto counted = Regex::compile(R"(^(\d+)([dwmy])$)");
    if (!counted) return std::nullopt;
    auto match = counted->firstMatch(lowered);
    if (!match) return std::nullopt;
    int64_t interval = Text::parseInt64((*match)[1]).value_or(1);
    auto unit = (*match)[2];
    Frequency frequency = unit == "d" ? Frequency::daily
                        : unit == "w" ? Frequency::weekly
                        : unit == "m" ? Frequency::monthly
                                      : Frequency::yearly;
    return Recurrence{frequency, interval, {}, false};
}
