#include "VeskParse/Parser.h"

#include <algorithm>

#include "Platform/Text.h"

Recurrence Parser::recurrence(int64_t amount, std::string_view unit, bool fromCompletion) {
    std::string lower = Text::lowercased(unit);
    Recurrence::Frequency frequency = Recurrence::Frequency::yearly;
    if (lower.starts_with("d")) {
        frequency = Recurrence::Frequency::daily;
    } else if (lower.starts_with("w")) {
        frequency = Recurrence::Frequency::weekly;
    } else if (lower.starts_with("m")) {
        frequency = Recurrence::Frequency::monthly;
    }
    return Recurrence{frequency, amount, {}, fromCompletion};
}

namespace {

// The weekday numbers named in a list such as "monday, wednesday and friday": split at
// every character that is not a letter; pieces that name no weekday are passed over.
// Repeats are dropped and the numbers sorted.
std::vector<int64_t> weekdayNumbers(std::string_view list) {
    const auto& table = DateResolver::weekdays();
    std::string lower = Text::lowercased(list);
    std::vector<int64_t> numbers;
    std::string piece;
    auto flush = [&] {
        if (auto found = table.find(piece); found != table.end()) numbers.push_back(found->second);
        piece.clear();
    };
    for (char c : lower) {
        // Bytes of multi-byte characters stay inside a piece; no table name holds one.
        bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
        if (letter) {
            piece += c;
        } else {
            flush();
        }
    }
    flush();
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

}  // namespace

// How the reminder repeats. The first pattern that gives a recurrence ends the pass.
void Parser::takeRecurrence(Work& work, State& state, const DateResolver& resolver) {
    using Frequency = Recurrence::Frequency;

    if (auto match = work.take(R"(\bevery (?:the )?(\d{1,2})(?:st|nd|rd|th)(?: (?:of (?:the |each |every )?)?month)?\b)")) {
        auto day = Text::parseInt64((*match)[1]);
        if (day && *day >= 1 && *day <= 31) {
            state.capture.recurrence = Recurrence{Frequency::monthly, 1, {}, false};
            state.day = resolver.nextDayOfMonth(*day);
            return;
        }
    }

    if (auto match = work.take(
            R"(\bevery (?:(other|second|2nd) )?((?:sunday|monday|tuesday|wednesday|thursday|friday|saturday)(?:(?:\s*,\s*|\s+and\s+|\s*&\s*)(?:sunday|monday|tuesday|wednesday|thursday|friday|saturday))*)\b)")) {
        state.capture.recurrence = Recurrence{Frequency::weekly, (*match)[1].empty() ? 1 : 2, weekdayNumbers((*match)[2]), false};
        return;
    }

    if (work.take(R"(\bevery weekdays?\b)")) {
        state.capture.recurrence = Recurrence{Frequency::weekly, 1, {2, 3, 4, 5, 6}, false};
        return;
    }

    if (auto match = work.take(
            R"(\b(\d+|an?|one|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve) (days?|weeks?|months?) after i (?:last )?(?:do|did|finish|finished) it\b)")) {
        state.capture.recurrence = recurrence(number((*match)[1]).value_or(1), (*match)[2], true);
        return;
    }

    if (auto match = work.take(
            R"(\bevery (?:(\d+|other|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve) )?(days?|weeks?|months?|years?)(?: (?:from|after) (?:when )?i (?:last )?(?:do|did|finish|finished) it)?\b)")) {
        // An empty amount, or digits too long for an integer, count as 1; "other" is 2.
        int64_t amount = (*match)[1].empty() ? 1 : number((*match)[1]).value_or(1);
        bool fromCompletion = Text::lowercased((*match)[0]).find(" i ") != std::string::npos;
        state.capture.recurrence = recurrence(amount, (*match)[2], fromCompletion);
        return;
    }

    // "every morning" says how often, not when: it sets no hour.
    if (work.take(R"(\bevery (?:morning|night|evening)\b)") || work.take(R"(\bdaily\b)")) {
        state.capture.recurrence = Recurrence{Frequency::daily, 1, {}, false};
        return;
    }

    if (auto match = work.take(R"(\b(weekly|monthly|yearly)\b)")) {
        state.capture.recurrence = recurrence(1, (*match)[1], false);
    }
}
