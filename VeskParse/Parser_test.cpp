#include "VeskParse/Parser.h"

#include <thread>

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

// Captures are written with designated initializers; the fields left out keep their defaults.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

using Words = std::vector<std::string>;

// Whole sentences through every pass: what one pass takes, a later one can't read, and a
// later assignment overwrites an earlier one, tokens included.
TEST(Parser, ReadsWholeSentences) {
    const Style nag = Style::repeatUntilDone(900);
    const struct { std::string sentence; Capture capture; Words unresolved = {}; } cases[] = {
        {"call the dentist at 9, nag me every 15 minutes",
         {.title = "call the dentist", .due = at(2026, 11, 18, 21, 0), .style = nag}},
        {"buy milk", {.title = "buy milk"}}, {"wake me at 6", {.due = at(2026, 11, 19, 6, 0), .style = Style::alarm()}},
        {"set an alarm for 7am", {.due = at(2026, 11, 19, 7, 0), .style = Style::alarm()}},
        {"meet at 5 minutes", {.title = "meet at 5 minutes"}, {"5", "minutes"}},
        {"give me 5 minutes to breathe", {.title = "give me 5 minutes to breathe"}, {"5", "minutes"}},
        {"", {}}, {"   \n  ", {}},
        // A phrase that a pass took leaves a blank, so its neighbours stay apart.
        {"pay\ttomorrow\nrent", {.title = "pay rent", .due = onDay(2026, 11, 19)}},
        {"call \xff\xfe bob tomorrow", {.title = "call \xEF\xBF\xBD\xEF\xBF\xBD bob", .due = onDay(2026, 11, 19)}},
        {"remind me every 2 hours to stretch", {.title = "stretch", .style = Style::repeatUntilDone(7200)}},
        {"nag me every day", {.style = nag, .recurrence = rule(F::daily, 1)}},
        {"water plants every other day", {.title = "water plants", .recurrence = rule(F::daily, 2)}},
        {"vitamins every morning", {.title = "vitamins", .recurrence = rule(F::daily, 1)}},
        // A recurrence takes "at 9" as written, and starts on its first usable day.
        {"every wednesday at 9", {.due = at(2026, 11, 25, 9, 0), .recurrence = rule(F::weekly, 1, {4})}},
        {"every second friday pay sitter",
         {.title = "pay sitter", .due = onDay(2026, 11, 20), .recurrence = rule(F::weekly, 2, {6})}},
        {"stretch daily at 8", {.title = "stretch", .due = at(2026, 11, 19, 8, 0), .recurrence = rule(F::daily, 1)}},
        {"water lawn every 2 weeks after I did it",
         {.title = "water lawn every", .recurrence = rule(F::weekly, 2, {}, true)}, {"every"}},
        {"call bob every monday and every friday",
         {.title = "call bob and every", .due = onDay(2026, 11, 20), .recurrence = rule(F::weekly, 1, {2})}, {"every"}},
        {"start pinging me a week early for passport on the 20th",
         {.title = "passport", .due = onDay(2026, 11, 20), .startReminding = StartReminding::beforeDue(604800)}},
        // The amount belongs to the trigger, so no due moment is read from it.
        {"in 10 minutes after I get home", {.title = "in", .trigger = arrive("home", 600)}},
        // A phrase overwrites what a token set.
        {"style:once nag me", {.style = nag}}, {"style:alarm just once", {.style = Style::once()}},
        {"every:daily every friday", {.due = onDay(2026, 11, 20), .recurrence = rule(F::weekly, 1, {6})}},
        {"arrive:home give me 5 minutes", {.trigger = arrive("home", 300)}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sentence);
        auto result = read(c.sentence);
        EXPECT_EQ(result.capture, c.capture);
        EXPECT_EQ(result.unresolved, c.unresolved);
        EXPECT_FALSE(result.readByModel);
    }
}

// The clean-up of the remaining text, without any pass.
TEST(Parser, FinishCleansTheTitle) {
    const struct { const char* text; const char* title; } cases[] = {
        {" remind me to call mum ", "call mum"}, {"  I need to   buy\t\tmilk  ", "buy milk"}, {"i’ve got to go", "go"},
        {"don’t forget to water the plants", "water the plants"}, {"dont forget to call", "call"},
        {"REMEMBER TO Call Ann", "Call Ann"}, {". - and then pay rent", "pay rent"},
        {"pay rent , and then", "pay rent"}, {"pay rent by", "pay rent"},
        // A full stop goes only at the start; fillers are whole words.
        {"buy milk.", "buy milk."}, {"look at", "look"}, {"atlas band", "atlas band"}, {"tonic for", "tonic for"},
        {"to-do list", "do list"}, {"and", ""}, {"   ", ""}, {"", ""},
    };
    for (const auto& c : cases) {
        Work work{c.text};
        Parser::State state;
        EXPECT_EQ(Parser::finish(work, state, resolver()).capture.title, c.title) << c.text;
    }
}

TEST(Parser, UnresolvedWordsLookLikeInstructions) {
    const struct { const char* title; Words words; } cases[] = {
        {"buy milk", {}}, {"about the report next week", {"next", "week"}}, {"Call Around 9ish", {"Around", "9ish"}},
        {"meet 3:30 or 10 o'clock", {"3:30", "10", "o'clock"}}, {"every every", {"every", "every"}},
        // Three digits or more are no hour; words inside words do not count.
        {"room 2026 of the nagger's bugle", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(Parser::unresolved(c.title), c.words) << c.title;
}

TEST(Parser, NumbersAreDigitsOrWords) {
    const struct { const char* text; std::optional<int64_t> value; } cases[] = {
        // The digits are read as Text::parseInt64 reads them (see Text_test).
        {"-3", -3}, {"One", 1}, {"AN", 1}, {"a", 1}, {"other", 2}, {"twelve", 12},
        {"99999999999999999999", std::nullopt}, {"", std::nullopt}, {"thirteen", std::nullopt}, {"5th", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(Parser::number(c.text), c.value) << c.text;
}

TEST(Parser, ParsesOnManyThreadsAtOnce) {
    const Parser shared = parser();
    const Date now = wednesday();
    const char* sentences[] = {"call the dentist at 9", "pay rent due:fri@5pm", "in 20 minutes check oven",
                               "buy milk on the 5th", "tonight at 9:30 read", "next monday gym"};
    std::vector<ParseResult> expected;
    for (const char* sentence : sentences) expected.push_back(shared.parse(sentence, now));

    std::vector<int> mismatches(8, 0);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < mismatches.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 25; ++round) {
                for (size_t i = 0; i < std::size(sentences); ++i) {
                    // Each thread also adds patterns of its own to the shared cache.
                    Work work{" x" + std::to_string(t) + " "};
                    work.take("x" + std::to_string(t) + "-" + std::to_string(round));
                    if (shared.parse(sentences[i], now) != expected[i]) ++mismatches[t];
                }
            }
        });
    }
    for (auto& thread : threads) thread.join();
    for (int count : mismatches) EXPECT_EQ(count, 0);
}

TEST(Work, TakesTheFirstMatchAndLeavesABlank) {
    Work work{" call bob at 5 or at 6 "};
    EXPECT_EQ(work.take(R"(\bAT (\d)(x)?)"), (Words{"at 5", "5", ""}));
    EXPECT_EQ(work.text, " call bob   or at 6 ");
    EXPECT_EQ(work.take(R"(\bnever\b)"), std::nullopt);
    // A pattern that does not compile counts as no match.
    EXPECT_EQ(work.take(R"((unclosed)"), std::nullopt);
    EXPECT_EQ(work.text, " call bob   or at 6 ");
}

}  // namespace
