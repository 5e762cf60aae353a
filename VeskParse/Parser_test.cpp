#include "VeskParse/Parser.h"

#include <atomic>
#include <thread>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

using Words = std::vector<std::string>;

// Whole sentences through every pass: what one pass takes, a later one can't read, and a
// later assignment overwrites an earlier one, tokens included.
TEST(Parser, ReadsWholeSentences) {
    const Style nag = Style::repeatUntilDone(900);
    const struct {
        std::string sentence;
        Capture capture;
        Words unresolved = {};
    } cases[] = {
        // clang-format off
        {"call the dentist at 9, nag me every 15 minutes",
         {.title = "call the dentist", .due = at(2026, 11, 18, 21, 0), .style = nag}},
        {"wake me at 6", {.due = at(2026, 11, 19, 6, 0), .style = Style::alarm()}},
        // Only a trigger has a delay.
        {"give me 5 minutes to breathe", {.title = "give me 5 minutes to breathe"}, {"5", "minutes"}},
        // A phrase that a pass took leaves a blank, so its neighbours stay apart.
        {"pay\ttomorrow\nrent", {.title = "pay rent", .due = onDay(2026, 11, 19)}},
        {"nag me every day", {.style = nag, .recurrence = rule(F::daily, 1)}},
        {"water plants every other day", {.title = "water plants", .recurrence = rule(F::daily, 2)}},
        {"vitamins every morning", {.title = "vitamins", .recurrence = rule(F::daily, 1)}},
        // A recurrence takes "at 9" as written, and starts on its first usable day.
        {"every wednesday at 9", {.due = at(2026, 11, 25, 9, 0), .recurrence = rule(F::weekly, 1, {4})}},
        {"stretch daily at 8", {.title = "stretch", .due = at(2026, 11, 19, 8, 0), .recurrence = rule(F::daily, 1)}},
        {"water lawn every 2 weeks after I did it",
         {.title = "water lawn every", .recurrence = rule(F::weekly, 2, {}, true)}, {"every"}},
        {"call bob every monday and every friday",
         {.title = "call bob and every", .due = onDay(2026, 11, 20), .recurrence = rule(F::weekly, 1, {2})}, {"every"}},
        // The amount belongs to the trigger, so no due moment is read from it.
        {"in 10 minutes after I get home", {.title = "in", .trigger = arrive("home", 600)}},
        {"arrive:home give me 5 minutes", {.trigger = arrive("home", 300)}},
        // clang-format on
    };
    for (const auto& c : cases) EXPECT_EQ(read(c.sentence), (ParseResult{c.capture, c.unresolved})) << c.sentence;
}

// The clean-up of the remaining text, without any pass.
TEST(Parser, FinishCleansTheTitle) {
    const std::pair<const char*, const char*> cases[] = {
        // clang-format off
        {" remind me to call mum ", "call mum"},  {"REMEMBER TO Call Ann", "Call Ann"},  {"i’ve got to go", "go"},
        {"  I need to   buy\t\tmilk  ", "buy milk"},  {"and", ""},
        {". - and then pay rent", "pay rent"},  {"pay rent , and then", "pay rent"},
        // A full stop goes only at the start; fillers are whole words.
        {"buy milk.", "buy milk."},  {"atlas band", "atlas band"},  {"tonic for", "tonic for"},
        // clang-format on
    };
    for (const auto& [text, title] : cases) {
        Work work{text};
        Parser::State state;
        EXPECT_EQ(Parser::finish(work, state, resolver()).capture.title, title) << text;
    }
}

TEST(Parser, UnresolvedWordsLookLikeInstructions) {
    const std::pair<const char*, Words> cases[] = {
        // clang-format off
        {"about the report next week", {"next", "week"}},  {"Call Around 9ish", {"Around", "9ish"}},
        // Three digits or more are no hour; words inside words do not count.
        {"meet 3:30 or 10 o'clock", {"3:30", "10", "o'clock"}},  {"room 2026 of the nagger's bugle", {}},
        // clang-format on
    };
    for (const auto& [title, words] : cases) EXPECT_EQ(Parser::unresolved(title), words) << title;
}

TEST(Parser, ParsesOnManyThreadsAtOnce) {
    const Parser shared = parser();
    const char* sentences[] = {"call the dentist at 9", "pay rent due:fri@5pm", "in 20 minutes check oven",
                               "buy milk on the 5th",   "tonight at 9:30 read", "next monday gym"};
    std::vector<ParseResult> expected;
    for (const char* sentence : sentences) expected.push_back(shared.parse(sentence, wednesday()));

    std::atomic<int> mismatches = 0;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 8; ++t) {
            threads.emplace_back([&, t] {
                for (int round = 0; round < 25; ++round) {
                    // Each thread also adds patterns of its own to the shared cache.
                    Work{" x "}.take("x" + std::to_string(t) + "-" + std::to_string(round));
                    for (size_t i = 0; i < std::size(sentences); ++i)
                        mismatches += shared.parse(sentences[i], wednesday()) != expected[i];
                }
            });
        }
    }
    EXPECT_EQ(mismatches, 0);
}

TEST(Work, TakesTheFirstMatchAndLeavesABlank) {
    Work work{" call bob at 5 or at 6 "};
    EXPECT_EQ(work.take(R"(\bAT (\d)(x)?)"), (Words{"at 5", "5", ""}));
    // A pattern that does not compile counts as no match.
    EXPECT_EQ(work.take(R"((unclosed)"), std::nullopt);
    EXPECT_EQ(work.text, " call bob   or at 6 ");
}
