#include "ArgumentParser/Dump.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ArgumentParser/TestTree.h"

namespace ArgumentParser {
namespace {

using namespace ArgumentParserToolInfo;
using Kind = ArgumentInfoV0::KindV0;
using NameKind = NameInfoV0::KindV0;

TEST(Dump, DescribesEachCommandAndInput) {
    Testing::TestTree tree;
    auto root = toolInfo({&tree.root}).command;
    EXPECT_FALSE(root.superCommands.has_value());
    EXPECT_EQ(root.defaultSubcommand, "say");
    EXPECT_EQ(root.subcommands.value().back().commandName, "help");
    EXPECT_EQ(root.arguments.value().front().names, (std::vector<NameInfoV0>{{NameKind::longName, "version"}}));
    const auto& say = root.subcommands->front().arguments.value();
    EXPECT_EQ(say.at(0).kind, Kind::flag);
    EXPECT_EQ(say.at(1).parsingStrategy, ArgumentInfoV0::ParsingStrategyV0::allUnrecognized);

    auto remote = toolInfo({&tree.root, &tree.remote}).command;
    EXPECT_EQ(remote.superCommands, std::vector<std::string>{"tool"});
    EXPECT_FALSE(remote.discussion.has_value());
    const auto& add = remote.subcommands.value().at(1);
    EXPECT_EQ(add.superCommands, (std::vector<std::string>{"tool", "remote"}));
    ASSERT_EQ(add.arguments.value().size(), 3u);  // name, --url, and help
    const auto& [name, url, help] = std::tie(add.arguments->at(0), add.arguments->at(1), add.arguments->at(2));
    EXPECT_EQ(name.kind, Kind::positional);
    EXPECT_FALSE(name.isOptional);
    EXPECT_FALSE(name.names.has_value());
    EXPECT_EQ(url.kind, Kind::option);
    EXPECT_TRUE(url.isOptional);
    EXPECT_EQ(url.preferredName, (NameInfoV0{NameKind::longName, "url"}));
    EXPECT_EQ(url.abstract, "Its address.");
    EXPECT_EQ(help.names, (std::vector<NameInfoV0>{{NameKind::shortName, "h"}, {NameKind::longName, "help"}}));

    // The printed form decodes to the same records.
    auto document = JsonDocument::parse(dumpText({&tree.root}));
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(decodeToolInfo(JsonDecoder(*document)), toolInfo({&tree.root}));
}

TEST(ToolInfo, EveryFieldRoundTrips) {
    ArgumentInfoV0 argument;
    argument.kind = Kind::option;
    argument.sectionTitle = "Extra";
    argument.parsingStrategy = ArgumentInfoV0::ParsingStrategyV0::upToNextOption;
    argument.names = std::vector<NameInfoV0>{{NameKind::longWithSingleDash, "x"}};
    argument.defaultValue = "3";
    argument.allValues = std::vector<std::string>{"1", "3"};
    argument.allValueDescriptions = std::map<std::string, std::string>{{"1", "one"}, {"3", "three"}};
    argument.abstract = "a";
    argument.discussion = "d";
    CommandInfoV0 command;
    command.commandName = "c";
    command.aliases = std::vector<std::string>{"k"};
    using Completion = CompletionKindV0;
    for (Completion kind : {Completion{Completion::List{{"a", "b"}}}, Completion{Completion::File{{"txt"}}},
                            Completion{Completion::Directory{}}, Completion{Completion::ShellCommand{"ls"}},
                            Completion{Completion::Custom{}}, Completion{Completion::CustomAsync{}},
                            Completion{Completion::CustomDeprecated{}}}) {
        argument.completionKind = kind;
        command.arguments = std::vector<ArgumentInfoV0>{argument};
        ToolInfoV0 info{0, command};
        auto document = JsonDocument::parse(JsonText::compact(toJson(info)).value());
        EXPECT_EQ(decodeToolInfo(JsonDecoder(document.value())), info);
    }
    EXPECT_EQ(toJson(Completion{Completion::ShellCommand{"ls"}}).dump(), R"({"shellCommand":{"command":"ls"}})");
    EXPECT_EQ(toJson(Completion{Completion::Directory{}}).dump(), R"({"directory":{}})");
}

TEST(ToolInfo, DecodingRefusesUnknownKindsAndIgnoresUnknownKeys) {
    auto withKind = [](const std::string& kind) {
        const std::string text = R"({"serializationVersion":0,"extra":1,"command":{"commandName":"c",)"
                                 R"("shouldDisplay":true,"superCommands":null,"arguments":[{"kind":")" +
                                 kind +
                                 R"(","shouldDisplay":true,"isOptional":true,"isRepeating":false,)"
                                 R"("parsingStrategy":"default"}]}})";
        return JsonDocument::parse(text).value();
    };
    EXPECT_THROW(decodeToolInfo(JsonDecoder(withKind("weird"))), DecodeError);
    auto info = decodeToolInfo(JsonDecoder(withKind("flag")));
    EXPECT_EQ(info.command.arguments->front().kind, Kind::flag);
    EXPECT_FALSE(info.command.superCommands.has_value());
}

}  // namespace
}  // namespace ArgumentParser
