#include "VeskParse/Parser.h"

#include "Platform/Text.h"

namespace {

std::optional<int64_t> lookUp(const std::map<std::string, int64_t>& table, const std::string& name) {
    auto found = table.find(Text::lowercased(name));
    if (found == table.end()) return std::nullopt;
    return found->second;
}

// A named weekday always lies ahead: its own name said today means a week from now.
int64_t aheadOffset(const DateResolver& resolver, int64_t weekday) {
    int64_t distance = resolver.distance(weekday);
    return distance == 0 ? 7 : distance;
}

// "2026-12-01": taken as written, not validated and not rolled.
void takeIsoDate(Work& work, Parser::State& state) {
    auto match = work.take(R"(\b(\d{4})-(\d{2})-(\d{2})\b)");
    if (!match) return;
    auto year = Parser::number((*match)[1]);
    auto month = Parser::number((*match)[2]);
    auto day = Parser::number((*match)[3]);
    if (year && month && day) state.day = DateResolver::makeDay(year, month, day);
}

// "3 days from tomorrow", "2 weeks from friday".
void takeDaysFrom(Work& work, Parser::State& state, const DateResolver& resolver) {
    auto match = work.take(
        R"(\b(\d+|an?|one|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve) (days?|weeks?) from (tomorrow|sunday|monday|tuesday|wednesday|thursday|friday|saturday)\b)");
    if (!match) return;
    auto amount = Parser::number((*match)[1]);
    if (!amount) return;
    int64_t days = *amount;
    if (Text::lowercased((*match)[2]).starts_with("w") && __builtin_mul_overflow(*amount, 7, &days)) return;

    int64_t base = 1;
    if (Text::lowercased((*match)[3]) != "tomorrow") {
        auto weekday = lookUp(DateResolver::weekdays(), (*match)[3]);
        if (!weekday) return;
        base = aheadOffset(resolver, *weekday);
    }
    int64_t offset = 0;
    if (__builtin_add_overflow(base, days, &offset)) return;
    state.day = resolver.day(offset);
}

// "in 20 minutes", "in 2 months", "2 hours from now".
void takeRelative(Work& work, Parser::State& state, const DateResolver& resolver) {
    auto match = work.take(
        R"(\bin (\d+|an?|one|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve) (minutes?|mins?|hours?|hrs?|days?|weeks?|months?|years?)\b)");
    if (!match) {
        match = work.take(
            R"(\b(\d+|an?|one|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve) (minutes?|mins?|hours?|hrs?|days?|weeks?|months?|years?) from (?:now|today)\b)");
    }
    if (!match) return;
    auto amount = Parser::number((*match)[1]);
    if (!amount) return;
    auto unit = Text::lowercased((*match)[2]);

    if (unit.starts_with("mo")) {
        state.day = resolver.day(CalendarComponent::month, *amount);
    } else if (unit.starts_with("y")) {
        state.day = resolver.day(CalendarComponent::year, *amount);
    } else if (unit.starts_with("m") || unit.starts_with("h")) {
        auto seconds = DateResolver::seconds(*amount, unit);
        if (!seconds) return;
        if (auto moment = resolver.adding(*seconds)) state.exact = moment;
    } else {
        auto seconds = DateResolver::seconds(*amount, unit);
        if (!seconds) return;
        // Whole days: the seconds came from a checked product, so the quotient fits.
        state.day = resolver.day(static_cast<int64_t>(*seconds / 86400));
    }
}

void takeNamedDays(Work& work, Parser::State& state, const DateResolver& resolver) {
    if (work.take(R"(\btomorrow\b)")) state.day = resolver.day(1);
    if (work.take(R"(\btoday\b)")) state.day = resolver.day(0);
    if (work.take(R"(\btonight\b)")) {
        state.day = resolver.day(0);
        state.evening = true;
        if (!state.time) state.time = TimeOfDay{20, 0};
    }
    if (auto match = work.take(R"(\bthis (morning|afternoon|evening)\b)")) {
        state.day = resolver.day(0);
        auto part = Text::lowercased((*match)[1]);
        TimeOfDay start{9, 0};
        if (part == "morning") {
            state.morning = true;
        } else {
            state.evening = true;
            start = part == "afternoon" ? TimeOfDay{15, 0} : TimeOfDay{18, 0};
        }
        if (!state.time) state.time = start;
    }
}

// "on the 5th", "starting the 1st".
void takeDayOfMonth(Work& work, Parser::State& state, const DateResolver& resolver) {
    auto match = work.take(R"(\b(?:(?:starting|beginning|from)(?: on)? |on |by )?the (\d{1,2})(?:st|nd|rd|th)\b)");
    if (!match) return;
    auto day = Parser::number((*match)[1]);
    if (day && *day >= 1 && *day <= 31) state.day = resolver.nextDayOfMonth(*day);
}

// "friday", "next monday", "this friday".
void takeWeekday(Work& work, Parser::State& state, const DateResolver& resolver) {
    auto match = work.take(
        R"(\b(?:(?:starting|beginning)(?: on)? |on |by |this |(next) )?(sunday|monday|tuesday|wednesday|thursday|friday|saturday)\b)");
    if (!match) return;
    auto weekday = lookUp(DateResolver::weekdays(), (*match)[2]);
    if (!weekday) return;
    int64_t offset = aheadOffset(resolver, *weekday);
    if (!(*match)[1].empty()) {
        // "next" skips a weekday at most two days away for the one after it.
        int64_t distance = resolver.distance(*weekday);
        offset = distance > 2 ? distance : distance + 7;
    }
    state.day = resolver.day(offset);
}

// "in march", "by april 15"; a month name with no leading word is not read.
void takeMonth(Work& work, Parser::State& state, const DateResolver& resolver) {
    auto match = work.take(
        R"(\b(?:by|in|on|before|until) (january|february|march|april|may|june|july|august|september|october|november|december|jan|feb|mar|apr|jun|jul|aug|sept|sep|oct|nov|dec)(?: (\d{1,2})(?:st|nd|rd|th)?)?\b)");
    if (!match) return;
    auto month = lookUp(DateResolver::months(), (*match)[1]);
    if (!month) return;
    auto day = resolver.nextStartOfMonth(*month);
    if (auto dayOfMonth = Parser::number((*match)[2])) day.day = dayOfMonth;
    state.day = day;
}

}  // namespace

void Parser::takeDates(Work& work, State& state, const DateResolver& resolver) {
    // Every step runs; a later one that matches overwrites the day.
    takeIsoDate(work, state);
    takeDaysFrom(work, state, resolver);
    takeRelative(work, state, resolver);
    takeNamedDays(work, state, resolver);
    takeDayOfMonth(work, state, resolver);
    takeWeekday(work, state, resolver);
    takeMonth(work, state, resolver);
}
