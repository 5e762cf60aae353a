#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

ParseResult read(const char* sentence) { return parser().parse(sentence, wednesday()); }

struct DueCase {
    const char* sentence;
    std::optional<DateComponents> due;
};

class DueToken : public testing::TestWithParam<DueCase> {};

TEST_P(DueToken, SetsTheDueDate) {
    auto result = read(GetParam().sentence);
    EXPECT_EQ(result.capture.due, GetParam().due) << GetParam().sentence;
    EXPECT_EQ(result.capture.title, "") << GetParam().sentence;
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, DueToken,
    testing::Values(DueCase{"due:fri@5pm", at(2026, 11, 20, 17, 0)}, DueCase{"due:tomorrow@7", at(2026, 11, 19, 7, 0)},
                    DueCase{"due:tomorrow@3", at(2026, 11, 19, 15, 0)}, DueCase{"due:9", at(2026, 11, 18, 21, 0)},
                    DueCase{"due:14", at(2026, 11, 18, 14, 0)}, DueCase{"due:0", at(2026, 11, 19, 0, 0)},
                    DueCase{"due:24", std::nullopt}, DueCase{"due:-3", std::nullopt},
                    DueCase{"due:“in 2 hours”", at(2026, 11, 18, 12, 0)},
                    DueCase{"due:\"in 3 days\"", onDay(2026, 11, 21)},
                    DueCase{"due:2026-12-01@14:30", at(2026, 12, 1, 14, 30)},
                    DueCase{"due:tomorrow,5pm", at(2026, 11, 19, 17, 0)}, DueCase{"due:friday@9", at(2026, 11, 20, 9, 0)},
                    // Its own weekday means a week from now.
                    DueCase{"due:WED", onDay(2026, 11, 25)}, DueCase{"due:@@,,", std::nullopt},
                    // A later token overwrites an earlier one.
                    DueCase{"due:friday due:monday", onDay(2026, 11, 23)},
                    // The sentence comes later and wins.
                    DueCase{"due:friday tomorrow", onDay(2026, 11, 19)}));

TEST(Tokens, AllTogether) {
    auto result = read(R"(pay bill due:2026-12-01@14:30 style:alarm list:"Home stuff")");
    EXPECT_EQ(result.capture.title, "pay bill");
    EXPECT_EQ(result.capture.due, at(2026, 12, 1, 14, 30));
    EXPECT_EQ(result.capture.style, Style::alarm());
    EXPECT_EQ(result.capture.list, "Home stuff");
}

struct CaptureCase {
    const char* sentence;
    Capture capture;
};

class Token : public testing::TestWithParam<CaptureCase> {};

TEST_P(Token, IsReadAndRemoved) { EXPECT_EQ(read(GetParam().sentence).capture, GetParam().capture); }

Capture plain() { return Capture{}; }

Capture with(auto change) {
    Capture capture;
    change(capture);
    return capture;
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, Token,
    testing::Values(
        CaptureCase{"arrive:home+10m", with([](Capture& c) { c.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "home", 600}; })},
        CaptureCase{R"(leave:"The Office")",
                    with([](Capture& c) { c.trigger = PlaceTrigger{PlaceTrigger::Edge::leave, "the office", 0}; })},
        CaptureCase{"arrive:+Gym+2h", with([](Capture& c) { c.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "gym", 7200}; })},
        CaptureCase{"arrive:gym+soon", with([](Capture& c) { c.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, "gym", 0}; })},
        CaptureCase{R"(arrive:"")", plain()}, CaptureCase{"arrive:+", plain()}, CaptureCase{"leave:+++", plain()},
        CaptureCase{"gate:Home", with([](Capture& c) { c.gate = "home"; })},
        CaptureCase{"on:Studio", with([](Capture& c) { c.deviceGate = DeviceGate::named("Studio"); })},
        CaptureCase{"on:PHONE", with([](Capture& c) { c.deviceGate = DeviceGate::phone(); })},
        CaptureCase{"ON:mac", with([](Capture& c) { c.deviceGate = DeviceGate::anyMac(); })},
        CaptureCase{"hide:2w", with([](Capture& c) { c.hideDaysBefore = 14; })},
        CaptureCase{"hide:3d", with([](Capture& c) { c.hideDaysBefore = 3; })},
        CaptureCase{"hide:3", with([](Capture& c) { c.hideDaysBefore = 3; })},
        CaptureCase{"hide:soon", plain()}, CaptureCase{"hide:9223372036854775807w", plain()},
        CaptureCase{"start:due-2d", with([](Capture& c) { c.startReminding = StartReminding::beforeDue(172800); })},
        CaptureCase{"start:2026-03-01", with([](Capture& c) { c.startReminding = StartReminding::on(onDay(2026, 3, 1)); })},
        CaptureCase{"start:friday", with([](Capture& c) { c.startReminding = StartReminding::on(onDay(2026, 11, 20)); })},
        CaptureCase{"start:9am", plain()},
        CaptureCase{"nag:15m", with([](Capture& c) { c.style = Style::repeatUntilDone(900); })},
        CaptureCase{"nag:often", plain()},
        CaptureCase{"style:ONCE", with([](Capture& c) { c.style = Style::once(); })},
        CaptureCase{"style:escalate", with([](Capture& c) { c.style = Style::escalate(); })},
        CaptureCase{"style:once style:repeat", plain()},
        CaptureCase{"style:alarm style:sometimes", with([](Capture& c) { c.style = Style::alarm(); })},
        // A weekly rule with weekdays and no date starts on its first usable day: today.
        CaptureCase{"every:mon,wed", with([](Capture& c) {
                        c.recurrence = Recurrence{Recurrence::Frequency::weekly, 1, {2, 4}, false};
                        c.due = onDay(2026, 11, 18);
                    })},
        CaptureCase{"every:2w", with([](Capture& c) { c.recurrence = Recurrence{Recurrence::Frequency::weekly, 2, {}, false}; })},
        // An unreadable every: clears what an earlier one set.
        CaptureCase{"every:daily every:sometimes", plain()},
        CaptureCase{"list:“Home stuff”", with([](Capture& c) { c.list = "Home stuff"; })},
        CaptureCase{"list:a list:b", with([](Capture& c) { c.list = "b"; })}));

TEST(Tokens, NeedAWordBoundaryAndKeepTheRestOfTheSentence) {
    auto result = read("check overdue:friday list:x,y and reply:soon");
    // The weekday went to takeDates, the colon stays.
    EXPECT_EQ(result.capture.title, "check overdue: and reply:soon");
    EXPECT_EQ(result.capture.list, "x,y");
    EXPECT_EQ(result.capture.due, onDay(2026, 11, 20));
}

TEST(Tokens, StartOnTheDueDateHasTheDueDateToo) {
    auto result = read("passport start:\"next monday\" due:2026-12-01");
    EXPECT_EQ(result.capture.startReminding, StartReminding::on(onDay(2026, 11, 23)));
    EXPECT_EQ(result.capture.due, onDay(2026, 12, 1));
    EXPECT_EQ(result.capture.title, "passport");
}

TEST(Tokens, ASentencePhraseOverwritesAToken) {
    EXPECT_EQ(read("style:once nag me").capture.style, Style::repeatUntilDone(900));
    EXPECT_EQ(read("style:alarm just once").capture.style, Style::once());
}

struct DurationCase {
    const char* text;
    std::optional<double> seconds;
};

class Duration : public testing::TestWithParam<DurationCase> {};

TEST_P(Duration, IsAnAmountAndAUnit) { EXPECT_EQ(Parser::duration(GetParam().text), GetParam().seconds); }

INSTANTIATE_TEST_SUITE_P(
    Tokens, Duration,
    testing::Values(DurationCase{"15m", 900}, DurationCase{"90min", 5400}, DurationCase{"2 hours", 7200},
                    DurationCase{"1w", 604800}, DurationCase{"2D", 172800}, DurationCase{"3months", std::nullopt},
                    DurationCase{"15", std::nullopt}, DurationCase{"m", std::nullopt}, DurationCase{"-5m", std::nullopt},
                    DurationCase{"5 m ", std::nullopt}, DurationCase{"99999999999999999999m", std::nullopt},
                    DurationCase{"9223372036854775807m", std::nullopt}, DurationCase{"", std::nullopt}));

struct RecurrenceCase {
    const char* text;
    std::optional<Recurrence> recurrence;
};

class RecurrenceText : public testing::TestWithParam<RecurrenceCase> {};

TEST_P(RecurrenceText, IsRead) { EXPECT_EQ(Parser::recurrenceToken(GetParam().text), GetParam().recurrence); }

using Frequency = Recurrence::Frequency;

INSTANTIATE_TEST_SUITE_P(
    Tokens, RecurrenceText,
    testing::Values(RecurrenceCase{"Daily", Recurrence{Frequency::daily, 1, {}, false}},
                    RecurrenceCase{"weekdays", Recurrence{Frequency::weekly, 1, {2, 3, 4, 5, 6}, false}},
                    RecurrenceCase{"week", Recurrence{Frequency::weekly, 1, {}, false}},
                    RecurrenceCase{"monthly", Recurrence{Frequency::monthly, 1, {}, false}},
                    RecurrenceCase{"YEAR", Recurrence{Frequency::yearly, 1, {}, false}},
                    // Repeats stay; unknown pieces are passed over untrimmed.
                    RecurrenceCase{"fri,mon,,friday, tue,bogus", Recurrence{Frequency::weekly, 1, {2, 6, 6}, false}},
                    RecurrenceCase{"3d", Recurrence{Frequency::daily, 3, {}, false}},
                    RecurrenceCase{"2W", Recurrence{Frequency::weekly, 2, {}, false}},
                    RecurrenceCase{"6m", Recurrence{Frequency::monthly, 6, {}, false}},
                    RecurrenceCase{"1y", Recurrence{Frequency::yearly, 1, {}, false}},
                    RecurrenceCase{"99999999999999999999d", Recurrence{Frequency::daily, 1, {}, false}},
                    RecurrenceCase{"sometimes", std::nullopt}, RecurrenceCase{"2x", std::nullopt},
                    RecurrenceCase{"", std::nullopt}));

}  // namespace
