#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

// Captures are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

TEST(Tokens, AreReadAndRemoved) {
    const struct { const char* sentence; Capture capture; } cases[] = {
        {R"(pay bill due:2026-12-01@14:30 style:alarm list:"Home stuff")",
         {.title = "pay bill", .due = at(2026, 12, 1, 14, 30), .style = Style::alarm(), .list = "Home stuff"}},
        // A bare hour after "@": 1 to 6 are afternoon hours.
        {"due:fri@5pm", {.due = at(2026, 11, 20, 17, 0)}}, {"due:tomorrow@7", {.due = at(2026, 11, 19, 7, 0)}},
        {"due:tomorrow@3", {.due = at(2026, 11, 19, 15, 0)}}, {"due:9", {.due = at(2026, 11, 18, 21, 0)}},
        {"due:0", {.due = at(2026, 11, 19, 0, 0)}}, {"due:24", {}}, {"due:-3", {}},
        {"due:\"in 3 days\"", {.due = onDay(2026, 11, 21)}}, {"due:tomorrow,5pm", {.due = at(2026, 11, 19, 17, 0)}},
        // Its own weekday means a week from now.
        {"due:WED", {.due = onDay(2026, 11, 25)}},
        // A later token overwrites an earlier one; the sentence comes later still and wins.
        {"due:friday due:monday", {.due = onDay(2026, 11, 23)}}, {"due:friday tomorrow", {.due = onDay(2026, 11, 19)}},
        {"arrive:home+10m", {.trigger = arrive("home", 600)}}, {"arrive:+Gym+2h", {.trigger = arrive("gym", 7200)}},
        {R"(leave:"The Office")", {.trigger = leave("the office")}},
        {"arrive:gym+soon", {.trigger = arrive("gym")}}, {R"(arrive:"")", {}}, {"leave:+++", {}},
        {"gate:Home", {.gate = "home"}}, {"on:Studio", {.deviceGate = DeviceGate::named("Studio")}},
        {"on:PHONE", {.deviceGate = DeviceGate::phone()}}, {"ON:mac", {.deviceGate = DeviceGate::anyMac()}},
        {"hide:2w", {.hideDaysBefore = 14}}, {"hide:3d", {.hideDaysBefore = 3}}, {"hide:soon", {}},
        {"hide:9223372036854775807w", {}}, {"start:due-2d", {.startReminding = StartReminding::beforeDue(172800)}},
        {"start:2026-03-01", {.startReminding = StartReminding::on(onDay(2026, 3, 1))}}, {"start:9am", {}},
        {"passport start:\"next monday\" due:2026-12-01",
         {.title = "passport", .due = onDay(2026, 12, 1), .startReminding = StartReminding::on(onDay(2026, 11, 23))}},
        {"nag:15m", {.style = Style::repeatUntilDone(900)}}, {"nag:often", {}}, {"style:once style:repeat", {}},
        {"style:ONCE", {.style = Style::once()}}, {"style:alarm style:sometimes", {.style = Style::alarm()}},
        // A weekly rule with weekdays and no date starts on its first usable day: today.
        {"every:mon,wed", {.due = onDay(2026, 11, 18), .recurrence = rule(F::weekly, 1, {2, 4})}},
        {"every:2w", {.recurrence = rule(F::weekly, 2)}},
        // An unreadable every: clears what an earlier one set.
        {"every:daily every:sometimes", {}},
        {"list:“Home stuff”", {.list = "Home stuff"}}, {"list:a list:b", {.list = "b"}},
        // A token needs a word boundary, and the weekday went to the dates; the colon stays.
        {"check overdue:friday list:x,y and reply:soon",
         {.title = "check overdue: and reply:soon", .due = onDay(2026, 11, 20), .list = "x,y"}},
    };
    for (const auto& c : cases) EXPECT_EQ(read(c.sentence).capture, c.capture) << c.sentence;
}

TEST(Tokens, DurationIsAnAmountAndAUnit) {
    const struct { const char* text; std::optional<double> seconds; } cases[] = {
        // The units are DateResolver::seconds'.
        {"15m", 900}, {"90min", 5400}, {"2 hours", 7200}, {"2D", 172800}, {"15", std::nullopt}, {"m", std::nullopt},
        {"-5m", std::nullopt}, {"5 m ", std::nullopt}, {"99999999999999999999m", std::nullopt}, {"", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(Parser::duration(c.text), c.seconds) << c.text;
}

TEST(Tokens, RecurrenceText) {
    const struct { const char* text; std::optional<Recurrence> recurrence; } cases[] = {
        {"Daily", rule(F::daily, 1)}, {"weekdays", rule(F::weekly, 1, {2, 3, 4, 5, 6})}, {"week", rule(F::weekly, 1)},
        {"monthly", rule(F::monthly, 1)}, {"YEAR", rule(F::yearly, 1)},
        // Repeats stay; unknown pieces are passed over untrimmed.
        {"fri,mon,,friday, tue,bogus", rule(F::weekly, 1, {2, 6, 6})}, {"3d", rule(F::daily, 3)},
        {"2W", rule(F::weekly, 2)}, {"thurs,SAT", rule(F::weekly, 1, {5, 7})}, {"6m", rule(F::monthly, 6)},
        {"1y", rule(F::yearly, 1)}, {"99999999999999999999d", rule(F::daily, 1)}, {"sometimes", std::nullopt},
        {"2x", std::nullopt}, {"", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(Parser::recurrenceToken(c.text), c.recurrence) << c.text;
}

}  // namespace
