#include "ArgumentParser/Dump.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ArgumentParser/TestTree.h"

namespace ArgumentParser {
namespace {

using namespace ArgumentParserToolInfo;
using Testing::TestTree;

TEST(Dump, DescribesTheTreeFromTheCommandReached) {
    TestTree tree;
    auto info = toolInfo({&tree.root, &tree.remote});
    EXPECT_EQ(info.serializationVersion, 0);
    const auto& remote = info.command;
    EXPECT_EQ(remote.commandName, "remote");
    EXPECT_EQ(remote.superCommands, std::vector<std::string>{"tool"});
    EXPECT_EQ(remote.defaultSubcommand, "show");
    EXPECT_FALSE(remote.discussion.has_value());
    ASSERT_TRUE(remote.subcommands.has_value());
    ASSERT_EQ(remote.subcommands->size(), 2u);
    const auto& add = remote.subcommands->at(1);
    EXPECT_EQ(add.superCommands, (std::vector<std::string>{"tool", "remote"}));
    ASSERT_TRUE(add.arguments.has_value());
    ASSERT_EQ(add.arguments->size(), 3u);  // name, --url, and help
    const auto& name = add.arguments->at(0);
    EXPECT_EQ(name.kind, ArgumentInfoV0::KindV0::positional);
    EXPECT_FALSE(name.isOptional);
    EXPECT_FALSE(name.names.has_value());
    EXPECT_EQ(name.valueName, "name");
    const auto& url = add.arguments->at(1);
    EXPECT_EQ(url.kind, ArgumentInfoV0::KindV0::option);
    EXPECT_TRUE(url.isOptional);
    EXPECT_EQ(url.preferredName, (NameInfoV0{NameInfoV0::KindV0::longName, "url"}));
    const auto& help = add.arguments->at(2);
    EXPECT_EQ(help.names, (std::vector<NameInfoV0>{{NameInfoV0::KindV0::shortName, "h"},
                                                   {NameInfoV0::KindV0::longName, "help"}}));
}

TEST(Dump, RootListsHelpAndVersionAndTheHelpCommand) {
    TestTree tree;
    auto root = toolInfo({&tree.root}).command;
    EXPECT_FALSE(root.superCommands.has_value());
    ASSERT_TRUE(root.subcommands.has_value());
    EXPECT_EQ(root.subcommands->back().commandName, "help");
    ASSERT_TRUE(root.arguments.has_value());
    EXPECT_EQ(root.arguments->front().preferredName, (NameInfoV0{NameInfoV0::KindV0::longName, "version"}));
    const auto& say = root.subcommands->front();
    EXPECT_EQ(say.arguments->at(1).parsingStrategy, ArgumentInfoV0::ParsingStrategyV0::allUnrecognized);
    EXPECT_TRUE(say.arguments->at(1).isRepeating);
}

TEST(Dump, PrintedFormDecodesToTheSameRecords) {
    TestTree tree;
    auto info = toolInfo({&tree.root});
    auto json = JsonText::parse(dumpText({&tree.root}));
    ASSERT_TRUE(json.has_value());
    EXPECT_EQ(decodeToolInfo(JsonDecoder(*json)), info);
    EXPECT_EQ(decodeToolInfoHeader(JsonDecoder(*json)).serializationVersion, 0);
}

TEST(ToolInfo, EveryFieldRoundTrips) {
    ArgumentInfoV0 argument;
    argument.kind = ArgumentInfoV0::KindV0::option;
    argument.sectionTitle = "Extra";
    argument.parsingStrategy = ArgumentInfoV0::ParsingStrategyV0::upToNextOption;
    argument.names = std::vector<NameInfoV0>{{NameInfoV0::KindV0::longWithSingleDash, "x"}};
    argument.defaultValue = "3";
    argument.allValues = std::vector<std::string>{"1", "3"};
    argument.allValueDescriptions = std::map<std::string, std::string>{{"1", "one"}, {"3", "three"}};
    argument.abstract = "a";
    argument.discussion = "d";
    CommandInfoV0 command;
    command.commandName = "c";
    command.aliases = std::vector<std::string>{"k"};
    for (CompletionKindV0 kind : std::vector<CompletionKindV0>{
             {CompletionKindV0::List{{"a", "b"}}}, {CompletionKindV0::File{{"txt"}}}, {CompletionKindV0::Directory{}},
             {CompletionKindV0::ShellCommand{"ls"}}, {CompletionKindV0::Custom{}}, {CompletionKindV0::CustomAsync{}},
             {CompletionKindV0::CustomDeprecated{}}}) {
        argument.completionKind = kind;
        command.arguments = std::vector<ArgumentInfoV0>{argument};
        ToolInfoV0 info{0, command};
        EXPECT_EQ(decodeToolInfo(JsonDecoder(toJson(info))), info);
    }
    EXPECT_EQ(toJson(CompletionKindV0{CompletionKindV0::ShellCommand{"ls"}}).dump(),
              R"({"shellCommand":{"command":"ls"}})");
    EXPECT_EQ(toJson(CompletionKindV0{CompletionKindV0::Directory{}}).dump(), R"({"directory":{}})");
}

TEST(ToolInfo, DecodingRefusesUnknownKindsAndIgnoresUnknownKeys) {
    auto json = JsonText::parse(R"({"serializationVersion":0,"extra":1,
        "command":{"commandName":"c","shouldDisplay":true,"superCommands":null,
        "arguments":[{"kind":"weird","shouldDisplay":true,"isOptional":true,"isRepeating":false,
                      "parsingStrategy":"default"}]}})");
    ASSERT_TRUE(json.has_value());
    EXPECT_THROW(decodeToolInfo(JsonDecoder(*json)), DecodeError);
    (*json)["command"]["arguments"][0]["kind"] = "flag";
    auto info = decodeToolInfo(JsonDecoder(*json));
    EXPECT_EQ(info.command.arguments->front().kind, ArgumentInfoV0::KindV0::flag);
    EXPECT_FALSE(info.command.superCommands.has_value());
}

}  // namespace
}  // namespace ArgumentParser
