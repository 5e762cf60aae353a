#include "VeskApp/Config.h"

#include <gtest/gtest.h>

namespace {

std::string shown(const std::variant<Config, std::string>& result) {
    if (auto* problem = std::get_if<std::string>(&result)) return *problem;
    const Config& config = std::get<Config>(result);
    std::string text = config.deviceName.value_or("-") + "|" + (config.relayOnly ? "relay" : "alerts") + "|" +
                       config.defaultList.value_or("-") + "|";
    for (const auto& name : config.ignoredLists) text += name + ";";
    return text;
}

TEST(Config, LinesOfKeysAndValues) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "-|alerts|-|"},
        {"# only a comment\n\n   \n", "-|alerts|-|"},
        {"device-name = Studio Mac  # the iMac\nrelay-only=true\n", "Studio Mac|relay|-|"},
        {"default-list = Work\nignored-lists = Groceries, , Old stuff ,\n", "-|alerts|Work|Groceries;Old stuff;"},
        {"relay-only = yes\n", "config:1: relay-only is true or false, not \u201cyes\u201d"},
        {"\n\ncolour = blue\n", "config:3: unknown key \u201ccolour\u201d"},
        {"device-name\n", "config:1: expected key = value, found \u201cdevice-name\u201d"},
        {"device-name =\n", "config:1: device-name needs a name"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(shown(Config::parse(text)), expected) << text;
}

TEST(Config, AMissingFileGivesTheDefaults) {
    EXPECT_EQ(shown(Config::load("/nonexistent/vesk/config")), "-|alerts|-|");
    EXPECT_EQ(shown(Config::load("/")).rfind("config: can't read /", 0), 0u);
}

}  // namespace
