#include "VeskCLI/Add.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

TEST(Add, JoinsWithSingleSpacesAndChangesNothingElse) {
    EXPECT_EQ(Add::joined({}), "");
    EXPECT_EQ(Add::joined({" call", "", "mom "}), " call  mom ");
}

// Beside the refusals the command line shows end to end.
TEST(Add, FirstWordRule) {
    auto putAfter = [](const std::string& word) {
        return "Put options after the command, as in `vesk " + word + " --json`. To save a reminder that starts with “" +
               word + "”, use `vesk add`.";
    };
    struct Case { Words words, arguments; std::optional<std::string> refusal; } cases[] = {
        {{}, {}, "Say what to remind you about."},
        {{"\n"}, {"\n"}, std::nullopt},  // a line feed is not a blank
        {{"PARSE", "x"}, {"PARSE", "x"}, putAfter("parse")},
        {{"now"}, {"--json", "add", "now"}, std::nullopt},
        {{"help", "me"}, {"--json", "help", "me"}, std::nullopt},
        {{"", "done", "x"}, {"", "done", "x"}, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(Add::refusal(c.words, c.arguments), c.refusal) << Add::joined(c.arguments);
}

}  // namespace
