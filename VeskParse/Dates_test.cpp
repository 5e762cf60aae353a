#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

struct WhenCase {
    const char* sentence;
    std::optional<DateComponents> due;
    int64_t hour = 10;  // of now, on Wednesday 18 November 2026
};

class When : public testing::TestWithParam<WhenCase> {};

TEST_P(When, IsRead) {
    const auto& c = GetParam();
    auto result = parser().parse(c.sentence, wednesday(c.hour));
    EXPECT_EQ(result.capture.due, c.due) << c.sentence;
    EXPECT_EQ(result.capture.title, "") << c.sentence;
}

INSTANTIATE_TEST_SUITE_P(
    BareHours, When,
    testing::Values(WhenCase{"at 9", at(2026, 11, 18, 21, 0)}, WhenCase{"at 9", at(2026, 11, 18, 9, 0), 8},
                    WhenCase{"at 9", at(2026, 11, 19, 9, 0), 22}, WhenCase{"at 3", at(2026, 11, 18, 15, 0)},
                    // Neither 03:00 nor 15:00 lies ahead: the hour as written decides.
                    WhenCase{"at 3", at(2026, 11, 19, 3, 0), 16},
                    // The current minute itself counts as past.
                    WhenCase{"at 10", at(2026, 11, 18, 22, 0)}, WhenCase{"at 12", at(2026, 11, 18, 12, 0)},
                    WhenCase{"at 12", at(2026, 11, 19, 12, 0), 13}, WhenCase{"at 17", at(2026, 11, 18, 17, 0)},
                    WhenCase{"at 9ish", at(2026, 11, 18, 21, 0)}, WhenCase{"around 5", at(2026, 11, 18, 17, 0)},
                    WhenCase{"about 11", at(2026, 11, 18, 11, 0)}, WhenCase{"at 9:30", at(2026, 11, 18, 21, 30)},
                    WhenCase{"at 0:30", at(2026, 11, 19, 0, 30)}, WhenCase{"by 14:05", at(2026, 11, 18, 14, 5)}));

INSTANTIATE_TEST_SUITE_P(
    NamedDays, When,
    testing::Values(WhenCase{"tomorrow at 3", at(2026, 11, 19, 15, 0)},
                    WhenCase{"tomorrow at 9", at(2026, 11, 19, 9, 0)},
                    WhenCase{"at 9am", at(2026, 11, 19, 9, 0)}, WhenCase{"at 9pm", at(2026, 11, 18, 21, 0)},
                    WhenCase{"12am", at(2026, 11, 19, 0, 0)}, WhenCase{"at 12:15 p.m.", at(2026, 11, 18, 12, 15)},
                    WhenCase{"at noon", at(2026, 11, 18, 12, 0)}, WhenCase{"at midnight", at(2026, 11, 19, 0, 0)},
                    WhenCase{"today at 9", at(2026, 11, 18, 9, 0)}, WhenCase{"tonight", at(2026, 11, 18, 20, 0)},
                    WhenCase{"tonight at 8", at(2026, 11, 18, 20, 0)},
                    WhenCase{"tonight at 9:30", at(2026, 11, 18, 21, 30)},
                    WhenCase{"this morning at 12", at(2026, 11, 18, 0, 0)},
                    WhenCase{"this afternoon", at(2026, 11, 18, 15, 0)},
                    WhenCase{"this evening at 7", at(2026, 11, 18, 19, 0)},
                    WhenCase{"wake me at 12 tomorrow", at(2026, 11, 19, 0, 0)}));

INSTANTIATE_TEST_SUITE_P(
    Days, When,
    testing::Values(WhenCase{"friday", onDay(2026, 11, 20)}, WhenCase{"wednesday", onDay(2026, 11, 25)},
                    WhenCase{"next friday", onDay(2026, 11, 27)}, WhenCase{"next monday", onDay(2026, 11, 23)},
                    WhenCase{"next thursday", onDay(2026, 11, 26)}, WhenCase{"this friday", onDay(2026, 11, 20)},
                    WhenCase{"starting on Monday", onDay(2026, 11, 23)}, WhenCase{"the 18th", onDay(2026, 11, 18)},
                    WhenCase{"the 31st", onDay(2026, 12, 31)}, WhenCase{"on the 5th", onDay(2026, 12, 5)},
                    WhenCase{"in march", onDay(2027, 3, 1)}, WhenCase{"by april 15", onDay(2027, 4, 15)},
                    WhenCase{"on november 20", onDay(2027, 11, 20)}, WhenCase{"in dec", onDay(2026, 12, 1)},
                    // The day of a month is kept whatever its size.
                    WhenCase{"on feb 31", onDay(2027, 2, 31)}, WhenCase{"2026-12-01", onDay(2026, 12, 1)},
                    WhenCase{"2026-13-45", onDay(2026, 13, 45)}, WhenCase{"tomorrow friday", onDay(2026, 11, 20)},
                    WhenCase{"friday at 5pm", at(2026, 11, 20, 17, 0)}));

INSTANTIATE_TEST_SUITE_P(
    Amounts, When,
    testing::Values(WhenCase{"in 20 minutes", at(2026, 11, 18, 10, 20)}, WhenCase{"in an hour", at(2026, 11, 18, 11, 0)},
                    WhenCase{"in 3 days", onDay(2026, 11, 21)}, WhenCase{"in a week", onDay(2026, 11, 25)},
                    WhenCase{"2 hours from now", at(2026, 11, 18, 12, 0)}, WhenCase{"in 2 months", onDay(2027, 1, 18)},
                    WhenCase{"in two years", onDay(2028, 11, 18)}, WhenCase{"5 days from today", onDay(2026, 11, 23)},
                    WhenCase{"3 days from tomorrow", onDay(2026, 11, 22)},
                    WhenCase{"2 weeks from friday", onDay(2026, 12, 4)},
                    WhenCase{"a day from wednesday", onDay(2026, 11, 26)},
                    // The exact moment beats a named day and time.
                    WhenCase{"tomorrow at 5pm in 20 minutes", at(2026, 11, 18, 10, 20)}));

// The seconds of now are dropped from an exact moment.
TEST(Dates, ExactMomentDropsSeconds) {
    auto result = parser().parse("in 20 minutes", wednesday().addingTimeInterval(42));
    EXPECT_EQ(result.capture.due, at(2026, 11, 18, 10, 20));
}

struct TitleCase {
    const char* sentence;
    const char* title;
    std::optional<DateComponents> due;
};

class Unread : public testing::TestWithParam<TitleCase> {};

TEST_P(Unread, StaysInTheTitle) {
    auto result = parser().parse(GetParam().sentence, wednesday());
    EXPECT_EQ(result.capture.title, GetParam().title);
    EXPECT_EQ(result.capture.due, GetParam().due);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, Unread,
    testing::Values(TitleCase{"march 5", "march 5", std::nullopt}, TitleCase{"next week", "next week", std::nullopt},
                    TitleCase{"in the morning", "in the morning", std::nullopt},
                    TitleCase{"2026-12-01T09:00", "2026-12-01T09:00", std::nullopt},
                    // Gone, but out of range: nothing is set.
                    TitleCase{"pay the 40th", "pay", std::nullopt}, TitleCase{"call at 30ish", "call", std::nullopt},
                    TitleCase{"call at 13pm", "call", std::nullopt},
                    // Not an hour: the look-ahead refuses amounts and ordinals.
                    TitleCase{"sale at 20% off", "sale at 20% off", std::nullopt},
                    TitleCase{"room at 5 weeks", "room at 5 weeks", std::nullopt},
                    // "@" after a blank stays; directly behind a word it goes along.
                    TitleCase{"call @5", "call @5", std::nullopt},
                    TitleCase{"overdue:friday", "overdue", onDay(2026, 11, 20)},
                    TitleCase{"tea ſunday", "tea", std::nullopt}));

// Nothing here may stop the program, whatever the size of the number.
TEST(Dates, HugeAmountsAreHarmless) {
    const char* sentences[] = {
        "in 99999999999999999999999 minutes", "in 9223372036854775807 minutes", "in 153722867280912930 minutes",
        "in 9223372036854775807 weeks",       "in 9223372036854775807 days",    "in 106751991167300 days",
        "in 9223372036854775807 months",      "in 3000000000 years",           "in 2147483647 months",
        "9223372036854775807 weeks from friday", "9223372036854775807 days from tomorrow",
        "9223372036854775806 days from tomorrow", "in 1317624576693539 weeks", "in 99999999 hours",
    };
    for (const char* sentence : sentences) {
        auto result = parser().parse(sentence, wednesday());
        EXPECT_EQ(result.capture.title, "") << sentence;
    }
}

struct TimeTextCase {
    std::optional<std::string> text;
    std::optional<TimeOfDay> time;
};

class TimeText : public testing::TestWithParam<TimeTextCase> {};

TEST_P(TimeText, IsReadAsAWhole) { EXPECT_EQ(Parser::timeOfDay(GetParam().text), GetParam().time); }

INSTANTIATE_TEST_SUITE_P(
    Parser, TimeText,
    testing::Values(TimeTextCase{std::nullopt, std::nullopt}, TimeTextCase{"9", std::nullopt},
                    TimeTextCase{"09:30", TimeOfDay{9, 30}}, TimeTextCase{" 17:05:59 ", TimeOfDay{17, 5}},
                    TimeTextCase{"9pm", TimeOfDay{21, 0}}, TimeTextCase{"9 PM", TimeOfDay{21, 0}},
                    TimeTextCase{"12am", TimeOfDay{0, 0}}, TimeTextCase{"12:30 p.m.", TimeOfDay{12, 30}},
                    TimeTextCase{"0am", std::nullopt}, TimeTextCase{"13pm", std::nullopt},
                    TimeTextCase{"24:00", std::nullopt}, TimeTextCase{"9:60", std::nullopt},
                    TimeTextCase{"at 9:30", std::nullopt}, TimeTextCase{"9:30 tomorrow", std::nullopt},
                    TimeTextCase{"", std::nullopt}));

}  // namespace
