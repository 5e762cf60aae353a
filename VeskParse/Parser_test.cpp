#include "VeskParse/Parser.h"

#include <thread>

#include <gtest/gtest.h>

#include "VeskParse/ParseTesting.h"

using namespace ParseTesting;

namespace {

struct SentenceCase {
    const char* sentence;
    const char* title;
    std::optional<DateComponents> due;
    Style style;
};

class Sentences : public testing::TestWithParam<SentenceCase> {};

TEST_P(Sentences, ReadTitleDueAndStyle) {
    const auto& c = GetParam();
    auto result = parser().parse(c.sentence, wednesday());
    EXPECT_EQ(result.capture.title, c.title);
    EXPECT_EQ(result.capture.due, c.due);
    EXPECT_EQ(result.capture.style, c.style);
}

INSTANTIATE_TEST_SUITE_P(
    Pipeline, Sentences,
    testing::Values(
        SentenceCase{"call the dentist at 9, nag me every 15 minutes", "call the dentist", at(2026, 11, 18, 21, 0),
                     Style::repeatUntilDone(900)},
        SentenceCase{"remind me to call mum tomorrow at 3", "call mum", at(2026, 11, 19, 15, 0), Style::repeatUntilDone()},
        SentenceCase{"buy milk", "buy milk", std::nullopt, Style::repeatUntilDone()},
        SentenceCase{"at 3", "", at(2026, 11, 18, 15, 0), Style::repeatUntilDone()},
        SentenceCase{"wake me at 6", "", at(2026, 11, 19, 6, 0), Style::alarm()},
        SentenceCase{"set an alarm for 7am", "", at(2026, 11, 19, 7, 0), Style::alarm()},
        SentenceCase{"meet at 5 minutes", "meet at 5 minutes", std::nullopt, Style::repeatUntilDone()},
        SentenceCase{"remind me about the report next week", "about the report next week", std::nullopt,
                     Style::repeatUntilDone()},
        SentenceCase{"style:once nag me", "", std::nullopt, Style::repeatUntilDone(900)},
        SentenceCase{"", "", std::nullopt, Style::repeatUntilDone()},
        SentenceCase{"   \n  ", "", std::nullopt, Style::repeatUntilDone()},
        // A phrase that a pass took leaves a blank, so its neighbours stay apart.
        SentenceCase{"pay\ttomorrow\nrent", "pay rent", onDay(2026, 11, 19), Style::repeatUntilDone()}));

TEST(Parser, RecurrenceWithoutDateOrTimeHasNoDueDate) {
    auto result = parser().parse("water plants every other day", wednesday());
    EXPECT_EQ(result.capture.title, "water plants");
    EXPECT_EQ(result.capture.due, std::nullopt);
    EXPECT_EQ(result.capture.recurrence, (Recurrence{Recurrence::Frequency::daily, 2, {}, false}));
}

TEST(Parser, UnresolvedWordsAskForTheModel) {
    auto vague = parser().parse("remind me about the report next week", wednesday());
    EXPECT_EQ(vague.unresolved, (std::vector<std::string>{"next", "week"}));
    EXPECT_TRUE(vague.needsModel());
    EXPECT_FALSE(vague.readByModel);

    auto minutes = parser().parse("meet at 5 minutes", wednesday());
    EXPECT_EQ(minutes.unresolved, (std::vector<std::string>{"5", "minutes"}));

    EXPECT_FALSE(parser().parse("buy milk", wednesday()).needsModel());
}

TEST(Parser, KeepsTheUsersCaseAndInvalidBytesDoNotBreakIt) {
    EXPECT_EQ(parser().parse("Call BOB Tomorrow", wednesday()).capture.title, "Call BOB");
    auto broken = parser().parse("call \xff\xfe bob tomorrow", wednesday());
    EXPECT_EQ(broken.capture.due, onDay(2026, 11, 19));
    EXPECT_EQ(broken.capture.title, "call \xEF\xBF\xBD\xEF\xBF\xBD bob");
}

// The clean-up of the remaining text, without any pass.
struct TitleCase {
    const char* text;
    const char* title;
};

class Titles : public testing::TestWithParam<TitleCase> {};

TEST_P(Titles, AreCleanedUp) {
    Work work{GetParam().text};
    Parser::State state;
    auto result = Parser::finish(work, state, resolver());
    EXPECT_EQ(result.capture.title, GetParam().title);
    EXPECT_EQ(result.capture.due, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Finish, Titles,
    testing::Values(TitleCase{" remind me to call mum ", "call mum"},
                    TitleCase{"  I need to   buy\t\tmilk  ", "buy milk"},
                    TitleCase{"i’ve got to go", "go"},
                    TitleCase{"I've got to go", "go"},
                    TitleCase{"don’t forget to water the plants", "water the plants"},
                    TitleCase{"dont forget to water the plants", "water the plants"},
                    TitleCase{"REMEMBER TO Call Ann", "Call Ann"},
                    TitleCase{". - and then pay rent", "pay rent"},
                    TitleCase{"pay rent , and then", "pay rent"},
                    TitleCase{"pay rent by", "pay rent"},
                    // A full stop goes only at the start.
                    TitleCase{"buy milk.", "buy milk."},
                    TitleCase{"look at", "look"},
                    // Fillers are whole words.
                    TitleCase{"atlas band", "atlas band"},
                    TitleCase{"tonic for", "tonic for"},
                    TitleCase{"to-do list", "do list"},
                    TitleCase{"and", ""},
                    TitleCase{"   ", ""},
                    TitleCase{"", ""}));

TEST(Finish, ExactMomentBeatsDayAndTime) {
    Work work{" "};
    Parser::State state;
    state.exact = at(2026, 11, 18, 10, 20);
    state.day = onDay(2026, 12, 1);
    state.time = TimeOfDay{9, 0};
    EXPECT_EQ(Parser::finish(work, state, resolver()).capture.due, at(2026, 11, 18, 10, 20));
}

TEST(Finish, WeeklyRecurrenceStartsOnItsFirstUsableDay) {
    Work work{" "};
    Parser::State state;
    state.capture.recurrence = Recurrence{Recurrence::Frequency::weekly, 1, {2, 5}, false};
    state.time = TimeOfDay{7, 0};
    state.clock = TimeOfDay{7, 0};
    // soonest does not apply to a recurrence: the morning hour stays.
    EXPECT_EQ(Parser::finish(work, state, resolver()).capture.due, at(2026, 11, 19, 7, 0));
}

struct UnresolvedCase {
    const char* title;
    std::vector<std::string> words;
};

class Unresolved : public testing::TestWithParam<UnresolvedCase> {};

TEST_P(Unresolved, FindsWordsThatLookLikeInstructions) {
    EXPECT_EQ(Parser::unresolved(GetParam().title), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Titles, Unresolved,
    testing::Values(UnresolvedCase{"buy milk", {}},
                    UnresolvedCase{"about the report next week", {"next", "week"}},
                    UnresolvedCase{"Call Around 9ish", {"Around", "9ish"}},
                    UnresolvedCase{"meet 3:30 or 10 o'clock", {"3:30", "10", "o'clock"}},
                    UnresolvedCase{"every every", {"every", "every"}},
                    // Three digits or more are no hour; words inside words do not count.
                    UnresolvedCase{"room 2026 of the nagger's bugle", {}}));

struct NumberCase {
    const char* text;
    std::optional<int64_t> value;
};

class Numbers : public testing::TestWithParam<NumberCase> {};

TEST_P(Numbers, AreDigitsOrWords) { EXPECT_EQ(Parser::number(GetParam().text), GetParam().value); }

INSTANTIATE_TEST_SUITE_P(
    Parser, Numbers,
    testing::Values(NumberCase{"5", 5}, NumberCase{"+5", 5}, NumberCase{"-3", -3}, NumberCase{"007", 7},
                    NumberCase{"One", 1}, NumberCase{"AN", 1}, NumberCase{"a", 1}, NumberCase{"other", 2},
                    NumberCase{"twelve", 12}, NumberCase{"9223372036854775807", INT64_MAX},
                    NumberCase{"-9223372036854775808", INT64_MIN}, NumberCase{"9223372036854775808", std::nullopt},
                    NumberCase{"99999999999999999999999999999999", std::nullopt}, NumberCase{"", std::nullopt},
                    NumberCase{"thirteen", std::nullopt}, NumberCase{" 5", std::nullopt},
                    NumberCase{"5th", std::nullopt}, NumberCase{"٣", std::nullopt}));

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
    auto match = work.take(R"(\bAT (\d)(x)?)");
    ASSERT_TRUE(match);
    EXPECT_EQ(*match, (std::vector<std::string>{"at 5", "5", ""}));
    EXPECT_EQ(work.text, " call bob   or at 6 ");

    EXPECT_EQ(work.take(R"(\bnever\b)"), std::nullopt);
    EXPECT_EQ(work.text, " call bob   or at 6 ");
    // A pattern that does not compile counts as no match.
    EXPECT_EQ(work.take(R"((unclosed)"), std::nullopt);
    EXPECT_EQ(work.text, " call bob   or at 6 ");
}

}  // namespace
