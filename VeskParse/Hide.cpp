#include "VeskParse/Parser.h"

#include "Platform/Text.h"

// How many days before due the reminder shows; before that it stays hidden.
void Parser::takeHide(Work& work, State& state) {
    if (auto match = work.take(
            R"(\b(?:hide(?: it| this)?|don[’']?t show (?:it|this|me)) until (\d+|an?|one|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve) (days?|weeks?) (?:before|ahead)(?: (?:it[’']?s |it is )?due)?\b)")) {
        auto amount = number((*match)[1]);
        if (!amount) return;
        int64_t days = *amount;
        if (Text::lowercased((*match)[2]).starts_with("week") && __builtin_mul_overflow(*amount, int64_t{7}, &days)) {
            return;
        }
        state.capture.hideDaysBefore = days;
        return;
    }
    if (auto match = work.take(
            R"(\b(?:hide(?: it| this)?|don[’']?t show (?:it|this|me)) until the (day|week) (?:before|ahead)(?: (?:it[’']?s |it is )?due)?\b)")) {
        state.capture.hideDaysBefore = Text::lowercased((*match)[1]) == "week" ? 7 : 1;
    }
}
