// `vesk --experimental-dump-help` prints JSON that decodes back into the tool-info records.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "ArgumentParserToolInfo/ToolInfo.h"
#include "Platform/Json.h"
#include "Platform/JsonDecoder.h"
#include "Process.h"

namespace {

using namespace ArgumentParserToolInfo;

// The dump of `arguments`, printed like every other JSON of vesk, decoded.
ToolInfoV0 dumped(const std::vector<std::string>& arguments) {
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
    return decodeToolInfo(JsonDecoder(*document));
}

std::vector<std::string> names(const std::vector<CommandInfoV0>& commands) {
    std::vector<std::string> result;
    for (const auto& command : commands) result.push_back(command.commandName);
    return result;
}

const CommandInfoV0& child(const CommandInfoV0& command, const std::string& name) {
    for (const auto& sub : command.subcommands.value())
        if (sub.commandName == name) return sub;
    throw std::runtime_error("no subcommand " + name);
}

const ArgumentInfoV0& argument(const CommandInfoV0& command, const std::string& valueName) {
    for (const auto& argument : command.arguments.value())
        if (argument.valueName == valueName) return argument;
    throw std::runtime_error("no argument " + valueName);
}

TEST(ToolInfo, RootDumpDecodes) {
    auto info = dumped({"--experimental-dump-help"});
    const auto& root = info.command;
    EXPECT_EQ(root.commandName, "vesk");
    EXPECT_EQ(root.abstract, "Ride me like a vesk.");
    EXPECT_EQ(root.defaultSubcommand, "add");
    ASSERT_TRUE(root.subcommands.has_value());
    EXPECT_EQ(names(*root.subcommands), (std::vector<std::string>{"add", "now", "later", "done", "snooze", "delete",
                                                                  "lists", "places", "settings", "doctor", "parse",
                                                                  "help"}));
    EXPECT_EQ(argument(root, "version").kind, ArgumentInfoV0::KindV0::flag);

    const auto& places = child(root, "places");
    EXPECT_EQ(places.superCommands, std::vector<std::string>{"vesk"});
    EXPECT_EQ(places.defaultSubcommand, "list");
    EXPECT_EQ(names(*places.subcommands), (std::vector<std::string>{"list", "add", "remove"}));

    const auto& placesAdd = child(places, "add");
    EXPECT_EQ(placesAdd.superCommands, (std::vector<std::string>{"vesk", "places"}));
    const auto& radius = argument(placesAdd, "radius");
    EXPECT_EQ(radius.kind, ArgumentInfoV0::KindV0::option);
    EXPECT_EQ(radius.preferredName, (NameInfoV0{NameInfoV0::KindV0::longName, "radius"}));
    EXPECT_EQ(radius.abstract, "Radius in meters. Default 100.");
    EXPECT_EQ(argument(placesAdd, "name").kind, ArgumentInfoV0::KindV0::positional);
    EXPECT_EQ(argument(child(root, "add"), "words").parsingStrategy,
              ArgumentInfoV0::ParsingStrategyV0::allUnrecognized);
}

TEST(ToolInfo, DumpStartsAtTheCommandReached) {
    auto info = dumped({"settings", "--experimental-dump-help"});
    EXPECT_EQ(info.command.commandName, "settings");
    EXPECT_EQ(info.command.superCommands, std::vector<std::string>{"vesk"});
    EXPECT_EQ(names(*info.command.subcommands), (std::vector<std::string>{"show", "set"}));
    EXPECT_EQ(child(info.command, "set").discussion,
              "repeat, nag, stagger, and alarm-repeat take minutes; date-only-hour takes 0 to 23; night takes "
              "22:00-07:00 or off.");
}

}  // namespace
