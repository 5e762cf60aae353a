// `vesk parse`: the offline reading, in words and as JSON, at Wednesday 18 November 2026 10:00.
// The readings themselves are checked in VeskParse's tests, the lines in Summary_test.
#include <gtest/gtest.h>

#include "Process.h"

namespace {

TEST(Parse, WordsBecomeOneSentence) {
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
    const struct {
        std::vector<std::string> words;
        std::string out;
    } cases[] = {
        // The words are joined into one sentence, tokens and quotes included.
        {{"pay", "bill", "due:2026-12-01@14:30", "style:alarm", "list:\"Home stuff\""},
         "what   pay bill\nwhen   Tue, Dec 1 at 2:30 PM\nhow    alarm\nlist   Home stuff\n"},
        // Unread words still end with status 0.
        {{"meet", "at", "5", "minutes"},
         "what   meet at 5 minutes\nwhen   next hour\nhow    repeat until done\n??     didn't understand: 5, "
         "minutes\n"},
        // The terminator, and an option behind it, are words of the sentence.
        {{"call", "--", "--json", "mom"}, "what   call -- --json mom\nwhen   next hour\nhow    repeat until done\n"},
        {{"--", "--help"}, "what   help\nwhen   next hour\nhow    repeat until done\n"},
        {{}, "what   \nwhen   next hour\nhow    repeat until done\n"},
        // --json wherever it stands.
        {{"call", "mom", "--json"}, callMom},
        {{"--json", "call", "mom"}, callMom},
        {{"--json", "call mom"}, callMom},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.words));
        std::vector<std::string> arguments{"parse"};
        arguments.insert(arguments.end(), c.words.begin(), c.words.end());
        auto result = runVesk(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.out, c.out);
    }
}

}  // namespace
