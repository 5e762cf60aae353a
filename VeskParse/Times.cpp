#include "VeskParse/Parser.h"

#include "Platform/Regex.h"
#include "Platform/Text.h"

namespace {

// An hour written without am or pm, as a 24-hour hour.
int64_t inferredHour(int64_t written, const Parser::State& state) {
    if (written == 0 || written > 12) return written;
    int64_t hour = written <= 6 ? written + 12 : written;
    if (state.evening && written < 12) hour = written + 12;
    if (state.morning) hour = written == 12 ? 0 : written;
    return hour;
}

void setBare(Parser::State& state, int64_t hour, int64_t minute) {
    state.time = TimeOfDay{inferredHour(hour, state), minute};
    state.clock = TimeOfDay{hour, minute};
}

// "9am", "at 12:30 p.m.": the minute has no upper limit here.
bool takeMeridiem(Work& work, Parser::State& state) {
    auto match = work.take(R"(\b(?:at |@|by |around |after )?(\d{1,2})(?::(\d{2}))?\s*(am|pm|a\.m\.|p\.m\.))");
    if (!match) return false;
    auto hour = Parser::number((*match)[1]);
    auto minute = (*match)[2].empty() ? std::optional<int64_t>(0) : Parser::number((*match)[2]);
    if (!hour || !minute || *hour < 1 || *hour > 12) return false;
    int64_t value = *hour == 12 ? 0 : *hour;
    if (Text::lowercased((*match)[3]).starts_with("p")) value += 12;
    state.time = TimeOfDay{value, *minute};
    return true;
}

bool takeHourMinute(Work& work, Parser::State& state) {
    auto match = work.take(R"(\b(?:at |@|by |around |after )?(\d{1,2}):(\d{2})\b)");
    if (!match) return false;
    auto hour = Parser::number((*match)[1]);
    auto minute = Parser::number((*match)[2]);
    if (!hour || !minute || *hour >= 24 || *minute >= 60) return false;
    setBare(state, *hour, *minute);
    return true;
}

// "9ish", "at 5", "around 5"; not "at 5 minutes" or "at 5%".
bool takeBareHour(Work& work, Parser::State& state) {
    auto match = work.take(R"(\b(?:at |@|around |about |after )?(\d{1,2})ish\b)");
    if (!match) {
        match = work.take(
            R"(\b(?:at|@|around|about|after) (\d{1,2})\b(?!\s*(?:minutes?|mins?|hours?|days?|weeks?|%|st|nd|rd|th)))");
    }
    if (!match) return false;
    auto hour = Parser::number((*match)[1]);
    if (!hour || *hour > 23) return false;
    setBare(state, *hour, 0);
    return true;
}

}  // namespace

void Parser::takeTimes(Work& work, State& state) {
    // One time only: the first form that matches and is valid ends the pass. A form that
    // matched but proved invalid has still taken its text.
    if (takeMeridiem(work, state)) return;
    if (work.take(R"(\b(?:at )?noon\b)")) {
        state.time = TimeOfDay{12, 0};
        return;
    }
    if (work.take(R"(\b(?:at )?midnight\b)")) {
        state.time = TimeOfDay{0, 0};
        return;
    }
    if (takeHourMinute(work, state)) return;
    takeBareHour(work, state);
}

std::optional<TimeOfDay> Parser::timeOfDay(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    static const auto pattern = Regex::compile(R"(\s*(\d{1,2})(?::(\d{2}))?(?::\d{2})?\s*(am|pm|a\.m\.|p\.m\.)?\s*)");
    if (!pattern) return std::nullopt;
    auto match = pattern->wholeMatch(Text::lowercased(*text));
    if (!match) return std::nullopt;
    auto hour = number((*match)[1]);
    auto minute = (*match)[2].empty() ? std::optional<int64_t>(0) : number((*match)[2]);
    if (!hour || !minute) return std::nullopt;
    const auto& meridiem = (*match)[3];
    if (!meridiem.empty()) {
        if (*hour < 1 || *hour > 12) return std::nullopt;
        if (meridiem.starts_with("p") && *hour != 12) *hour += 12;
        if (meridiem.starts_with("a") && *hour == 12) *hour = 0;
    } else if ((*match)[2].empty()) {
        return std::nullopt;
    }
    if (*hour >= 24 || *minute >= 60) return std::nullopt;
    return TimeOfDay{*hour, *minute};
}
