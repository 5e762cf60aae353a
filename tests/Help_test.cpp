// Help screens and the version as vesk prints them. Which arguments ask for which screen is
// checked in ArgumentParser/Parser_test.cpp, how a command's screen is laid out in HelpText_test.cpp.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

const std::string rootHelp =
    "OVERVIEW: Ride me like a vesk.\n"
    "\n"
    "Add is the default: `vesk call the dentist at 9, nag me every 15 minutes`.\n"
    "Every command takes --json (schema 1). Exit status: 0 ok, 1 invalid, 2 not found, 3 permission, 4 partial "
    "write, 5 Vesk app unreachable.\n"
    "\n"
    "USAGE: vesk <subcommand>\n"
    "\n"
    "OPTIONS:\n"
    "  --version               Show the version.\n"
    "  -h, --help              Show help information.\n"
    "\n"
    "SUBCOMMANDS:\n"
    "  add (default)           Add a reminder in your own words. Tokens like due:fri\n"
    "                          nag:15m override the reading.\n"
    "  now                     Everything due now, in today's order.\n"
    "  later                   Everything coming up, in time order.\n"
    "  done                    Complete a reminder, by number, id, or title.\n"
    "  snooze                  Snooze a reminder: 15m, 2h, 1d, tonight, tomorrow,\n"
    "                          friday at 3pm.\n"
    "  delete                  Delete a reminder from Reminders.\n"
    "  lists                   Reminders lists, and which ones Vesk ignores.\n"
    "  places                  Named places for triggers and gates.\n"
    "  settings                The nag settings every device shares.\n"
    "  doctor                  Check permissions and settings.\n"
    "  parse                   Show how the grammar reads a sentence, offline,\n"
    "                          without saving.\n"
    "  help                    Show subcommand help information.\n"
    "\n"
    "  See 'vesk help <subcommand>' for detailed help.\n";

// At 50 columns: descriptions wrap in their column, and a line too long to break stays whole.
const std::string narrowPlacesHelp =
    "OVERVIEW: Named places for triggers and gates.\n"
    "\n"
    "USAGE: vesk places <subcommand>\n"
    "\n"
    "OPTIONS:\n"
    "  -h, --help              Show help information.\n"
    "\n"
    "SUBCOMMANDS:\n"
    "  list (default)          Saved places, and how\n"
    "                          many reminders wait on\n"
    "                          each.\n"
    "  add                     Save a place from a\n"
    "                          search, or where this\n"
    "                          Mac is. A place with\n"
    "                          the same name is\n"
    "                          replaced.\n"
    "  remove                  Forget a place.\n"
    "                          Reminders that name it\n"
    "                          wait until it exists\n"
    "                          again.\n"
    "\n"
    "  See 'vesk help places <subcommand>' for detailed help.\n";

TEST(Help, ScreensAndVersion) {
    const struct {
        std::vector<std::string> arguments;
        std::string out, columns = "80";
    } cases[] = {
        {{"--help"}, rootHelp},
        {{"places", "--help"}, narrowPlacesHelp, "50"},
        {{"--version"}, "0.2.0\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        auto environment = testEnvironment();
        environment["COLUMNS"] = c.columns;
        auto result = runVesk(c.arguments, environment);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, c.out);
    }
    // Words that name no command go to `add`, and help among them is the help of `add`.
    auto add = runVesk({"call", "mom", "-h"});
    EXPECT_EQ(add.status, 0);
    EXPECT_TRUE(add.out.starts_with("OVERVIEW: Add a reminder in your own words.")) << add.out;
}

}  // namespace
