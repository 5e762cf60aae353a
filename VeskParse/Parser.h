#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Calendar.h"
#include "Platform/Date.h"
#include "VeskModel/Capture.h"
#include "VeskModel/NagSettings.h"
#include "VeskParse/DateResolver.h"
#include "VeskParse/ModelReading.h"
#include "VeskParse/ParseResult.h"
#include "VeskParse/Work.h"

// Reads one free sentence into a Capture by ordered passes of regular expressions.
// Holds no state between parses; `parse` may run on several threads at once.
struct Parser {
    Calendar calendar;
    std::vector<std::string> places;  // the user's places, beside "home" and "work"
    NagSettings settings;             // of which only nagInterval is read

    // The scratch state of one parse.
    struct State {
        Capture capture;  // empty title, repeatUntilDone with no interval, nothing else set
        std::optional<DateComponents> day;
        std::optional<TimeOfDay> time;
        std::optional<DateComponents> exact;
        bool morning = false;
        bool evening = false;
        std::optional<TimeOfDay> clock;  // as written, without am/pm
    };

    ParseResult parse(std::string_view sentence, Date now) const;

    // The grammar's reading; when it leaves words unresolved and there is a model, the
    // model's too, merged, if it answers within `timeout`. Never fails: a model that fails
    // or is late leaves the grammar's reading.
    ParseResult parse(std::string_view sentence, Date now, std::shared_ptr<const LanguageModelParsing> model,
                      std::chrono::milliseconds timeout) const;
    // The grammar's reading with what of the model's the sentence backs: the grammar wins
    // every field it found.
    ParseResult merge(const ParseResult& grammar, const ModelReading& reading, std::string_view text, Date now) const;
    // The model's date and time, when the date exists and has not passed.
    std::optional<DateComponents> modelDue(const ModelReading& reading, Date now) const;

    // The passes, in the order parse runs them.
    static void takeTokens(Work& work, State& state, const DateResolver& resolver);
    void takeStyle(Work& work, State& state) const;
    static void takeStart(Work& work, State& state, const DateResolver& resolver);
    static void takeHide(Work& work, State& state);
    static void takeRecurrence(Work& work, State& state, const DateResolver& resolver);
    static void takeDeviceGate(Work& work, State& state);
    void takePlaces(Work& work, State& state) const;
    static void takeDates(Work& work, State& state, const DateResolver& resolver);
    static void takeTimes(Work& work, State& state);

    // Cleans the title and settles the due date.
    static ParseResult finish(Work& work, State& state, const DateResolver& resolver);
    // Words of a title that look like an instruction that was not read.
    static std::vector<std::string> unresolved(std::string_view title);
    // A decimal integer with optional sign, or a number word ("a", "one" ... "twelve", "other").
    static std::optional<int64_t> number(std::string_view text);
    // A free time string: "9:30", "9pm", "09:30:00 a.m."; a bare "9" is no time.
    static std::optional<TimeOfDay> timeOfDay(const std::optional<std::string>& text);

    // Inline tokens.
    static void applyDueToken(std::string_view value, State& state, const DateResolver& resolver);
    static std::optional<double> duration(std::string_view text);
    static std::optional<Recurrence> recurrenceToken(std::string_view text);

    static Recurrence recurrence(int64_t amount, std::string_view unit, bool fromCompletion);
};
