#include "VeskApp/Config.h"

#include <gtest/gtest.h>

namespace {

std::string shown(const std::variant<Config, std::string>& result) {
    if (auto* problem = std::get_if<std::string>(&result)) return *problem;
    const Config& config = std::get<Config>(result);
    std::string text = config.deviceName.value_or("-") + "|" + (config.relayOnly ? "relay" : "alerts") + "|" +
                       config.defaultList.value_or("-") + "|";
    for (const auto& name : config.ignoredLists) text += name + ";";
    if (config.modelUrl)
        text +=
            "|" + *config.modelUrl + " " + config.modelName.value_or("-") + " " + std::to_string(config.modelTimeout);
    if (config.geocoderUrl != Config{}.geocoderUrl || config.geocoderTimeout != Config{}.geocoderTimeout)
        text += "|" + config.geocoderUrl + " " + std::to_string(config.geocoderTimeout);
    return text;
}

TEST(Config, LinesOfKeysAndValues) {
    const std::pair<const char*, const char*> cases[] = {
        {"# only a comment\n\n   \n", "-|alerts|-|"},
        {"device-name = Studio Mac  # the iMac\nrelay-only=true\n", "Studio Mac|relay|-|"},
        {"default-list = Work\nignored-lists = Groceries, , Old stuff ,\n", "-|alerts|Work|Groceries;Old stuff;"},
        {"relay-only = yes\n", "config:1: relay-only is true or false, not \u201cyes\u201d"},
        {"\n\ncolour = blue\n", "config:3: unknown key \u201ccolour\u201d"},
        {"device-name\n", "config:1: expected key = value, found \u201cdevice-name\u201d"},
        {"device-name =\n", "config:1: device-name needs a name"},
        {"model-url = http://127.0.0.1:8080/v1/\nmodel-name = qwen\nmodel-timeout = 2.5\n",
         "-|alerts|-||http://127.0.0.1:8080/v1 qwen 2.500000"},
        {"model-url = 127.0.0.1:8080\n",
         "config:1: model-url is an http:// or https:// address, not \u201c127.0.0.1:8080\u201d"},
        {"model-timeout = 0\n",
         "config:1: model-timeout is a number of seconds above 0 and up to 600, not \u201c0\u201d"},
        {"model-timeout = 8s\n",
         "config:1: model-timeout is a number of seconds above 0 and up to 600, not \u201c8s\u201d"},
        {"geocoder-url = http://localhost:7070/\ngeocoder-timeout = 3\n", "-|alerts|-||http://localhost:7070 3.000000"},
        {"model-timeout = nan\n",
         "config:1: model-timeout is a number of seconds above 0 and up to 600, not \u201cnan\u201d"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(shown(Config::parse(text)), expected) << text;
}

TEST(Config, AMissingFileGivesTheDefaults) {
    EXPECT_EQ(shown(Config::load("/nonexistent/vesk/config")), "-|alerts|-|");
    EXPECT_EQ(shown(Config::load("/")).rfind("config: can't read /", 0), 0u);
}

}  // namespace
