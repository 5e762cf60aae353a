// Failures of the command line itself: usage errors on standard error with status 64, and
// the refusals of `vesk` with status 1, none of which sends the app a thing. The framework's
// messages are checked in ArgumentParser/Parser_test.cpp and Exit_test.cpp, the refusals of
// first words in VeskCLI/Add_test.cpp.
#include <gtest/gtest.h>

#include "StandInHarness.h"

namespace {

TEST(Usage, ErrorsAndRefusalsSendNothing) {
    const std::string nothing = "Error: Say what to remind you about.\n";
    const std::string either = "Error: Give either --at \"an address or place\" or --here.\n";
    auto putAfter = [](const std::string& word) {
        return "Error: Put options after the command, as in `vesk " + word +
               " --json`. To save a reminder that starts with “" + word + "”, use `vesk add`.\n";
    };
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string error;
    } cases[] = {
        {{"done"},
         64,
         "Error: Missing expected argument '<reminder>'\n"
         "Help:  <reminder>  A number from `vesk now`, a full id, or words from the title.\n"
         "Usage: vesk done [--json] <reminder>\n"
         "  See 'vesk done --help' for more information.\n"},
        {{"places", "add", "home", "--radious", "50"},
         64,
         "Error: Unknown option '--radious'. Did you mean '--radius'?\n"
         "Usage: vesk places add [--json] [--at <at>] [--here] [--radius <radius>] <name>\n"
         "  See 'vesk places add --help' for more information.\n"},
        // A validation error of a command shows the root's usage.
        {{"snooze", "3"},
         64,
         "Error: Say until when, like 1h or tomorrow.\n"
         "Usage: vesk <subcommand>\n  See 'vesk --help' for more information.\n"},
        {{}, 1, nothing},
        {{" "}, 1, nothing},
        {{"--json", "parse", "call", "mom"}, 1, putAfter("parse")},
        {{"--json", "now"}, 1, putAfter("now")},
        {{"Now"}, 1, putAfter("now")},
        {{"places", "add", "home"}, 1, either},
        {{"places", "add", "home", "--at", "1 Main St", "--here"}, 1, either},
        {{"places", "add", "home", "--at=", "--here", "--json"}, 1, either},
    };
    StandInHarness app;
    app.start(StandInHarness::line({}));
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        auto result = app.vesk(c.arguments);
        EXPECT_EQ(result.status, c.status);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, c.error);
    }
    EXPECT_TRUE(app.requests().empty());
}

}  // namespace
