#include "ArgumentParser/Help.h"

#include <gtest/gtest.h>

#include "ArgumentParser/TestTree.h"
#include "ArgumentParser/Wrap.h"

namespace ArgumentParser {
namespace {

using Testing::TestTree;

TEST(Wrap, BreaksAtBlanksBeforeTheWidth) {
    const std::tuple<std::string, int, int, std::string> cases[] = {
        {"one two three", 80, 0, "one two three"},
        {"one two three", 8, 0, "one two\nthree"},
        {"one two three", 7, 0, "one\ntwo\nthree"},
        {"one two three", 13, 4, "    one two\n    three"},
        {"a\n\nb", 80, 2, "  a\n\n  b"},
        {"averyveryverylongword and more", 10, 0, "averyveryverylongword\nand more"},
        {"", 80, 26, ""},
        {"tiny screen", 20, 26, std::string(26, ' ') + "tiny\n" + std::string(26, ' ') + "screen"},
    };
    for (const auto& [text, width, indent, expected] : cases) EXPECT_EQ(wrapped(text, width, indent), expected) << text;
    EXPECT_EQ(hangingIndent("a\nb\n\nc", 3), "a\n   b\n\n   c");
}

TEST(Help, UsageLines) {
    TestTree tree;
    EXPECT_EQ(usageLine({&tree.root, &tree.say}), "tool say [--loud] [<words> ...]");
    EXPECT_EQ(usageLine({&tree.root, &tree.paint}), "tool paint --red --blue");  // a required group: no brackets
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

TEST(Help, WideLabelEndsItsLine) {
    Command command;
    command.typeName = "Wide";
    Input wide = option("aVeryLongOptionName", "Goes below.");
    Input edge = flag("exactlyTwentyTwo", "Fits.");         // "  --exactly-twenty-two" is 24 columns
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

}  // namespace
}  // namespace ArgumentParser
