#include "ArgumentParser/Dump.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ArgumentParser/TestTree.h"

namespace ArgumentParser {
namespace {

using namespace ArgumentParserToolInfo;
using Testing::TestTree;

TEST(Dump, DescribesEachCommandAndInput) {
    TestTree tree;
    auto root = toolInfo({&tree.root}).command;
    EXPECT_FALSE(root.superCommands.has_value());
    EXPECT_EQ(root.defaultSubcommand, "say");
    EXPECT_EQ(root.subcommands.value().back().commandName, "help");
    EXPECT_EQ(root.arguments.value().front().names,
              (std::vector<NameInfoV0>{{NameInfoV0::KindV0::longName, "version"}}));
    const auto& say = root.subcommands->front().arguments.value();
    EXPECT_EQ(say.at(0).kind, ArgumentInfoV0::KindV0::flag);
    EXPECT_EQ(say.at(1).parsingStrategy, ArgumentInfoV0::ParsingStrategyV0::allUnrecognized);

    auto remote = toolInfo({&tree.root, &tree.remote}).command;
    EXPECT_EQ(remote.superCommands, std::vector<std::string>{"tool"});
    EXPECT_FALSE(remote.discussion.has_value());
    const auto& add = remote.subcommands.value().at(1);
    EXPECT_EQ(add.superCommands, (std::vector<std::string>{"tool", "remote"}));
    ASSERT_EQ(add.arguments.value().size(), 3u);  // name, --url, and help
    const auto& name = add.arguments->at(0);
    EXPECT_EQ(name.kind, ArgumentInfoV0::KindV0::positional);
    EXPECT_FALSE(name.isOptional);
    EXPECT_FALSE(name.names.has_value());
    const auto& url = add.arguments->at(1);
    EXPECT_EQ(url.kind, ArgumentInfoV0::KindV0::option);
    EXPECT_TRUE(url.isOptional);
    EXPECT_EQ(url.preferredName, (NameInfoV0{NameInfoV0::KindV0::longName, "url"}));
    EXPECT_EQ(url.abstract, "Its address.");
    EXPECT_EQ(add.arguments->at(2).names, (std::vector<NameInfoV0>{{NameInfoV0::KindV0::shortName, "h"},
                                                                   {NameInfoV0::KindV0::longName, "help"}}));
}

TEST(Dump, PrintedFormDecodesToTheSameRecords) {
    TestTree tree;
    auto document = JsonDocument::parse(dumpText({&tree.root}));
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(decodeToolInfo(JsonDecoder(*document)), toolInfo({&tree.root}));
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
        auto document = JsonDocument::parse(JsonText::compact(toJson(info)).value());
        EXPECT_EQ(decodeToolInfo(JsonDecoder(document.value())), info);
    }
    EXPECT_EQ(toJson(CompletionKindV0{CompletionKindV0::ShellCommand{"ls"}}).dump(),
              R"({"shellCommand":{"command":"ls"}})");
    EXPECT_EQ(toJson(CompletionKindV0{CompletionKindV0::Directory{}}).dump(), R"({"directory":{}})");
}

TEST(ToolInfo, DecodingRefusesUnknownKindsAndIgnoresUnknownKeys) {
    auto withKind = [](const std::string& kind) {
        return JsonDocument::parse(R"({"serializationVersion":0,"extra":1,
            "command":{"commandName":"c","shouldDisplay":true,"superCommands":null,
            "arguments":[{"kind":")" + kind + R"(","shouldDisplay":true,"isOptional":true,"isRepeating":false,
                          "parsingStrategy":"default"}]}})").value();
    };
    EXPECT_THROW(decodeToolInfo(JsonDecoder(withKind("weird"))), DecodeError);
    auto info = decodeToolInfo(JsonDecoder(withKind("flag")));
    EXPECT_EQ(info.command.arguments->front().kind, ArgumentInfoV0::KindV0::flag);
    EXPECT_FALSE(info.command.superCommands.has_value());
}

}  // namespace
}  // namespace ArgumentParser
