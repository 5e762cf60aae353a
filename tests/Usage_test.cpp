// Failures of the command line itself, before anything is sent: usage errors on standard
// error with status 64, and the refusals of `vesk` with status 1.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

struct Failure {
    std::vector<std::string> arguments;
    std::string error;
};

void expectFailures(const std::vector<Failure>& failures, int status) {
    for (const auto& c : failures) {
        std::string shown;
        for (const auto& argument : c.arguments) shown += "[" + argument + "]";
        auto result = runVesk(c.arguments);
        EXPECT_EQ(result.status, status) << shown;
        EXPECT_EQ(result.out, "") << shown;
        EXPECT_EQ(result.err, c.error) << shown;
    }
}

std::string usageOf(const std::string& path, const std::string& usage) {
    return "Usage: " + usage + "\n  See '" + path + " --help' for more information.\n";
}

TEST(Usage, ErrorsEndWithStatus64) {
    const std::string done = usageOf("vesk done", "vesk done [--json] <reminder>");
    const std::string later = usageOf("vesk later", "vesk later [--json]");
    const std::string placesAdd =
        usageOf("vesk places add", "vesk places add [--json] [--at <at>] [--here] [--radius <radius>] <name>");
    const std::string root = usageOf("vesk", "vesk <subcommand>");
    const std::string missingAt = "Error: Missing value for '--at <at>'\n" + placesAdd;
    expectFailures(
        {
            {{"done"}, "Error: Missing expected argument '<reminder>'\n"
                       "Help:  <reminder>  A number from `vesk now`, a full id, or words from the title.\n" + done},
            {{"places", "add", "--here"}, "Error: Missing expected argument '<name>'\n"
                                          "Help:  <name>  The name reminders use, like home or office.\n" + placesAdd},
            {{"settings", "set", "repeat"},
             "Error: Missing expected argument '<value>'\nHelp:  <value>  The new value.\n" +
                 usageOf("vesk settings set", "vesk settings set [--json] <key> <value>")},
            {{"later", "--foo"}, "Error: Unknown option '--foo'. Did you mean '--json'?\n" + later},
            {{"later", "--everything"}, "Error: Unknown option '--everything'\n" + later},
            {{"later", "-x"}, "Error: Unknown option '-x'\n" + later},
            {{"later", "-json"}, "Error: Unknown option '-json'. Did you mean '--json'?\n" + later},
            {{"places", "add", "home", "--radious", "50"},
             "Error: Unknown option '--radious'. Did you mean '--radius'?\n" + placesAdd},
            // `places` falls to `list`, which knows no `--at`.
            {{"places", "--at", "x"},
             "Error: Unknown option '--at'\n" + usageOf("vesk places list", "vesk places list [--json]")},
            {{"help", "--everything"}, "Error: Unknown option '--everything'\nUsage: vesk help [<subcommands> ...]\n"},
            {{"later", "soon"}, "Error: Unexpected argument 'soon'\n" + later},
            {{"later", "soon", "please"}, "Error: 2 unexpected arguments: 'soon', 'please'\n" + later},
            {{"later", "--", "--json"}, "Error: Unexpected argument '--json'\n" + later},
            // `settings` falls to `show`, which takes no words.
            {{"settings", "repeat", "30"},
             "Error: 2 unexpected arguments: 'repeat', '30'\n" +
                 usageOf("vesk settings show", "vesk settings show [--json]")},
            {{"places", "add", "home", "--at"}, missingAt},
            {{"places", "add", "home", "--at", "--here"}, missingAt},
            {{"places", "add", "--at", "--", "home"}, missingAt},
            {{"places", "add", "home", "--radius", "far"},
             "Error: The value 'far' is invalid for '--radius <radius>'\n" + placesAdd},
            {{"later", "--json=yes"},
             "Error: The option '--json' does not take any value, but 'yes' was specified.\n" + later},
            {{"---"}, "Error: Invalid option: ---\n" + root},
            {{"call", "mom", "-=x"}, "Error: Invalid option: -=x\n" + root},
            // A validation error of a command shows the root's usage.
            {{"snooze", "3"}, "Error: Say until when, like 1h or tomorrow.\n" + root},
        },
        64);
}

TEST(Usage, RefusalsOfTheFirstWordEndWithStatus1) {
    const std::string blank = "Error: Say what to remind you about.\n";
    const std::string either = "Error: Give either --at \"an address or place\" or --here.\n";
    auto putAfter = [](const std::string& word) {
        return "Error: Put options after the command, as in `vesk " + word +
               " --json`. To save a reminder that starts with “" + word + "”, use `vesk add`.\n";
    };
    std::vector<Failure> refusals{
        {{}, blank},
        {{""}, blank},
        {{" ", "\t"}, blank},
        {{"add"}, blank},
        {{"--dry-run"}, blank},
        {{"add", "--json", "  "}, blank},
        {{"Now"}, putAfter("now")},
        {{"DOCTOR", "please"}, putAfter("doctor")},
        {{"--dry-run", "Later", "today"}, putAfter("later")},
        {{"--json", "parse", "call", "mom"}, putAfter("parse")},
        {{"places", "add", "home"}, either},
        {{"places", "add", "home", "--at", "1 Main St", "--here"}, either},
        {{"places", "add", "home", "--at=", "--here", "--json"}, either},
    };
    for (std::string verb :
         {"now", "later", "done", "snooze", "delete", "lists", "places", "settings", "doctor", "parse"})
        refusals.push_back({{"--json", verb}, putAfter(verb)});
    expectFailures(refusals, 1);
}

}  // namespace
