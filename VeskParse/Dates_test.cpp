#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

TEST(Dates, AreReadFromTheSentence) {
    const struct {
        const char* sentence;
        std::optional<DateComponents> due;
        const char* title = "";
        int64_t hour = 10;  // of now, on Wednesday 18 November 2026
    } cases[] = {
        // Bare hours take the half of the day that comes next (DateResolver_test holds the cases); when
        // neither half lies ahead, the hour as written on the next day.
        {"at 9", at(2026, 11, 18, 21, 0)}, {"at 3", at(2026, 11, 19, 3, 0), "", 16},
        {"at 12", at(2026, 11, 19, 12, 0), "", 13}, {"at 17", at(2026, 11, 18, 17, 0)},
        {"at 9ish", at(2026, 11, 18, 21, 0)}, {"around 5", at(2026, 11, 18, 17, 0)},
        {"at 9:30", at(2026, 11, 18, 21, 30)}, {"at 0:30", at(2026, 11, 19, 0, 30)},
        {"by 14:05", at(2026, 11, 18, 14, 5)},
        // Named days and halves of the day are never rolled.
        {"tomorrow at 3", at(2026, 11, 19, 15, 0)}, {"tomorrow at 9", at(2026, 11, 19, 9, 0)},
        {"at 9am", at(2026, 11, 19, 9, 0)}, {"at 9pm", at(2026, 11, 18, 21, 0)}, {"12am", at(2026, 11, 19, 0, 0)},
        // Without a day, a time that is not ahead rolls over at the current minute.
        {"at 10am", at(2026, 11, 19, 10, 0)}, {"at 10:01am", at(2026, 11, 18, 10, 1)},
        {"at 12:15 p.m.", at(2026, 11, 18, 12, 15)}, {"at noon", at(2026, 11, 18, 12, 0)},
        {"at midnight", at(2026, 11, 19, 0, 0)}, {"today at 9", at(2026, 11, 18, 9, 0)},
        {"tonight", at(2026, 11, 18, 20, 0)}, {"tonight at 9:30", at(2026, 11, 18, 21, 30)},
        {"this morning at 12", at(2026, 11, 18, 0, 0)}, {"this afternoon", at(2026, 11, 18, 15, 0)},
        {"this evening at 7", at(2026, 11, 18, 19, 0)},
        // A weekday is always ahead; "next" skips one at most two days away.
        {"friday", onDay(2026, 11, 20)}, {"wednesday", onDay(2026, 11, 25)}, {"next friday", onDay(2026, 11, 27)},
        {"next monday", onDay(2026, 11, 23)}, {"starting on Monday", onDay(2026, 11, 23)},
        {"the 18th", onDay(2026, 11, 18)}, {"on the 5th", onDay(2026, 12, 5)}, {"in march", onDay(2027, 3, 1)},
        {"by april 15", onDay(2027, 4, 15)}, {"on november 20", onDay(2027, 11, 20)}, {"in dec", onDay(2026, 12, 1)},
        // The day of a month is kept whatever its size.
        {"on feb 31", onDay(2027, 2, 31)}, {"2026-12-01", onDay(2026, 12, 1)}, {"2026-13-45", onDay(2026, 13, 45)},
        {"tomorrow friday", onDay(2026, 11, 20)}, {"friday at 5pm", at(2026, 11, 20, 17, 0)},
        {"in 20 minutes", at(2026, 11, 18, 10, 20)}, {"in a week", onDay(2026, 11, 25)},
        {"2 hours from now", at(2026, 11, 18, 12, 0)}, {"in 2 months", onDay(2027, 1, 18)},
        {"in two years", onDay(2028, 11, 18)}, {"3 days from tomorrow", onDay(2026, 11, 22)},
        {"2 weeks from friday", onDay(2026, 12, 4)}, {"a day from wednesday", onDay(2026, 11, 26)},
        // The exact moment beats a named day and time.
        {"tomorrow at 5pm in 20 minutes", at(2026, 11, 18, 10, 20)},
        // Not read: stays in the title.
        {"march 5", std::nullopt, "march 5"}, {"next week", std::nullopt, "next week"},
        {"in the morning", std::nullopt, "in the morning"}, {"2026-12-01T09:00", std::nullopt, "2026-12-01T09:00"},
        // Gone, but out of range: nothing is set.
        {"pay the 40th", std::nullopt, "pay"}, {"call at 30ish", std::nullopt, "call"},
        {"call at 13pm", std::nullopt, "call"},
        // Not an hour: the look-ahead refuses amounts and ordinals.
        {"sale at 20% off", std::nullopt, "sale at 20% off"}, {"room at 5 weeks", std::nullopt, "room at 5 weeks"},
        // "@" after a blank stays; directly behind a word it goes along.
        {"call @5", std::nullopt, "call @5"}, {"overdue:friday", onDay(2026, 11, 20), "overdue"},
        {"tea ſunday", std::nullopt, "tea"},
    };
    for (const auto& c : cases) {
        auto result = read(c.sentence, wednesday(c.hour));
        EXPECT_EQ(result.capture.due, c.due) << c.sentence << " at " << c.hour;
        EXPECT_EQ(result.capture.title, c.title) << c.sentence;
    }
}

// Times of day from the language model's reading: the whole text or nothing.
TEST(Dates, TimeTextIsReadAsAWhole) {
    const struct {
        std::optional<std::string> text;
        std::optional<TimeOfDay> time;
    } cases[] = {
        {std::nullopt, std::nullopt}, {"9", std::nullopt}, {"09:30", TimeOfDay{9, 30}}, {" 17:05:59 ", TimeOfDay{17, 5}},
        {"9pm", TimeOfDay{21, 0}}, {"9 PM", TimeOfDay{21, 0}}, {"12am", TimeOfDay{0, 0}}, {"12:30 p.m.", TimeOfDay{12, 30}},
        {"0am", std::nullopt}, {"13pm", std::nullopt}, {"24:00", std::nullopt}, {"9:60", std::nullopt},
        {"at 9:30", std::nullopt}, {"9:30 tomorrow", std::nullopt}, {"", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(Parser::timeOfDay(c.text), c.time) << c.text.value_or("(none)");
}

}  // namespace
