#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

const Parser p = parser();

ParseResult merged(const std::string& sentence, const ModelReading& reading) {
    return p.merge(p.parse(sentence, wednesday()), reading, sentence, wednesday());
}

ModelReading titled(std::string title) {
    ModelReading reading;
    reading.title = std::move(title);
    return reading;
}

// What each field of the model's reading may add, and the words of the sentence it needs.
TEST(Merge, TheModelFillsOnlyWhatTheSentenceBacks) {
    auto with = [](auto change) {
        ModelReading reading = titled("call mum");
        change(reading);
        return reading;
    };
    // clang-format off
    const struct { const char* why; std::string sentence; ModelReading reading; std::function<void(Capture&)> expected; } cases[] = {
        {"a time word backs a time", "lunch with sam", with([](ModelReading& r) { r.dueTime = "12:30"; }),
         [](Capture& c) { c.title = "call mum"; c.due = at(2026, 11, 18, 12, 30); }},
        {"no time word: the time is dropped", "see sam", with([](ModelReading& r) { r.dueTime = "12:30"; }), nullptr},
        {"the grammar's date stands, the model adds its time", "call mum friday after lunch",
         with([](ModelReading& r) { r.dueDate = "2026-11-25"; r.dueTime = "13:00"; }),
         [](Capture& c) { c.title = "call mum"; c.due = at(2026, 11, 20, 13, 0); }},
        {"the grammar's time stands", "call mum at 9 maybe before lunch",
         with([](ModelReading& r) { r.dueTime = "12:00"; }), nullptr},
        {"alarm without an alarm word", "call mum before lunch", with([](ModelReading& r) { r.style = "alarm"; }), nullptr},
        {"alarm with one", "ring me before lunch", with([](ModelReading& r) { r.style = "ALARM"; }),
         [](Capture& c) { c.title = "call mum"; c.style = Style::alarm(); }},
        {"repeat of 0 minutes", "keep at me before lunch", with([](ModelReading& r) { r.style = "repeat"; r.repeatMinutes = 0; }), nullptr},
        {"repeat of 1441 minutes", "keep at me before lunch", with([](ModelReading& r) { r.style = "repeat"; r.repeatMinutes = 1441; }), nullptr},
        {"repeat of 30 minutes", "keep at me before lunch", with([](ModelReading& r) { r.style = "repeat"; r.repeatMinutes = 30; }),
         [](Capture& c) { c.title = "call mum"; c.style = Style::repeatUntilDone(1800); }},
        {"an unknown style word", "ring me before lunch", with([](ModelReading& r) { r.style = "loud"; }), nullptr},
        {"once is never changed", "ring me just once before lunch", with([](ModelReading& r) { r.style = "alarm"; }), nullptr},
        {"a place said with other case and article", "call mum near the gym before lunch",
         with([](ModelReading& r) { r.arriveAt = "The Gym"; r.delayMinutes = 5000; }),
         [](Capture& c) { c.title = "call mum"; c.trigger = arrive("gym", 1440 * 60); }},
        {"a place never said", "call mum before lunch", with([](ModelReading& r) { r.arriveAt = "gym"; }), nullptr},
        {"\"the\" is no place", "call the mum before lunch", with([](ModelReading& r) { r.arriveAt = "the"; }), nullptr},
        {"an empty place", "call mum before lunch", with([](ModelReading& r) { r.arriveAt = ""; }), nullptr},
        {"leaving, when no arrival is said", "call mum off the office before lunch",
         with([](ModelReading& r) { r.arriveAt = "home"; r.leaveFrom = "Office"; r.delayMinutes = -5; }),
         [](Capture& c) { c.title = "call mum"; c.trigger = leave("office"); }},
        {"a gate", "call mum near the office before lunch", with([](ModelReading& r) { r.onlyAt = "the office"; }),
         [](Capture& c) { c.title = "call mum"; c.gate = "office"; }},
        {"weekly weekdays cleaned", "water the plants every so often",
         with([](ModelReading& r) { r.recurrence = "WEEKLY"; r.weekdays = {9, 4, 2, 4}; }),
         [](Capture& c) { c.title = "call mum"; c.recurrence = rule(F::weekly, 1, {2, 4}); }},
        {"interval clamped, weekdays only for weekly", "water the plants every so often",
         with([](ModelReading& r) { r.recurrence = "monthly"; r.recurrenceInterval = 400; r.weekdays = {2}; }),
         [](Capture& c) { c.title = "call mum"; c.recurrence = rule(F::monthly, 365); }},
        {"no repeating word", "water the plants before lunch", with([](ModelReading& r) { r.recurrence = "daily"; }), nullptr},
        {"an unknown frequency", "water the plants every so often", with([](ModelReading& r) { r.recurrence = "hourly"; }), nullptr},
    };
    // clang-format on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        const ParseResult grammar = p.parse(c.sentence, wednesday());
        const ParseResult result = merged(c.sentence, c.reading);
        if (!c.expected) {
            EXPECT_EQ(result, grammar);
            continue;
        }
        Capture expected = grammar.capture;
        c.expected(expected);
        EXPECT_EQ(result.capture, expected);
        EXPECT_TRUE(result.unresolved.empty());
        EXPECT_TRUE(result.readByModel);
    }
}

TEST(Merge, ATitleAloneChangesNothing) {
    const ParseResult grammar = p.parse("call mum before lunch", wednesday());
    EXPECT_EQ(merged("call mum before lunch", titled("Call Mum")), grammar);
    EXPECT_EQ(merged("call mum before lunch", titled("  \n")), grammar);
}

TEST(Merge, ModelDueReadsOnlyDaysThatExistAndHaveNotPassed) {
    const struct {
        std::optional<std::string> date, time;
        std::optional<DateComponents> due;
    } cases[] = {
        {"2027-3-14", std::nullopt, onDay(2027, 3, 14)},    {"soon-2027-03-14", "9:15", at(2027, 3, 14, 9, 15)},
        {"2026-11-18", std::nullopt, onDay(2026, 11, 18)},  {"2026-11-17", std::nullopt, std::nullopt},
        {"2027-02-30", std::nullopt, std::nullopt},         {"2027-03", std::nullopt, std::nullopt},
        {"2027--03--14", std::nullopt, onDay(2027, 3, 14)}, {"2026-11-17", "9pm", at(2026, 11, 18, 21, 0)},
        {std::nullopt, "9am", at(2026, 11, 19, 9, 0)},      {std::nullopt, "noonish", std::nullopt},
        {std::nullopt, std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        ModelReading reading = titled("x");
        reading.dueDate = c.date;
        reading.dueTime = c.time;
        EXPECT_EQ(p.modelDue(reading, wednesday()), c.due) << c.date.value_or("-") << " " << c.time.value_or("-");
    }
}

}  // namespace
