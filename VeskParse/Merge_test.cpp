#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

const Parser p = parser();

// What each field of the model's reading may add, and the words of the sentence it needs.
// A reading without a title titles the reminder "call mum", and a merge takes that title; a row
// without a merged capture keeps the grammar's reading.
TEST(Merge, TheModelFillsOnlyWhatTheSentenceBacks) {
    struct {
        const char* why;
        std::string sentence;
        ModelReading reading;
        Capture merged = {};  // title aside
    } cases[] = {
        // clang-format off
        {"a time word backs a time", "lunch with sam", {.dueTime = "12:30"}, {.due = at(2026, 11, 18, 12, 30)}},
        {"no time word: the time is dropped", "see sam", {.dueTime = "12:30"}},
        {"the grammar's date stands, the model adds its time", "call mum friday after lunch",
         {.dueDate = "2026-11-25", .dueTime = "13:00"}, {.due = at(2026, 11, 20, 13, 0)}},
        {"the grammar's time stands", "call mum at 9 maybe before lunch", {.dueTime = "12:00"}},
        {"a title alone", "call mum before lunch", {.title = "Call Mum"}},
        {"alarm without an alarm word", "call mum before lunch", {.style = "alarm"}},
        {"alarm with one", "ring me before lunch", {.style = "ALARM"}, {.style = Style::alarm()}},
        {"repeat of 0 minutes", "keep at me before lunch", {.style = "repeat", .repeatMinutes = 0}},
        {"repeat of 1441 minutes", "keep at me before lunch", {.style = "repeat", .repeatMinutes = 1441}},
        {"repeat of 30 minutes", "keep at me before lunch", {.style = "repeat", .repeatMinutes = 30},
         {.style = Style::repeatUntilDone(1800)}},
        {"once is never changed", "ring me just once before lunch", {.style = "alarm"}},
        {"a place said with other case and article", "call mum near the gym before lunch",
         {.arriveAt = "The Gym", .delayMinutes = 5000}, {.trigger = arrive("gym", 1440 * 60)}},
        {"a place never said", "call mum before lunch", {.arriveAt = "gym"}},
        {"\"the\" is no place", "call the mum before lunch", {.arriveAt = "the"}},
        {"an empty place", "call mum before lunch", {.arriveAt = ""}},
        {"leaving, when no arrival is said", "call mum off the office before lunch",
         {.arriveAt = "home", .leaveFrom = "Office", .delayMinutes = -5}, {.trigger = leave("office")}},
        {"a gate", "call mum near the office before lunch", {.onlyAt = "the office"}, {.gate = "office"}},
        {"weekly weekdays cleaned", "water the plants every so often",
         {.recurrence = "WEEKLY", .weekdays = {9, 4, 2, 4}}, {.recurrence = rule(F::weekly, 1, {2, 4})}},
        {"interval clamped, weekdays only for weekly", "water the plants every so often",
         {.recurrence = "monthly", .recurrenceInterval = 400, .weekdays = {2}}, {.recurrence = rule(F::monthly, 365)}},
        {"no repeating word", "water the plants before lunch", {.recurrence = "daily"}},
        {"an unknown frequency", "water the plants every so often", {.recurrence = "hourly"}},
        // clang-format on
    };
    for (auto& c : cases) {
        SCOPED_TRACE(c.why);
        if (c.reading.title.empty()) c.reading.title = "call mum";
        const ParseResult grammar = p.parse(c.sentence, wednesday());
        ParseResult merged{c.merged, {}, true};
        merged.capture.title = "call mum";
        EXPECT_EQ(p.merge(grammar, c.reading, c.sentence, wednesday()), c.merged == Capture{} ? grammar : merged);
    }
}

TEST(Merge, ModelDueReadsOnlyDaysThatExistAndHaveNotPassed) {
    // Texts as pointers, null for none: a table of optional strings trips g++'s uninitialized-use warning.
    const std::tuple<const char*, const char*, std::optional<DateComponents>> cases[] = {
        // clang-format off
        {"soon-2027-03-14", "9:15", at(2027, 3, 14, 9, 15)},  {"2026-11-18", {}, onDay(2026, 11, 18)},
        {"2026-11-17", "9pm", at(2026, 11, 18, 21, 0)},     {nullptr, "9am", at(2026, 11, 19, 9, 0)},
        {"2026-11-17", {}, {}},  {"2027-02-30", {}, {}},  {"2027-03", {}, {}},  {nullptr, "noonish", {}},
        // clang-format on
    };
    for (const auto& [date, time, due] : cases) {
        auto text = [](const char* value) { return value ? std::optional<std::string>(value) : std::nullopt; };
        EXPECT_EQ(p.modelDue({.title = "x", .dueDate = text(date), .dueTime = text(time)}, wednesday()), due)
            << (date ? date : "-") << " " << (time ? time : "-");
    }
}
