// The merge of a language model's reading into the grammar's. The model is never trusted
// alone: it fills only what the grammar left empty, and only where the sentence holds
// words of that kind.
#include <algorithm>
#include <set>

#include "Platform/Regex.h"
#include "Platform/Text.h"
#include "VeskModel/ReminderMeta.h"
#include "VeskParse/Parser.h"

namespace {

// The words that back each kind of field, searched in the lower-cased sentence as they stand.
enum Kind { timeWords, onceWords, alarmWords, escalateWords, repeatWords, recurrenceWords, kindCount };

bool says(std::string_view lower, Kind kind) {
    // Compiled on first use, once per process.
    static const auto patterns = [] {
        const char* const texts[kindCount] = {
            R"(\d|\b(?:noon|midnight|morning|afternoon|evening|night|tonight|breakfast|lunch|dinner|bedtime)\b)",
            R"(\bonce\b)",
            R"(\b(?:alarm|wake|ring))",
            R"(\b(?:skip|escalat|ignore|let me forget))",
            R"(\b(?:nag|bug|pester|keep|repeat|every)\b)",
            R"(\b(?:every|each|daily|weekly|monthly|yearly|annually|fortnightly|weekdays)\b)",
        };
        std::vector<std::optional<Regex>> compiled;
        for (const char* text : texts) compiled.push_back(Regex::compile(text));
        return compiled;
    }();
    const auto& regex = patterns[kind];
    return regex && regex->firstMatch(lower).has_value();
}


// A place the model named, as the key of a place the user said, or nothing.
std::optional<std::string> spoken(const std::optional<std::string>& place, const std::string& lower) {
    if (!place) return std::nullopt;
    std::string key = Place::key(*place);
    if (key.empty() || key == "the") return std::nullopt;
    if (lower.find(key) == std::string::npos) return std::nullopt;
    return key;
}

std::optional<Style> modelStyle(const ModelReading& reading, const std::string& lower) {
    const std::string word = Text::lowercased(*reading.style);
    if (word == "once" && says(lower, onceWords)) return Style::once();
    if (word == "alarm" && says(lower, alarmWords)) return Style::alarm();
    if (word == "escalate" && says(lower, escalateWords)) return Style::escalate();
    if (word == "repeat" && says(lower, repeatWords) && reading.repeatMinutes && *reading.repeatMinutes >= 1 &&
        *reading.repeatMinutes <= 1440)
        return Style::repeatUntilDone(static_cast<double>(*reading.repeatMinutes) * 60);
    return std::nullopt;
}

std::optional<Recurrence> modelRecurrence(const ModelReading& reading, const std::string& lower) {
    if (!reading.recurrence) return std::nullopt;
    if (!says(lower, recurrenceWords)) return std::nullopt;
    const auto frequency = frequencyFromRaw(Text::lowercased(*reading.recurrence));
    if (!frequency) return std::nullopt;
    Recurrence recurrence;
    recurrence.frequency = *frequency;
    recurrence.interval = std::clamp<int64_t>(reading.recurrenceInterval.value_or(1), 1, 365);
    if (*frequency == Recurrence::Frequency::weekly) {
        std::set<int64_t> days;
        for (int64_t day : reading.weekdays)
            if (day >= 1 && day <= 7) days.insert(day);
        recurrence.weekdays.assign(days.begin(), days.end());
    }
    return recurrence;
}

}  // namespace

std::optional<DateComponents> Parser::modelDue(const ModelReading& reading, Date now) const {
    const std::optional<TimeOfDay> time = timeOfDay(reading.dueTime);

    std::optional<DateComponents> date;
    if (reading.dueDate) {
        std::vector<int64_t> numbers;
        for (const std::string& piece : Text::split(*reading.dueDate, '-'))
            if (auto number = Text::parseInt64(piece)) numbers.push_back(*number);
        if (numbers.size() == 3) {
            DateComponents day{numbers[0], numbers[1], numbers[2], {}, {}};
            // A day that doesn't exist, such as 2026-02-30, is refused rather than rolled over.
            const auto moment = calendar.date(day);
            if (moment) {
                const DateComponents back = calendar.components(*moment);
                if (back.year == day.year && back.month == day.month && back.day == day.day &&
                    *moment >= calendar.startOfDay(now))
                    date = day;
            }
        }
    }

    if (!date && !time) return std::nullopt;
    DateComponents due = date ? *date : DateResolver{calendar, now}.nextDay(*time);
    if (time) {
        due.hour = time->hour;
        due.minute = time->minute;
    }
    return due;
}

ParseResult Parser::merge(const ParseResult& grammar, const ModelReading& given, std::string_view text,
                          Date now) const {
    const std::string lower = Text::lowercased(text);
    ModelReading reading = given;
    Capture capture = grammar.capture;

    const std::string title = Text::trimWhitespaceAndNewlines(reading.title);
    if (!title.empty()) capture.title = title;

    // A time only when the sentence speaks of one.
    if (!says(lower, timeWords)) reading.dueTime.reset();

    if (!capture.due) {
        capture.due = modelDue(reading, now);
    } else if (!capture.due->hour) {
        // The model may add a time to the grammar's date; it never changes the date.
        if (const auto time = timeOfDay(reading.dueTime)) {
            capture.due->hour = time->hour;
            capture.due->minute = time->minute;
        }
    }

    if (capture.style == Style::repeatUntilDone() && reading.style) {
        if (auto style = modelStyle(reading, lower)) capture.style = *style;
    }

    if (!capture.trigger) {
        const double delay = static_cast<double>(std::clamp<int64_t>(reading.delayMinutes.value_or(0), 0, 1440)) * 60;
        if (auto place = spoken(reading.arriveAt, lower))
            capture.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, *place, delay};
        else if (auto place = spoken(reading.leaveFrom, lower))
            capture.trigger = PlaceTrigger{PlaceTrigger::Edge::leave, *place, delay};
    }

    if (!capture.gate) capture.gate = spoken(reading.onlyAt, lower);

    if (!capture.recurrence) capture.recurrence = modelRecurrence(reading, lower);

    // A reading that differs only in its title changes nothing.
    Capture untitled = capture;
    untitled.title = grammar.capture.title;
    if (untitled == grammar.capture) return grammar;
    return ParseResult{capture, {}, true};
}
