// Failures of the command line itself: usage errors on standard error with status 64, and
// the refusals of `vesk` with status 1, none of which sends the app a thing. The framework's
// messages are checked in ArgumentParser/Parser_test.cpp and Exit_test.cpp, the refusals of
// first words in VeskCLI/Add_test.cpp.
#include <gtest/gtest.h>

#include "StandInHarness.h"

namespace {

TEST(Usage, ErrorsAndRefusalsSendNothing) {
    const std::string either = "Error: Give either --at \"an address or place\" or --here.\n";
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
        // A validation error of a command shows the root's usage.
        {{"snooze", "3"},
         64,
         "Error: Say until when, like 1h or tomorrow.\n"
         "Usage: vesk <subcommand>\n  See 'vesk --help' for more information.\n"},
        {{}, 1, "Error: Say what to remind you about.\n"},
        {{"--json", "now"},
         1,
         "Error: Put options after the command, as in `vesk now --json`. To save a reminder that starts with “now”, "
         "use `vesk add`.\n"},
        // Neither or both; an empty address is one.
        {{"places", "add", "home"}, 1, either},
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
