#include "VeskCLI/Add.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

TEST(Add, VerbsAreTheTenCommandWords) {
    EXPECT_EQ(Add::verbs().size(), 10u);
    EXPECT_FALSE(Add::verbs().contains("add"));
    EXPECT_FALSE(Add::verbs().contains("help"));
}

TEST(Add, JoinsWithSingleSpacesAndChangesNothingElse) {
    EXPECT_EQ(Add::joined({}), "");
    EXPECT_EQ(Add::joined({" call", "", "mom "}), " call  mom ");
}

TEST(Add, FirstWordRule) {
    const std::string blank = "Say what to remind you about.";
    auto putAfter = [](const std::string& word) {
        return "Put options after the command, as in `vesk " + word + " --json`. To save a reminder that starts with “" +
               word + "”, use `vesk add`.";
    };
    struct Case {
        Words words;
        Words arguments;
        std::optional<std::string> refusal;
    } cases[] = {
        {{}, {}, blank},
        {{" ", "\t"}, {" ", "\t"}, blank},
        {{"\n"}, {"\n"}, std::nullopt},  // a line feed is not a blank
        {{"now"}, {"--json", "now"}, putAfter("now")},
        {{"Now"}, {"Now"}, putAfter("now")},
        {{"PARSE", "x"}, {"PARSE", "x"}, putAfter("parse")},
        {{"now"}, {"add", "now"}, std::nullopt},
        {{"now"}, {"--json", "add", "now"}, std::nullopt},
        {{"ADD", "now"}, {"ADD", "now"}, std::nullopt},
        {{"add", "buy", "milk"}, {"--dry-run", "add", "buy", "milk"}, std::nullopt},
        {{"now is fine"}, {"now is fine"}, std::nullopt},
        {{"--", "now"}, {"--", "now"}, std::nullopt},
        {{"help", "me"}, {"--json", "help", "me"}, std::nullopt},
        {{"", "done", "x"}, {"", "done", "x"}, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(Add::refusal(c.words, c.arguments), c.refusal) << Add::joined(c.arguments);
}

}  // namespace
