#include "VeskParse/Parser.h"

#include "Platform/Text.h"

// When nagging starts: from the first of a month, or some days or weeks before due.
void Parser::takeStart(Work& work, State& state, const DateResolver& resolver) {
    if (auto match = work.take(
            R"(\bstart (?:bugging|reminding|nagging|pinging) me (?:in |on |from )?(january|february|march|april|may|june|july|august|september|october|november|december|jan|feb|mar|apr|jun|jul|aug|sept|sep|oct|nov|dec)\b)")) {
        const auto& months = DateResolver::months();
        if (auto month = months.find(Text::lowercased((*match)[1])); month != months.end()) {
            state.capture.startReminding = StartReminding::on(resolver.nextStartOfMonth(month->second));
        }
        return;
    }
    if (auto match = work.take(
            R"(\bstart (?:bugging|reminding|nagging|pinging) me (a|an|one|\d+) (days?|weeks?) (?:before|ahead|early)\b)")) {
        // "a", "an", "one" and a run of digits too long for an integer all count as 1.
        int64_t amount = Text::parseInt64((*match)[1]).value_or(1);
        if (auto seconds = DateResolver::seconds(amount, (*match)[2])) {
            state.capture.startReminding = StartReminding::beforeDue(*seconds);
        }
    }
}
