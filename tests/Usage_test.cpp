// Usage errors of the command line: the full error text on standard error, status 64.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

struct UsageError {
    std::vector<std::string> arguments;
    std::string error;
};

std::string usageOf(const std::string& path, const std::string& usage) {
    return "Usage: " + usage + "\n  See '" + path + " --help' for more information.\n";
}

const std::string doneUsage = usageOf("vesk done", "vesk done [--json] <reminder>");
const std::string laterUsage = usageOf("vesk later", "vesk later [--json]");
const std::string placesAddUsage =
    usageOf("vesk places add", "vesk places add [--json] [--at <at>] [--here] [--radius <radius>] <name>");
const std::string rootUsage = usageOf("vesk", "vesk <subcommand>");
const std::string reminderHelp = "Help:  <reminder>  A number from `vesk now`, a full id, or words from the title.\n";

void expectUsageError(const UsageError& expected) {
    std::string shown;
    for (const auto& argument : expected.arguments) shown += "[" + argument + "]";
    auto result = runVesk(expected.arguments);
    EXPECT_EQ(result.status, 64) << shown;
    EXPECT_EQ(result.out, "") << shown;
    EXPECT_EQ(result.err, expected.error) << shown;
}

TEST(Usage, MissingArguments) {
    for (const UsageError& c : std::vector<UsageError>{
             {{"done"}, "Error: Missing expected argument '<reminder>'\n" + reminderHelp + doneUsage},
             {{"done", "--json"}, "Error: Missing expected argument '<reminder>'\n" + reminderHelp + doneUsage},
             {{"delete"}, "Error: Missing expected argument '<reminder>'\n" + reminderHelp +
                              usageOf("vesk delete", "vesk delete [--json] <reminder>")},
             {{"snooze"}, "Error: Missing expected argument '<reminder>'\n" + reminderHelp +
                              usageOf("vesk snooze", "vesk snooze [--json] <reminder> [<until> ...]")},
             {{"places", "remove"}, "Error: Missing expected argument '<name>'\n"
                                    "Help:  <name>  The place's name.\n" +
                                        usageOf("vesk places remove", "vesk places remove [--json] <name>")},
             {{"places", "add", "--here"}, "Error: Missing expected argument '<name>'\n"
                                           "Help:  <name>  The name reminders use, like home or office.\n" +
                                               placesAddUsage},
             {{"settings", "set", "repeat"}, "Error: Missing expected argument '<value>'\n"
                                             "Help:  <value>  The new value.\n" +
                                                 usageOf("vesk settings set", "vesk settings set [--json] <key> <value>")},
         })
        expectUsageError(c);
}

TEST(Usage, UnknownOptions) {
    for (const UsageError& c : std::vector<UsageError>{
             {{"later", "--foo"}, "Error: Unknown option '--foo'. Did you mean '--json'?\n" + laterUsage},
             {{"later", "--jsno"}, "Error: Unknown option '--jsno'. Did you mean '--json'?\n" + laterUsage},
             {{"later", "--everything"}, "Error: Unknown option '--everything'\n" + laterUsage},
             {{"later", "-x"}, "Error: Unknown option '-x'\n" + laterUsage},
             {{"later", "-json"}, "Error: Unknown option '-json'. Did you mean '--json'?\n" + laterUsage},
             {{"done", "3", "--all"}, "Error: Unknown option '--all'\n" + doneUsage},
             {{"places", "add", "home", "--radious", "50"},
              "Error: Unknown option '--radious'. Did you mean '--radius'?\n" + placesAddUsage},
             {{"places", "add", "home", "--hear"}, "Error: Unknown option '--hear'. Did you mean '--here'?\n" +
                                                       placesAddUsage},
             // `places` falls to `list`, which knows no `--at`.
             {{"places", "--at", "x"},
              "Error: Unknown option '--at'\n" + usageOf("vesk places list", "vesk places list [--json]")},
             {{"help", "--everything"}, "Error: Unknown option '--everything'\nUsage: vesk help [<subcommands> ...]\n"},
         })
        expectUsageError(c);
}

TEST(Usage, ExtraWords) {
    for (const UsageError& c : std::vector<UsageError>{
             {{"later", "soon"}, "Error: Unexpected argument 'soon'\n" + laterUsage},
             {{"later", "soon", "please"}, "Error: 2 unexpected arguments: 'soon', 'please'\n" + laterUsage},
             {{"later", "--", "--json"}, "Error: Unexpected argument '--json'\n" + laterUsage},
             {{"done", "3", "4"}, "Error: Unexpected argument '4'\n" + doneUsage},
             {{"settings", "repeat", "30"},
              "Error: 2 unexpected arguments: 'repeat', '30'\n" +
                  usageOf("vesk settings show", "vesk settings show [--json]")},
         })
        expectUsageError(c);
}

TEST(Usage, OptionValues) {
    const std::string missingAt = "Error: Missing value for '--at <at>'\n" + placesAddUsage;
    for (const UsageError& c : std::vector<UsageError>{
             {{"places", "add", "home", "--at"}, missingAt},
             {{"places", "add", "home", "--at", "--here"}, missingAt},
             {{"places", "add", "--at", "--", "home"}, missingAt},
             {{"places", "add", "home", "--radius"}, "Error: Missing value for '--radius <radius>'\n" + placesAddUsage},
             {{"places", "add", "home", "--radius", "far"},
              "Error: The value 'far' is invalid for '--radius <radius>'\n" + placesAddUsage},
             {{"places", "add", "home", "--radius=1,5"},
              "Error: The value '1,5' is invalid for '--radius <radius>'\n" + placesAddUsage},
             {{"later", "--json=yes"},
              "Error: The option '--json' does not take any value, but 'yes' was specified.\n" + laterUsage},
             {{"places", "add", "home", "--here=no"},
              "Error: The option '--here' does not take any value, but 'no' was specified.\n" + placesAddUsage},
         })
        expectUsageError(c);
}

TEST(Usage, InvalidOptions) {
    for (const UsageError& c : std::vector<UsageError>{
             {{"---"}, "Error: Invalid option: ---\n" + rootUsage},
             {{"later", "---json"}, "Error: Invalid option: ---json\n" + rootUsage},
             {{"call", "mom", "-=x"}, "Error: Invalid option: -=x\n" + rootUsage},
         })
        expectUsageError(c);
}

TEST(Usage, ValidationErrorShowsTheRootUsage) {
    expectUsageError({{"snooze", "3"}, "Error: Say until when, like 1h or tomorrow.\n" + rootUsage});
}

}  // namespace
