#include "ArgumentParser/Dump.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ArgumentParser/TestTree.h"
#include "Platform/Json.h"

namespace ArgumentParser {
namespace {

using namespace ArgumentParserToolInfo;
using NameKind = NameInfoV0::KindV0;

TEST(Dump, DescribesEachCommandAndInput) {
    Testing::TestTree tree;
    auto root = toolInfo({&tree.root}).command;
    EXPECT_FALSE(root.superCommands.has_value());
    EXPECT_EQ(root.defaultSubcommand, "say");
    EXPECT_EQ(root.subcommands.value().back().commandName, "help");
    EXPECT_EQ(root.arguments.value().front().names, (std::vector<NameInfoV0>{{NameKind::longName, "version"}}));
    EXPECT_EQ(root.subcommands->front().arguments.value().at(1).parsingStrategy,
              ArgumentInfoV0::ParsingStrategyV0::allUnrecognized);

    // The layout other programs read, of a command two levels down.
    EXPECT_EQ(JsonText::compact(toJson(toolInfo({&tree.root, &tree.remote, &tree.remoteAdd}))).value(),
              R"({"command":{"abstract":"Add a remote.","arguments":[{"abstract":"Its name.","isOptional":false,)"
              R"("isRepeating":false,"kind":"positional","parsingStrategy":"default","shouldDisplay":true,)"
              R"("valueName":"name"},{"abstract":"Its address.","isOptional":true,"isRepeating":false,"kind":"option",)"
              R"("names":[{"kind":"long","name":"url"}],"parsingStrategy":"default","preferredName":{"kind":"long",)"
              R"("name":"url"},"shouldDisplay":true,"valueName":"url"},{"abstract":"Show help information.",)"
              R"("isOptional":true,"isRepeating":false,"kind":"flag","names":[{"kind":"short","name":"h"},)"
              R"({"kind":"long","name":"help"}],"parsingStrategy":"default","preferredName":{"kind":"long",)"
              R"("name":"help"},"shouldDisplay":true,"valueName":"help"}],"commandName":"add","shouldDisplay":true,)"
              R"("superCommands":["tool","remote"]},"serializationVersion":0})");

    // The printed form decodes to the same records.
    auto document = JsonDocument::parse(dumpText({&tree.root}));
    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(decodeToolInfo(JsonDecoder(*document)), toolInfo({&tree.root}));
}

}  // namespace
}  // namespace ArgumentParser
