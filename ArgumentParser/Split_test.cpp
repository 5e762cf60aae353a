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
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"word", "", "-"}, "value@0 value@1 value@2"},
        {{"a", "--", "--b", "---", "-c"}, "value@0 terminator@1 value@2 value@3 value@4"},
        {{"--name", "--name=x=y", "--name="}, "--name@0 --name=x=y@1 --name=@2"},
        {{"-n", "-n=4", "-abc=1", "-é"}, "-n@0 -n=4@1 -abc=1@2 -é@3"},
        {{"x", "-abc", "y"}, "value@0 -abc@1 -a@1.1 -b@1.2 -c@1.3 value@2"},
    };
    for (const auto& [arguments, expected] : cases) EXPECT_EQ(described(split(arguments)), expected) << expected;
}

}  // namespace
}  // namespace ArgumentParser
