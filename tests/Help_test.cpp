// Help, the version and the tool-info dump as vesk prints them. Which arguments ask for which
// is checked in ArgumentParser/Parser_test.cpp, how a leaf command's screen is laid out in
// HelpText_test.cpp, how the dump describes each command in Dump_test.cpp.
#include <gtest/gtest.h>

#include "ArgumentParserToolInfo/ToolInfo.h"
#include "Platform/JsonDecoder.h"
#include "Platform/Version.h"
#include "Process.h"

namespace {

// At 70 columns: descriptions wrap in their column, the discussion stays as written.
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
    "  add (default)           Add a reminder in your own words. Tokens\n"
    "                          like due:fri nag:15m override the reading.\n"
    "  now                     Everything due now, in today's order.\n"
    "  later                   Everything coming up, in time order.\n"
    "  done                    Complete a reminder, by number, id, or\n"
    "                          title.\n"
    "  snooze                  Snooze a reminder: 15m, 2h, 1d, tonight,\n"
    "                          tomorrow, friday at 3pm.\n"
    "  delete                  Delete a reminder from Reminders.\n"
    "  lists                   Reminders lists, and which ones Vesk\n"
    "                          ignores.\n"
    "  places                  Named places for triggers and gates.\n"
    "  settings                The nag settings every device shares.\n"
    "  doctor                  Check permissions and settings.\n"
    "  parse                   Show how the grammar reads a sentence,\n"
    "                          offline, without saving.\n"
    "  help                    Show subcommand help information.\n"
    "\n"
    "  See 'vesk help <subcommand>' for detailed help.\n";

// What vesk prints on standard output for `arguments`, which must succeed.
std::string printed(const std::vector<std::string>& arguments, const Environment& environment = testEnvironment()) {
    auto result = runVesk(arguments, environment);
    EXPECT_EQ(result.status, 0) << testing::PrintToString(arguments);
    EXPECT_EQ(result.err, "") << testing::PrintToString(arguments);
    return result.out;
}

TEST(Help, ScreenVersionAndDump) {
    auto narrow = testEnvironment();
    narrow["COLUMNS"] = "70";
    EXPECT_EQ(printed({"--help"}, narrow), rootHelp);
    EXPECT_EQ(printed({"--version"}), veskVersion + std::string("\n"));
    // Words that name no command go to `add`, and help among them is the help of `add`.
    const std::string add = printed({"call", "mom", "-h"});
    EXPECT_TRUE(add.starts_with("OVERVIEW: Add a reminder in your own words.")) << add;
    // The dump starts at the command reached.
    auto dump = JsonDocument::parse(printed({"settings", "--experimental-dump-help"}));
    ASSERT_TRUE(dump);
    auto settings = ArgumentParserToolInfo::decodeToolInfo(JsonDecoder(*dump)).command;
    EXPECT_EQ(settings.commandName, "settings");
    EXPECT_EQ(settings.superCommands, std::vector<std::string>{"vesk"});
}

}  // namespace
