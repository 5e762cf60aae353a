#include "ArgumentParser/Help.h"

#include <gtest/gtest.h>

#include "ArgumentParser/TestTree.h"
#include "ArgumentParser/Wrap.h"

namespace ArgumentParser {
namespace {

using Testing::TestTree;

TEST(Wrap, BreaksAtBlanksBeforeTheWidth) {
    struct Case {
        std::string text;
        int width, indent;
        std::string expected;
    };
    const std::vector<Case> cases{
        {"one two three", 80, 0, "one two three"},
        {"one two three", 8, 0, "one two\nthree"},
        {"one two three", 7, 0, "one\ntwo\nthree"},
        {"one two three", 13, 4, "    one two\n    three"},
        {"a\n\nb", 80, 2, "  a\n\n  b"},
        {"averyveryverylongword and more", 10, 0, "averyveryverylongword\nand more"},
        {"", 80, 26, ""},
        {"tiny screen", 20, 26, std::string(26, ' ') + "tiny\n" + std::string(26, ' ') + "screen"},
    };
    for (const auto& c : cases) EXPECT_EQ(wrapped(c.text, c.width, c.indent), c.expected) << c.text;
}

TEST(Wrap, HangingIndentSkipsTheFirstAndEmptyLines) {
    EXPECT_EQ(hangingIndent("a\nb\n\nc", 3), "a\n   b\n\n   c");
}

TEST(Help, UsageLines) {
    TestTree tree;
    const std::vector<std::pair<CommandPath, std::string>> cases{
        {{&tree.root}, "tool <subcommand>"},
        {{&tree.root, &tree.say}, "tool say [--loud] [<words> ...]"},
        {{&tree.root, &tree.count}, "tool count [--verbose] [--times <times>] [--ratio <ratio>] <target>"},
        {{&tree.root, &tree.copy}, "tool copy <source> <destination>"},
        {{&tree.root, &tree.paint}, "tool paint --red --blue"},
        {{&tree.root, &tree.remote}, "tool remote <subcommand>"},
        {{&tree.root, &tree.remote, &tree.remoteAdd}, "tool remote add [--url <url>] <name>"},
        {{&tree.root, &helpCommand()}, "tool help [<subcommands> ...]"},
    };
    for (const auto& [path, expected] : cases) EXPECT_EQ(usageLine(path), expected);
}

TEST(Help, RootScreen) {
    TestTree tree;
    EXPECT_EQ(helpText({&tree.root}, 80),
              "OVERVIEW: A tool for tests.\n"
              "\n"
              "It does a few things.\n"
              "\n"
              "USAGE: tool <subcommand>\n"
              "\n"
              "OPTIONS:\n"
              "  --version               Show the version.\n"
              "  -h, --help              Show help information.\n"
              "\n"
              "SUBCOMMANDS:\n"
              "  say (default)           Say the words.\n"
              "  count                   Count things.\n"
              "  copy                    Copy a file.\n"
              "  paint                   Paint it.\n"
              "  remote                  Manage remotes.\n"
              "  admin                   Administration.\n"
              "  exec                    Run a command.\n"
              "  after                   Take what follows.\n"
              "  sleep                   Wait a while.\n"
              "  help                    Show subcommand help information.\n"
              "\n"
              "  See 'tool help <subcommand>' for detailed help.");
}

TEST(Help, LeafScreenWithDefaultsAndShortNames) {
    TestTree tree;
    EXPECT_EQ(helpText({&tree.root, &tree.count}, 80),
              "OVERVIEW: Count things.\n"
              "\n"
              "USAGE: tool count [--verbose] [--times <times>] [--ratio <ratio>] <target>\n"
              "\n"
              "ARGUMENTS:\n"
              "  <target>                What to count.\n"
              "\n"
              "OPTIONS:\n"
              "  -v, --verbose           Tell more.\n"
              "  --times <times>         How often.\n"
              "  --ratio <ratio>         A ratio. (default: 0.5)\n"
              "  -h, --help              Show help information.\n");
}

TEST(Help, NestedGroupPointsAtHelpWithItsPath) {
    TestTree tree;
    std::string text = helpText({&tree.root, &tree.remote}, 80);
    EXPECT_NE(text.find("  show (default)          Show the remotes.\n  add                     Add a remote.\n"),
              std::string::npos);
    EXPECT_EQ(text.find("--version"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\n\n  See 'tool help remote <subcommand>' for detailed help.")) << text;
}

TEST(Help, WideLabelEndsItsLine) {
    Command command;
    command.typeName = "Wide";
    Input wide = option("aVeryLongOptionName", "Goes below.");
    Input edge = flag("exactlyTwentyTwo", "Fits.");  // "  --exactly-twenty-two" is 24 columns
    Input full = flag("exactlyTwentyFourAb", "Too wide.");  // 26 columns
    command.inputs = {wide, edge, full};
    command.configuration.helpNames = {};
    EXPECT_EQ(helpText({&command}, 80),
              "USAGE: wide [--a-very-long-option-name <a-very-long-option-name>] [--exactly-twenty-two] "
              "[--exactly-twenty-four-ab]\n"
              "\n"
              "OPTIONS:\n"
              "  --a-very-long-option-name <a-very-long-option-name>\n"
              "                          Goes below.\n"
              "  --exactly-twenty-two    Fits.\n"
              "  --exactly-twenty-four-ab\n"
              "                          Too wide.\n");
}

TEST(Help, NarrowScreenWrapsAndKeepsTheColumn) {
    TestTree tree;
    tree.count.inputs.back().help = "What to count, in as many words as it takes to wrap.";
    std::string text = helpText({&tree.root, &tree.count}, 40);
    EXPECT_NE(text.find("OVERVIEW: Count things.\n"), std::string::npos);
    // 14 columns are left for the text, and a line stays shorter than that.
    EXPECT_NE(text.find("  <target>                What to\n"
                        "                          count, in as\n"
                        "                          many words as\n"
                        "                          it takes to\n"
                        "                          wrap.\n"),
              std::string::npos)
        << text;
}

}  // namespace
}  // namespace ArgumentParser
