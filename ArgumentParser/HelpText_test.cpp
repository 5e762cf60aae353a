#include "ArgumentParser/Help.h"

#include <gtest/gtest.h>

#include "ArgumentParser/TestTree.h"
#include "ArgumentParser/Wrap.h"

namespace ArgumentParser {
namespace {

using Testing::TestTree;

TEST(Wrap, BreaksAtBlanksBeforeTheWidth) {
    const std::tuple<std::string, int, int, std::string> cases[] = {
        {"one two three", 8, 0, "one two\nthree"},
        {"one two three", 7, 0, "one\ntwo\nthree"},
        {"one two three", 13, 4, "    one two\n    three"},
        {"a\n\nb", 80, 2, "  a\n\n  b"},
        {"averyveryverylongword and more", 10, 0, "averyveryverylongword\nand more"},
        {"tiny screen", 20, 26, std::string(26, ' ') + "tiny\n" + std::string(26, ' ') + "screen"},
    };
    for (const auto& [text, width, indent, expected] : cases) EXPECT_EQ(wrapped(text, width, indent), expected) << text;
    EXPECT_EQ(hangingIndent("a\nb\n\nc", 3), "a\n   b\n\n   c");
}

TEST(Help, UsageLineOfARequiredGroupHasNoBrackets) {
    TestTree tree;
    EXPECT_EQ(usageLine({&tree.root, &tree.paint}), "tool paint --red --blue");
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

// A label of 25 columns leaves one blank before the description; a wider one ends its line.
TEST(Help, WideLabelEndsItsLine) {
    Command command;
    command.typeName = "Wide";
    command.inputs = {flag("exactlyTwentyFiveA", "Fits."), flag("exactlyTwentySixAbc", "Too wide.")};
    command.configuration.helpNames = {};
    EXPECT_EQ(helpText({&command}, 80),
              "USAGE: wide [--exactly-twenty-five-a] [--exactly-twenty-six-abc]\n"
              "\n"
              "OPTIONS:\n"
              "  --exactly-twenty-five-a Fits.\n"
              "  --exactly-twenty-six-abc\n"
              "                          Too wide.\n");
}

}  // namespace
}  // namespace ArgumentParser
