#include "ArgumentParser/Split.h"

#include <gtest/gtest.h>

namespace ArgumentParser {
namespace {

// Each element as "value@0", "terminator@1", "--name@2", "-n@3.1", "--name=x@0".
std::string described(const SplitArguments& split) {
    std::string text;
    for (const auto& e : split.elements) {
        if (!text.empty()) text += " ";
        switch (e.kind) {
            case Element::Kind::value: text += "value"; break;
            case Element::Kind::terminator: text += "terminator"; break;
            case Element::Kind::option: text += e.name.synopsis() + (e.attached ? "=" + *e.attached : ""); break;
        }
        text += "@" + std::to_string(e.position);
        if (e.part) text += "." + std::to_string(e.part);
    }
    return text;
}

TEST(Split, ClassesEachArgument) {
    struct Case { std::vector<std::string> arguments; std::string expected; };
    const std::vector<Case> cases{
        {{"word"}, "value@0"}, {{""}, "value@0"}, {{"-"}, "value@0"}, {{"--"}, "terminator@0"},
        {{"a", "--", "--b", "---", "-c"}, "value@0 terminator@1 value@2 value@3 value@4"},
        {{"--name"}, "--name@0"}, {{"--name=x=y"}, "--name=x=y@0"}, {{"--name="}, "--name=@0"},
        {{"-n"}, "-n@0"}, {{"-n=4"}, "-n=4@0"}, {{"-abc=1"}, "-abc=1@0"}, {{"-é"}, "-é@0"},
        {{"-abc"}, "-abc@0 -a@0.1 -b@0.2 -c@0.3"},
        {{"x", "-ab", "y"}, "value@0 -ab@1 -a@1.1 -b@1.2 value@2"},
    };
    for (const auto& c : cases) EXPECT_EQ(described(split(c.arguments)), c.expected) << c.arguments.front();
}

TEST(Split, RefusesThreeDashesAndAnEmptySingleDashName) {
    for (std::string bad : {"---", "---x", "----", "-=x", "-="}) {
        try {
            split({"ok", bad});
            ADD_FAILURE() << bad;
        } catch (const InvalidOption& invalid) {
            EXPECT_EQ(invalid.argument, bad);
        }
    }
}

TEST(Split, UsingALetterOfAClusterDropsTheWholeReading) {
    auto arguments = split({"-ab", "c"});
    Element b = arguments.elements[2];
    arguments.remove(b);
    EXPECT_EQ(described(arguments), "-a@0.1 value@1");
    EXPECT_EQ(arguments.positionCount(), 2u);
}

}  // namespace
}  // namespace ArgumentParser
