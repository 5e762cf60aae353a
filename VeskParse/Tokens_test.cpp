#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

TEST(Tokens, AreReadAndRemoved) {
    const std::pair<const char*, Capture> cases[] = {
        // clang-format off
        {R"(pay bill due:2026-12-01@14:30 style:alarm list:"Home stuff")",
         {.title = "pay bill", .due = at(2026, 12, 1, 14, 30), .style = Style::alarm(), .list = "Home stuff"}},
        // A bare hour after "@": 1 to 6 are afternoon hours. Its own weekday means a week from now.
        {"due:fri@5pm", {.due = at(2026, 11, 20, 17, 0)}},    {"due:tomorrow@7", {.due = at(2026, 11, 19, 7, 0)}},
        {"due:tomorrow@3", {.due = at(2026, 11, 19, 15, 0)}},  {"due:9", {.due = at(2026, 11, 18, 21, 0)}},
        {"due:0", {.due = at(2026, 11, 19, 0, 0)}},  {"due:24", {}},  {"due:WED", {.due = onDay(2026, 11, 25)}},
        // A later token overwrites an earlier one; the sentence comes later still and wins.
        {"due:friday due:monday", {.due = onDay(2026, 11, 23)}},  {"due:friday tomorrow", {.due = onDay(2026, 11, 19)}},
        {"due:\"in 3 days\"", {.due = onDay(2026, 11, 21)}},  {"arrive:+Gym+2h", {.trigger = arrive("gym", 7200)}},
        {R"(leave:"The Office")", {.trigger = leave("the office")}},  {"arrive:gym+soon", {.trigger = arrive("gym")}},
        {R"(arrive:"")", {}},  {"gate:Home", {.gate = "home"}},  {"ON:mac", {.deviceGate = DeviceGate::anyMac()}},
        {"on:Studio", {.deviceGate = DeviceGate::named("Studio")}},  {"on:PHONE", {.deviceGate = DeviceGate::phone()}},
        {"hide:2w", {.hideDaysBefore = 14}},  {"hide:soon", {}},  {"hide:9223372036854775807w", {}},
        {"start:due-2d", {.startReminding = StartReminding::beforeDue(172800)}},  {"start:9am", {}},
        {"start:2026-03-01", {.startReminding = StartReminding::on(onDay(2026, 3, 1))}},
        // A duration is digits, then a unit that DateResolver::seconds reads.
        {"nag:15m", {.style = Style::repeatUntilDone(900)}},  {"nag:often", {}},  {"nag:15", {}},  {"nag:-5m", {}},
        {R"(nag:"2 Hours")", {.style = Style::repeatUntilDone(7200)}},  {R"(nag:"5 m ")", {}},
        {"nag:99999999999999999999m", {}},  {"style:once style:repeat", {}},  {"style:ONCE", {.style = Style::once()}},
        {"style:alarm style:sometimes", {.style = Style::alarm()}},
        // A weekly rule with weekdays and no date starts on its first usable day: today. An unreadable every: clears
        // what an earlier one set.
        {"every:mon,wed", {.due = onDay(2026, 11, 18), .recurrence = rule(F::weekly, 1, {2, 4})}},
        {"every:daily every:sometimes", {}},  {"list:“Home stuff”", {.list = "Home stuff"}},
        // A token needs a word boundary, and the weekday went to the dates; the colon stays.
        {"check overdue:friday list:x,y and reply:soon",
         {.title = "check overdue: and reply:soon", .due = onDay(2026, 11, 20), .list = "x,y"}},
        // clang-format on
    };
    for (const auto& [sentence, capture] : cases) EXPECT_EQ(read(sentence).capture, capture) << sentence;
}

TEST(Tokens, RecurrenceText) {
    const std::pair<const char*, std::optional<Recurrence>> cases[] = {
        // clang-format off
        {"Daily", rule(F::daily, 1)},  {"week", rule(F::weekly, 1)},  {"monthly", rule(F::monthly, 1)},
        {"YEAR", rule(F::yearly, 1)},  {"3d", rule(F::daily, 3)},     {"2W", rule(F::weekly, 2)},
        {"6m", rule(F::monthly, 6)},   {"1y", rule(F::yearly, 1)},    {"weekdays", rule(F::weekly, 1, {2, 3, 4, 5, 6})},
        {"99999999999999999999d", rule(F::daily, 1)},  {"sometimes", {}},
        // Repeats stay; unknown pieces are passed over untrimmed.
        {"fri,mon,,friday, tue,bogus", rule(F::weekly, 1, {2, 6, 6})},
        // clang-format on
    };
    for (const auto& [text, recurrence] : cases) EXPECT_EQ(Parser::recurrenceToken(text), recurrence) << text;
}
