#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

TEST(Dates, AreReadFromTheSentence) {
    const struct {
        const char* sentence;
        std::optional<DateComponents> due;
        const char* title = "";
        Date now = wednesday();
    } cases[] = {
        // clang-format off
        // Bare hours take the half of the day that comes next (DateResolver_test holds the cases); when
        // neither half lies ahead, the hour as written on the next day.
        {"at 17", at(2026, 11, 18, 17, 0)},     {"at 9ish", at(2026, 11, 18, 21, 0)},
        {"at 9:30", at(2026, 11, 18, 21, 30)},  {"at 0:30", at(2026, 11, 19, 0, 30)},
        {"at 3", at(2026, 11, 19, 3, 0), "", wednesday(16)},  {"at 12", at(2026, 11, 19, 12, 0), "", wednesday(13)},
        // Named days and halves of the day are never rolled.
        {"tomorrow at 3", at(2026, 11, 19, 15, 0)},  {"tomorrow at 9", at(2026, 11, 19, 9, 0)},
        {"today at 9", at(2026, 11, 18, 9, 0)},      {"tonight", at(2026, 11, 18, 20, 0)},
        {"tonight at 9:30", at(2026, 11, 18, 21, 30)},   {"this morning at 12", at(2026, 11, 18, 0, 0)},
        {"this afternoon", at(2026, 11, 18, 15, 0)},     {"this evening", at(2026, 11, 18, 18, 0)},
        // Without a day, a time that is not ahead rolls over at the current minute.
        {"at 10am", at(2026, 11, 19, 10, 0)},            {"at 10:01am", at(2026, 11, 18, 10, 1)},
        {"at noon", at(2026, 11, 18, 12, 0)},            {"at midnight", at(2026, 11, 19, 0, 0)},
        {"12am", at(2026, 11, 19, 0, 0)},                {"at 12:15 p.m.", at(2026, 11, 18, 12, 15)},
        // A weekday is always ahead; "next" skips one at most two days away.
        {"friday", onDay(2026, 11, 20)},  {"wednesday", onDay(2026, 11, 25)},  {"next friday", onDay(2026, 11, 27)},
        {"next monday", onDay(2026, 11, 23)},  {"tomorrow friday", onDay(2026, 11, 20)},
        {"the 18th", onDay(2026, 11, 18)},  {"by april 15", onDay(2027, 4, 15)},
        {"on november 20", onDay(2027, 11, 20)},  {"in dec", onDay(2026, 12, 1)},
        // The day of a month is kept whatever its size.
        {"on feb 31", onDay(2027, 2, 31)},  {"2026-13-45", onDay(2026, 13, 45)},
        {"in 20 minutes", at(2026, 11, 18, 10, 20)},  {"2 hours from now", at(2026, 11, 18, 12, 0)},
        {"in a week", onDay(2026, 11, 25)},           {"in 2 months", onDay(2027, 1, 18)},
        {"in two years", onDay(2028, 11, 18)},        {"3 days from tomorrow", onDay(2026, 11, 22)},
        {"2 weeks from friday", onDay(2026, 12, 4)},
        // The exact moment beats a named day and time.
        {"tomorrow at 5pm in 20 minutes", at(2026, 11, 18, 10, 20)},
        // A recurrence names days on the wall clock, so a clock change before the first one moves nothing: Sunday
        // 29 March 2026 has 23 hours, Sunday 25 October 25.
        {"every sunday at 2:30am", at(2026, 3, 29, 2, 30), "", moment(2026, 3, 28, 10, 0)},
        {"every weekday", onDay(2026, 10, 26), "", moment(2026, 10, 24, 23, 30)},
        // Not read: stays in the title.
        {"march 5", {}, "march 5"},  {"2026-12-01T09:00", {}, "2026-12-01T09:00"},
        // Gone, but out of range: nothing is set.
        {"pay the 40th", {}, "pay"},  {"call at 30ish", {}, "call"},  {"call at 13pm", {}, "call"},
        // Not an hour: the look-ahead refuses amounts and ordinals; "@" after a blank stays. A weekday that the
        // table lacks is taken, but sets no day.
        {"room at 5 weeks", {}, "room at 5 weeks"},  {"call @5", {}, "call @5"},  {"tea ſunday", {}, "tea"},
        // clang-format on
    };
    for (const auto& c : cases) {
        auto result = read(c.sentence, c.now);
        EXPECT_EQ(result.capture.due, c.due) << c.sentence;
        EXPECT_EQ(result.capture.title, c.title) << c.sentence;
    }
}

// Times of day from the language model's reading: the whole text or nothing.
TEST(Dates, TimeTextIsReadAsAWhole) {
    const std::pair<std::optional<std::string>, std::optional<TimeOfDay>> cases[] = {
        // clang-format off
        {"09:30", TimeOfDay{9, 30}},  {" 17:05:59 ", TimeOfDay{17, 5}},  {"9 PM", TimeOfDay{21, 0}},
        {"12am", TimeOfDay{0, 0}},    {"12:30 p.m.", TimeOfDay{12, 30}},  {std::nullopt, {}},  {"9", {}},
        {"0am", {}},  {"13pm", {}},  {"24:00", {}},  {"9:60", {}},  {"at 9:30", {}},
        // clang-format on
    };
    for (const auto& [text, time] : cases) EXPECT_EQ(Parser::timeOfDay(text), time) << text.value_or("(none)");
}
