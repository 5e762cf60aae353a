// `vesk parse`: the offline reading, in words and as JSON, at Wednesday 18 November 2026 10:00.
// The readings themselves are checked in VeskParse's tests, the lines in Summary_test.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

void expectParse(const std::vector<std::string>& words, const std::string& out) {
    std::vector<std::string> arguments{"parse"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    auto result = runVesk(arguments);
    EXPECT_EQ(result.status, 0) << out;
    EXPECT_EQ(result.err, "") << out;
    EXPECT_EQ(result.out, out);
}

TEST(Parse, SummaryLines) {
    const struct { std::vector<std::string> words; std::string summary; } cases[] = {
        {{"call the dentist at 9, nag me every 15 minutes"},
         "what   call the dentist\nwhen   Wed, Nov 18 at 9:00 PM\nhow    repeat every 15 min until done"},
        // The words are joined into one sentence, tokens and quotes included.
        {{"pay", "bill", "due:2026-12-01@14:30", "style:alarm", "list:\"Home stuff\""},
         "what   pay bill\nwhen   Tue, Dec 1 at 2:30 PM\nhow    alarm\nlist   Home stuff"},
        // Unread words still end with status 0.
        {{"meet", "at", "5", "minutes"},
         "what   meet at 5 minutes\nwhen   next hour\nhow    repeat until done\n??     didn't understand: 5, minutes"},
        // The terminator, and an option behind it, are words of the sentence.
        {{"call", "--", "--json", "mom"}, "what   call -- --json mom\nwhen   next hour\nhow    repeat until done"},
        {{"--", "--help"}, "what   help\nwhen   next hour\nhow    repeat until done"},
        {{}, "what   \nwhen   next hour\nhow    repeat until done"},
    };
    for (const auto& c : cases) expectParse(c.words, c.summary + "\n");
}

TEST(Parse, JsonWhereverTheFlagStands) {
    const std::string callMom =
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
    expectParse({"call", "mom", "--json"}, callMom);
    expectParse({"--json", "call", "mom"}, callMom);
    expectParse({"--json", "call mom"}, callMom);
}

}  // namespace
