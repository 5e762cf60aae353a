// `vesk parse`: the offline reading, in words and as JSON, at Wednesday 18 November 2026 10:00.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

struct Reading {
    std::vector<std::string> words;
    std::string summary;
};

std::vector<std::string> parseCommand(const std::vector<std::string>& words) {
    std::vector<std::string> arguments{"parse"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return arguments;
}

TEST(Parse, SummaryLines) {
    const Reading readings[] = {
        {{"buy", "milk"}, "what   buy milk\nwhen   next hour\nhow    repeat until done"},
        {{"call the dentist at 9, nag me every 15 minutes"},
         "what   call the dentist\nwhen   Wed, Nov 18 at 9:00 PM\nhow    repeat every 15 min until done"},
        {{"remind", "me", "to", "call", "mum", "tomorrow", "at", "3"},
         "what   call mum\nwhen   Thu, Nov 19 at 3:00 PM\nhow    repeat until done"},
        {{"wake me at 6"}, "what   \nwhen   Thu, Nov 19 at 6:00 AM\nhow    alarm"},
        {{"water plants every other day"},
         "what   water plants\nwhen   next hour\nhow    repeat until done\nrepeat every 2 daily"},
        {{"get haircut every 6 weeks from when I last did it"},
         "what   get haircut\nwhen   next hour\nhow    repeat until done\nrepeat every 6 weekly from completion"},
        {{"feed cat 10 minutes after I get home"}, "what   feed cat\nhow    repeat until done\nwhere  arrive home + 10 min"},
        {{"call dad but only if i'm at home"}, "what   call dad\nwhen   next hour\nhow    repeat until done\ngate   only at home"},
        {{"reply to ann on my mac"}, "what   reply to ann\nwhen   next hour\nhow    repeat until done\ndevice mac"},
        {{"start pinging me a week early for passport on the 20th"},
         "what   passport\nwhen   Fri, Nov 20\nhow    repeat until done\nstart  -604800"},
        {{"pay", "bill", "due:2026-12-01@14:30", "style:alarm", "list:\"Home stuff\""},
         "what   pay bill\nwhen   Tue, Dec 1 at 2:30 PM\nhow    alarm\nlist   Home stuff"},
        {{"remind me about the report next week"},
         "what   about the report next week\nwhen   next hour\nhow    repeat until done\n??     didn't understand: next, week"},
        {{}, "what   \nwhen   next hour\nhow    repeat until done"},
    };
    for (const auto& reading : readings) {
        auto result = runVesk(parseCommand(reading.words));
        EXPECT_EQ(result.status, 0) << reading.summary;
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, reading.summary + "\n");
    }
}

TEST(Parse, JsonWhereverTheFlagStands) {
    const std::string expected =
        "{\n"
        "  \"parse\" : {\n"
        "    \"needsModel\" : false,\n"
        "    \"readByModel\" : false,\n"
        "    \"style\" : \"repeat\",\n"
        "    \"title\" : \"call mom\",\n"
        "    \"unresolved\" : [\n"
        "\n"
        "    ]\n"
        "  },\n"
        "  \"schema\" : 1\n"
        "}\n";
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"parse", "call", "mom", "--json"}, {"parse", "--json", "call", "mom"}, {"parse", "--json", "call mom"}}) {
        auto result = runVesk(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, expected);
        EXPECT_EQ(result.err, "");
    }
}

TEST(Parse, JsonOfAFullReading) {
    auto result = runVesk({"parse", "--json", "call the dentist at 9, nag me every 15 minutes"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "{\n"
              "  \"parse\" : {\n"
              "    \"due\" : \"2026-11-18T21:00\",\n"
              "    \"needsModel\" : false,\n"
              "    \"readByModel\" : false,\n"
              "    \"repeatIntervalSeconds\" : 900,\n"
              "    \"style\" : \"repeat\",\n"
              "    \"title\" : \"call the dentist\",\n"
              "    \"unresolved\" : [\n"
              "\n"
              "    ]\n"
              "  },\n"
              "  \"schema\" : 1\n"
              "}\n");
}

TEST(Parse, JsonOfATrigger) {
    auto result = runVesk({"parse", "feed cat 10 minutes after I get home", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "{\n"
              "  \"parse\" : {\n"
              "    \"needsModel\" : false,\n"
              "    \"readByModel\" : false,\n"
              "    \"style\" : \"repeat\",\n"
              "    \"title\" : \"feed cat\",\n"
              "    \"trigger\" : {\n"
              "      \"delaySeconds\" : 600,\n"
              "      \"edge\" : \"arrive\",\n"
              "      \"place\" : \"home\"\n"
              "    },\n"
              "    \"unresolved\" : [\n"
              "\n"
              "    ]\n"
              "  },\n"
              "  \"schema\" : 1\n"
              "}\n");
}

TEST(Parse, UnreadWordsStillEndWithStatusZero) {
    auto result = runVesk({"parse", "meet", "at", "5", "minutes"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              "what   meet at 5 minutes\nwhen   next hour\nhow    repeat until done\n"
              "??     didn't understand: 5, minutes\n");
}

TEST(Parse, TerminatorAndDashesAreWords) {
    auto result = runVesk({"parse", "call", "--", "--json", "mom"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "what   call -- --json mom\nwhen   next hour\nhow    repeat until done\n");
}

}  // namespace
