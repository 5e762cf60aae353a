// Failures of the command line itself, before anything is sent: usage errors on standard
// error with status 64, and the refusals of `vesk` with status 1. The framework's messages
// are checked in ArgumentParser/Parser_test.cpp and Exit_test.cpp.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

struct Failure {
    std::vector<std::string> arguments;
    std::string error;
};

void expectFailures(const std::vector<Failure>& failures, int status) {
    for (const auto& c : failures) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        auto result = runVesk(c.arguments);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, c.error);
    }
}

TEST(Usage, ErrorsEndWithStatus64) {
    expectFailures(
        {
            {{"done"},
             "Error: Missing expected argument '<reminder>'\n"
             "Help:  <reminder>  A number from `vesk now`, a full id, or words from the title.\n"
             "Usage: vesk done [--json] <reminder>\n"
             "  See 'vesk done --help' for more information.\n"},
            {{"places", "add", "home", "--radious", "50"},
             "Error: Unknown option '--radious'. Did you mean '--radius'?\n"
             "Usage: vesk places add [--json] [--at <at>] [--here] [--radius <radius>] <name>\n"
             "  See 'vesk places add --help' for more information.\n"},
            // A validation error of a command shows the root's usage.
            {{"snooze", "3"},
             "Error: Say until when, like 1h or tomorrow.\n"
             "Usage: vesk <subcommand>\n  See 'vesk --help' for more information.\n"},
        },
        64);
}

TEST(Usage, RefusalsEndWithStatus1) {
    const std::string either = "Error: Give either --at \"an address or place\" or --here.\n";
    expectFailures(
        {
            {{}, "Error: Say what to remind you about.\n"},
            {{"--json", "parse", "call", "mom"},
             "Error: Put options after the command, as in `vesk parse --json`. To save a reminder that starts with "
             "“parse”, use `vesk add`.\n"},
            {{"places", "add", "home"}, either},
            {{"places", "add", "home", "--at", "1 Main St", "--here"}, either},
            {{"places", "add", "home", "--at=", "--here", "--json"}, either},
        },
        1);
}

}  // namespace
