#include "VeskParse/Parser.h"

#include <map>

#include "Platform/Regex.h"
#include "Platform/Text.h"

ParseResult Parser::parse(std::string_view sentence, Date now) const {
    // The blanks at both ends let every pattern see a word boundary around the sentence.
    Work work{" " + Text::repairUtf8(sentence) + " "};
    State state;
    // The resolver owns its copy of the calendar, so parses on other threads never share one.
    const DateResolver resolver{calendar, now};

    takeTokens(work, state, resolver);
    takeStyle(work, state);
    takeStart(work, state, resolver);
    takeHide(work, state);
    takeRecurrence(work, state, resolver);
    takeDeviceGate(work, state);
    takePlaces(work, state);
    takeDates(work, state, resolver);
    takeTimes(work, state);
    return finish(work, state, resolver);
}

namespace {

std::string cleanTitle(const std::string& text) {
    static const auto whitespace = Regex::compile(R"(\s+)");
    static const auto fillers = Regex::compile(
        R"(^[\s,;:.\-]*(?:(?:remind me|i (?:need|have|want|got) to|i[’']?ve got to|i gotta|i should|i must|need to|have to|remember to|don[’']?t forget to|and|then|to|for|on|at|that)\b[\s,;:.\-]*)*|[\s,;:\-]*(?:\b(?:and|then|on|at|by)[\s,;:\-]*)*$)",
        Regex::caseInsensitive);
    std::string title = whitespace ? whitespace->replaceAll(text, " ") : text;
    // Three rounds, as taking off one run of fillers can uncover another.
    if (fillers) {
        for (int round = 0; round < 3; ++round) title = fillers->replaceAll(title, "");
    }
    return Text::trimWhitespaceAndNewlines(title);
}

std::optional<DateComponents> dueDate(const Parser::State& state, const DateResolver& resolver) {
    if (state.exact) return state.exact;
    const auto& recurrence = state.capture.recurrence;
    if (!state.day && !state.time && !recurrence) return std::nullopt;

    auto time = state.time;
    // A bare "at 9" means the next 9 o'clock of either half of the day.
    if (!state.day && !recurrence && !state.morning && !state.evening && state.clock &&
        state.clock->hour >= 1 && state.clock->hour <= 11) {
        time = resolver.soonest(*state.clock);
    }

    auto date = state.day;
    if (!date) {
        if (recurrence && recurrence->frequency == Recurrence::Frequency::weekly && !recurrence->weekdays.empty()) {
            date = resolver.firstDay(recurrence->weekdays, time);
        } else if (time) {
            date = resolver.nextDay(*time);
        }
    }
    if (date && time) {
        date->hour = time->hour;
        date->minute = time->minute;
    }
    return date;
}

}  // namespace

ParseResult Parser::finish(Work& work, State& state, const DateResolver& resolver) {
    state.capture.title = cleanTitle(work.text);
    state.capture.due = dueDate(state, resolver);
    auto words = unresolved(state.capture.title);
    return ParseResult{state.capture, std::move(words), false};
}

std::vector<std::string> Parser::unresolved(std::string_view title) {
    static const auto instruction = Regex::compile(
        R"(\b(?:remind|nag|bug|every|tomorrow|tonight|today|next|before|after|until|weeks?|months?|minutes?|hours?|o'?clock|am|pm|morning|evening|afternoon|alarm|wake|leave|arrive|around|ish)\b|\b\d{1,2}(?::\d{2})?(?:ish)?\b)",
        Regex::caseInsensitive);
    if (!instruction) return {};
    return instruction->allMatches(title);
}

std::optional<int64_t> Parser::number(std::string_view text) {
    if (auto integer = Text::parseInt64(text)) return integer;
    static const std::map<std::string, int64_t, std::less<>> words = {
        {"a", 1},     {"an", 1},     {"one", 1},     {"two", 2},     {"three", 3},
        {"four", 4},  {"five", 5},   {"six", 6},     {"seven", 7},   {"eight", 8},
        {"nine", 9},  {"ten", 10},   {"eleven", 11}, {"twelve", 12}, {"other", 2},
    };
    auto found = words.find(Text::lowercased(text));
    if (found == words.end()) return std::nullopt;
    return found->second;
}
