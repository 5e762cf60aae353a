#include "VeskCLI/Add.h"

#include <gtest/gtest.h>

#include "VeskCLI/Tree.h"

namespace {

using Words = std::vector<std::string>;

TEST(Add, JoinsWithSingleSpacesAndChangesNothingElse) {
    EXPECT_EQ(Add::joined({}), "");
    EXPECT_EQ(Add::joined({" call", "", "mom "}), " call  mom ");
}

// Each case: the words of the sentence, the process's arguments, and the refusal.
TEST(Add, FirstWordRule) {
    auto putAfter = [](const std::string& word) {
        return "Put options after the command, as in `vesk " + word +
               " --json`. To save a reminder that starts with “" + word + "”, use `vesk add`.";
    };
    const std::string nothing = "Say what to remind you about.";
    const std::tuple<Words, Words, std::optional<std::string>> cases[] = {
        {{}, {}, nothing},
        {{""}, {"add", "--json", ""}, nothing},
        {{"\n"}, {"\n"}, std::nullopt},  // a line feed is not a blank
        {{"PARSE", "x"}, {"PARSE", "x"}, putAfter("parse")},
        {{"Later", "x"}, {"--dry-run", "Later", "x"}, putAfter("later")},
        {{"now"}, {"--json", "add", "now"}, std::nullopt},
        {{"help", "me"}, {"--json", "help", "me"}, std::nullopt},
        {{"", "done", "x"}, {"", "done", "x"}, std::nullopt},
    };
    for (const auto& [words, arguments, refusal] : cases)
        EXPECT_EQ(Add::refusal(words, arguments), refusal) << Add::joined(arguments);
}

// The first words refused are the commands of the tree other than `add`; the built-in `help` is none.
TEST(Add, VerbsAreTheOtherCommands) {
    std::set<std::string> commands;
    for (const auto* command : veskRoot().subcommands) commands.insert(command->name());
    commands.erase("add");
    EXPECT_EQ(commands, Add::verbs());
}

}  // namespace
