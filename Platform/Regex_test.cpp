#include "Platform/Regex.h"

#include <gtest/gtest.h>

namespace {

TEST(Regex, MatchesAsTheGrammarNeeds) {
    auto take = Regex::compile(R"(\b(?:at |@)?(\d{1,2})(?::(\d{2}))?\s*(am|pm))", Regex::caseInsensitive);
    ASSERT_TRUE(take);
    std::string text = " call Mum AT 9PM please ";
    auto groups = take->takeFirst(text, " ");
    ASSERT_TRUE(groups);
    EXPECT_EQ(*groups, (std::vector<std::string>{"AT 9PM", "9", "", "PM"})) << "a group that took no part is empty";
    EXPECT_EQ(text, " call Mum   please ");

    // Ordered alternation: the first alternative that leads to a match wins.
    EXPECT_EQ((*Regex::compile("a|ab")->firstMatch("ab"))[0], "a");
    // Look-behind.
    auto token = Regex::compile(R"((?<!\S)(due):(\S+))", Regex::caseInsensitive);
    EXPECT_FALSE(token->firstMatch("overdue:friday"));
    EXPECT_EQ((*token->firstMatch("x DUE:fri"))[2], "fri");
    // Positions are counted in UTF-16 units of text with characters outside the BMP.
    std::string emoji = "😀 at 5 😀";
    EXPECT_EQ(*Regex::compile(R"(\bat (\d))")->takeFirst(emoji, " "), (std::vector<std::string>{"at 5", "5"}));
    EXPECT_EQ(emoji, "😀   😀");
}

TEST(Regex, WholeMatchesReplacementAndRefusals) {
    auto duration = Regex::compile(R"((?:in\s+)?(\d+)\s*(m|h))");
    EXPECT_TRUE(duration->wholeMatch("in 15m"));
    EXPECT_FALSE(duration->wholeMatch("in 15m!"));
    EXPECT_FALSE(duration->wholeMatch("IN 15M")) << "case-sensitive unless asked";
    EXPECT_EQ(Regex::compile(R"(\s+)")->replaceAll(" a \t b  ", "$1\\"), "$1\\a$1\\b$1\\");
    EXPECT_EQ(Regex::compile(R"(\d+)")->allMatches("1 and 22, 333"), (std::vector<std::string>{"1", "22", "333"}));
    EXPECT_FALSE(Regex::compile("(unclosed"));
}

}  // namespace
