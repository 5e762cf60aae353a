// `vesk --experimental-dump-help` prints JSON that decodes back into the tool-info records.
// How each command and input is described is checked in ArgumentParser/Dump_test.cpp.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ArgumentParserToolInfo/ToolInfo.h"
#include "Platform/Json.h"
#include "Platform/JsonDecoder.h"
#include "Process.h"

namespace {

using namespace ArgumentParserToolInfo;

// The dump of `arguments`, printed like every other JSON of vesk, decoded.
CommandInfoV0 dumped(const std::vector<std::string>& arguments) {
    auto result = runVesk(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    auto document = JsonDocument::parse(result.out);
    if (!document) {
        ADD_FAILURE() << "not JSON: " << result.out;
        return {};
    }
    EXPECT_EQ(result.out, JsonText::pretty(Json::parse(result.out)).value() + "\n");
    EXPECT_EQ(decodeToolInfoHeader(JsonDecoder(*document)).serializationVersion, 0);
    return decodeToolInfo(JsonDecoder(*document)).command;
}

TEST(ToolInfo, DumpStartsAtTheCommandReached) {
    const std::vector<CommandInfoV0> none;
    auto root = dumped({"--experimental-dump-help"});
    EXPECT_EQ(root.commandName, "vesk");
    EXPECT_EQ(root.defaultSubcommand, "add");
    EXPECT_EQ(root.subcommands.value_or(none).size(), 12u);  // `help` included
    auto settings = dumped({"settings", "--experimental-dump-help"});
    EXPECT_EQ(settings.superCommands, std::vector<std::string>{"vesk"});
    ASSERT_EQ(settings.subcommands.value_or(none).size(), 2u);
    EXPECT_EQ(settings.subcommands->back().commandName, "set");
    EXPECT_EQ(settings.subcommands->back().discussion,
              "repeat, nag, stagger, and alarm-repeat take minutes; date-only-hour takes 0 to 23; night takes "
              "22:00-07:00 or off.");
}

}  // namespace
