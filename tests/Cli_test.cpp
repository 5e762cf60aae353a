// The refusals of the command line itself: nothing is sent, status 1 (or 64 for usage).
#include <gtest/gtest.h>

#include "Process.h"

namespace {

std::string putOptionsAfter(const std::string& word) {
    return "Error: Put options after the command, as in `vesk " + word + " --json`. To save a reminder that starts with “" +
           word + "”, use `vesk add`.\n";
}

struct Refusal {
    std::vector<std::string> arguments;
    std::string error;
};

void expectRefused(const Refusal& refusal, int status = 1) {
    std::string shown;
    for (const auto& argument : refusal.arguments) shown += "[" + argument + "]";
    auto result = runVesk(refusal.arguments);
    EXPECT_EQ(result.status, status) << shown;
    EXPECT_EQ(result.out, "") << shown;
    EXPECT_EQ(result.err, refusal.error) << shown;
}

TEST(Cli, BlankSentences) {
    const std::string blank = "Error: Say what to remind you about.\n";
    for (const auto& arguments : std::vector<std::vector<std::string>>{{}, {""}, {" "}, {" ", "\t"}, {"add"}, {"--dry-run"},
                                                                        {"add", "--json", "  "}})
        expectRefused({arguments, blank});
}

TEST(Cli, CommandWordsReachedByTheDefaultRoute) {
    for (const char* verb : {"now", "later", "done", "snooze", "delete", "lists", "places", "settings", "doctor", "parse"})
        expectRefused({{"--json", verb}, putOptionsAfter(verb)});
    expectRefused({{"Now"}, putOptionsAfter("now")});
    expectRefused({{"DOCTOR", "please"}, putOptionsAfter("doctor")});
    expectRefused({{"--dry-run", "Later", "today"}, putOptionsAfter("later")});
    expectRefused({{"--json", "parse", "call", "mom"}, putOptionsAfter("parse")});
}

TEST(Cli, PlacesAddNeedsExactlyOneWhere) {
    const std::string either = "Error: Give either --at \"an address or place\" or --here.\n";
    expectRefused({{"places", "add", "home"}, either});
    expectRefused({{"places", "add", "home", "--at", "1 Main St", "--here"}, either});
    expectRefused({{"places", "add", "home", "--at=", "--here", "--json"}, either});
}

TEST(Cli, SnoozeWithoutUntilIsAUsageError) {
    auto result = runVesk({"snooze", "3"});
    EXPECT_EQ(result.status, 64);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("Error: Say until when, like 1h or tomorrow.\n")) << result.err;
    EXPECT_NE(result.err.find("Usage: vesk"), std::string::npos) << result.err;
}

TEST(Cli, SettingsWithoutSetRefusesExtraWords) {
    auto result = runVesk({"settings", "repeat", "30"});
    EXPECT_EQ(result.status, 64);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("Error: ")) << result.err;
}

TEST(Cli, Version) {
    auto result = runVesk({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "0.2.0\n");
}

}  // namespace
